// The phantom as an acquisition: its files, and that it is the recording that its CTF form is.
#include "apps/phantom/acquisition.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/CDocument.h"
#include "megset/platform/paths.h"

#include "apps/readers/ctf/importCtf.h"
#include "tests/apps/phantom/smallPhantom.h"
#include "tests/kit/ByteBuilder.h"
#include "tests/kit/Program.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TemporaryFolder.h"
#include "tests/kit/memoryArchive.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace megset::phantom::acquisition_test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// The small recording with stimuli of two codes.
PhantomOptions smallWithCodes()
{
    PhantomOptions options = small();
    options.codes = {3, 7};
    return options;
}

class PhantomAcquisition : public testing::Test
{
protected:
    PhantomReport write(const std::string& name = "a.mega", const PhantomOptions& options = smallWithCodes()) const
    {
        return writeAcquisition(folder.native() / name, options);
    }

    const TemporaryFolder folder;
};

TEST_F(PhantomAcquisition, HasADatasetItsTrialsAndTheTruth)
{
    const PhantomReport report = write();
    EXPECT_THAT(folder.names(), ElementsAre("a.mega", "aTrial0.trla", "aTrial1.trla", "aTrial2.trla", "a_truth.json"));
    EXPECT_EQ(report.channels, 64U);
    EXPECT_EQ(report.plan.trials, 3);
    EXPECT_EQ(report.sampleFiles, 3);
    const std::vector<std::byte> truth = folder.read("a_truth.json");
    EXPECT_EQ(nlohmann::json::parse(std::string(reinterpret_cast<const char*>(truth.data()), truth.size()))
                  .at("stimuli")
                  .size(),
              3U);
}

// By the bytes, not by the library's reader.
TEST_F(PhantomAcquisition, IsInTheFormOfTheAcquisitionAndNotInTheOrdinaryOne)
{
    write();
    const auto begins = [&](const char* name, const char* tag, std::int32_t version) {
        const std::vector<std::byte> expected = ByteBuilder().wide(tag).i32(version).bytes();
        std::vector<std::byte> bytes = folder.read(name);
        bytes.resize(expected.size());
        return sameBytes(bytes, expected);
    };
    EXPECT_TRUE(begins("a.mega", "MEACQDATASETZK", 20220418));
    EXPECT_TRUE(begins("aTrial2.trla", "MEACQTRIALZK", 20200727));
    const std::vector<std::byte> tag = ByteBuilder().wide("ACQMECHANNELZK").i32(20200727).bytes();
    const std::vector<std::byte> trial = folder.read("aTrial2.trla");
    int channels = 0;
    for (auto at = trial.begin(); (at = std::search(at, trial.end(), tag.begin(), tag.end())) != trial.end(); ++at)
        ++channels;
    EXPECT_EQ(channels, 64);
}

TEST_F(PhantomAcquisition, IsShownByInspectToItsEnd)
{
    write();
    for (const char* name : {"a.mega", "aTrial0.trla"}) {
        const auto result = kit::runProgram(MEGSET_PROGRAM, {"inspect", folder.native(name).string(), "--depth", "1"});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
    }
}

TEST_F(PhantomAcquisition, HasTheSameBytesInEveryFolder)
{
    folder.makeFolder("other");
    write();
    write("other/a.mega");
    for (const char* name : {"a.mega", "aTrial0.trla", "aTrial1.trla", "aTrial2.trla", "a_truth.json"})
        EXPECT_TRUE(sameBytes(folder.read(name), folder.read(CString("other\\") + name))) << name;
}

TEST_F(PhantomAcquisition, IsAnotherOneWithAnotherSeed)
{
    PhantomOptions options = smallWithCodes();
    options.seed = 2;
    folder.makeFolder("other");
    write();
    write("other/a.mega", options);
    EXPECT_TRUE(sameBytes(folder.read("a.mega"), folder.read("other\\a.mega")));
    EXPECT_NE(folder.read("aTrial0.trla"), folder.read("other\\aTrial0.trla"));
}

