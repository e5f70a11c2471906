// Random montages, of everything that a list may hold, against the loops that define them.

#include "megset/processing/CMDTrial3Montage.h"

#include "tests/kit/ScriptedHost.h"
#include "tests/numeric/reference.h"
#include "tests/processing/montageTrial.h"

#include <algorithm>
#include <optional>
#include <random>

#include <gtest/gtest.h>

namespace megset::randomReferences_test {
namespace {

/// An operator of a list; none is a null one.
using Operator = std::optional<CMtgChnlOperatorzk>;

std::vector<Samples> randomChannels(int channels, std::mt19937& random)
{
    std::vector<Samples> x;
    for (int i = 0; i < channels; ++i)
        x.push_back(numeric::randomSamples(1 + random() % 700, static_cast<unsigned>(random())));
    return x;
}

/// Working samples `x` and raw samples `raw` of lengths of their own; a channel of no raw samples lacks their array.
void fillBoth(CMDTrialzk& trial, const std::vector<Samples>& x, const std::vector<Samples>& raw)
{
    fillTrial(trial, x);
    for (std::size_t i = 0; i < x.size(); ++i) {
        CMDChannelzk& channel = *trial.getChannel(static_cast<int>(i));
        ASSERT_EQ(channel.initDataBk(std::ssize(x[i]), std::ssize(raw[i]), true), 1);
        std::copy(x[i].begin(), x[i].end(), channel.getDataWave());
        std::copy(raw[i].begin(), raw[i].end(), channel.getBkData());
    }
}

bool isIn(int id, const std::vector<Samples>& x)
{
    return id >= 0 && id < static_cast<int>(x.size());
}

void addFirst(Samples& to, const Samples& reference, double sign)
{
    for (std::size_t i = 0; i < std::min(to.size(), reference.size()); ++i)
        to[i] += sign * reference[i];
}

// ---- common references

/// The operations sample by sample, as they are told.
struct PlainCommon
{
    std::vector<Samples> x;
    std::vector<Samples> raw;
    std::vector<int> list;
    std::vector<Operator> operators;
    double divisor = 0.0;
    int current = 0;

