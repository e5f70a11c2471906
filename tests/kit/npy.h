#pragma once
// Arrays that NumPy saved, as far as the expected values of real recordings need them.

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

namespace megset {

/// A matrix of doubles, row behind row.
struct NpyMatrix
{
    std::size_t rows = 0;
    std::size_t columns = 0;
    std::vector<double> values;

    const double* row(std::size_t index) const { return values.data() + index * columns; }
};

/// Reads a .npy file, version 1.0, of a matrix of little-endian float64 in C order; anything else throws.
inline NpyMatrix readNpy(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    const std::string magic("\x93NUMPY\x01\x00", 8);
    if (bytes.size() < 10 || bytes.compare(0, 8, magic) != 0)
        throw std::runtime_error(path.string() + " is no .npy file of version 1.0");
    const std::size_t headerSize = static_cast<unsigned char>(bytes[8]) + 256U * static_cast<unsigned char>(bytes[9]);
    const std::string header = bytes.substr(10, headerSize);
    std::smatch shape;
    if (header.find("'<f8'") == std::string::npos || header.find("'fortran_order': False") == std::string::npos ||
        !std::regex_search(header, shape, std::regex(R"('shape': \((\d+), (\d+)\))")))
        throw std::runtime_error(path.string() + " is no matrix of doubles");
    NpyMatrix matrix{std::stoul(shape[1]), std::stoul(shape[2]), {}};
    matrix.values.resize(matrix.rows * matrix.columns);
    if (bytes.size() != 10 + headerSize + 8 * matrix.values.size())
        throw std::runtime_error(path.string() + " has another size than its shape");
    std::memcpy(matrix.values.data(), bytes.data() + 10 + headerSize, 8 * matrix.values.size());
    return matrix;
}

} // namespace megset
