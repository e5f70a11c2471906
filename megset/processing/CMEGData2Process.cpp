#include "megset/processing/CMEGData2Process.h"

#include "megset/core/CMDTrialzk.h"

#include <algorithm>

namespace megset {

int CMEGData2Process::checkInitChnlParam(const CMDTrialzk* trial)
{
    if (trial == nullptr)
        return 0;
    const int count = trial->getTotalChannel();
    if (count != m_nChnlParamCount)
        _cleanChnlParam();
    if (count < 1)
        return 0;
    std::unique_ptr<int[]>* const arrays[] = {&m_pChnlGood, &m_pChnlShow, &m_pChnlSelect, &m_pChnlParam4};
    const bool anyMissing =
        std::any_of(std::begin(arrays), std::end(arrays), [](auto* array) { return *array == nullptr; });
    for (auto* array : arrays) {
        if (*array == nullptr)
            *array = tryNewZeroArray<int>(count);
        if (*array == nullptr) {
            _cleanChnlParam();
            return 0;
        }
    }
    m_nChnlParamCount = count;
    if (anyMissing) {
        // One new array sets all flags anew: they describe the same channels.
        std::fill_n(m_pChnlGood.get(), count, 1);
        std::fill_n(m_pChnlShow.get(), count, 1);
        std::fill_n(m_pChnlSelect.get(), count, 0);
        std::fill_n(m_pChnlParam4.get(), count, 0);
    }
    return 1;
}

} // namespace megset