TEST_F(PhantomAcquisition, WritesNoFileOver)
{
    for (const char* name : {"a.mega", "aTrial1.trla", "a_truth.json"}) {
        folder.write(name, "mine");
        try {
            write();
            FAIL() << name;
        } catch (const std::runtime_error& fault) {
            EXPECT_THAT(fault.what(), HasSubstr(std::string(name) + " exists already"));
        }
        EXPECT_THAT(folder.names(), ElementsAre(name));
        EXPECT_EQ(folder.read(name).size(), 4U);
        std::filesystem::remove(folder.native(name));
    }
}

TEST_F(PhantomAcquisition, LeavesNothingWhenAFileCannotBeWritten)
{
    // The tenth trial has a name that is longer than the system takes.
    PhantomOptions options = smallWithCodes();
    options.trials = 11;
    options.rate = 100;
    const std::string name(255 - std::string("Trial0.trla").size(), 'x');
    try {
        write(name + ".mega", options);
        FAIL();
    } catch (const std::runtime_error& fault) {
        EXPECT_THAT(fault.what(), HasSubstr("Trial10.trla"));
    }
    EXPECT_THAT(folder.names(), IsEmpty());
    EXPECT_THROW(write("none/a.mega"), std::runtime_error);
}

TEST_F(PhantomAcquisition, HasANameThatEndsWithMega)
{
    for (const char* name : {"a", "a.ds", "a.MEGA", ".mega", ""})
        EXPECT_THROW(write(name), std::invalid_argument) << name;
    EXPECT_THAT(folder.names(), IsEmpty());
}

// ---- against the CTF form

/// The bytes that an object has in a file.
template <class Serialize>
std::vector<std::byte> bytesOf(Serialize serialize)
{
    return storedBytes([&](CArchive& ar) { EXPECT_EQ(serialize(ar), 1); });
}

/// Both forms of a phantom, imported.
class PhantomInBothForms : public testing::Test
{
protected:
    void import(const PhantomOptions& options)
    {
        writePhantom(folder.native("a.ds"), options);
        writeAcquisition(folder.native("a.mega"), options);
        ctfDocument.SetPathName(folder.path("ctf.meg"));
        ctf::Recording recording = ctf::openCtf(folder.native("a.ds"));
        ctf::importCtf(recording, ofCtf, ctfDocument);
        acquiredDocument.SetPathName(folder.path("acquired.meg"));
        ASSERT_EQ(acquired.openRecordMeX(folder.path("a.mega"), &acquiredDocument), 1);
        ASSERT_EQ(acquired.getTotalTrial(), ofCtf.getTotalTrial());
    }

    const TemporaryFolder folder;
    ScriptedHost host; // nothing is asked
    CDocument ctfDocument;
    CDocument acquiredDocument;
    CMEGDatazk ofCtf;
    CMEGDatazk acquired;
};

TEST_F(PhantomInBothForms, HasTheSameSamplesBitByBit)
{
    PhantomOptions options = smallWithCodes();
    options.channels = 20;
    import(options);
    for (int t = 0; t < 3; ++t) {
        const CMDTrialzk* const one = ofCtf.getTrialzk(t);
        const CMDTrialzk* const other = acquired.getTrialzk(t);
        ASSERT_TRUE(one != nullptr && other != nullptr);
        ASSERT_EQ(other->getTotalChannel(), 82);
        ASSERT_EQ(one->getTotalChannel(), 82);
        for (int c = 0; c < 82; ++c) {
            const CMDChannelzk& a = *one->getChannel(c);
            const CMDChannelzk& b = *other->getChannel(c);
            ASSERT_EQ(a.getTotalSample(), 300);
            ASSERT_EQ(b.getTotalSample(), 300);
            const auto asBytes = [](const double* samples) { return std::as_bytes(std::span(samples, 300)); };
            EXPECT_TRUE(sameBytes(asBytes(a.getDataWave()), asBytes(b.getDataWave()))) << t << ' ' << c;
            EXPECT_TRUE(std::ranges::any_of(std::span(b.getDataWave(), 300), [](double x) { return x != 0; }));
        }
    }
}

