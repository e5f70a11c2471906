// The geometry of a recording becomes a dataset on disk.

#include "tests/import/importSession.h"
#include "tests/kit/FailingAllocator.h"

#include <climits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::importTrialChannels_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ImportGeometry : public ImportSession
{
protected:
    ImportGeometry()
    {
        lists.addSensor(10, "R1");
        lists.addSensor(100, "M1");
        lists.addSensor(302, "E1");
        lists.addSensor(600, "T1");
    }
    int import(int trials, int channels)
    {
        return data.importTrialChannels(trials, channels, &lists.sensors, &lists.electrodes, &lists.sensorNames,
                                        &lists.channelNames, &doc);
    }

    RecordedGeometryLists lists;
};

TEST_F(ImportGeometry, MakesAFileForEachTrialWithChannelsAndNoSamples)
{
    EXPECT_EQ(import(3, 5), 1);
    EXPECT_THAT(folder.names(), ElementsAre("run_ImportTrial0.trl", "run_ImportTrial1.trl", "run_ImportTrial2.trl"));
    for (const int t : {0, 1, 2}) {
        const auto made = read(CString::formatted("run_ImportTrial%d.trl", t));
        EXPECT_EQ(made->m_strTrialName, CString::formatted("ImportTrial%d", t));
        EXPECT_EQ(made->m_nTrialIndex, t);
        EXPECT_EQ(made->m_nTrialKind, 1);
        EXPECT_EQ(made->m_nVirtualTrial, 0);
        ASSERT_EQ(made->getTotalChannel(), 5);
        EXPECT_EQ(made->getChannType(0), 10);
        EXPECT_EQ(made->getChannType(1), 100);
        EXPECT_EQ(made->getChannType(2), 302);
        EXPECT_EQ(made->getChannType(3), 600);
        EXPECT_EQ(made->getChannel(1)->m_strChannelNameRaw, "M1");
        EXPECT_EQ(made->getChannel(1)->m_strChannelName, "M1-w");
        EXPECT_EQ(made->getChannel(1)->getMEGSensorzk()->m_strSensorName, "M1");
        EXPECT_EQ(made->getChannel(1)->getTotalSample(), 0);
    }
    host.expectNoMessages();
}

TEST_F(ImportGeometry, TheDatasetHasItsPathsAndCountsAndItsFirstTrialOpen)
{
    data.m_nVirtualTrial = 7;
    EXPECT_EQ(import(3, 4), 1);
    EXPECT_EQ(data.m_nTotalTrial, 3);
    EXPECT_EQ(data.m_nRealTrial, 3);
    EXPECT_EQ(data.m_nVirtualTrial, 0);
    EXPECT_EQ(data.m_nCurrentTrial, 0);
    ASSERT_EQ(data.m_aTrialFilePath.GetSize(), 3);
    EXPECT_EQ(data.m_aTrialFilePath[2], folder.path("run_ImportTrial2.trl"));
    EXPECT_NE(data.getMDTrial(0), nullptr);
    EXPECT_EQ(data.getMDTrial(1), nullptr);
    EXPECT_EQ(data.m_strSessionName, "run");
    EXPECT_EQ(data.getDocument(), &doc);
    // The MEG measure channel is shown, the others are not.
    ASSERT_EQ(data.m_nChnlParamCount, 4);
    EXPECT_EQ(data.isShowChnl4Alltrials(1), 1);
    EXPECT_EQ(data.isShowChnl4Alltrials(0) + data.isShowChnl4Alltrials(2) + data.isShowChnl4Alltrials(3), 0);
}

TEST_F(ImportGeometry, ShowsItsProgress)
{
    EXPECT_EQ(import(2, 4), 1);
    const std::string title = "Importing and checking trial and channel parameters ...";
    EXPECT_THAT(host.calls(), ElementsAre("progress begin " + title + " 0..2", "progress " + title + " 0",
                                          "progress " + title + " 1", "progress end " + title));
}

TEST_F(ImportGeometry, ReplacesTheTrialsAndPathsThatWereThere)
{
    ASSERT_EQ(import(3, 4), 1);
    EXPECT_EQ(import(1, 2), 1);
    EXPECT_EQ(data.m_nTotalTrial, 1);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 1);
    EXPECT_EQ(data.getTotalChannel(0), 2);
}

TEST_F(ImportGeometry, KeepsItsFilesAwayFromThoseOfUnsavedTrialsOfTheFormerDataset)
{
    ASSERT_EQ(import(2, 4), 1);
    trial(0).m_strTrialName = "former";
    std::filesystem::remove(folder.native("run_ImportTrial0.trl"));
    host.willAnswerNo();
    data.saveAllTrials();
    ASSERT_EQ(data.getUnsavedTrials().GetSize(), 1);
    EXPECT_EQ(import(2, 4), 1);
    EXPECT_EQ(data.m_aTrialFilePath[0], folder.path("run_ImportTrial0_1.trl"));
    EXPECT_EQ(data.m_aTrialFilePath[1], folder.path("run_ImportTrial1.trl"));
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
    EXPECT_EQ(read("run_ImportTrial0.trl")->m_strTrialName, "former");
    EXPECT_EQ(read("run_ImportTrial0_1.trl")->m_strTrialName, "ImportTrial0");
}

