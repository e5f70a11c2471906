// Memory that ends at any moment while trials are lent, returned, updated, moved, deleted or opened: what the user did
// to them is there afterwards, in the dataset or with the caller, and the dataset can be used.
#include "megset/persistence/CMEGData9FileA00Basic.h"

#include "megset/platform/CException.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/persistence/trialFiles.h"

#include <map>
#include <memory>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileA00BasicMemory_test {
namespace {

// Three trials of two channels with five samples in files; the second one is open, and its first sample is -3.
struct EditedSession
{
    EditedSession()
    {
        filed.folder.makeFolder("new");
        document.SetPathName(filed.folder.path("new\\study.meg"));
        edit(1, -3.0);
    }
    void edit(int trial, double first)
    {
        ASSERT_EQ(data.openTrial(trial), 1);
        data.getMDTrial(trial)->getChannel(0)->getDataWave()[0] = first;
        samples[trial][0] = first;
    }
    void rent(int trial) { held.reset(data.wkVtTrialRent(trial, false)); }
    /// The trial goes back to the dataset where that works.
    int giveBack()
    {
        const int done = data.wkVtTrialReturn(held.get());
        if (done)
            static_cast<void>(held.release());
        return done;
    }
    /// The first channel of each trial is as it should be; one that the caller holds is looked at there.
    void expectNothingLost()
    {
        EXPECT_EQ(data.saveUnsavedTrials(), 0);
        ASSERT_EQ(data.getTotalTrial(), static_cast<int>(samples.size()));
        for (const auto& [trial, expected] : samples) {
            const bool isHeld = held != nullptr && held->m_nTrialIndex == trial;
            const CMDTrialzk* found = isHeld ? held.get() : data.getTrialzk(trial);
            ASSERT_NE(found, nullptr) << trial;
            EXPECT_EQ(wave(*found->getChannel(0)), expected) << trial;
            EXPECT_EQ(found->getTotalChannel(), 2);
        }
    }
    void expectUsable()
    {
        const int total = data.getTotalTrial();
        data.setDocument(&document, false);
        EXPECT_EQ(data.addTrial(makeTrial(7, 2, 5).release(), 0), 1);
        EXPECT_EQ(data.openTrial(0), 1);
        EXPECT_EQ(data.openTrial(total), 1);
        EXPECT_EQ(data.deleteTrial4Dataset(total), 1);
        EXPECT_EQ(data.getTotalTrial(), total);
    }

