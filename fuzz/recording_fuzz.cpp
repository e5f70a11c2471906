// Loads a record of recording information from the input. What could be loaded is stored, loaded and stored again, and
// must be the same then; and whatever came of the load, the operations on the record must get along with it.
//
// The first byte says which record the rest is, modulo 4: recording information, coefficients, the coefficients of one
// sensor, or the basic information.

#include "fuzz/storeAndReload.h"

#include "megset/records/records.h"

#include <cstdint>
#include <iterator>
#include <span>

namespace megset {
namespace {

template <class Base>
struct Record : Base
{
    int serializezk(CArchive& ar) { return this->serialize(ar); }
};

void use(CCoefficientDatazk& record)
{
    const CCoefficientDatazk copy = record;
    CCoefficientData::coefficientsType2Name(copy.m_nCoefType);
}

void use(CCoefficientManagerzk& manager)
{
    for (int order = 0; order < 4; ++order)
        manager.getSensorCoefRecord("A", order, true, false);
    CCoefficientManagerzk copy = manager;
    copy = manager;
    copy.addCoefficientsData(1, manager.getSensorCoefRecord("", 4, false, false));
}

void use(CMEGRecordInfozk& info)
{
    info.clearFilterInfo();
}

void use(CMEGRecordInfozkProzk& info)
{
    CMEGRecordInfozkProzk copy;
    copy = info;
    copy.showRecordInfo();
    use(*info.getSensorCoefficientzk());
}

template <class Base>
void run(std::span<const std::byte> input)
{
    Record<Base> record;
    if (load(record, input))
        storeAndReload(record);
    limitMemory(input.size(), 16);
    use(record);
}

void run(std::span<const std::byte> input)
{
    constexpr void (*runs[])(std::span<const std::byte>) = {run<CMEGRecordInfozkProzk>, run<CCoefficientManagerzk>,
                                                            run<CCoefficientDatazk>, run<CMEGRecordInfozk>};
    if (input.empty())
        return;
    runs[static_cast<unsigned>(input[0]) % std::size(runs)](input.subspan(1));
}

} // namespace
} // namespace megset

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    megset::beginFuzzing();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    megset::run(std::as_bytes(std::span(data, size)));
    return 0;
}
