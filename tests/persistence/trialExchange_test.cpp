// The exchange file: what is written can't be read, and what can be read brings an empty trial.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"

#include "tests/kit/ByteBuilder.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/FailingFile.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TemporaryFolder.h"

#include <cmath>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::trialExchange_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* otherRate = "Sampling Rate is different! Do you would like to continue?";
constexpr const char* useParameters = "Would you like to use the import parameters?";
constexpr const char* noTrialData = "This is not MEG trial data!";
constexpr const char* exchangeFilter = "MEG Trial file(*.mtb)|*.mtb|All Files(*.*)|*.*||";

ByteBuilder writtenBeginning(double rate)
{
    return ByteBuilder().raw({0x4D, 0x00, 0x45, 0x00}).f64(rate);
}

ByteBuilder readBeginning(double rate)
{
    return ByteBuilder().raw({0x4D, 0x45, 0x47, 0x54}).f64(rate);
}

// A name in 257 bytes.
ByteBuilder nameField(const CString& name)
{
    ByteBuilder bytes;
    for (const char16_t unit : name.view())
        bytes.u16(unit);
    bytes.zeros(514);
    return ByteBuilder().raw(std::span(bytes.bytes()).first(257));
}

ByteBuilder importable(double rate = 600, const CString& name = "theirs")
{
    return readBeginning(rate).append(nameField(name));
}

class TrialExchange : public ::testing::Test
{
protected:
    TrialExchange()
    {
        dataset.m_strSessionName = "ours";
        dataset.m_recordInfo.m_dRecSampleRate = 600;
    }

    void makeTrials(int trials) { dataset.initMEGData(trials, 2, 3); }

    int import(const ByteBuilder& bytes)
    {
        file = std::make_unique<CMemFile>(std::span(bytes.bytes()));
        return dataset.export_importMEGData(*file, true, -1);
    }

    std::vector<std::byte> exported(int trial)
    {
        CMemFile target;
        EXPECT_EQ(dataset.export_importMEGData(target, false, trial), 1);
        return target.detach();
    }

    ScriptedHost host;
    CMEGDatazk dataset;
    std::unique_ptr<CMemFile> file;
};

// ---- writing

TEST_F(TrialExchange, WritesMagicRateAndNameAndNothingElse)
{
    makeTrials(2);
    dataset.m_recordInfo.m_dRecSampleRate = 1200.25;
    const auto bytes = exported(1);
    EXPECT_EQ(bytes.size(), 269U);
    EXPECT_TRUE(sameBytes(bytes, writtenBeginning(1200.25).append(nameField("ours"))));
}

TEST_F(TrialExchange, ANameOf128CharactersFitsAndALongerOneIsCutInsideACharacter)
{
    makeTrials(1);
    for (const int length : {128, 129, 256, 257, 258, 5000}) {
        dataset.m_strSessionName = CString(std::u16string(static_cast<std::size_t>(length), u'\u4E2D'));
        ByteBuilder expected = writtenBeginning(600);
        for (int i = 0; i < 128; ++i)
            expected.u16(0x4E2D);
        expected.u8(length > 128 ? 0x2D : 0);
        EXPECT_TRUE(sameBytes(exported(0), expected)) << length;
    }
}

TEST_F(TrialExchange, WithoutTheTrialNothingIsWritten)
{
    CMemFile target;
    EXPECT_EQ(dataset.export_importMEGData(target, false, 0), 0);
    makeTrials(2);
    dataset.m_ppTrial.set(0, nullptr);
    for (const int trial : {0, -1, -2})
        EXPECT_EQ(dataset.export_importMEGData(target, false, trial), 0) << trial;
    EXPECT_EQ(target.GetLength(), 0U);
}

TEST_F(TrialExchange, AFaultPassesFromTheFileThatWasHandedOver)
{
    makeTrials(1);
    FailingFile target;
    target.fullAfter(20);
    EXPECT_THROW(dataset.export_importMEGData(target, false, 0), CFileException);
}