    FiledDataset filed{3, 2, 5};
    CMEGDatazk& data = filed.data;
    CDocument document;
    std::unique_ptr<CMDTrialzk> held; ///< by the caller
    std::map<int, std::vector<double>> samples = {
        {0, channelValues(0, 0, 5)}, {1, channelValues(1, 0, 5)}, {2, channelValues(2, 0, 5)}};
};

// One allocation fails, or all from one on.
class ShortOfMemory : public ::testing::TestWithParam<FailingAllocator::Failing>
{
protected:
    /// Runs `prepare(session)` with memory and `operation(session)` without. The number of moments at which it ended.
    template <class Prepare, class Operation>
    std::int64_t forEachMoment(Prepare prepare, Operation operation)
    {
        return forEachAllocationFailure(
            [&] {
                const ScriptedHost host; // nothing is asked
                const auto session = prepared(prepare);
                try {
                    operation(*session);
                } catch (const CException&) {
                    // A channel without memory leaves the reader in the middle of the record.
                }
                const FailingAllocator none(0);
                session->expectNothingLost();
                session->expectUsable();
            },
            GetParam());
    }
    template <class Operation>
    std::int64_t forEachMoment(Operation operation)
    {
        return forEachMoment([](EditedSession&) {}, operation);
    }

private:
    template <class Prepare>
    static std::unique_ptr<EditedSession> prepared(Prepare prepare)
    {
        const FailingAllocator none(0);
        auto session = std::make_unique<EditedSession>();
        prepare(*session);
        return session;
    }
};

INSTANTIATE_TEST_SUITE_P(Once, ShortOfMemory, ::testing::Values(FailingAllocator::Failing::Once));
INSTANTIATE_TEST_SUITE_P(FromThenOn, ShortOfMemory, ::testing::Values(FailingAllocator::Failing::FromThenOn));

TEST_P(ShortOfMemory, OpeningAnotherTrialLosesNone)
{
    EXPECT_GT(forEachMoment([](EditedSession& session) { session.data.openTrial(2); }), 5);
}

TEST_P(ShortOfMemory, LendingTheTrialInMemoryLosesNone)
{
    forEachMoment([](EditedSession& session) { session.rent(1); });
}

TEST_P(ShortOfMemory, LendingATrialOnDiskLosesNone)
{
    EXPECT_GT(forEachMoment([](EditedSession& session) { session.rent(2); }), 5);
}

TEST_P(ShortOfMemory, AReturnedTrialIsTheDatasetsOrStaysTheCallers)
{
    const auto lendAndEdit = [](EditedSession& session) {
        session.rent(1);
        ASSERT_NE(session.held, nullptr);
        session.held->getChannel(0)->getDataWave()[0] = -4.0;
        session.samples[1][0] = -4.0;
        session.edit(2, -5.0);
    };
    forEachMoment(lendAndEdit, [](EditedSession& session) {
        const int done = session.giveBack();
        const FailingAllocator none(0);
        EXPECT_EQ(session.held == nullptr, done == 1);
    });
}

TEST_P(ShortOfMemory, AnUpdateKeepsTheDetachedTrialOrBringsItsSamples)
{
    static const std::vector<double> block = {0.5,  1.5,  2.5,  3.5,  4.5,  5.5,  6.5,
                                              -0.5, -1.5, -2.5, -3.5, -4.5, -5.5, -6.5};
    const auto detach = [](EditedSession& session) {
        session.held.reset(session.data.virtualTrialInit(nullptr, 42, "avg", true));
        ASSERT_NE(session.held, nullptr);
        session.samples[3] = {};
    };
    const auto update = [](EditedSession& session) {
        const int done = session.data.virtualTrialUpdate(session.held.get(), 2, 7, block.data());
        const FailingAllocator none(0);
        if (done == 0) {
            // It can be had once more; until then the file has what it had.
            EXPECT_EQ(session.data.getTrialzk(3)->getTotalSample(0), 0);
            EXPECT_EQ(session.data.virtualTrialUpdate(session.held.get(), 2, 7, block.data()), 1);
        }
        session.samples[3] = {block.begin(), block.begin() + 7};
        EXPECT_EQ(session.giveBack(), 1);
    };
    EXPECT_GT(forEachMoment(detach, update), 1);
}

TEST_P(ShortOfMemory, AMoveLosesNeitherEditsNorFiles)
{
    EXPECT_GT(forEachMoment([](EditedSession& session) { session.data.moveTrlFile2DocFold(&session.document); }), 5);
}

// The trial in memory is the first to go, and has its new file when the next one can't be opened.
TEST_P(ShortOfMemory, AMoveThatEndsBehindTheTrialInMemoryKeepsItsEdits)
{
    EXPECT_GT(forEachMoment([](EditedSession& session) { session.edit(0, -6.0); },
                            [](EditedSession& session) { session.data.moveTrlFile2DocFold(&session.document); }),
              5);
}

TEST_P(ShortOfMemory, ADeletionTakesItsTrialOrNone)
{
    const auto deleteFirst = [](EditedSession& session) {
        const int done = session.data.deleteTrial4Dataset(0);
        if (done == 0 && session.data.getTotalTrial() == 3)
            return;
        session.samples = {{0, session.samples[1]}, {1, session.samples[2]}};
    };
    EXPECT_GT(forEachMoment([&](EditedSession& session) {
                  try {
                      deleteFirst(session);
                  } catch (const CException&) {
                      // From opening the trial that is current then: the other one is gone already.
                      session.samples = {{0, session.samples[1]}, {1, session.samples[2]}};
                      throw;
                  }
              }),
              5);
}

TEST_P(ShortOfMemory, MendingPathsNeedsNone)
{
    const auto carryAway = [](EditedSession& session) {
        session.data.saveAllTrials();
        for (int i = 0; i < 3; ++i) {
            const CString name = FiledDataset::name(i);
            std::filesystem::rename(session.filed.folder.native(name), session.filed.folder.native("new\\" + name));
        }
    };
    EXPECT_EQ(
        forEachMoment(carryAway,
                      [](EditedSession& session) { EXPECT_EQ(session.data.updateTrlPath4Doc(&session.document), 1); }),
        0);
}

TEST_P(ShortOfMemory, SavingNeedsNone)
{
    EXPECT_EQ(forEachMoment([](EditedSession& session) { EXPECT_EQ(session.data.saveAllTrials(), 1); }), 0);
}

TEST_P(ShortOfMemory, AFileThatIsAddedLeavesTheOthers)
{
    const auto put = [](EditedSession& session) {
        CString file = session.filed.folder.path("new\\extra.trl");
        EXPECT_EQ(makeTrial(9, 2, 5)->saveTrialData(file, nullptr, "", true), 1);
    };
    forEachMoment(put, [](EditedSession& session) {
        ScriptedHost user;
        user.willChooseFile(session.filed.folder.path("new\\extra.trl"));
        user.willAnswerNo("Add the Trial as Virtual (e.g. averaged)?");
        user.willAnswerNo("Add to the same fold with the dataset file?");
        try {
            session.data.addNewTrial2Dataset();
        } catch (const CException&) {
        }
        if (user.questions().empty()) { // uses the answers up
            user.messageBox("Add the Trial as Virtual (e.g. averaged)?", MB_YESNO);
            user.messageBox("Add to the same fold with the dataset file?", MB_YESNO);
        }
        if (session.data.getTotalTrial() == 4)
            session.samples[3] = channelValues(9, 0, 5);
    });
}

} // namespace
} // namespace megset::CMEGData9FileA00BasicMemory_test
