#include "megset/processing/resampledCopy.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/AfxMessageBox.h"

#include <algorithm>

namespace megset {
namespace {

// Marks a dataset as busy while a copy runs.
class Busy
{
public:
    explicit Busy(CMEGDatazk& data) : m_data(data) { m_data.m_bBusy = 1; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;
    ~Busy() { m_data.m_bBusy = 0; }

private:
    CMEGDatazk& m_data;
};

bool isPathOf(const CMEGDatazk& data, const CString& path)
{
    for (int i = 0; i < data.m_aTrialFilePath.GetSize(); ++i)
        if (data.m_aTrialFilePath.GetAt(i) == path)
            return true;
    return false;
}

// The file of a new trial; names of trials need not differ, files must.
CString freePath(const CMEGDatazk& source, const CMEGDatazk& made, const CString& name)
{
    CString path = CString::formatted("%s%s.trl", made.m_strTrialFolder, name);
    for (int i = 1; isPathOf(made, path) || isPathOf(source, path); ++i)
        path = CString::formatted("%s%s_%d.trl", made.m_strTrialFolder, name, i);
    return path;
}

// A channel without working or without raw samples stays empty.
int copyChannels(const CMDTrialzk& from, const CMDTrialzk& to, const ResampledCopy& how, std::int64_t factor)
{
    for (int i = 0; i < from.getTotalChannel(); ++i) {
        const CMDChannelzk* old = from.getChannel(i);
        if (old == nullptr || old->getDataWave() == nullptr || old->getBkData() == nullptr)
            continue;
        CMDChannelzk* channel = to.getChannel(i);
        if (!channel->reSampleFrom(*old, how.average, factor) || !channel->copyChannelInfo(old))
            return 0;
    }
    return 1;
}

int copyTrial(CMDTrialzk& from, const CMEGDatazk& source, CMEGDatazk& made, const ResampledCopy& how,
              std::int64_t factor)
{
    auto trial = tryNew<CMDTrialzk>();
    if (trial == nullptr) {
        AfxMessageBox("Not enough memory?", MB_OK);
        return 0;
    }
    trial->m_bTrialResampled = from.m_bTrialResampled;
    trial->m_nTrialResampleStep = from.m_nTrialResampleStep;
    trial->m_strTrialName = from.m_strTrialName + "ReSampl";
    trial->m_strTrialFilePath = freePath(source, made, trial->m_strTrialName);
    if (!trial->allocateChannels(from.getTotalChannel()) || !copyChannels(from, *trial, how, factor))
        return 0;
    made.checkInitChnlParam(trial.get());
    const CString path = trial->m_strTrialFilePath;
    return made.addTrialSave(trial.release(), path, 1);
}

// The re-sampled data are the copy's recording.
void setRecord(const CMEGDatazk& source, CMEGDatazk& made, const ResampledCopy& how, std::int64_t factor)
{
    const CMEGRecordInfozkProzk& from = source.m_recordInfo;
    CMEGRecordInfozkProzk& to = made.m_recordInfo;
    to.m_bResampleAverage = how.average;
    to.m_nResampleFactor = 1;
    to.m_dRecSampleRate = to.m_dRawSampleRate = how.sampleRate;
    to.m_nRecTotalSample = to.m_nRawTotalSample = made.getTotalSample();
    to.m_nRecPreTrigPts = from.m_nRecPreTrigPts / factor;
    to.m_nRawPreTrigPts = from.m_nRawPreTrigPts / factor;
}

} // namespace

int checkResampledCopy(const CMEGDatazk& source, std::int64_t factor)
{
    factor = std::max<std::int64_t>(factor, 1);
    if (!source.checkResampleFactor(factor))
        return 0;
    const std::int64_t n = source.resampledCount(factor);
    if (n > 1)
        return 1;
    AfxMessageBox(CString::formatted("Resampled data size (%I64d) is too small", n), MB_OK);
    return 0;
}

int copyResampled(CMEGDatazk& source, CMEGDatazk& made, const ResampledCopy& how)
{
    const std::int64_t factor = std::max<std::int64_t>(how.factor, 1);
    made.copyMegInfo(&source);
    {
        const Busy sourceBusy(source);
        const Busy madeBusy(made);
        const CMEGData::TrialWalk walk = source.walkOver(how.allTrials);
        for (int i = walk.first; i < walk.end; ++i) {
            CMDTrialzk* from = source.getTrialzk(i);
            if (from != nullptr && from->getTotalChannel() > 0 && !copyTrial(*from, source, made, how, factor))
                return 0;
        }
    }
    if (made.getTotalMEGChannelMeasure(true) > 1)
        made.setShowMEGMeasureChannel();
    setRecord(source, made, how, factor);
    return 1;
}

} // namespace megset