TEST_F(TrialExchange, ExportAsksForAFileOfItsKind)
{
    makeTrials(2);
    dataset.m_ppTrial.set(0, nullptr);
    const TemporaryFolder folder;
    for (const int kind : {2, 1}) {
        host.willChooseFile(folder.path("a"), kind);
        EXPECT_EQ(dataset.exportMEGData(7), 1); // the last one
    }
    EXPECT_THAT(folder.names(), ElementsAre("a.mtb"));
    EXPECT_TRUE(sameBytes(folder.read("a.mtb"), writtenBeginning(600).append(nameField("ours"))));
    const auto requests = host.fileRequests();
    EXPECT_FALSE(requests[0].open);
    EXPECT_TRUE(requests[0].confirmOverwrite);
    EXPECT_EQ(requests[0].filter, exchangeFilter);
    EXPECT_EQ(requests[1].filterIndex, 2);
}

TEST_F(TrialExchange, ExportOfMinusOneIsThatOfTheCurrentTrial)
{
    makeTrials(2);
    const TemporaryFolder folder;
    dataset.m_ppTrial.set(0, nullptr);
    EXPECT_EQ(dataset.exportMEGData(-1), 0);
    dataset.m_nCurrentTrial = 1;
    host.willChooseFile(folder.path("a.mtb"));
    EXPECT_EQ(dataset.exportMEGData(-1), 1);
    EXPECT_THAT(folder.names(), ElementsAre("a.mtb"));
}