TEST_F(ImportGeometry, CountsBelowOneGiveZeroAndAnEmptyDataset)
{
    for (const int bad : {0, -1, INT_MIN}) {
        ASSERT_EQ(data.initMEGData(2, 1, 1), 1);
        EXPECT_EQ(import(bad, 4), 0);
        EXPECT_EQ(data.m_nTotalTrial, 0);
        EXPECT_EQ(import(1, bad), 0);
    }
    EXPECT_THAT(folder.names(), IsEmpty());
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(ImportGeometry, ADocumentWithoutAFolderThatIsNotChosenEither)
{
    doc.SetPathName("");
    data.m_aTrialFilePath.Add("before.trl");
    host.willCancelFile();
    EXPECT_EQ(import(2, 4), 0);
    EXPECT_EQ(data.m_nTotalTrial, 0);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 1); // emptied behind that only
    EXPECT_THAT(host.messages(), ElementsAre("Please select a direcotry to store the  data!"));
}

TEST_F(ImportGeometry, MoreChannelsThanSensorsWaitForTheirs)
{
    EXPECT_EQ(import(1, 6), 1);
    EXPECT_EQ(channel(0, 4).m_nChannelType, -1);
    EXPECT_EQ(channel(0, 5).m_nGeomType, 0);
    EXPECT_EQ(data.initSensorBasic(0, 5, 100, true, "M9", "type", 0, nullptr, nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(channel(0, 5).m_nGeomType, 1);
    host.expectNoMessages();
}

TEST_F(ImportGeometry, MoreSensorsThanChannelsAreToldInEveryTrial)
{
    lists.addElectrode("E1", 3.0);
    EXPECT_EQ(import(2, 3), 1);
    EXPECT_THAT(host.messages(), ElementsAre("Set sensor error", "Set sensor error"));
    EXPECT_EQ(channel(0, 2).m_nChannelType, 302);
    EXPECT_EQ(channel(0, 2).getEegElectrode(0)->m_dElectrodePos[0], 3.0); // electrodes go on
}

TEST_F(ImportGeometry, ASensorWithoutNamesEndsTheSensorsOfTheTrial)
{
    lists.channelNames.RemoveAt(3);
    lists.channelNames.RemoveAt(2);
    EXPECT_EQ(import(1, 4), 1);
    EXPECT_THAT(host.messages(), ElementsAre("Set sensor error"));
    EXPECT_EQ(channel(0, 1).m_nChannelType, 100);
    EXPECT_EQ(channel(0, 2).m_nChannelType, -1);
}

TEST_F(ImportGeometry, ANullSensorIsToldAndTheNextOneIsBound)
{
    lists.sensors.SetAt(0, nullptr);
    EXPECT_EQ(import(2, 4), 1);
    EXPECT_THAT(host.messages(),
                ElementsAre("Finding recorded MEG sensor error!", "Finding recorded MEG sensor error!"));
    EXPECT_EQ(channel(0, 0).m_nChannelType, -1);
    EXPECT_EQ(channel(0, 1).m_nChannelType, 100);
}

TEST_F(ImportGeometry, ElectrodesAreBoundByRawNameAndNullOnesPassedOver)
{
    lists.electrodes.Add(nullptr);
    lists.addElectrode("elsewhere", 1.0);
    lists.addElectrode("E1", 2.0);
    EXPECT_EQ(import(2, 4), 1);
    for (const int t : {0, 1}) {
        const auto made = read(CString::formatted("run_ImportTrial%d.trl", t));
        EXPECT_EQ(made->getChannel(2)->getEegElectrode(0)->m_dElectrodePos[0], 2.0);
    }
    host.expectNoMessages();
}

TEST_F(ImportGeometry, ListsMayBeMissing)
{
    EXPECT_EQ(data.importTrialChannels(1, 2, nullptr, nullptr, nullptr, nullptr, &doc), 1);
    EXPECT_EQ(channel(0, 0).m_nChannelType, -1);
    // No channel is of a kind that is shown first.
    EXPECT_THAT(host.messages(),
                ElementsAre("No MEG measure channels, show EEG?", "No MEG/EEG measure channels, show all MEG/EEG?",
                            "No MEG/EEG channels, show all channels?"));
}

TEST_F(ImportGeometry, AFileThatCantBeWrittenLeavesFewerPathsThanTrials)
{
    block("run_ImportTrial1.trl");
    host.willAnswerNo();
    EXPECT_EQ(import(3, 4), 1);
    EXPECT_EQ(data.m_nTotalTrial, 3);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 2);
    EXPECT_EQ(data.m_nCurrentTrial, -1);
    EXPECT_THAT(host.messages(), ::testing::Contains(CString("File path and trial error!")));
    host.clearRecord();
    EXPECT_EQ(data.openTrial(2), 0);
    EXPECT_THAT(host.messages(), ElementsAre("File path and trial error!"));
}

TEST_F(ImportGeometry, WithoutMemoryForTheSlotsNothingIsWritten)
{
    data.m_aTrialFilePath.Add("before.trl");
    const FailingAllocator failing(1);
    EXPECT_EQ(import(2, 4), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Not enough memory?!"));
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 0);
    EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(ImportGeometry, WithoutMemoryForATrialTheDatasetIsEmptyWithThePathsOfWhatWasSaved)
{
    std::int64_t perTrial = 0;
    {
        const FailingAllocator counting(0);
        const CMDTrialzk probe;
        auto made = tryNew<CMDTrialzk>();
        made->allocateChannels(4);
        perTrial = counting.calls();
    }
    bool sawSecondTrial = false;
    for (std::int64_t n = 2; n < 6 * perTrial && !sawSecondTrial; ++n) {
        host.clearRecord();
        const FailingAllocator failing(n);
        if (import(2, 4) == 1)
            continue; // a sensor or what the files need has failed, which has told so
        EXPECT_EQ(data.m_nTotalTrial, 0);
        EXPECT_EQ(data.m_nCurrentTrial, -1);
        EXPECT_EQ(host.messages().back(), "Not enough memory?");
        sawSecondTrial = data.m_aTrialFilePath.GetSize() == 1;
    }
    EXPECT_TRUE(sawSecondTrial);
    EXPECT_TRUE(folder.has("run_ImportTrial0.trl"));
}

// ---- channels that are no sensors

TEST_F(ImportGeometry, SensorsAreSetUpInTheTrialsThatAreInMemory)
{
    ASSERT_EQ(import(2, 6), 1);
    int turns[] = {1, -1};
    double places[] = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0};
    double directions[] = {0.0, 0.0, 1.0, 0.0, 0.0, 1.0};
    const auto init = [&] {
        return data.initSensorBasic(77, 5, 700, true, "ADC1", "Adc", 6, turns, places, directions, nullptr, nullptr);
    };
    EXPECT_EQ(data.isShowChnl4Alltrials(5), 0);
    EXPECT_EQ(init(), 1);
    EXPECT_EQ(channel(0, 5).m_nChannelType, 700);
    EXPECT_EQ(channel(0, 5).m_nGeomType, 1);
    const CMEGSensorzk* sensor = channel(0, 5).getMEGSensorzk();
    ASSERT_NE(sensor, nullptr);
    EXPECT_EQ(sensor->m_nSnsWordC, 77);
    EXPECT_EQ(sensor->m_strSensorName, "ADC1");
    EXPECT_EQ(sensor->m_strSensorTypeName, "Adc");
    EXPECT_EQ(sensor->getTotalCoils(), 2);
    EXPECT_EQ(data.isShowChnl4Alltrials(5), 1);
    ASSERT_NE(data.getTrialzk(1), nullptr);
    EXPECT_EQ(channel(1, 5).m_nChannelType, -1); // was on disk
    EXPECT_EQ(init(), 1);
    EXPECT_EQ(channel(1, 5).m_nChannelType, 700);
    EXPECT_EQ(read("run_ImportTrial0.trl")->getChannType(5), 700);
}

TEST_F(ImportGeometry, ASensorMayBeHidden)
{
    ASSERT_EQ(import(1, 4), 1);
    ASSERT_EQ(data.isShowChnl4Alltrials(1), 1);
    EXPECT_EQ(data.initSensorBasic(0, 1, 100, false, "", "", 0, nullptr, nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(data.isShowChnl4Alltrials(1), 0);
}

TEST_F(ImportGeometry, SettingASensorUpMakesTheFlagsThatAreMissing)
{
    ASSERT_EQ(import(1, 4), 1);
    data._cleanChnlParam();
    EXPECT_EQ(data.initSensorBasic(0, 2, 120, false, "", "", 0, nullptr, nullptr, nullptr, nullptr, nullptr), 1);
    ASSERT_EQ(data.m_nChnlParamCount, 4);
    EXPECT_EQ(data.isShowChnl4Alltrials(1), 1);
    EXPECT_EQ(data.isShowChnl4Alltrials(2), 0);
}

TEST_F(ImportGeometry, AChannelThatIsNotThereIsPassedOver)
{
    ASSERT_EQ(import(1, 4), 1);
    for (const int index : {-1, 4, INT_MAX, INT_MIN})
        EXPECT_EQ(data.initSensorBasic(0, index, 120, true, "", "", 0, nullptr, nullptr, nullptr, nullptr, nullptr), 1);
    for (int c = 0; c < 4; ++c)
        EXPECT_NE(channel(0, c).m_nChannelType, 120);
    EXPECT_EQ(CMEGDatazk().initSensorBasic(0, 0, 1, true, "", "", 0, nullptr, nullptr, nullptr, nullptr, nullptr), 1);
}

} // namespace
} // namespace megset::importTrialChannels_test
