#include "apps/cli/process/forEachTrial.h"

#include "megset/platform/CProgresszk.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>

namespace megset::cli {

void forEachTrial(OpenDataset& open, const CString& title, const std::function<void(CMDTrialzk&)>& change)
{
    std::vector<int> all(static_cast<std::size_t>(std::max(open.dataset.getTotalTrial(), 0)));
    std::iota(all.begin(), all.end(), 0);
    forTrials(open, title, all, [&change](CMDTrialzk& trial, int) { change(trial); });
}

void forTrials(OpenDataset& open, const CString& title, const std::vector<int>& trials,
               const std::function<void(CMDTrialzk&, int)>& change)
{
    CProgresszk progress(title, 0, std::ssize(trials));
    for (const int i : trials) {
        try {
            CMDTrialzk* const trial = open.dataset.getTrialzk(i);
            if (trial == nullptr)
                throw std::runtime_error("it can't be opened");
            change(*trial, i);
        } catch (const std::exception& fault) {
            throw std::runtime_error("trial " + std::to_string(i) + " of " +
                                     std::to_string(open.dataset.getTotalTrial()) + ": " + fault.what());
        }
        progress.step();
    }
}

} // namespace megset::cli