TEST_F(PhantomInBothForms, HasTheSameChannelsInAllThatAFileKeeps)
{
    import(smallWithCodes());
    for (int t = 0; t < 3; ++t) {
        CMDTrialzk& one = *ofCtf.getTrialzk(t);
        CMDTrialzk& other = *acquired.getTrialzk(t);
        for (int c = 0; c < 64; ++c)
            EXPECT_TRUE(sameBytes(bytesOf([&](CArchive& ar) { return other.getChannel(c)->serializezk(ar); }),
                                  bytesOf([&](CArchive& ar) { return one.getChannel(c)->serializezk(ar); })))
                << one.getChannel(c)->m_strChannelName.toUtf8();
        EXPECT_EQ(other.m_headLocalization, one.m_headLocalization);
        EXPECT_EQ(other.m_nTrialIndex, t);
        EXPECT_EQ(other.m_strTrialName, CString::formatted("Trial%d", t));
        EXPECT_EQ(other.isGoodTrial(), 1);
    }
}

TEST_F(PhantomInBothForms, HasTheSameMarkersFlagsAndInformation)
{
    import(smallWithCodes());
    EXPECT_EQ(acquired.m_mkMarker, ofCtf.m_mkMarker);
    EXPECT_EQ(acquired.m_mkMarker.getTotalMarkers(), 2);
    EXPECT_EQ(acquired.m_headLocalization, ofCtf.m_headLocalization);
    ASSERT_EQ(acquired.m_nChnlParamCount, 64);
    for (std::size_t c = 0; c < 64; ++c) {
        EXPECT_EQ(acquired.m_pChnlGood[c], ofCtf.m_pChnlGood[c]);
        EXPECT_EQ(acquired.m_pChnlShow[c], ofCtf.m_pChnlShow[c]);
    }
    CMEGRecordInfozk& one = ofCtf.m_recordInfo;
    CMEGRecordInfozk& other = acquired.m_recordInfo;
    EXPECT_TRUE(sameBytes(bytesOf([&](CArchive& ar) { return other.CMEGRecordInfo09File::serialize(ar); }),
                          bytesOf([&](CArchive& ar) { return one.CMEGRecordInfo09File::serialize(ar); })));
    // What the form lacks.
    EXPECT_GT(ofCtf.m_recordInfo.m_coefficients.getCoefficientsData()->GetSize(), 0);
    EXPECT_EQ(acquired.m_recordInfo.m_coefficients.getCoefficientsData()->GetSize(), 0);
}

TEST_F(PhantomInBothForms, AContinuousRecordingIsOneTrialInEither)
{
    PhantomOptions options = smallWithCodes();
    options.continuous = true;
    import(options);
    EXPECT_EQ(acquired.getTotalTrial(), 1);
    EXPECT_EQ(acquired.getTrialzk(0)->getTotalSample(0), 900);
    EXPECT_EQ(acquired.m_recordInfo.m_nRecPreTrigPts, 0);
}

// ---- the command

TEST_F(PhantomAcquisition, CommandWritesItAndTellsItsShape)
{
    const auto result = kit::runProgram(MEGSET_PROGRAM, {"phantom", "--acquisition", folder.native("b.mega").string(),
                                                         "--trials", "2", "--channels", "3"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("b.mega: 2 trials, 65 channels, 1200 samples at 1200 Hz, 2 stimuli\n"));
    EXPECT_EQ(result.errors, "");
    EXPECT_TRUE(folder.has("bTrial1.trla"));
}

TEST_F(PhantomAcquisition, CommandWithANameOfTheOtherFormIsWrongUsage)
{
    EXPECT_EQ(kit::runProgram(MEGSET_PROGRAM, {"phantom", "--acquisition", folder.native("b.ds").string()}).exitCode,
              2);
    EXPECT_EQ(kit::runProgram(MEGSET_PROGRAM, {"phantom", folder.native("b.mega").string()}).exitCode, 2);
    EXPECT_THAT(folder.names(), IsEmpty());
}

} // namespace

} // namespace megset::phantom::acquisition_test
