// Trials of EEG-like channels made from virtual ones.

#include "tests/import/importSession.h"
#include "tests/kit/FailingAllocator.h"

#include <climits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileA00Maker_test {
namespace {

using ::testing::ElementsAre;

class VirtualWaves : public ::testing::Test
{
protected:
    VirtualWaves()
    {
        face.m_strFaceName = "beam";
        face.m_nTotalSample = 4;
        for (int i = 0; i < 3; ++i) {
            CVirtChnlWavezk wave;
            wave.m_strChannelName = CString::formatted("V%d", i);
            wave.m_strChannelNameRaw = CString::formatted("raw%d", i);
            wave.m_nMegListID = 40 + i;
            wave.m_dSns2dX = 0.5 + i;
            wave.m_dSns2dY = 1.5 + i;
            wave.m_dPosition = {1.0 + i, 2.0, 3.0};
            wave.m_dDirection = {0.0, 0.0, 1.0};
            wave.m_aWave = {100.0 * i, 100.0 * i + 1.0, 100.0 * i + 2.0, 100.0 * i + 3.0};
            face.addVirtChnlWave(&wave);
        }
    }
    std::unique_ptr<CMDTrialzk> make(int kind = 1, bool shownOnly = false)
    {
        return std::unique_ptr<CMDTrialzk>(data.makeTrial4VirtSns2xEeg(nullptr, &face, kind, false, 0, 0, shownOnly));
    }
    std::unique_ptr<CMDTrialzk> makeRange(std::int64_t from, std::int64_t to)
    {
        return std::unique_ptr<CMDTrialzk>(data.makeTrial4VirtSns2xEeg(nullptr, &face, 1, true, from, to, false));
    }

