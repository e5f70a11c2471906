#include "apps/readers/ctf/importCtf.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/CDocument.h"
#include "megset/platform/paths.h"

#include "tests/apps/readers/ctf/CtfBuilder.h"
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
    void import(Recording& recording)
    {
        m_document.SetPathName(m_folder.path("small.meg"));
        m_notes = importCtf(recording, m_dataset, m_document);
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

TEST_F(ImportCtf, AFolderThatCannotBeWrittenToIsAnError)
{
    Recording recording = openCtf(m_builder.write(m_folder));
    m_document.SetPathName(m_folder.path("nowhere\\small.meg"));
    m_host.willAnswerNo(); // to another file for either trial
    m_host.willAnswerNo();
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
