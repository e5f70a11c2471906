#pragma once
// What a reader promises of broken files, for trials and datasets in each form that they are filed in. A form is told
// by
//
//     struct Form
//     {
//         using Object = CMDTrialzk;
//         static int load(Object& object, CArchive& ar);
//         static std::vector<std::byte> stored(Object& object);
//         static void fill(Object& object, int seed);
//         static void expectUsable(Object& object); // a whole file can be read into it and is stored as it was
//     };

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/kit/brokenFiles.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <gtest/gtest.h>

namespace megset {

/// What the load gives, 0 also for an early end of the file.
template <class Form>
int tryLoad(typename Form::Object& object, std::span<const std::byte> bytes)
{
    return tryLoading(bytes, [&](CArchive& ar) { return Form::load(object, ar); });
}

/// The messages of loading a file into a new object, which must give `result`.
template <class Form>
std::vector<CString> messagesOfLoading(std::span<const std::byte> bytes, int result)
{
    const ScriptedHost host;
    typename Form::Object object;
    EXPECT_EQ(tryLoad<Form>(object, bytes), result);
    std::vector<CString> messages = host.messages();
    Form::expectUsable(object);
    return messages;
}

/// Reads every `step`-th prefix of the file over an object that holds something.
template <class Form>
void expectUsableAfterEachPart(const std::vector<std::byte>& bytes, std::size_t step)
{
    for (std::size_t length = 0; length < bytes.size(); length += step) {
        typename Form::Object object;
        Form::fill(object, 2);
        tryLoad<Form>(object, std::span(bytes).first(length));
        Form::expectUsable(object);
    }
}

/// What could be loaded of a changed file is stored, and what was stored comes back as the same bytes.
template <class Form>
void expectBitFlipsDoNoHarm(const std::vector<std::byte>& bytes)
{
    forEachBitFlip(bytes, [](std::span<const std::byte> changed) {
        typename Form::Object object;
        if (tryLoad<Form>(object, changed) != 1)
            return;
        const std::vector<std::byte> again = Form::stored(object);
        typename Form::Object copy;
        ASSERT_EQ(tryLoad<Form>(copy, again), 1);
        ASSERT_TRUE(sameBytes(Form::stored(copy), again));
    });
}

/// Lets each allocation of the load fail, and gives how many there are.
template <class Form>
std::int64_t expectUsableAfterEachFailure(const std::vector<std::byte>& bytes)
{
    return forEachAllocationFailure([&] {
        typename Form::Object object;
        tryLoad<Form>(object, bytes);
        const FailingAllocator none(0);
        Form::expectUsable(object);
    });
}

} // namespace megset
