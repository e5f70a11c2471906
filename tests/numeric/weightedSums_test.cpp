#include "megset/numeric/weightedSums.h"

#include <algorithm>

#include "megset/numeric/processorPath.h"
#include "megset/numeric/weightedSumsLoops.h"
#include "tests/numeric/reference.h"

namespace megset::numeric::weightedSums_test {

namespace {

/// Signals by number, and sums that name their target and references by it.
struct Signals
{
    struct Sum
    {
        std::size_t target;
        std::vector<std::size_t> references;
        std::vector<double> weights;
        bool subtracted = false;
    };

    std::vector<std::vector<double>> rows;
    std::vector<Sum> sums;

    void run(const WeightedSumsLoops* loops)
    {
        std::vector<std::vector<std::span<const double>>> references;
        std::vector<WeightedSum> list;
        for (const Sum& sum : sums) {
            references.emplace_back();
            for (const std::size_t r : sum.references)
                references.back().emplace_back(rows[r]);
            list.push_back({rows[sum.target], references.back(), sum.weights, sum.subtracted});
        }
        loops != nullptr ? addWeightedSums(list, *loops) : addWeightedSums(list);
    }
    void runPlain()
    {
        for (const Sum& sum : sums) {
            std::vector<double>& target = rows[sum.target];
            for (std::size_t i = 0; i < target.size(); ++i) {
                double s = 0.0;
                for (std::size_t k = 0; k < sum.references.size(); ++k) {
                    const std::vector<double>& reference = rows[sum.references[k]];
                    if (i < reference.size())
                        s += reference[i] * sum.weights[k];
                }
                sum.subtracted ? target[i] -= s : target[i] += s;
            }
        }
    }
};

/// Runs the sums on every processor path that there is, and by the public function.
void expectPlainBits(const Signals& signals)
{
    Signals plain = signals;
    plain.runPlain();
    std::vector<const WeightedSumsLoops*> all{nullptr};
    for (const auto path : {ProcessorPath::Baseline, ProcessorPath::Avx2, ProcessorPath::Avx512}) {
        if (path <= currentProcessorPath())
            all.push_back(&weightedSumsLoops(path));
    }
    for (std::size_t p = 0; p < all.size(); ++p) {
        Signals ours = signals;
        ours.run(all[p]);
        for (std::size_t r = 0; r < ours.rows.size(); ++r)
            EXPECT_TRUE(sameSamples(ours.rows[r], plain.rows[r])) << "path " << p << ", row " << r;
    }
}

Signals randomSignals(std::size_t rows, std::size_t n, unsigned seed)
{
    Signals signals;
    for (std::size_t r = 0; r < rows; ++r)
        signals.rows.push_back(randomSamples(n, seed + static_cast<unsigned>(r)));
    return signals;
}

/// `count` sums into rows 5, 6, ... of references 0 to 4, all in the same order.
void addSumsOfFive(Signals& signals, std::size_t count, bool subtracted)
{
    for (std::size_t t = 0; t < count; ++t)
        signals.sums.push_back({5 + t, {0, 1, 2, 3, 4}, randomSamples(5, static_cast<unsigned>(90 + t)), subtracted});
}

} // namespace

TEST(NumericWeightedSums, AddOrTakeAwayTheSumOfProducts)
{
    Signals signals;
    signals.rows = {{1.0, 2.0}, {10.0, 20.0}, {100.0, 200.0}, {100.0, 200.0}};
    signals.sums = {{2, {0, 1}, {3.0, 0.5}, false}, {3, {0, 1}, {3.0, 0.5}, true}};
    signals.run(nullptr);
    EXPECT_EQ(signals.rows[2], (std::vector<double>{108.0, 216.0}));
    EXPECT_EQ(signals.rows[3], (std::vector<double>{92.0, 184.0}));
}

TEST(NumericWeightedSums, GiveTheBitsOfThePlainLoopAtEveryLength)
{
    for (const std::size_t n : lengths) {
        for (const std::size_t count : {1U, 3U, 4U, 5U, 9U}) {
            Signals signals = randomSignals(5 + count, n, 11);
            addSumsOfFive(signals, count, n % 2 == 0);
            expectPlainBits(signals);
        }
    }
}

TEST(NumericWeightedSums, GiveTheBitsOfThePlainLoopForAwkwardNumbers)
{
    Signals signals;
    for (unsigned r = 0; r < 12; ++r)
        signals.rows.push_back(awkwardSamples(1100, r, true));
    addSumsOfFive(signals, 7, true);
    signals.sums[2].weights = {std::nan(""), 0.0, -0.0, 1e300, std::numeric_limits<double>::infinity()};
    expectPlainBits(signals);
}

TEST(NumericWeightedSums, TakeSumsOfDifferentReferencesAndDirections)
{
    std::mt19937 random(5);
    for (unsigned round = 0; round < 20; ++round) {
        Signals signals = randomSignals(16, 300, round);
        for (int t = 0; t < 12; ++t) {
            Signals::Sum sum{random() % 16, {}, {}, random() % 2 == 0};
            for (std::size_t k = random() % 7; k > 0; --k)
                sum.references.push_back(random() % 16);
            sum.weights = randomSamples(sum.references.size(), static_cast<unsigned>(random()));
            for (double& weight : sum.weights)
                weight *= 1e-4;
            signals.sums.push_back(sum);
        }
        expectPlainBits(signals);
    }
}

TEST(NumericWeightedSums, SeeReferencesThatEarlierSumsHaveChanged)
{
    Signals signals;
    signals.rows = {{1.0}, {10.0}, {100.0}};
    signals.sums = {{1, {0}, {2.0}, false}, {2, {1}, {1.0}, true}};
    signals.run(nullptr);
    EXPECT_EQ(signals.rows[1][0], 12.0);
    EXPECT_EQ(signals.rows[2][0], 88.0);
    // Four in a row with equal references, of which each target is one.
    Signals ring = randomSignals(4, 2100, 3);
    for (std::size_t t = 0; t < 4; ++t)
        ring.sums.push_back({t, {0, 1, 2, 3}, {0.1, 0.2, 0.3, 0.4}, true});
    expectPlainBits(ring);
}

TEST(NumericWeightedSums, TakeATargetThatIsItsOwnReference)
{
    Signals signals = randomSignals(1, 1500, 8);
    signals.sums = {{0, {0}, {1.0}, true}};
    expectPlainBits(signals);
    signals.run(nullptr);
    EXPECT_TRUE(std::all_of(signals.rows[0].begin(), signals.rows[0].end(), [](double v) { return v == 0.0; }));
}

TEST(NumericWeightedSums, TakeOneTargetSeveralTimes)
{
    Signals signals = randomSignals(6, 1500, 8);
    for (int t = 0; t < 4; ++t)
        signals.sums.push_back({5, {0, 1, 2, 3, 4}, {1.0, 2.0, 3.0, 4.0, 5.0}, false});
    expectPlainBits(signals);
}

TEST(NumericWeightedSums, LeaveOutAReferenceFromItsEndOn)
{
    Signals signals;
    signals.rows = {{1.0, 1.0, 1.0}, {10.0}, {}, {0.0, 0.0, 0.0}};
    signals.sums = {{3, {0, 1, 2}, {1.0, 1.0, 1.0}, false}};
    signals.run(nullptr);
    EXPECT_EQ(signals.rows[3], (std::vector<double>{11.0, 1.0, 1.0}));
}

TEST(NumericWeightedSums, TakeSignalsOfAnyLengths)
{
    Signals signals;
    unsigned seed = 0;
    for (const std::size_t n : {3000U, 2048U, 1025U, 1024U, 7U, 3000U, 2500U, 3000U, 2049U, 0U, 1U})
        signals.rows.push_back(randomSamples(n, ++seed));
    addSumsOfFive(signals, 6, false);
    expectPlainBits(signals);
}

TEST(NumericWeightedSums, GoToTheEndOfEachOfSeveralTargetsOfDifferentLengths)
{
    const std::vector<std::vector<std::size_t>> sets = {
        {7, 40, 40, 40}, {40, 7, 40, 40}, {1000, 1024, 2048, 2047, 1500}, {1030, 2000, 2000, 2000, 2000}};
    for (const auto& targets : sets) {
        Signals signals = randomSignals(5, 2048, 1);
        for (const std::size_t n : targets)
            signals.rows.push_back(randomSamples(n, static_cast<unsigned>(n)));
        addSumsOfFive(signals, targets.size(), true);
        expectPlainBits(signals);
    }
}

TEST(NumericWeightedSums, ChangeNothingWithoutReferencesOrSums)
{
    Signals signals = randomSignals(1, 40, 1);
    const std::vector<double> before = signals.rows[0];
    signals.run(nullptr);
    signals.sums = {{0, {}, {}, true}};
    signals.run(nullptr);
    EXPECT_TRUE(sameSamples(signals.rows[0], before));
}

} // namespace megset::numeric::weightedSums_test
