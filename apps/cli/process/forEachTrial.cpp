#include "apps/cli/process/forEachTrial.h"

#include "megset/platform/CProgresszk.h"

#include <stdexcept>

namespace megset::cli {

void forEachTrial(OpenDataset& open, const CString& title, const std::function<void(CMDTrialzk&)>& change)
{
    const int total = open.dataset.getTotalTrial();
    CProgresszk progress(title, 0, total);
    for (int i = 0; i < total; ++i) {
        try {
            CMDTrialzk* const trial = open.dataset.getTrialzk(i);
            if (trial == nullptr)
                throw std::runtime_error("it can't be opened");
            change(*trial);
        } catch (const std::exception& fault) {
            throw std::runtime_error("trial " + std::to_string(i) + " of " + std::to_string(total) + ": " +
                                     fault.what());
        }
        progress.step();
    }
}

} // namespace megset::cli
