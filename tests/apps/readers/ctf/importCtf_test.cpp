#include "apps/readers/ctf/importCtf.h"
#include "apps/readers/ctf/importSamples.h"
#include "apps/readers/ctf/libraryRecords.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/CDocument.h"
#include "megset/platform/paths.h"

#include "tests/apps/readers/ctf/CtfBuilder.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::ctf::importCtf_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ImportCtf : public testing::Test
{
protected:
    void import()
    {
        Recording recording = openCtf(m_builder.write(m_folder));
        import(recording);
    }
    void import(Recording& recording, int threads = 0)
    {
        m_document.SetPathName(m_folder.path("small.meg"));
        m_notes = importCtf(recording, m_dataset, m_document, threads);
    }
    const CMDChannelzk& channel(int trial, int index) { return *m_dataset.getTrialzk(trial)->m_ppChannel[index]; }
    std::vector<double> wave(int trial, int index)
    {
        const CMDChannelzk& from = channel(trial, index);
        return {from.m_pDataWave.get(), from.m_pDataWave.get() + from.m_nTotalSample};
    }
    std::vector<double> expected(int trial, int index, double scale) const
    {
        std::vector<double> samples;
        for (int i = 0; i < static_cast<int>(m_builder.samples); ++i)
            samples.push_back(scale * CtfBuilder::sampleAt(trial, index, i));
        return samples;
    }

    ScriptedHost m_host;
    TemporaryFolder m_folder;
    CtfBuilder m_builder;
    CDocument m_document;
    CMEGDatazk m_dataset;
    std::vector<std::string> m_notes;
};

TEST_F(ImportCtf, MakesATrialFileForEachTrial)
{
    import();
    EXPECT_EQ(m_dataset.getTotalTrial(), 2);
    EXPECT_THAT(m_folder.names(), ElementsAre("small.ds", "small_ImportTrial0.trl", "small_ImportTrial1.trl"));
    EXPECT_THAT(m_host.messages(), IsEmpty());
    EXPECT_THAT(m_notes, IsEmpty());
}

TEST_F(ImportCtf, SamplesAreInTheUnitsOfTheLibrary)
{
    import();
    const double scales[] = {1.0, -10.0, 5.0, 0.25, -0.1, 5e-4, 1e-8};
    for (const int trial : {0, 1})
        for (int i = 0; i < 7; ++i)
            EXPECT_THAT(wave(trial, i), testing::Pointwise(testing::DoubleEq(), expected(trial, i, scales[i]))) << i;
}

TEST_F(ImportCtf, RawSamplesAreScaledToo)
{
    import();
    for (const int i : {3, 5}) {
        const CMDChannelzk& from = channel(1, i);
        const std::vector<double> raw(from.m_pBkData.get(), from.m_pBkData.get() + from.m_nBkDataSample);
        EXPECT_EQ(raw, wave(1, i));
    }
}

TEST_F(ImportCtf, ChannelsHaveNamesTypesAndGeometry)
{
    import();
    const int types[] = {600, 10, 11, 100, 100, 302, 400};
    const int geometries[] = {3, 1, 1, 1, 1, 2, 4};
    for (const int trial : {0, 1})
        for (int i = 0; i < 7; ++i) {
            const CMDChannelzk& made = channel(trial, i);
            EXPECT_EQ(made.m_strChannelName, m_builder.channels[static_cast<std::size_t>(i)].name);
            EXPECT_EQ(made.m_strChannelNameRaw, made.m_strChannelName);
            EXPECT_EQ(made.m_nChannelType, types[i]);
            EXPECT_EQ(made.m_nGeomType, geometries[i]);
        }
    EXPECT_EQ(channel(0, 3).getChannelTypeName(), "Gradiometer");
    EXPECT_EQ(channel(0, 6).getChannelTypeName(), "ADC");
}

TEST_F(ImportCtf, SensorsKeepOrderGainAndPlace)
{
    m_builder.channels[3].order = 2;
    import();
    const CMEGSensorzk* const sensor = channel(1, 3).getMEGSensorzk();
    ASSERT_NE(sensor, nullptr);
    EXPECT_EQ(sensor->getGradOrderNo(), 2);
    EXPECT_DOUBLE_EQ(sensor->getSnsGainCtf(), 0.25);
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    sensor->getSnsPos(-1, 0, x, y, z);
    EXPECT_DOUBLE_EQ(x, 18.0);
    EXPECT_DOUBLE_EQ(y, 160.0);
    EXPECT_DOUBLE_EQ(z, -69.0);
}

