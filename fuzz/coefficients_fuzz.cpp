// Loads sensor coefficients from the input: its first byte says whether the rest is a collection or the record of one
// sensor. What could be loaded is stored, loaded and stored again, and must be the same then; and whatever came of the
// load, channels must be brought to a gradient order and back by it.

#include "fuzz/storeAndReload.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"

#include <cstdint>
#include <span>
#include <utility>

namespace megset {
namespace {

template <class Base>
struct Record : Base
{
    int serializezk(CArchive& ar) { return this->serialize(ar); }
};

// The coefficients are told from a copy's own rule: all records must be there.
bool sameRecords(const CCoefficientManagerzk& a, const CCoefficientManagerzk& b)
{
    bool same = a.m_aCoefRecord.GetSize() == b.m_aCoefRecord.GetSize();
    for (int i = 0; same && i < a.m_aCoefRecord.GetSize(); ++i)
        same = a.m_aCoefRecord[i]->m_strCoefSensorName == b.m_aCoefRecord[i]->m_strCoefSensorName &&
               a.m_aCoefRecord[i]->m_nCoefCount == b.m_aCoefRecord[i]->m_nCoefCount;
    return same;
}

// A dataset in memory of measure and reference channels, named as those of the corpus.
void fill(CMEGDatazk& data)
{
    require(data.initMEGData(1, 4, 3) == 1);
    constexpr const char* names[] = {"A", "B", "R0", "R1"};
    for (int i = 0; i < 4; ++i) {
        CMDChannelzk& channel = *data.getMDTrial(0)->getChannel(i);
        channel.m_strChannelName = names[i];
        channel.m_nChannelType = i < 2 ? 100 : 10;
        CMEGSensorzk* const sensor = channel.ensureMEGSensor();
        require(sensor != nullptr);
        sensor->m_strSensorName = names[i];
        sensor->setRealIdealCoefMode(true);
    }
}

void use(const CCoefficientDatazk& record)
{
    const int used = record.usedReferences();
    require(used >= 0 && used <= CCoefficientData::maxReferences);
    CCoefficientData::coefficientsType2Name(record.m_nCoefType);
}

void use(CCoefficientManagerzk& manager)
{
    for (const CString& name : {CString("A"), CString()})
        for (int order = -1; order <= 4; ++order)
            if (const CCoefficientDatazk* const found = manager.getSensorCoefRecord(name, order, true, false))
                use(*found);
    CCoefficientManagerzk copy = manager; // its numbers, and no record
    require(copy.m_aCoefRecord.GetSize() == 0);
    copy.addCoefficientsData(1, manager.getSensorCoefRecord("", 4, false, false));
    copy = manager;

    CMEGDatazk data;
    fill(data);
    data.m_recordInfo.m_coefficients = std::move(manager);
    for (const int order : {1, 3, 2, 0}) {
        data.setGradientNoiseReduction(order, true, false);
        data.setGradientNoiseReduction(order, false, true);
    }
    data.setGradient2Non();
}

void runManager(std::span<const std::byte> input)
{
    Record<CCoefficientManagerzk> manager;
    if (load(manager, input)) {
        storeAndReload(manager);
        Record<CCoefficientManagerzk> again;
        const std::vector<std::byte> bytes = stored(manager);
        limitMemory(bytes.size(), 16);
        require(load(again, bytes) && sameRecords(manager, again));
    }
    limitMemory(input.size(), 16);
    use(static_cast<CCoefficientManagerzk&>(manager));
}

void runRecord(std::span<const std::byte> input)
{
    Record<CCoefficientDatazk> record;
    if (load(record, input))
        storeAndReload(record);
    limitMemory(input.size(), 16);
    use(record);
    CCoefficientManagerzk manager;
    manager.addCoefficientsData(1, &record);
    use(manager);
}

} // namespace

void fuzzInput(std::span<const std::byte> input)
{
    runChosen(input, {runManager, runRecord});
}

} // namespace megset
