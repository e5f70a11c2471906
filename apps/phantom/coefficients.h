#pragma once

#include "apps/phantom/Instrument.h"

#include <string>
#include <vector>

namespace megset::phantom {

/// The coefficients of one gradient order: what is to be taken from each gradiometer of each reference.
struct CoefficientTable
{
    std::string type;            ///< four characters: G1BR, G2BR, G3BR (measured), G2OI, G3OI (as designed)
    std::vector<int> references; ///< indices of channels
    /// Indices of the gradiometers, and for each the weights of the references, T to T.
    std::vector<int> gradiometers;
    std::vector<std::vector<double>> weights;

    /// A weight as the file has it, integers to integers.
    double stored(const Instrument& instrument, std::size_t gradiometer, std::size_t reference) const;
};

/// The tables of a system, as its maker would measure them: with magnets all around, 5 to 12 m away, each reference and
/// each gradiometer is read, and the weights are those that leave least of it in the gradiometer (least squares), with
/// the noise that the references bring in counted as what is left, too.
std::vector<CoefficientTable> coefficientTables(const Instrument& instrument);

} // namespace megset::phantom
