#pragma once
// Reads trials of a dataset one after another, without the dataset knowing: none of them is ever written.

#include "apps/cli/dataset/openDataset.h"

#include <memory>

namespace megset::cli {

class TrialReader
{
public:
    /// The dataset must outlive the reader.
    explicit TrialReader(const OpenDataset& open) : m_open(open) {}

    /// The trial, valid until the next call; the same index again reads nothing. Throws std::runtime_error with the
    /// file and the reason.
    const CMDTrialzk& read(int index);

private:
    const OpenDataset& m_open;
    std::unique_ptr<CMDTrialzk> m_trial;
    int m_index = -1;
};

} // namespace megset::cli
