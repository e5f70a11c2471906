// The real recording of a CTF system as a dataset of the library, held against MNE-Python's samples.

#include "apps/readers/ctf/importCtf.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/CDocument.h"

#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TemporaryFolder.h"
#include "tests/kit/npy.h"
#include "tests/kit/realData.h"

#include <algorithm>
#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::ctf::ctfImport_test {
namespace {

using testing::IsEmpty;

class RealCtfImport : public testing::Test
{
protected:
    void SetUp() override
    {
        const auto data = realDataFolder();
        if (!data)
            GTEST_SKIP() << noRealData;
        m_source = *data / "ctf";
        Recording recording = openCtf(m_source / "testdata_ctf_short_discontinuous.ds");
        m_document.SetPathName(m_folder.path("real.meg"));
        EXPECT_THAT(importCtf(recording, m_dataset, m_document), IsEmpty());
    }

    // Of MNE-Python's unit in ours.
    static double perUnit(const CMDChannelzk& channel)
    {
        if (channel.isMEGChannel())
            return 1e15;
        return channel.isEEGChannel() ? 1e6 : 1.0;
    }
    static double rootMeanSquare(const double* values, std::size_t count)
    {
        double sum = 0.0;
        for (std::size_t i = 0; i < count; ++i)
            sum += values[i] * values[i];
        return std::sqrt(sum / static_cast<double>(count));
    }

    static constexpr std::size_t samples = 1201;
    ScriptedHost m_host;
    TemporaryFolder m_folder;
    CDocument m_document;
    CMEGDatazk m_dataset;
    std::filesystem::path m_source;
};

TEST_F(RealCtfImport, AllChannelsAgree)
{
    const NpyMatrix grade0 = readNpy(m_source / "expected" / "grade0.npy");
    for (int trial = 0; trial < 2; ++trial) {
        const CMDTrialzk& from = *m_dataset.getTrialzk(trial);
        ASSERT_EQ(static_cast<std::size_t>(from.getTotalChannel()), grade0.rows);
        for (int c = 0; c < from.getTotalChannel(); ++c) {
            const CMDChannelzk& channel = *from.m_ppChannel[c];
            ASSERT_EQ(channel.m_nTotalSample, static_cast<std::int64_t>(samples));
            const double* const wanted =
                grade0.row(static_cast<std::size_t>(c)) + static_cast<std::size_t>(trial) * samples;
            for (std::size_t i = 0; i < samples; ++i)
                ASSERT_LE(std::abs(channel.m_pDataWave[i] - wanted[i] * perUnit(channel)),
                          1e-9 * std::abs(wanted[i] * perUnit(channel)))
                    << channel.m_strChannelName.toUtf8() << ", sample " << i;
        }
    }
    EXPECT_THAT(m_host.messages(), IsEmpty());
}

TEST_F(RealCtfImport, NoiseReductionOfOrder3Agrees)
{
    const NpyMatrix grade3 = readNpy(m_source / "expected" / "grade3.npy");
    for (int trial = 0; trial < 2; ++trial) {
        const CMDTrialzk& from = *m_dataset.getTrialzk(trial);
        ASSERT_EQ(m_dataset.setGradientNoiseReduction(3, true, false), 1);
        std::size_t row = 0;
        for (int c = 0; c < from.getTotalChannel(); ++c) {
            const CMDChannelzk& channel = *from.m_ppChannel[c];
            if (!channel.isMEGChannel())
                continue;
            const double* const wanted = grade3.row(row++) + static_cast<std::size_t>(trial) * samples;
            const double tolerance = 1e-6 * 1e15 * rootMeanSquare(wanted, samples);
            for (std::size_t i = 0; i < samples; ++i)
                ASSERT_NEAR(channel.m_pDataWave[i], wanted[i] * 1e15, tolerance) << channel.m_strChannelName.toUtf8();
        }
        EXPECT_EQ(row, grade3.rows);
    }
}

TEST_F(RealCtfImport, BackToOrder0AgreesWithinRounding)
{
    const CMDTrialzk& from = *m_dataset.getTrialzk(0);
    ASSERT_EQ(m_dataset.setGradientNoiseReduction(3, true, false), 1);
    m_dataset.setGradient2Non();
    int compared = 0;
    for (int c = 0; c < from.getTotalChannel(); ++c) {
        const CMDChannelzk& channel = *from.m_ppChannel[c];
        if (!channel.isMEGMeasureChannel())
            continue;
        ++compared;
        const double tolerance = 1e-9 * rootMeanSquare(channel.m_pBkData.get(), samples);
        for (std::size_t i = 0; i < samples; ++i)
            ASSERT_NEAR(channel.m_pDataWave[i], channel.m_pBkData[i], tolerance) << channel.m_strChannelName.toUtf8();
    }
    EXPECT_EQ(compared, 273);
}

TEST_F(RealCtfImport, CountsKindsAndFlags)
{
    const CMDTrialzk& from = *m_dataset.getTrialzk(1);
    int references = 0;
    int electrodes = 0;
    int triggers = 0;
    for (int c = 0; c < from.getTotalChannel(); ++c) {
        references += from.m_ppChannel[c]->isMEGReferenceChannel() ? 1 : 0;
        electrodes += from.m_ppChannel[c]->isEEGMeasureChannel() ? 1 : 0;
        triggers += from.m_ppChannel[c]->isTriggerChannel() ? 1 : 0;
    }
    EXPECT_EQ(references, 28);
    EXPECT_EQ(electrodes, 8);
    EXPECT_EQ(triggers, 3);
    EXPECT_EQ(m_dataset.getMEGRecordInfozk()->m_dRecSampleRate, 1200.0);
    EXPECT_EQ(m_dataset.m_headLocalization.m_fidHeadMsr.getTotalFound(), 3);
    EXPECT_TRUE(std::all_of(m_dataset.m_pChnlGood.get(), m_dataset.m_pChnlGood.get() + 356,
                            [](int good) { return good == 1; }));
}

} // namespace
} // namespace megset::ctf::ctfImport_test