    ScriptedHost host;
    CMEGDatazk data;
    CFaceVirtChnlWavezk face;
};

TEST_F(VirtualWaves, BecomeATrialOfElectrodes)
{
    const auto trial = make();
    ASSERT_NE(trial, nullptr);
    EXPECT_EQ(trial->m_nVirtualTrial, 1);
    EXPECT_EQ(trial->m_nTrialKind, 8);
    ASSERT_EQ(trial->getTotalChannel(), 3);
    CMDChannelzk& channel = *trial->getChannel(2);
    EXPECT_EQ(wave(channel), face.m_aVirtChnl[2]->m_aWave);
    EXPECT_EQ(backup(channel), face.m_aVirtChnl[2]->m_aWave);
    EXPECT_EQ(channel.m_strChannelName, "V2");
    EXPECT_EQ(channel.m_strChannelNameRaw, "raw2");
    EXPECT_EQ(channel.m_nMegListID, 42);
    EXPECT_EQ(channel.m_dSns2dX, 2.5);
    EXPECT_EQ(channel.m_dSns2dY, 3.5);
    EXPECT_EQ(channel.m_nGeomType, 2);
    const CEEGelectrodezk* electrode = channel.getEegElectrode(0);
    ASSERT_NE(electrode, nullptr);
    EXPECT_EQ(electrode->m_dElectrodePos[0], 3.0);
    EXPECT_EQ(electrode->m_dElectrodePos[2], 3.0);
    EXPECT_EQ(electrode->m_dElectrodeDir[2], 1.0);
    host.expectNoMessages();
}

TEST_F(VirtualWaves, HaveTypeAndTypeNameByKind)
{
    struct Expected
    {
        int kind;
        const char* name;
        int type;
    };
    for (const Expected& e :
         {Expected{1, "Vc2iEEG_beam", 340}, Expected{2, "Vc2EEG_beam", 302}, Expected{3, "Vc2EEG_beam", 350},
          Expected{0, "Vc2EEG_beam", 350}, Expected{INT_MIN, "Vc2EEG_beam", 350}}) {
        const auto trial = make(e.kind);
        ASSERT_NE(trial, nullptr);
        EXPECT_EQ(trial->getChannel(1)->m_strChannelTypeName, CString(e.name)) << e.kind;
        EXPECT_EQ(trial->getChannType(1), e.type) << e.kind;
    }
}

TEST_F(VirtualWaves, AreTakenOverARangeOfSamplesInside)
{
    const auto trial = makeRange(1, 2);
    ASSERT_NE(trial, nullptr);
    EXPECT_THAT(wave(*trial->getChannel(1)), ElementsAre(101.0, 102.0));
    EXPECT_NE(makeRange(0, 3), nullptr);
    EXPECT_NE(makeRange(3, 3), nullptr);
    EXPECT_EQ(makeRange(-1, 2), nullptr);
    EXPECT_EQ(makeRange(0, 4), nullptr);
    EXPECT_EQ(makeRange(4, 4), nullptr);
    EXPECT_EQ(makeRange(2, 1), nullptr);
    EXPECT_EQ(makeRange(std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()), nullptr);
    host.expectNoMessages();
}

TEST_F(VirtualWaves, ThatAreNotShownCanBeLeftOut)
{
    face.m_aVirtChnl[1]->m_bShow = 0;
    const auto trial = make(1, true);
    ASSERT_NE(trial, nullptr);
    ASSERT_EQ(trial->getTotalChannel(), 2);
    EXPECT_EQ(trial->getChannel(1)->m_strChannelName, "V2");
    EXPECT_EQ(make(1, false)->getTotalChannel(), 3);
    face.m_aVirtChnl[0]->m_bShow = 0;
    face.m_aVirtChnl[2]->m_bShow = 0;
    EXPECT_EQ(make(1, true), nullptr);
}

TEST_F(VirtualWaves, WithoutTheFacesSamplesAreLeftOut)
{
    face.m_aVirtChnl[0]->m_aWave.pop_back();
    face.m_aVirtChnl.SetAt(1, nullptr);
    const auto trial = make();
    ASSERT_NE(trial, nullptr);
    ASSERT_EQ(trial->getTotalChannel(), 1);
    EXPECT_EQ(trial->getChannel(0)->m_strChannelName, "V2");
}

TEST_F(VirtualWaves, OfNoFaceChannelOrSampleMakeNoTrial)
{
    EXPECT_EQ(data.makeTrial4VirtSns2xEeg(nullptr, nullptr, 1, false, 0, 0, false), nullptr);
    face.m_aVirtChnl.RemoveAll();
    EXPECT_EQ(make(), nullptr);
    face = {};
    EXPECT_EQ(make(), nullptr);
    host.expectNoMessages();
}

TEST_F(VirtualWaves, WithATargetMakeASessionOfTheirOwn)
{
    CMEGDatazk target;
    target.m_recordInfo.m_dRecSampleRate = 600.0;
    target.m_recordInfo.m_nBasicWordA = 5;
    target.m_recordInfo.m_nBasicWordE = 6;
    // Also where there is no wave.
    EXPECT_EQ(data.makeTrial4VirtSns2xEeg(&target, nullptr, 1, false, 0, 0, false), nullptr);
    EXPECT_EQ(data.m_recordInfo.m_dRecSampleRate, 600.0);
    EXPECT_EQ(data.m_recordInfo.m_nBasicWordA, 1);
    EXPECT_EQ(data.m_recordInfo.m_nBasicWordE, 0);
    EXPECT_EQ(data.m_strSessionName, "VirtualWaveform");
    EXPECT_EQ(target.m_recordInfo.m_nBasicWordA, 5);
    EXPECT_EQ(target.m_strSessionName, "Unknown");
}

TEST_F(VirtualWaves, WithoutATargetLeaveTheSessionAsItIs)
{
    data.m_recordInfo.m_nBasicWordE = 6;
    EXPECT_NE(make(), nullptr);
    EXPECT_EQ(data.m_recordInfo.m_nBasicWordE, 6);
    EXPECT_EQ(data.m_strSessionName, "Unknown");
}

TEST_F(VirtualWaves, WithoutMemoryMakeNoTrialAndSaySo)
{
    bool sawElectrode = false;
    const std::int64_t failures = forEachAllocationFailure([&] {
        host.clearRecord();
        const auto trial = make();
        if (trial != nullptr) {
            host.expectNoMessages();
            return;
        }
        ASSERT_FALSE(host.messages().empty());
        const CString last = host.messages().back();
        EXPECT_TRUE(last == "Not enough memory?" || last == "Is there enough memory?!") << last;
        sawElectrode = sawElectrode || last == "Is there enough memory?!";
    });
    EXPECT_GT(failures, 8);
    EXPECT_TRUE(sawElectrode);
}

} // namespace
} // namespace megset::CMEGData9FileA00Maker_test
