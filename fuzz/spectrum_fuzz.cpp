// Loads a record of a spectrum, works with what it gave, stores it, and loads it again.
//
// The first byte says which record the rest is, modulo 5: channel, trial, sum channel, the buffer for drawing, or the
// trial's layout that stands ready. Whatever came of the load, the object must be storable, and its bytes must come
// back as they are; only the exceptions of the archive may leave; and memory must stay in proportion to the input.

#include "fuzz/harness.h"

#include "megset/platform/CArchiveException.h"
#include "megset/platform/CMemFile.h"
#include "megset/records/display/SHOW_SHRINK_DATAF.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/CSpctmTrialzk.h"

#include <cstdint>
#include <span>
#include <vector>

namespace megset {
namespace {

struct Ready : CSpctmTrialzk
{
};

int serialize(CSpctmChnlzk& spectrum, CArchive& ar)
{
    return spectrum.serializeSpctmCzk(ar);
}
int serialize(CSpctmTrialzk& trial, CArchive& ar)
{
    return trial.serializeTrlSpctmZk(ar);
}
int serialize(Ready& trial, CArchive& ar)
{
    return trial.serializeTrlSpctm20190609(ar);
}
int serialize(CSumChnlSpctmDatazk& sums, CArchive& ar)
{
    return sums.serialSumChnl(ar);
}
int serialize(SHOW_SHRINK_DATAF& shrink, CArchive& ar)
{
    return shrink.serialize(ar);
}

template <class Record>
std::vector<std::byte> stored(Record& record)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    require(serialize(record, archive) == 1);
    archive.Close();
    return file.detach();
}

// The operations that a broken number might lead astray.

void use(CSpctmChnlzk& spectrum)
{
    spectrum.storeSpctmResult();
    spectrum.m_pBkSpctmR.reset();
    spectrum.reloadRawSpctmDataRIX();
    spectrum.storeData2Backupfile();
}

void use(CSpctmTrialzk& trial)
{
    std::int64_t begin = 0;
    std::int64_t end = 0;
    double low = 0.0;
    double high = 0.0;
    trial.getTrialSpctmSelectFreqHz(low, high);
    trial.getTrialSpctmGivenFreqID4Hz(INT64_MAX, INT64_MIN, low, high);
    trial.getSpctmFreqIndex4Freq(low);
    trial.getSelectBE4DrawWave(begin, end);
    trial.getTrialSpctmSelectTime(begin, end);
    trial.getTrialSpctmSelectFreq(begin, end);
    trial.setTrialSpctmSelectTimeFreqBB(begin, end);
    trial.setTrialSpctmSelectTimeFreqEE(INT64_MAX, INT64_MAX);
}

void use(CSumChnlSpctmDatazk& sums)
{
    sums.checkInit(2, 3);
}

void use(SHOW_SHRINK_DATAF&) {}

template <class Record>
void run(std::span<const std::byte> input)
{
    CMemFile file(input);
    CArchive archive(&file, CArchive::load);
    Record record;
    try {
        serialize(record, archive);
    } catch (const CArchiveException&) {
    }
    require(archive.position() <= file.GetLength());

    const std::vector<std::byte> bytes = stored(record);
    CMemFile copy(bytes);
    CArchive load(&copy, CArchive::load);
    Record back;
    require(serialize(back, load) == 1);
    require(load.bytesLeft() == 0);
    require(stored(back) == bytes);

    use(record);
    stored(record);
}

} // namespace

void fuzzInput(std::span<const std::byte> input)
{
    limitMemory(input.size(), 64, 128);
    runChosen(input,
              {run<CSpctmChnlzk>, run<CSpctmTrialzk>, run<CSumChnlSpctmDatazk>, run<SHOW_SHRINK_DATAF>, run<Ready>});
}

} // namespace megset