TEST_F(ImportCtf, ElectrodesHaveTheirPlace)
{
    import();
    const CEEGelectrodezk* const electrode = channel(0, 5).getEegElectrode(1);
    ASSERT_NE(electrode, nullptr);
    EXPECT_EQ(electrode->m_strElectrodeName, "EEG001-1");
    EXPECT_EQ(electrode->m_dElectrodePos[0], 31.0);
    EXPECT_EQ(electrode->m_nPosFound, 1);
}

TEST_F(ImportCtf, InformationAndCoefficientsAreInTheDataset)
{
    import();
    const CMEGRecordInfozkProzk& information = *m_dataset.getMEGRecordInfozk();
    EXPECT_EQ(information.m_nRecTotalSample, 4);
    EXPECT_EQ(information.m_dRecSampleRate, 600.0);
    EXPECT_EQ(information.m_strDbText[0], "s01");
    EXPECT_EQ(information.getSensorCoefficientzk()->getCoefficientsData()->GetSize(), 3);
    EXPECT_NE(information.getSensorCoefficientzk()->getSensorCoefRecord("MLC11-1", 3, true, false), nullptr);
}

TEST_F(ImportCtf, AnAverageIsScaledByTwoOverItsCount)
{
    m_builder.averages = 8;
    m_builder.trials = 1;
    import();
    EXPECT_THAT(wave(0, 3), testing::Pointwise(testing::DoubleEq(), expected(0, 3, 0.25 * 2.0 / 8.0)));
    EXPECT_THAT(wave(0, 5), testing::Pointwise(testing::DoubleEq(), expected(0, 5, 5e-4 * 2.0 / 8.0)));
}

TEST_F(ImportCtf, BadChannelsTrialsSegmentsAndMarkersComeAlong)
{
    Recording recording = openCtf(m_builder.write(m_folder));
    recording.badChannels = {2, 4};
    recording.classes = {{"BAD", {1}}};
    recording.badSegments = {{1, 0.0, 1.0 / 600.0}};
    recording.markers = {{"beep", "", {{0, 0.0}, {1, 7.0}}}};
    import(recording);
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(m_dataset.m_pChnlGood[static_cast<std::size_t>(i)], i == 2 || i == 4 ? 0 : 1) << i;
    EXPECT_EQ(m_dataset.getTrialzk(0)->isGoodTrial(), 1);
    EXPECT_EQ(m_dataset.getTrialzk(1)->isGoodTrial(), 0);
    EXPECT_EQ(m_dataset.m_mkSegment.getMarker(0, false)->getMarkPt(0)->m_nMarkPtTrial, 1);
    EXPECT_EQ(m_dataset.m_mkMarker.getMarker(0, false)->getMarkPt(0)->m_nMarkPtBegin, 1);
    EXPECT_THAT(m_notes, ElementsAre("Marks outside their trials are left out: 1."));
}

TEST_F(ImportCtf, FiducialsGoIntoDatasetAndTrials)
{
    Recording recording = openCtf(m_builder.write(m_folder));
    recording.coils.measuredDewar = {Vector{5.0, 5.0, -27.0}, Vector{-5.0, 5.0, -27.0}, Vector{5.0, -5.0, -27.0}};
    recording.coils.measuredHead = {Vector{7.0, 0.0, 0.0}, Vector{0.0, 7.0, 0.0}, Vector{0.0, -7.0, 0.0}};
    import(recording);
    EXPECT_EQ(m_dataset.m_headLocalization.m_nWorkCoordinate, 2);
    EXPECT_EQ(m_dataset.m_headLocalization.m_fidHeadMsr.getTotalFound(), 3);
    EXPECT_EQ(m_dataset.getTrialzk(0)->m_headLocalization, m_dataset.m_headLocalization);
    EXPECT_EQ(m_dataset.getTrialzk(1)->m_headLocalization, m_dataset.m_headLocalization);
}

TEST_F(ImportCtf, ReferencesAndGradiometersReduceNoiseAfterIt)
{
    m_builder.trials = 1;
    import();
    m_dataset.openTrial(0);
    ASSERT_EQ(m_dataset.setGradientNoiseReduction(3, true, false), 1);
    // The weight is that of samples in volts: 0.75 * gain of G11 over gain of MLC11.
    std::vector<double> wanted = expected(0, 3, 0.25);
    for (std::size_t i = 0; i < wanted.size(); ++i)
        wanted[i] -= 0.75 * (2e14 / 4e15) * 5.0 * CtfBuilder::sampleAt(0, 2, static_cast<int>(i));
    const std::vector<double> reduced = wave(0, 3);
    for (std::size_t i = 0; i < wanted.size(); ++i)
        EXPECT_NEAR(reduced[i], wanted[i], 1e-6);
}

