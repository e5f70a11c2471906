// Spectra in the files of a dataset.

#include "apps/cli/process/forEachTrial.h"
#include "tests/apps/cli/SampleDataset.h"
#include "tests/spectral/spectra.h"

#include <bit>
#include <limits>
#include <map>

#include <gtest/gtest.h>

namespace megset::cli::spectrumFiles_test {

namespace {

using Bytes = std::vector<std::byte>;

std::vector<double> awkwardValues()
{
    return {-0.0,
            0.0,
            std::numeric_limits<double>::denorm_min(),
            -std::numeric_limits<double>::max(),
            std::numeric_limits<double>::infinity(),
            std::bit_cast<double>(std::uint64_t{0x7ff8'0000'dead'beef})};
}

// The records of all spectra of a dataset, by trial, channel (-1: the trial's own) and class.
std::map<std::vector<int>, Bytes> spectraOf(const std::filesystem::path& dataset)
{
    ReadingNotes notes;
    const auto open = openDatasetToLook(dataset, notes);
    std::map<std::vector<int>, Bytes> records;
    for (int t = 0; t < open->dataset.getTotalTrial(); ++t) {
        const auto trial = readTrial(*open, t);
        for (int k = 0; k < 3; ++k) {
            if (CSpctmTrialzk* const spectrum = trial->getSpctmTrial(false, k))
                records[{t, -1, k}] = spectrumBytes(*spectrum);
            for (int c = 0; c < trial->getTotalChannel(); ++c)
                if (CSpctmChnlzk* const spectrum = trial->getChannel(c)->getSpctmChnl(false, k))
                    records[{t, c, k}] = spectrumBytes(*spectrum);
        }
    }
    return records;
}

// Opens every trial, which writes it back when the next is opened, and the dataset's file.
void saveAgain(const std::filesystem::path& dataset)
{
    ChangeArguments arguments;
    arguments.dataset = dataset.string();
    arguments.inPlace = true;
    changeDataset(arguments, [](OpenDataset& open) { forEachTrial(open, "Saving", [](CMDTrialzk&) {}); });
}

TEST(SpectraInFiles, SurviveSavingMovingOpeningAndSavingAgainByteForByte)
{
    SampleDataset sample(3, 200);
    for (int i = 0; i < 3; ++i) {
        CMDTrialzk& trial = *sample.dataset().getTrialzk(i);
        std::vector<double> values = awkwardValues();
        CSpctmChnlzk& result = *trial.getChannel(3)->getSpctmChnl(true, 2);
        result.addSpctmDataRIMA1d(values.data(), values.data(), values.data(), values.data(), 2, 3, 1, 1, 1);
        result.scaleSpctm(-1.0, 1);
        trial.getSpctmTrial(true, 2)->setSpctmTimePtFreqPt(2, 3, 4);
        sample.dataset().computTrialSpctm(&trial, false, false, false, false, 2, 2);
    }
    sample.store();
    for (const std::vector<std::string>& options : std::vector<std::vector<std::string>>{
             {"--freqs", "10:50:10"}, {"--octaves", "10:80:2", "--class", "control"}, {"--log"}}) {
        std::vector<std::string> arguments = {"spectrum", sample.path(), "--in-place"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        ASSERT_EQ(runMegset(arguments).exitCode, 0);
    }
    const auto saved = spectraOf(sample.path());
    ASSERT_EQ(saved.size(), 3U * (3 + 2 * 2 + 1)); // three classes; two of them with M1 and M2, one with E1
    for (const auto& [key, record] : saved)
        EXPECT_GT(record.size(), 200U);

    const TemporaryFolder other;
    for (const std::string& name : sample.folder().names())
        std::filesystem::rename(sample.folder().native(name), other.native(name));
    const std::filesystem::path moved = other.native("run.meg");
    EXPECT_EQ(spectraOf(moved), saved);
    saveAgain(moved);
    EXPECT_EQ(spectraOf(moved), saved);

    std::map<std::string, Bytes> files;
    for (const std::string& name : other.names())
        files[name] = other.read(name);
    saveAgain(moved);
    for (const std::string& name : other.names())
        EXPECT_TRUE(sameBytes(other.read(name), files.at(name))) << name;
}

} // namespace

} // namespace megset::cli::spectrumFiles_test
