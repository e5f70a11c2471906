#include "apps/cli/export/NpyWriter.h"

#include "apps/cli/inspect/fileTag.h"

#include <bit>
#include <stdexcept>
#include <string>

namespace megset::cli {

namespace {

static_assert(std::endian::native == std::endian::little, "the samples are written as they stand in memory");

// The header as the format has it: a dictionary, padded so that the data begin at a multiple of 64 bytes.
std::string header(std::int64_t rows, std::int64_t columns)
{
    constexpr std::size_t prefix = 10;
    constexpr std::size_t alignment = 64;
    std::string text = "{'descr': '<f8', 'fortran_order': False, 'shape': (" + std::to_string(rows) + ", " +
                       std::to_string(columns) + "), }";
    while ((prefix + text.size() + 1) % alignment != 0)
        text += ' ';
    text += '\n';
    std::string whole("\x93NUMPY\x01\x00", 8);
    whole += static_cast<char>(text.size() & 0xFFU);
    whole += static_cast<char>(text.size() >> 8U);
    return whole + text;
}

} // namespace

NpyWriter::NpyWriter(const std::filesystem::path& path, std::int64_t rows, std::int64_t columns)
    : m_path(path), m_columns(columns), m_file(path, std::ios::binary | std::ios::trunc)
{
    const std::string text = header(rows, columns);
    m_dataBegin = static_cast<std::int64_t>(text.size());
    m_file.write(text.data(), static_cast<std::streamsize>(text.size()));
    check();
    std::filesystem::resize_file(path, text.size() + static_cast<std::uintmax_t>(rows * columns) * sizeof(double));
}

void NpyWriter::write(std::int64_t row, std::int64_t column, std::span<const double> values)
{
    constexpr auto size = static_cast<std::int64_t>(sizeof(double));
    m_file.seekp(m_dataBegin + (row * m_columns + column) * size);
    m_file.write(reinterpret_cast<const char*>(values.data()), static_cast<std::streamsize>(values.size_bytes()));
    check();
}

void NpyWriter::close()
{
    m_file.close();
    check();
}

void NpyWriter::check()
{
    if (!m_file)
        throw std::runtime_error(shownPath(m_path) + ": can't be written");
}

} // namespace megset::cli
