// Gives a trial the electrodes or probes of the input, or reads an array of datasets or an exchange file from it: the
// first byte says which. What is stored then must load and be stored as the same bytes again, also by way of a file.

#include "fuzz/ScratchFolder.h"
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

// A dataset of one trial in memory: channels without geometry, of a sensor, and of electrodes.
template <class Format>
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
    int serializezk(CArchive& ar) { return Format::exchange(data, ar); }
    int openFile() { return Format::openFile(data); }
    int saveFile() { return Format::saveFile(data); }

    CMEGDatazk data;
};

template <bool all>
struct Electrodes
{
    static int exchange(CMEGDatazk& data, CArchive& ar) { return data.serializeElectrodeInfo(ar, all); }
    static int openFile(CMEGDatazk& data) { return data.openElectrodeInfo(all); }
    static int saveFile(CMEGDatazk& data) { return data.saveElectrodesInfo(); }
};

template <int all>
struct Probes
{
    static int exchange(CMEGDatazk& data, CArchive& ar) { return data.serializeSeegInfo(ar, all); }
    static int openFile(CMEGDatazk& data) { return data.openSeegInfo(all); }
    static int saveFile(CMEGDatazk& data) { return data.saveSeegInfo(); }
};

// What came of the input is stored as the same bytes when the input stood in a file, and when it went through one.
template <class Information>
void useFile(std::span<const std::byte> input, const std::vector<std::byte>& bytes)
{
    limitMemory(input.size(), 16);
    Information first;
    scratch().write("fuzz.epos.seeg", input);
    try {
        first.openFile();
    } catch (const CArchiveException&) {
    }
    require(stored(first) == bytes);
    require(first.saveFile() == 1);
    Information back;
    require(back.openFile() == 1);
    require(stored(back) == bytes);
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
    useFile<Information>(input, bytes);
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

// Into a dataset without trials, and into one that has some.
void runExchange(std::span<const std::byte> input)
{
    limitMemory(input.size());
    CMEGDatazk data;
    for (int trials = 0; trials < 2; ++trials) {
        CMemFile file(input);
        const int done = data.export_importMEGData(file, true, -1);
        require(done == 0 || data.getTotalTrial() == trials + 1);
    }
}

} // namespace

void fuzzInput(std::span<const std::byte> input)
{
    // Another number of channels is no reason to stop. The name has the ends of both kinds of files already, so that
    // none is added.
    static YesHost host("fuzz.epos.seeg");
    AfxSetHost(&host);
    runChosen(input,
              {runInformation<WithTrial<Electrodes<false>>>, runInformation<WithTrial<Electrodes<true>>>,
               runInformation<WithTrial<Probes<0>>>, runInformation<WithTrial<Probes<1>>>, runArray, runExchange});
}

} // namespace megset
