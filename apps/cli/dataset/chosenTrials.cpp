#include "apps/cli/dataset/chosenTrials.h"

#include "apps/cli/inspect/fileTag.h"
#include "apps/cli/process/forEachTrial.h"

#include <stdexcept>

namespace megset::cli {

void requireTrials(const OpenDataset& open, bool all)
{
    const int paths = open.dataset.m_aTrialFilePath.GetSize();
    const int current = open.dataset.getCurrentTrialIndx();
    const int first = all ? 0 : current;
    const int last = all ? paths - 1 : current;
    if (first < 0 || last < first || last >= paths)
        throw std::runtime_error(shownPath(open.path) + ": the dataset has no trial");
    for (int i = first; i <= last; ++i)
        if (open.dataset.getMDTrial(i) == nullptr && findTrialFile(open, i).IsEmpty())
            throw std::runtime_error(storedTrialPath(open, i) + ": the trial's file is missing");
}

void forChosenTrials(OpenDataset& open, bool all, const CString& title, const std::function<void(CMDTrialzk&)>& change)
{
    requireTrials(open, all);
    const int current = open.dataset.getCurrentTrialIndx();
    if (all) {
        forEachTrial(open, title, change);
        returnToTrial(open, current);
        return;
    }
    CMDTrialzk* const trial = open.dataset.getTrialzk(-1);
    if (trial == nullptr)
        throw std::runtime_error("trial " + std::to_string(current) + ": it can't be opened");
    change(*trial);
}

void returnToTrial(OpenDataset& open, int trial)
{
    if (open.dataset.getTrialzk(trial) == nullptr)
        throw std::runtime_error("trial " + std::to_string(trial) + ": it can't be opened");
}

CMDTrialzk& currentTrial(OpenDataset& open)
{
    CMDTrialzk* const trial = open.dataset.getCurrentTrialPt();
    if (trial == nullptr)
        throw std::runtime_error(shownPath(open.path) + ": its current trial can't be read");
    return *trial;
}

} // namespace megset::cli
