#pragma once
// An acquisition on disk, for the tests of its conversion.

#include "tests/persistence/acquisitionRecord.h"

#include "megset/platform/CDocument.h"

#include "tests/core/filedDataset.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TemporaryFolder.h"

#include <vector>

#include <gtest/gtest.h>

namespace megset::acquisitionRecord {

/// A recording of three trials in one folder, and a document in another.
class AcquisitionFiles : public ::testing::Test
{
protected:
    void SetUp() override
    {
        recording.makeFolder("rec");
        document.SetPathName(target.path("session.meg"));
        for (int i = 0; i < 3; ++i)
            writeTrial(i, CString::formatted("T%d", i));
    }
    CString trialFile(int i) const { return recording.path(CString::formatted("rec\\t%d.trla", i)); }
    void writeTrial(int i, const CString& name) const { writeTrial(i, namedTrial(name, samplesOf(i))); }
    void writeTrial(int i, const TrialParts& parts) const
    {
        recording.write(CString::formatted("rec\\t%d.trla", i), trial(parts).bytes());
    }
    static std::vector<std::vector<double>> samplesOf(int i)
    {
        return {channelValues(i, 0, 4), channelValues(i, 1, 4)};
    }
    // A list of so many trials and paths.
    Parts parts(int total = 3, int current = 0, int paths = 3) const
    {
        Parts made;
        made.trials.total = total;
        made.trials.current = current;
        made.trials.session = "S";
        made.trials.folder = "D:\\rec\\";
        made.trials.presence = 1;
        for (int i = 0; i < paths; ++i)
            made.trials.paths.push_back(trialFile(i));
        return made;
    }
    CString writeDataset(const Parts& made, std::int32_t number = newest) const
    {
        return recording.write("rec\\a.mega", record(number, made).bytes());
    }
    int open(const Parts& made, std::int32_t number = newest)
    {
        return dataset.openRecordMeX(writeDataset(made, number), &document);
    }
    std::vector<CString> paths() const { return {dataset.m_aTrialFilePath.begin(), dataset.m_aTrialFilePath.end()}; }
    CString written(const char* name) const { return target.path(name); }

    const TemporaryFolder recording;
    const TemporaryFolder target;
    ScriptedHost host;
    CDocument document;
    CMEGDatazk dataset;
};

} // namespace megset::acquisitionRecord
