#include "apps/cli/dataset/TrialReader.h"

namespace megset::cli {

const CMDTrialzk& TrialReader::read(int index)
{
    if (m_trial && index == m_index)
        return *m_trial;
    m_trial.reset(); // before the next one: only one trial is in memory
    m_trial = readTrial(m_open, index);
    m_index = index;
    return *m_trial;
}

} // namespace megset::cli