// ---- several threads

using Files = std::vector<std::vector<std::byte>>;

/// A recording of more trials than threads, each with marks of its own.
class ImportByThreads : public ImportCtf
{
protected:
    ImportByThreads()
    {
        m_builder.trials = 9;
        m_builder.samples = 1500; // arrays of samples that come from the pool
        m_builder.write(m_folder);
    }
    Recording open() const
    {
        Recording recording = openCtf(m_folder.native("small.ds"));
        recording.classes = {{"BAD", {2, 7}}};
        return recording;
    }
    static CString file(int trial) { return CString::formatted("small_ImportTrial%d.trl", trial); }
    Files importedBy(int threads)
    {
        Recording recording = open();
        import(recording, threads);
        Files files;
        for (int trial = 0; trial < 9; ++trial)
            files.push_back(m_folder.read(file(trial)));
        return files;
    }
    /// The same by the library's own operations alone, one trial behind the other.
    Files importedByLibrary()
    {
        Recording recording = open();
        std::vector<CMEGSensorzk> sensors = librarySensors(recording.header);
        CPtrArray sensorList;
        CStringArray names;
        for (std::size_t i = 0; i < sensors.size(); ++i) {
            sensorList.Add(&sensors[i]);
            names.Add(recording.header.channels[i].name);
        }
        std::vector<CEEGelectrodezk> electrodes = libraryElectrodes(recording.header);
        CPtrArray electrodeList;
        for (CEEGelectrodezk& electrode : electrodes)
            electrodeList.Add(&electrode);
        const int channels = names.GetSize();
        m_document.SetPathName(m_folder.path("small.meg"));
        EXPECT_EQ(m_dataset.importTrialChannels(9, channels, &sensorList, &electrodeList, &names, &names, &m_document),
                  1);
        CMEGRecordInfozkProzk information;
        setRecordingInformation(recording.header, information);
        m_dataset.setMEGRecordInfozk(&information);
        setHeadLocalization(recording.coils, m_dataset.m_headLocalization);
        std::vector<std::int32_t> block(recording.data.trialSize());
        for (int trial = 0; trial < 9; ++trial) {
            recording.data.readTrial(trial, block);
            EXPECT_EQ(m_dataset.importCtfDataT(trial, channels, m_builder.samples, block.data()), 1);
            finish(recording, *m_dataset.getMDTrial(trial), trial);
        }
        EXPECT_EQ(m_dataset.saveAllTrials(), 1);
        Files files;
        for (int trial = 0; trial < 9; ++trial)
            files.push_back(m_folder.read(file(trial)));
        return files;
    }
    void finish(const Recording& recording, CMDTrialzk& trial, int index) const
    {
        for (int i = 0; i < trial.getTotalChannel(); ++i) {
            const Channel& from = recording.header.channels[static_cast<std::size_t>(i)];
            trial.getChannel(i)->setChannelTypeName(channelTypeName(from));
            if (!from.isField())
                trial.getChannel(i)->scaleWaveData(from.unitsPerInteger(), 1);
        }
        trial.m_headLocalization = m_dataset.m_headLocalization;
        trial.setTrialGood(index != 2 && index != 7);
    }
    void removeFiles() const
    {
        for (int trial = 0; trial < 9; ++trial)
            std::filesystem::remove_all(m_folder.native(file(trial)));
    }
};

TEST_F(ImportByThreads, FilesAreThoseOfTheLibrarysOwnOperationsForAnyNumberOfThreads)
{
    const Files wanted = importedByLibrary();
    for (const int threads : {1, 2, 3, 16}) {
        removeFiles();
        const Files files = importedBy(threads);
        for (std::size_t trial = 0; trial < files.size(); ++trial)
            EXPECT_TRUE(files[trial] == wanted[trial]) << threads << " threads, trial " << trial;
    }
    EXPECT_THAT(m_host.messages(), IsEmpty());
}

