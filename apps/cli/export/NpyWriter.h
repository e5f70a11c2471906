#pragma once
// Writes a matrix of float64 in NumPy's .npy format, version 1.0.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>

namespace megset::cli {

/// The matrix is filled in parts, in any order; what is left out is zero. See NumPy's "NPY format".
class NpyWriter
{
public:
    /// Makes the file. Throws std::runtime_error when that fails, as do the other operations.
    NpyWriter(const std::filesystem::path& path, std::int64_t rows, std::int64_t columns);

    void write(std::int64_t row, std::int64_t column, std::span<const double> values);
    void close();

private:
    void check();

    std::filesystem::path m_path;
    std::int64_t m_columns;
    std::int64_t m_dataBegin = 0;
    std::ofstream m_file;
};

} // namespace megset::cli
