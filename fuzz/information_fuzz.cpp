// Gives a trial the electrodes or probes of the input, or reads an array of datasets from it: the first byte says
// which. What is stored then must load and be stored as the same bytes again.

#include "fuzz/storeAndReload.h"

#include "megset/core/CArrayMEDataSet.h"
#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"

#include <cstdint>
#include <memory>
#include <span>

namespace megset {
namespace {

// Another number of channels is no reason to stop.
class YesHost : public SilentHost
{
public:
    int messageBox(const CString&, unsigned type) override { return isQuestion(type) ? IDYES : IDOK; }
};

// A dataset of one trial in memory: channels without geometry, of a sensor, and of electrodes.
template <int (*exchange)(CMEGDatazk&, CArchive&)>
struct WithTrial
{
    WithTrial()
    {
        require(data.initMEGData(1, 6, 1) == 1);
        for (int i = 1; i < 6; ++i) {
            CMDChannelzk& channel = *data.getMDTrial(0)->getChannel(i);
            channel._initGeomHw(i < 3 ? 1 : 2);
            channel.m_nChannelType = i < 4 ? 101 : 302;
        }
    }
    int serializezk(CArchive& ar) { return exchange(data, ar); }

    CMEGDatazk data;
};

template <bool all>
int exchangeElectrodes(CMEGDatazk& data, CArchive& ar)
{
    return data.serializeElectrodeInfo(ar, all);
}

template <int all>
int exchangeProbes(CMEGDatazk& data, CArchive& ar)
{
    return data.serializeSeegInfo(ar, all);
}

// Whatever came of the load, the trial has something to store, which it gets once more: entries that are none leave its
// channels alone.
template <class Information>
void runInformation(std::span<const std::byte> input)
{
    limitMemory(input.size());
    Information first;
    load(first, input);
    const std::vector<std::byte> bytes = stored(first);
    limitMemory(bytes.size(), 16);
    require(load(first, bytes));
    require(stored(first) == bytes);
}

struct ArrayWithoutTrials : CArrayMEDataSetzk
{
    int serializezk(CArchive& ar) { return serializeWithoutTrials(ar); }
};

void loadArray(ArrayWithoutTrials& array, std::span<const std::byte> input)
{
    limitMemory(input.size(), 512); // a dataset without anything takes that much more than its record
    CMemFile file(input);
    CArchive archive(&file, CArchive::load);
    try {
        array.serializezk(archive);
    } catch (const CArchiveException&) {
    }
}

// A dataset that could not be read is in the list all the same, with what was read of it: it need not be readable when
// it is stored, but both must be possible.
void runArray(std::span<const std::byte> input)
{
    ArrayWithoutTrials array;
    loadArray(array, input);
    ArrayWithoutTrials back;
    loadArray(back, stored(array));
    array.setCurrentSession(1);
    array._deleteSessionData(-1);
    array.getSessionData(0);
}

void run(std::span<const std::byte> input)
{
    if (input.empty())
        return;
    const auto rest = input.subspan(1);
    switch (std::to_integer<int>(input[0]) % 5) {
    case 0:
        return runInformation<WithTrial<exchangeElectrodes<false>>>(rest);
    case 1:
        return runInformation<WithTrial<exchangeElectrodes<true>>>(rest);
    case 2:
        return runInformation<WithTrial<exchangeProbes<0>>>(rest);
    case 3:
        return runInformation<WithTrial<exchangeProbes<1>>>(rest);
    default:
        return runArray(rest);
    }
}

} // namespace
} // namespace megset

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    megset::beginFuzzing();
    static megset::YesHost host;
    megset::AfxSetHost(&host);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    megset::run(std::as_bytes(std::span(data, size)));
    return 0;
}
