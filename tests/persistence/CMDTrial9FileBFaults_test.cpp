// Trial files that are cut short, changed, or claim more than they hold, inner records that fail, and memory that is
// refused.

#include "tests/persistence/brokenForms.h"
#include "tests/persistence/trialRecord.h"

#include "megset/platform/CArchiveException.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/FailingFile.h"
#include "tests/kit/ScriptedHost.h"

#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDTrial9FileBFaults_test {

namespace {

using namespace megset::trialRecord;
using ::testing::ElementsAre;

const CString wrongFormat = "Trial file format!!?";

// Whatever a broken file left, the trial can be read into, written, and read back.
void expectUsable(CMDTrialzk& trial)
{
    ASSERT_EQ(load(trial, record(newest, filled(1))), 1);
    ASSERT_TRUE(sameBytes(stored(trial), record(newest, filled(1))));
}

struct TrialForm
{
    using Object = CMDTrialzk;
    static int load(CMDTrialzk& trial, CArchive& ar) { return trial.serializezk(ar); }
    static std::vector<std::byte> stored(CMDTrialzk& trial) { return trialRecord::stored(trial); }
    static void fill(CMDTrialzk& trial, int seed) { trialRecord::fill(trial, seed); }
    static void expectUsable(CMDTrialzk& trial) { CMDTrial9FileBFaults_test::expectUsable(trial); }
};

// A small file in which every part is there: one short channel, and the objects of `filled`.
Parts smallParts()
{
    channelRecord::Parts channel;
    channel.geometryType = channelRecord::geometryType(-1, 0);
    channel.geometry = none(1);
    channel.balance = channelRecord::noBalance();
    Parts parts = filled(1);
    parts.channels = ByteBuilder().i32(0).i32(2).i32(1).i32(0).i32(1);
    parts.channels.append(channelRecord::record(channelRecord::newest, channel));
    return parts;
}

class BrokenTrialFile : public ::testing::Test
{
protected:
    // The messages of loading a file of the newest version into a trial, which must give `result`.
    std::vector<CString> messagesOf(const Parts& parts, int result)
    {
        return messagesOfLoading<TrialForm>(record(newest, parts).bytes(), result);
    }
};

TEST_F(BrokenTrialFile, EveryPrefixEndsInAnExceptionOrAnError)
{
    const ScriptedHost host;
    for (const std::int32_t version : versions) {
        SCOPED_TRACE(version);
        // All of the newest and the oldest file, and of the others each seventh.
        const std::size_t step = version == newest || version == versions.front() ? 1 : 7;
        expectEveryPrefixRefused(
            record(version, smallParts()).bytes(), [](CArchive& ar) { return CMDTrialzk().serializezk(ar); }, step);
    }
}

TEST_F(BrokenTrialFile, ATrialThatWasReadInPartCanBeUsed)
{
    const ScriptedHost host;
    expectUsableAfterEachPart<TrialForm>(record(newest, smallParts()).bytes(), 97);
}

TEST_F(BrokenTrialFile, SingleBitFlipsDoNoHarm)
{
    const ScriptedHost host;
    for (const std::int32_t version : {20080229, 20190906, 20190730})
        expectBitFlipsDoNoHarm<TrialForm>(record(version, smallParts()).bytes());
}

TEST_F(BrokenTrialFile, AnotherTagIsRefusedWithNothingChanged)
{
    for (const char* tag : {"MEACQTRIALZK", "MEGTRIALZ", "MEGTRIALZKX", "megtrialzk", ""}) {
        const ScriptedHost host;
        CMDTrialzk trial;
        fill(trial, 1);
        LoadingArchive archive(ByteBuilder().wide(tag).i32(newest));
        EXPECT_EQ(trial.serializezk(*archive), 0) << tag;
        EXPECT_EQ(archive->bytesLeft(), 4U);
        EXPECT_THAT(host.messages(), ElementsAre(CString("The opened file is not trial or corrupted!")));
        EXPECT_TRUE(sameBytes(stored(trial), record(newest, filled(1))));
    }
}

// ---- counts

TEST_F(BrokenTrialFile, ChannelCountsWithoutAnArrayAreCarried)
{
    for (const int count : {0, -1, INT32_MAX, INT32_MIN}) {
        Parts parts;
        parts.channels = ByteBuilder().i32(count).i32(count).i32(0);
        CMDTrialzk trial;
        ASSERT_EQ(load(trial, record(newest, parts)), 1);
        EXPECT_EQ(trial.m_nTotalChannel, count);
        EXPECT_EQ(trial.getTotalChannel(), 0);
        EXPECT_TRUE(sameBytes(stored(trial), record(newest, parts)));
        expectUsable(trial);
    }
}

TEST_F(BrokenTrialFile, AnArrayOfNoChannelsIsKept)
{
    Parts parts;
    parts.channels = ByteBuilder().i32(0).i32(0).i32(1);
    CMDTrialzk trial;
    ASSERT_EQ(load(trial, record(newest, parts)), 1);
    EXPECT_EQ(trial.getTotalChannel(), 0);
    EXPECT_TRUE(sameBytes(stored(trial), record(newest, parts)));
}

TEST_F(BrokenTrialFile, ImpossibleChannelCountsAreRefused)
{
    for (const int count : {-1, INT32_MAX, INT32_MIN, 1 << 24}) {
        Parts parts;
        parts.channels = ByteBuilder().i32(0).i32(count).i32(1);
        EXPECT_THAT(messagesOf(parts, 0), ElementsAre(CString("Not enough memory!"), wrongFormat)) << count;
    }
}

// A place takes more memory than bytes of the file: what counts is the memory.
TEST_F(BrokenTrialFile, ChannelPlacesThatTakeMoreMemoryThanSuitsALargeFileAreRefused)
{
    constexpr int empty = 2'000'000;
    Parts parts;
    parts.channels = ByteBuilder().i32(0).i32(empty).i32(1).zeros(std::size_t{4} * empty);
    EXPECT_THAT(messagesOf(parts, 1), ::testing::IsEmpty()); // all empty, and all there
    parts.channels = ByteBuilder().i32(0).i32(3 * empty).i32(1).zeros(std::size_t{4} * empty);
    EXPECT_THAT(messagesOf(parts, 0), ElementsAre(CString("Not enough memory!"), wrongFormat));
}

TEST_F(BrokenTrialFile, CountsOfListsThatTheFileCannotHoldEndAtItsEnd)
{
    Parts units;
    units.individualReferences = ByteBuilder().i64(INT64_MAX);
    messagesOf(units, 0);
    Parts probes;
    probes.probes = ByteBuilder().i32(0).i32(INT32_MAX);
    messagesOf(probes, 0);
    Parts channels;
    channels.channels = ByteBuilder().i32(0).i32(100'000).i32(1);
    messagesOf(channels, 0);
}

// ---- inner records that fail

ByteBuilder anotherRecord()
{
    return ByteBuilder().i32(1).wide("ANOTHERZK");
}

TEST_F(BrokenTrialFile, AChannelThatFailsEndsTheLoadWithoutTheArray)
{
    const ScriptedHost host;
    Parts parts = filled(1);
    parts.channels = ByteBuilder().i32(0).i32(2).i32(1).i32(0).append(anotherRecord());
    CMDTrialzk trial;
    fill(trial, 2);
    EXPECT_EQ(load(trial, record(newest, parts)), 0);
    EXPECT_THAT(host.messages(),
                ElementsAre(CString("The opened file is not channel file or corrupted!"), wrongFormat));
    EXPECT_EQ(trial.m_ppChannel, nullptr);
    EXPECT_EQ(trial.m_nTotalChannel, 2);
    EXPECT_NE(trial.m_pVolumeSrc, nullptr); // later sections were not reached
    expectUsable(trial);
}

TEST_F(BrokenTrialFile, ChannelsOfAFileThatEndsAmongThemAreNotKept)
{
    const ByteBuilder channel = channelRecord::record(channelRecord::newest);
    ByteBuilder bytes = header(newest);
    bytes.append(basic(1)).i32(0).i32(2).i32(1).i32(1).append(channel).i32(1);
    CMDTrialzk trial;
    fill(trial, 2);
    EXPECT_THROW(load(trial, bytes), CArchiveException);
    EXPECT_EQ(trial.m_ppChannel, nullptr);
    expectUsable(trial);
}

TEST_F(BrokenTrialFile, RecordsWhoseAnswerIsIgnoredLeaveTheirObjectAndTheLoadGoesOn)
{
    const char* spectrumText = "The opened file is not trial data or corrupted!";
    Parts image;
    image.volumeSource = anotherRecord();
    EXPECT_THAT(messagesOf(image, 1), ElementsAre(otherKind("FACEVOLUMSOURCEIMAGEZK")));
    Parts spectra;
    spectra.spectra = ByteBuilder().append(anotherRecord()).i32(0).append(anotherRecord());
    EXPECT_THAT(messagesOf(spectra, 1), ElementsAre(CString(spectrumText), CString(spectrumText)));
    Parts components;
    components.components = anotherRecord();
    EXPECT_THAT(messagesOf(components, 1), ElementsAre(otherKind("FACEICAZK")));
    Parts probes;
    probes.probes = ByteBuilder().i32(0).i32(1).append(anotherRecord());
    EXPECT_THAT(messagesOf(probes, 1), ElementsAre(otherKind("SEEGPROBEZK")));
    const ScriptedHost host;
    CMDTrialzk trial;
    ASSERT_EQ(load(trial, record(newest, probes)), 1);
    EXPECT_EQ(trial.m_aSeegProbe.GetSize(), 1);
}

TEST_F(BrokenTrialFile, TheCoherenceImageTellsOfAReaderThatFailed)
{
    Parts parts;
    parts.volumeSourceCoherence = anotherRecord();
    EXPECT_THAT(messagesOf(parts, 0),
                ElementsAre(otherKind("FACEVOLUMSOURCECOHERENCEIMAGEZK"),
                            CString("Open volumetric source-coherence data error!?"), wrongFormat));
}

TEST_F(BrokenTrialFile, OtherRecordsThatFailEndTheLoad)
{
    const ByteBuilder other = anotherRecord();
    const ByteBuilder unguarded = ByteBuilder().wide("ANOTHERZK");
    const auto expectEnd = [&](ByteBuilder Parts::*part, const ByteBuilder& bytes, const char* tag) {
        Parts parts;
        parts.*part = bytes;
        EXPECT_THAT(messagesOf(parts, 0), ElementsAre(otherKind(tag), wrongFormat));
    };
    expectEnd(&Parts::head, unguarded, "HEADLOCALIZATIONZK");
    expectEnd(&Parts::coherence, other, "SNSCOHFACEZK");
    expectEnd(&Parts::crossSpectra, other, "MEGSPCTMCCDATAFACEZK");
    expectEnd(&Parts::package, unguarded, "PKGFACEVIRTCHNLWAVEZK");
    expectEnd(&Parts::virtualSpectra, other, "FACEVIRTCHNLSPCTMZK");
    expectEnd(&Parts::sourceCoherence, other, "SRCCOHFACEZK");
    expectEnd(&Parts::commonReference, unguarded, "MTGUNITCOMMONREFZK");
    expectEnd(&Parts::individualReferences, ByteBuilder().i64(2).append(other), "MTGUNITINDIVIDUALREFZK");
    expectEnd(&Parts::waveResult, unguarded, "TRLWAVEANALYZEDRESULTZK");
}

TEST_F(BrokenTrialFile, TheOneWaveOfOldFilesThatFailsEndsTheLoadAtThatPlace)
{
    const ScriptedHost host;
    Parts parts;
    parts.oneWave = anotherRecord();
    CMDTrialzk trial;
    LoadingArchive archive(record(20120228, parts));
    EXPECT_EQ(trial.serializezk(*archive), 0);
    EXPECT_EQ(archive->bytesLeft(), parts.virtualSpectra.size() + parts.sourceCoherence.size());
    EXPECT_THAT(host.messages(), ElementsAre(otherKind("FACEVIRTCHNLWAVEZK"), wrongFormat));
    EXPECT_EQ(trial.m_pkgVirtWave.getTotalFvcw(), 0);
}

TEST_F(BrokenTrialFile, EveryVersionTellsOfASectionThatFailed)
{
    Parts parts;
    parts.head = ByteBuilder().wide("ANOTHERZK");
    for (const std::int32_t version : versions) {
        const ScriptedHost host;
        CMDTrialzk trial;
        EXPECT_EQ(load(trial, record(version, parts)), 0);
        EXPECT_THAT(host.messages(), ElementsAre(otherKind("HEADLOCALIZATIONZK"), wrongFormat)) << version;
    }
}

// ---- writing

CMEGSpctmCCDataFacezk brokenCrossSpectra()
{
    CMEGSpctmCCDataFacezk face;
    face.getCCSpctmTrlData4Class(0, true)->m_aPlane[0] = {1.0}; // a plane for no channel
    return face;
}

TEST_F(BrokenTrialFile, ASectionThatFailsWhileWritingIsTold)
{
    const ScriptedHost host;
    CMDTrialzk trial;
    trial.m_pSpctmCCFace = std::make_unique<CMEGSpctmCCDataFacezk>(brokenCrossSpectra());
    storedBytes([&](CArchive& ar) { EXPECT_EQ(trial.serializezk(ar), 0); });
    EXPECT_THAT(host.messages(), ElementsAre(wrongFormat));
}

TEST_F(BrokenTrialFile, ComponentsThatDoNotFitTogetherAreWrittenAllTheSame)
{
    const ScriptedHost host;
    CMDTrialzk trial;
    trial.m_pFaceIca = std::make_unique<CFaceIcazk>(components(1));
    trial.m_pFaceIca->m_aMean = {1.0}; // of no channel
    ASSERT_FALSE(stored(trial).empty());
    host.expectNoMessages();
}

TEST_F(BrokenTrialFile, AWriteThatFailsPassesTheFileException)
{
    const ScriptedHost host;
    CMDTrialzk trial;
    fill(trial, 1);
    FailingFile file;
    file.fullAfter(4096);
    CArchive archive(&file, CArchive::store);
    EXPECT_THROW(trial.serializezk(archive), CFileException);
    archive.Abort();
    host.expectNoMessages();
}

// ---- memory

TEST_F(BrokenTrialFile, WithoutMemoryForTheChannelArrayTheLoadEnds)
{
    const ScriptedHost host;
    CMDTrialzk trial;
    const FailingAllocator first(1);
    EXPECT_EQ(load(trial, record(newest, filled(1))), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Not enough memory!"), wrongFormat));
    EXPECT_EQ(trial.m_ppChannel, nullptr);
}

TEST_F(BrokenTrialFile, WithoutMemoryForAChannelTheSectionCountsAsDoneAndTheStreamStaysWhereItIs)
{
    // The channel's record is left out: the next section is read from behind the guard.
    const ScriptedHost host;
    Parts parts = filled(1);
    parts.channels = ByteBuilder().i32(0).i32(4).i32(1).i32(0).i32(1);
    CMDTrialzk trial;
    {
        const FailingAllocator second(2);
        EXPECT_EQ(load(trial, record(newest, parts)), 1);
    }
    EXPECT_THAT(host.messages(), ElementsAre(CString("Not enough memory?")));
    EXPECT_EQ(trial.getTotalChannel(), 4);
    EXPECT_EQ(trial.getChannel(1), nullptr);
    ASSERT_NE(trial.m_pVolumeSrc, nullptr);
    EXPECT_EQ(*trial.m_pVolumeSrc, volumeSource(1));
    EXPECT_EQ(trial.m_nTrialResampleStep, (std::int64_t{1} << 42) + 1071);
}

TEST_F(BrokenTrialFile, ChannelsReadBeforeMemoryRanOutStay)
{
    const ScriptedHost host;
    Parts parts;
    parts.channels = ByteBuilder().i32(0).i32(2).i32(1).i32(1);
    parts.channels.append(channelRecord::record(channelRecord::newest)).i32(1);
    bool met = false;
    for (int n = 2; n < 100 && !met; ++n) {
        const FailingAllocator failing(n);
        CMDTrialzk trial;
        met = tryLoad<TrialForm>(trial, record(newest, parts).bytes()) == 1;
        if (met) {
            EXPECT_EQ(host.messages().back(), CString("Not enough memory?"));
            ASSERT_NE(trial.getChannel(0), nullptr);
            EXPECT_EQ(trial.getChannel(0)->m_strChannelName, CString("working"));
            EXPECT_EQ(trial.getChannel(1), nullptr);
        }
    }
    EXPECT_TRUE(met);
}

// Expects these messages and 0 when the only object that a file brings can't be made.
void expectWithoutMemory(std::int32_t version, ByteBuilder Parts::*part, const ByteBuilder& bytes,
                         const std::vector<CString>& messages)
{
    Parts parts;
    parts.*part = bytes;
    const ByteBuilder file = record(version, parts);
    const ScriptedHost host;
    CMDTrialzk trial;
    {
        const FailingAllocator first(1);
        EXPECT_EQ(load(trial, file), 0);
        EXPECT_EQ(first.failures(), 1);
    }
    EXPECT_EQ(host.messages(), messages);
    EXPECT_EQ(load(trial, file), 1);
}

TEST_F(BrokenTrialFile, WithoutMemoryForAnObjectTheLoadEndsWithTheTextOfItsSection)
{
    const std::vector<CString> image = {"Memory is not enough!?", wrongFormat};
    expectWithoutMemory(newest, &Parts::volumeSource, guarded(volumeSource(1)), image);
    expectWithoutMemory(newest, &Parts::volumeSourceCoherence, guarded(volumeSourceCoherence(1)), image);
    expectWithoutMemory(newest, &Parts::components, guarded(components(1)), image);
    for (int slot = 0; slot < 3; ++slot) {
        const ByteBuilder one = none(slot).i32(1).raw(bytesOfSpectrum("A", 1)).append(none(2 - slot));
        expectWithoutMemory(newest, &Parts::spectra, one, {"Is memory enough?!", wrongFormat});
    }
    expectWithoutMemory(newest, &Parts::coherence, guarded(coherence(1)), {"Is memeory enough?!", wrongFormat});
}

TEST_F(BrokenTrialFile, WithoutMemoryForAnObjectOfTheOtherSectionsOnlyTheFileTells)
{
    const std::vector<CString> nothing = {wrongFormat};
    expectWithoutMemory(newest, &Parts::crossSpectra, guarded(crossSpectra(1)), nothing);
    expectWithoutMemory(newest, &Parts::package, ByteBuilder().raw(bytesOf(package(1))), nothing);
    expectWithoutMemory(20190906, &Parts::oneWave, guarded(wave(1)), nothing);
    expectWithoutMemory(newest, &Parts::virtualSpectra, guarded(virtualSpectra(1)), nothing);
    expectWithoutMemory(newest, &Parts::sourceCoherence, guarded(sourceCoherence(1)), nothing);
    expectWithoutMemory(newest, &Parts::commonReference, ByteBuilder().raw(bytesOf(commonReference(1))), nothing);
    const ByteBuilder unit = ByteBuilder().i64(1).append(guarded(individualReference(1)));
    expectWithoutMemory(newest, &Parts::individualReferences, unit, nothing);
    const ByteBuilder one = ByteBuilder().i32(0).i32(1).append(guarded(probe(1)));
    expectWithoutMemory(newest, &Parts::probes, one, nothing);
}

TEST_F(BrokenTrialFile, AnyAllocationThatFailsLeavesAUsableTrial)
{
    const ScriptedHost host;
    EXPECT_GT(expectUsableAfterEachFailure<TrialForm>(record(newest, smallParts()).bytes()), 15);
}

} // namespace

} // namespace megset::CMDTrial9FileBFaults_test