TEST_F(TrialExchange, ExportWithoutTrialsOrTheTrialInMemoryHasNoDialog)
{
    EXPECT_EQ(dataset.exportMEGData(0), 0);
    EXPECT_EQ(dataset.exportMEGData(-1), 0);
    makeTrials(1);
    dataset.m_ppTrial.set(0, nullptr);
    EXPECT_EQ(dataset.exportMEGData(0), 0);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(TrialExchange, CancelledDialogsGiveZero)
{
    makeTrials(1);
    host.willCancelFile();
    EXPECT_EQ(dataset.exportMEGData(0), 0);
    host.willCancelFile();
    EXPECT_EQ(dataset.importMEGData(), 0);
    EXPECT_EQ(dataset.getTotalTrial(), 1);
}

TEST_F(TrialExchange, AFileThatCannotBeOpenedIsNotToldAndGivesOne)
{
    makeTrials(1);
    const TemporaryFolder folder;
    host.willChooseFile(folder.path("missing\\a.mtb"));
    EXPECT_EQ(dataset.exportMEGData(0), 1);
    host.willChooseFile(folder.path("missing.mtb"));
    EXPECT_EQ(dataset.importMEGData(), 1);
    host.expectNoMessages();
    EXPECT_EQ(dataset.getTotalTrial(), 1);
}

// ---- reading

TEST_F(TrialExchange, WhatIsWrittenIsRefusedWhenRead)
{
    makeTrials(1);
    const TemporaryFolder folder;
    host.willChooseFile(folder.path("a.mtb"));
    EXPECT_EQ(dataset.exportMEGData(0), 1);
    host.willChooseFile(folder.path("a.mtb"));
    EXPECT_EQ(dataset.importMEGData(), 0);
    EXPECT_THAT(host.messages(), ElementsAre(noTrialData));
    EXPECT_EQ(dataset.getTotalTrial(), 1);
}

TEST_F(TrialExchange, ImportAsksForAFileOfItsKind)
{
    const TemporaryFolder folder;
    host.willChooseFile(folder.write("a.mtb", importable().bytes()));
    EXPECT_EQ(dataset.importMEGData(), 1);
    EXPECT_EQ(dataset.getTotalTrial(), 1);
    EXPECT_EQ(dataset.m_strSessionName, "theirs");
    for (const int kind : {2, 1}) { // the kind chosen is that of the next dialog
        host.willChooseFile(folder.write("none.mtb", "none"), kind);
        EXPECT_EQ(dataset.importMEGData(), 0);
    }
    const auto requests = host.fileRequests();
    EXPECT_TRUE(requests[0].open);
    EXPECT_TRUE(requests[0].fileMustExist);
    EXPECT_EQ(requests[0].filter, exchangeFilter);
    EXPECT_EQ(requests[2].filterIndex, 2);
}

TEST_F(TrialExchange, TheFirstTrialBringsItsNameWithoutAQuestion)
{
    EXPECT_EQ(import(importable(1234)), 1);
    EXPECT_THAT(host.calls(), IsEmpty());
    EXPECT_EQ(dataset.getTotalTrial(), 1);
    EXPECT_EQ(dataset.getCurrentTrialIndx(), 0);
    ASSERT_NE(dataset.getMDTrial(0), nullptr);
    EXPECT_EQ(dataset.getMDTrial(0)->getTotalChannel(), 0);
    EXPECT_EQ(dataset.m_aTrialFilePath.GetSize(), 0);
    EXPECT_EQ(dataset.m_strSessionName, "theirs");
    EXPECT_EQ(dataset.m_recordInfo.m_dRecSampleRate, 600.0); // the rate is not kept
    EXPECT_EQ(file->GetPosition(), 269U);
}

TEST_F(TrialExchange, TheSecondTrialTakesOverTheSlotsAndIsCurrent)
{
    makeTrials(1);
    const CMDTrialzk* first = dataset.getMDTrial(0);
    host.willAnswerYes(useParameters);
    EXPECT_EQ(import(importable()), 1);
    EXPECT_THAT(host.questions(), ElementsAre(useParameters));
    EXPECT_EQ(dataset.getTotalTrial(), 2);
    EXPECT_EQ(dataset.getCurrentTrialIndx(), 1);
    EXPECT_EQ(dataset.getMDTrial(0), first);
    ASSERT_NE(dataset.getMDTrial(1), nullptr);
    EXPECT_EQ(dataset.getMDTrial(1)->getTotalChannel(), 0);
    EXPECT_EQ(dataset.m_aTrialFilePath.GetSize(), 0); // none is added
    EXPECT_EQ(dataset.m_strSessionName, "theirs");
}

TEST_F(TrialExchange, ParametersThatAreNotWantedAreReadAndDroppedWithEightBytesMore)
{
    makeTrials(1);
    host.willAnswerNo(useParameters);
    EXPECT_EQ(import(importable().zeros(100)), 1);
    EXPECT_EQ(dataset.getTotalTrial(), 2);
    EXPECT_EQ(dataset.m_strSessionName, "ours");
    EXPECT_EQ(file->GetPosition(), 277U);
}

TEST_F(TrialExchange, AnotherRateIsAskedForAndRefusedByNo)
{
    makeTrials(2);
    host.willAnswerNo(otherRate);
    EXPECT_EQ(import(importable(601)), 0);
    EXPECT_THAT(host.questions(), ElementsAre(otherRate));
    EXPECT_EQ(dataset.getTotalTrial(), 2);
    EXPECT_EQ(dataset.m_strSessionName, "ours");
}

TEST_F(TrialExchange, BesideASingleTrialAnotherRateIsNoQuestion)
{
    makeTrials(1);
    host.willAnswerNo(useParameters);
    EXPECT_EQ(import(importable(601)), 1);
    EXPECT_THAT(host.questions(), ElementsAre(useParameters));
    EXPECT_EQ(dataset.getTotalTrial(), 2);
    EXPECT_EQ(dataset.m_recordInfo.m_dRecSampleRate, 600.0);
}

TEST_F(TrialExchange, AnotherRateIsTakenByYesAndNotKept)
{
    makeTrials(2);
    host.willAnswerYes(otherRate);
    host.willAnswerYes(useParameters);
    EXPECT_EQ(import(importable(601)), 1);
    EXPECT_THAT(host.questions(), ElementsAre(otherRate, useParameters));
    EXPECT_EQ(dataset.getTotalTrial(), 3);
    EXPECT_EQ(dataset.m_recordInfo.m_dRecSampleRate, 600.0);
}

TEST_F(TrialExchange, ARateThatIsNoNumberCountsAsAnother)
{
    makeTrials(2);
    host.willAnswerNo(otherRate);
    EXPECT_EQ(import(importable(std::nan(""))), 0);
    dataset.m_recordInfo.m_dRecSampleRate = std::nan("");
    host.willAnswerNo(otherRate);
    EXPECT_EQ(import(importable(std::nan(""))), 0);
}

TEST_F(TrialExchange, ANameThatFillsItsBytesEndsInHalfACharacter)
{
    ByteBuilder bytes = readBeginning(600);
    for (int i = 0; i < 200; ++i)
        bytes.u16(0x4E2D);
    EXPECT_EQ(import(bytes), 1);
    std::u16string expected(128, u'\u4E2D');
    expected += u'\u002D';
    EXPECT_EQ(dataset.m_strSessionName, CString(expected));
}

TEST_F(TrialExchange, ANameIsTakenAsItStandsWithPercentSigns)
{
    EXPECT_EQ(import(importable(600, "100 %s %d")), 1);
    EXPECT_EQ(dataset.m_strSessionName, "100 %s %d");
}

TEST_F(TrialExchange, OtherMagicsAreRefused)
{
    for (const ByteBuilder& bytes :
         {ByteBuilder(), ByteBuilder().raw({0x4D, 0x45, 0x47}), ByteBuilder().raw({0x4D, 0x45, 0x47, 0x55}).zeros(300),
          ByteBuilder().raw({0x6D, 0x65, 0x67, 0x74}).zeros(300)}) {
        host.clearRecord();
        EXPECT_EQ(import(bytes), 0);
        EXPECT_THAT(host.messages(), ElementsAre(noTrialData));
    }
    EXPECT_EQ(dataset.getTotalTrial(), 0);
}

TEST_F(TrialExchange, AFileThatEndsEarlyReadsAsZeros)
{
    const auto whole = importable(600, "ab").bytes();
    for (std::size_t length = 4; length <= whole.size(); ++length) {
        CMEGDatazk empty;
        CMemFile part{std::span(whole).first(length)};
        EXPECT_EQ(empty.export_importMEGData(part, true, -1), 1);
        const CString expected = length < 13 ? "" : length < 15 ? "a" : "ab";
        ASSERT_EQ(empty.m_strSessionName, expected) << length;
    }
    host.expectNoMessages();
}

TEST_F(TrialExchange, AFaultPassesWhenReadingAndTheDatasetKeepsItsTrials)
{
    makeTrials(1);
    FailingFile source{std::span(importable().bytes())};
    source.failRead(2);
    EXPECT_THROW(dataset.export_importMEGData(source, true, -1), CFileException);
    EXPECT_EQ(dataset.getTotalTrial(), 1);
}

TEST_F(TrialExchange, WithoutMemoryTheDatasetStaysAsItIs)
{
    makeTrials(2);
    const std::int64_t tried = forEachAllocationFailure([&] {
        CMEGDatazk small;
        small.initMEGData(0, 0, 0);
        host.clearRecord();
        CMemFile source{std::span(importable().bytes())};
        if (small.export_importMEGData(source, true, -1) == 1) {
            EXPECT_EQ(small.getTotalTrial(), 1);
            host.expectNoMessages();
            return;
        }
        EXPECT_THAT(host.messages(), ElementsAre("Not enough memory?!"));
        EXPECT_EQ(small.getTotalTrial(), 0);
        EXPECT_EQ(small.m_strSessionName, "Unknown");
    });
    EXPECT_EQ(tried, 2); // the slots and the trial
}

TEST_F(TrialExchange, ADatasetMadeWithANegativeNumberOfTrialsGetsItsFirst)
{
    dataset.initMEGData(-3, 1, 1);
    EXPECT_EQ(import(importable()), 1);
    EXPECT_EQ(dataset.getTotalTrial(), 1);
    EXPECT_NE(dataset.getMDTrial(0), nullptr);
}

} // namespace
} // namespace megset::trialExchange_test