    const Samples& samplesOf(const std::vector<Samples>& store, const Operator& made) const
    {
        static const Samples none;
        const int id = made->m_nMtgChnlID == -1 ? current : made->m_nMtgChnlID;
        return isIn(id, store) ? store[static_cast<std::size_t>(id)] : none;
    }
    std::size_t longest(const std::vector<Samples>& store) const
    {
        std::size_t length = 0;
        for (const Operator& made : operators)
            if (made)
                length = std::max(length, samplesOf(store, made).size());
        return length;
    }
    Samples weightedSum(const std::vector<Samples>& store) const
    {
        Samples sum(longest(store), 0.0);
        for (const Operator& made : operators)
            for (std::size_t i = 0; made && i < samplesOf(store, made).size(); ++i)
                sum[i] += samplesOf(store, made)[i] * made->m_dMtgWeight;
        if (divisor > 0.0)
            for (double& value : sum)
                value /= divisor;
        return sum;
    }
    void apply(std::vector<Samples>& store, double sign) const
    {
        const bool isLive = operators.size() == 1;
        const Samples sum = isLive ? Samples() : weightedSum(store);
        for (const int id : list)
            if (isIn(id, store))
                addFirst(store[static_cast<std::size_t>(id)], isLive ? samplesOf(store, operators[0]) : sum, sign);
    }
    bool canBeDone() const { return longest(x) > 0; }
    void subtract() { apply(x, -1.0); }
    void reverse(bool backupToo)
    {
        if (backupToo && longest(x) > 0 && longest(raw) > 0) {
            apply(x, 1.0);
            apply(raw, 1.0);
        }
        apply(x, 1.0);
    }
};

TEST(RandomReferences, InCommonWithOrWithoutTheBackupAreThoseOfPlainLoopsToTheBit)
{
    const ScriptedHost host;
    std::mt19937 random(17);
    int done = 0;
    for (int run = 0; run < 200; ++run) {
        const int channels = 2 + static_cast<int>(random() % 9);
        PlainCommon plain;
        plain.x = randomChannels(channels, random);
        plain.raw = randomChannels(channels, random);
        const auto anyId = [&] { return static_cast<int>(random() % static_cast<unsigned>(channels + 4)) - 2; };
        for (int i = 0; i <= channels; ++i)
            plain.list.push_back(anyId());
        for (int i = static_cast<int>(random() % 6); i >= 0; --i)
            plain.operators.push_back(random() % 7 == 0 ? Operator() : reference(anyId(), 0.07 * (run % 31) - 0.5));
        plain.divisor = run % 3 == 0 ? -1.0 : 0.3 * run;
        plain.current = static_cast<int>(random() % static_cast<unsigned>(channels));
        const int backupToo = static_cast<int>(random() % 2);

        CMDTrialzk trial;
        fillBoth(trial, plain.x, plain.raw);
        trial.setCurrentChannel(plain.current);
        listChannels(trial, plain.list);
        setReferences(trial, {}, plain.divisor, backupToo);
        for (const Operator& made : plain.operators)
            trial.m_pMontageCr->m_aMtgOperators.Add(made ? std::make_unique<CMtgChnlOperatorzk>(*made) : nullptr);

        ASSERT_EQ(trial.doCommonRefSubstractW(), plain.canBeDone() ? 1 : 0) << run;
        EXPECT_EQ(trial.m_bMontageCrDone, plain.canBeDone() ? 1 : 0);
        if (plain.canBeDone())
            plain.subtract();
        EXPECT_EQ(waves(trial), plain.x) << run;
        ASSERT_EQ(trial.reverseMontageCrW(), plain.canBeDone() ? 1 : 0) << run;
        if (plain.canBeDone()) {
            plain.reverse(backupToo != 0);
            ++done;
        }
        EXPECT_EQ(waves(trial), plain.x) << run;
        EXPECT_EQ(backups(trial), plain.raw) << run;
        EXPECT_EQ(trial.m_bMontageCrDone, 0);
    }
    EXPECT_GT(done, 150);
    host.expectNoMessages();
}

// ---- individual references

struct PlainUnit
{
    int target = 0;
    std::string targetName;
    std::vector<Operator> operators;
    double divisor = 0.0;
};

/// The same for a list of units; the channels' names are "C0", "C1" and so on, one figure each.
struct PlainIndividual
{
    std::vector<Samples> x;
    std::vector<Samples> raw;
    std::vector<PlainUnit> units;

