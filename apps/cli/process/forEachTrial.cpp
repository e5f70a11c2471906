#include "apps/cli/process/forEachTrial.h"

#include "megset/platform/CProgresszk.h"
#include "megset/platform/stopRequest.h"

#include <algorithm>
#include <stdexcept>

namespace megset::cli {

namespace {

void visitTrial(OpenDataset& open, int index, const std::function<void(CMDTrialzk&, int)>& change)
{
    endWhenAsked();
    try {
        CMDTrialzk* const trial = open.dataset.getTrialzk(index);
        if (trial == nullptr)
            throw std::runtime_error("it can't be opened");
        change(*trial, index);
    } catch (const std::exception& fault) {
        throw std::runtime_error("trial " + std::to_string(index) + " of " +
                                 std::to_string(open.dataset.getTotalTrial()) + ": " + fault.what());
    }
}

} // namespace

// Without a list of the trials: a file may count any number of them.
void forEachTrial(OpenDataset& open, const CString& title, const std::function<void(CMDTrialzk&)>& change)
{
    const int total = std::max(open.dataset.getTotalTrial(), 0);
    CProgresszk progress(title, 0, total);
    for (int i = 0; i < total; ++i) {
        visitTrial(open, i, [&change](CMDTrialzk& trial, int) { change(trial); });
        progress.step();
    }
}

void forTrials(OpenDataset& open, const CString& title, const std::vector<int>& trials,
               const std::function<void(CMDTrialzk&, int)>& change)
{
    CProgresszk progress(title, 0, std::ssize(trials));
    for (const int i : trials) {
        visitTrial(open, i, change);
        progress.step();
    }
}

} // namespace megset::cli
