// Loads a record of recording information from the input. What could be loaded is stored, loaded and stored again, and
// must be the same then; and whatever came of the load, the operations on the record must get along with it.
//
// The first byte says which record the rest is, modulo 2: recording information, or the basic information. Coefficients
// by themselves are those of coefficients_fuzz.

#include "fuzz/storeAndReload.h"

#include "megset/records/records.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace megset {
namespace {

template <class Base>
struct Record : Base
{
    int serializezk(CArchive& ar) { return this->serialize(ar); }
};

void use(CMEGRecordInfozk& info)
{
    info.clearFilterInfo();
}

void use(CMEGRecordInfozkProzk& info)
{
    CMEGRecordInfozkProzk copy;
    copy = info;
    copy.showRecordInfo();
    copy.getSensorCoefficientzk()->addCoefficientsData(
        1, info.getSensorCoefficientzk()->getSensorCoefRecord("", 1, true, false));
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
    if (input.empty())
        return;
    const auto rest = input.subspan(1);
    std::to_integer<int>(input[0]) % 2 == 0 ? run<CMEGRecordInfozkProzk>(rest) : run<CMEGRecordInfozk>(rest);
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
