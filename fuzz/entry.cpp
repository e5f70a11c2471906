// The entry points that the fuzzer calls, the same in every target.

#include "fuzz/harness.h"

#include "tests/kit/SilentHost.h"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    static megset::SilentHost host;
    megset::AfxSetHost(&host);
    megset::setAllocationHook(megset::withinBudget);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    megset::fuzzInput(std::as_bytes(std::span(data, size)));
    return 0;
}