TEST_F(ImportByThreads, TheDatasetHasAllTrialsInTheirOrderAndTheLastOneIsCurrent)
{
    importedBy(4);
    EXPECT_EQ(m_dataset.m_nTotalTrial, 9);
    EXPECT_EQ(m_dataset.m_nRealTrial, 9);
    EXPECT_EQ(m_dataset.m_nVirtualTrial, 0);
    EXPECT_EQ(m_dataset.m_nCurrentTrial, 8);
    ASSERT_EQ(m_dataset.m_aTrialFilePath.GetSize(), 9);
    for (int trial = 0; trial < 9; ++trial) {
        EXPECT_EQ(m_dataset.m_aTrialFilePath[trial], m_folder.path(file(trial)));
        EXPECT_EQ(m_dataset.getMDTrial(trial), nullptr);
    }
    for (int trial = 0; trial < 9; ++trial) {
        EXPECT_EQ(channel(trial, 3).m_nSnsGainApplied, 1);
        EXPECT_THAT(wave(trial, 3), testing::Pointwise(testing::DoubleEq(), expected(trial, 3, 0.25)));
        EXPECT_EQ(m_dataset.getMDTrial(trial)->m_nTrialIndex, trial);
        EXPECT_EQ(m_dataset.getMDTrial(trial)->m_strTrialName, CString::formatted("ImportTrial%d", trial));
    }
}

TEST_F(ImportByThreads, ATrialThatCannotBeWrittenEndsTheImport)
{
    for (const int threads : {1, 4}) {
        removeFiles();
        m_folder.makeFolder(file(4));
        m_host.willAnswerNo(); // to another file for it
        Recording recording = open();
        try {
            import(recording, threads);
            ADD_FAILURE() << "nothing was thrown by " << threads << " threads";
        } catch (const CtfError& error) {
            EXPECT_THAT(error.what(), testing::EndsWith("small.ds: trial 5 could not be saved"));
        }
    }
}

TEST_F(ImportByThreads, SamplesThatBreakOffMeanwhileEndTheImport)
{
    const std::uintmax_t trialBytes = 7 * 1500 * 4;
    for (const int threads : {1, 4}) {
        removeFiles();
        m_builder.write(m_folder);
        Recording recording = open();
        std::filesystem::resize_file(m_folder.native("small.ds\\small.meg4"), 8 + 6 * trialBytes + 100);
        try {
            import(recording, threads);
            ADD_FAILURE() << "nothing was thrown by " << threads << " threads";
        } catch (const CtfError& error) {
            EXPECT_THAT(error.what(), testing::HasSubstr("small.meg4: trial "));
        }
        EXPECT_FALSE(m_folder.has(file(8)));
    }
}

// Where the library told of something it could not hold, the trials may lack that.
TEST_F(ImportByThreads, WithoutMemoryItEndsAndNoTrialIsTakenForAnother)
{
    const Files wanted = importedBy(1);
    int ended = 0;
    bool failed = true;
    for (int n = 1; failed; n += 5) {
        removeFiles();
        m_host.clearRecord();
        bool whole = true;
        Recording recording = open();
        const FailingAllocator failing(n);
        try {
            import(recording, 1);
        } catch (const std::exception&) {
            whole = false;
            ++ended;
        }
        failed = failing.failures() > 0;
        for (int trial = 0; whole && m_host.messages().empty() && trial < 9; ++trial)
            EXPECT_TRUE(m_folder.read(file(trial)) == wanted[static_cast<std::size_t>(trial)]) << n;
    }
    EXPECT_GT(ended, 0);
}

TEST(ImportThreads, AreNoMoreThanTrialsAndHoldNoMoreThanSuits)
{
    const TemporaryFolder folder;
    CtfBuilder builder;
    builder.trials = 1;
    EXPECT_EQ(importThreads(openCtf(builder.write(folder))), 1);
    builder.trials = 100;
    const int threads = importThreads(openCtf(builder.write(folder)));
    EXPECT_GE(threads, 1);
    EXPECT_LE(threads, 4);
}

TEST_F(ImportCtf, AFolderThatCannotBeWrittenToIsAnError)
{
    Recording recording = openCtf(m_builder.write(m_folder));
    m_document.SetPathName(m_folder.path("nowhere\\small.meg"));
    m_host.willAnswerNo(); // to another file for the first trial
    EXPECT_THROW(importCtf(recording, m_dataset, m_document), CtfError);
}

TEST_F(ImportCtf, ASampleFileThatBreaksOffMeanwhileIsAnError)
{
    Recording recording = openCtf(m_builder.write(m_folder));
    std::filesystem::resize_file(m_folder.native("small.ds\\small.meg4"), 8 + 112);
    m_document.SetPathName(m_folder.path("small.meg"));
    EXPECT_THROW(importCtf(recording, m_dataset, m_document), CtfError);
}

} // namespace
} // namespace megset::ctf::importCtf_test
