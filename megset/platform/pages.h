// Memory straight from the operating system, in whole pages. Internal to platform/.
#pragma once

#include <cstddef>

namespace megset::pages {

inline constexpr std::size_t pageBytes = 4096;
inline constexpr std::size_t hugePageBytes = std::size_t{2} << 20;

/// Maps `bytes` (a multiple of `pageBytes`) of zeroed memory that begins at a huge page and asks for huge pages.
/// Null on failure.
void* map(std::size_t bytes) noexcept;

/// Gives a mapping back to the system.
void unmap(void* start, std::size_t bytes) noexcept;

/// Gives the memory back and keeps the addresses; they read as zero from now on.
void discard(void* start, std::size_t bytes) noexcept;

} // namespace megset::pages