    int find(const std::string& name) const
    {
        for (int i = 0; i < static_cast<int>(x.size()); ++i)
            if (("C" + std::to_string(i)).find(name) != std::string::npos)
                return i;
        return -1;
    }
    int idOf(int id, const std::string& name, bool byName) const
    {
        if (isIn(id, x))
            return id;
        return byName ? find(name) : -1;
    }
    int idOf(const CMtgChnlOperatorzk& made, bool byName) const
    {
        return idOf(made.m_nMtgChnlID, made.m_strMtgChnlName.toUtf8(), byName);
    }
    // The largest number of operators that count, and the longest backup. IDs found by name are stored.
    std::pair<int, std::size_t> survey(bool byName)
    {
        int most = 0;
        std::size_t longest = 0;
        for (PlainUnit& unit : units) {
            int count = 0;
            for (Operator& made : unit.operators) {
                const int id = made ? idOf(*made, byName) : -1;
                count += !made || id >= 0 ? 1 : 0;
                if (id < 0)
                    continue;
                made->m_nMtgChnlID = id;
                longest = std::max(longest, raw[static_cast<std::size_t>(id)].size());
            }
            most = std::max(most, count);
        }
        return {most, longest};
    }
    const Samples* backupOf(const Operator& made, bool byName) const
    {
        const int id = made ? idOf(*made, byName) : -1;
        return id >= 0 && !raw[static_cast<std::size_t>(id)].empty() ? &raw[static_cast<std::size_t>(id)] : nullptr;
    }
    bool referenceOf(const PlainUnit& unit, bool byName, std::size_t longest, Samples& sum) const
    {
        if (unit.operators.size() == 1) {
            const Samples* single = backupOf(unit.operators[0], byName);
            sum = single != nullptr ? *single : Samples();
            return single != nullptr;
        }
        sum.assign(longest, 0.0);
        for (const Operator& made : unit.operators)
            if (const Samples* from = backupOf(made, byName))
                for (std::size_t i = 0; i < from->size(); ++i)
                    sum[i] += (*from)[i] * made->m_dMtgWeight;
        if (unit.divisor > 0.0)
            for (double& value : sum)
                value /= unit.divisor;
        return true;
    }
    int run(double sign, bool byName)
    {
        const auto [most, longest] = survey(byName);
        if (most < 2 || longest < 1)
            return 0;
        for (const PlainUnit& unit : units) {
            Samples sum;
            const int target = idOf(unit.target, unit.targetName, byName);
            if (!referenceOf(unit, byName, longest, sum) || target < 0)
                continue;
            const auto at = static_cast<std::size_t>(target);
            if (!raw[at].empty())
                x[at] = raw[at];
            addFirst(x[at], sum, sign);
        }
        return 1;
    }
};

CMtgUnit4IndividualRefzk made(const PlainUnit& plain)
{
    CMtgUnit4IndividualRefzk unit = unitOf(plain.target, {}, plain.divisor, plain.targetName);
    for (const Operator& each : plain.operators)
        unit.m_aMtgRefOperators.Add(each ? std::make_unique<CMtgChnlOperatorzk>(*each) : nullptr);
    return unit;
}

TEST(RandomReferences, OfEachTargetFoundByNumberOrByNameAreThoseOfPlainLoopsToTheBit)
{
    const ScriptedHost host;
    std::mt19937 random(23);
    int done = 0;
    for (int run = 0; run < 300; ++run) {
        const int channels = 3 + static_cast<int>(random() % 7);
        PlainIndividual plain;
        plain.x = randomChannels(channels, random);
        plain.raw = randomChannels(channels, random);
        if (random() % 3 == 0)
            plain.raw[random() % plain.raw.size()].clear();
        const auto anyId = [&] { return static_cast<int>(random() % static_cast<unsigned>(channels + 4)) - 2; };
        const auto anyName = [&] { return random() % 4 == 0 ? "nobody" : "C" + std::to_string(random() % 10); };
        for (int k = static_cast<int>(random() % 4); k >= 0; --k) {
            PlainUnit unit{anyId(), anyName(), {}, run % 4 == 0 ? 0.0 : 0.7 * (run % 13) - 1.0};
            for (int i = static_cast<int>(random() % 4); i >= 0; --i)
                unit.operators.push_back(random() % 8 == 0 ? Operator()
                                                           : reference(anyId(), 0.03 * (run % 50) - 0.4, anyName()));
            plain.units.push_back(unit);
        }
        CMDTrialzk trial;
        fillBoth(trial, plain.x, plain.raw);
        for (const PlainUnit& each : plain.units) {
            const CMtgUnit4IndividualRefzk unit = made(each);
            ASSERT_EQ(trial.addCopyMuIr(&unit), 1);
        }
        const int expected = plain.run(-1.0, true);
        done += expected;
        ASSERT_EQ(trial.doIndividualRefSubstract(), expected) << run;
        EXPECT_EQ(waves(trial), plain.x) << run;
        EXPECT_EQ(trial.m_bMontageIrDone, expected);
        for (std::size_t k = 0; k < plain.units.size(); ++k)
            EXPECT_EQ(*trial.m_aMontageIr[static_cast<int>(k)], made(plain.units[k])) << run;
        ASSERT_EQ(trial.reverseMontageIr(), plain.run(1.0, false)) << run;
        EXPECT_EQ(waves(trial), plain.x) << run;
        EXPECT_EQ(backups(trial), plain.raw) << run;
    }
    EXPECT_GT(done, 200);
    host.expectNoMessages();
}

} // namespace
} // namespace megset::randomReferences_test
