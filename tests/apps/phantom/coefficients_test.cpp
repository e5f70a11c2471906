#include "apps/phantom/Sources.h"
#include "apps/phantom/coefficients.h"

#include <cmath>
#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::phantom::coefficients_test {

namespace {

using testing::ElementsAre;

using Field = std::function<Vector3(const Vector3&)>;

double reading(const Channel& channel, const Field& field)
{
    double sum = dot(field(channel.coils[0].position), channel.coils[0].direction);
    if (channel.coils.size() > 1)
        sum += channel.balance * dot(field(channel.coils[1].position), channel.coils[1].direction);
    return sum;
}

class Coefficients : public testing::Test
{
protected:
    /// Root of the mean square over all gradiometers, before and behind the reduction.
    struct Left
    {
        double before = 0;
        double behind = 0;
        double factor() const { return before / behind; }
    };

    const Channel& channel(int index) const { return instrument.channels[static_cast<std::size_t>(index)]; }

    const CoefficientTable& table(const std::string& type) const
    {
        for (const CoefficientTable& one : tables)
            if (one.type == type)
                return one;
        throw std::out_of_range("no table " + type);
    }

    Left reduce(const std::string& type, const Field& field) const
    {
        const CoefficientTable& used = table(type);
        Left left;
        for (std::size_t i = 0; i < used.gradiometers.size(); ++i) {
            const double before = reading(channel(used.gradiometers[i]), field);
            double behind = before;
            for (std::size_t j = 0; j < used.references.size(); ++j)
                behind -= used.weights[i][j] * reading(channel(used.references[j]), field);
            left.before += before * before;
            left.behind += behind * behind;
        }
        left.before = std::sqrt(left.before);
        left.behind = std::sqrt(left.behind);
        return left;
    }

    Instrument instrument = makeInstrument(275);
    std::vector<CoefficientTable> tables = coefficientTables(instrument);
};

Vector3 uniform(const Vector3&)
{
    return {1e-9, -2e-9, 3e-9};
}

// Fields without curl and divergence that grow linearly and with the square of the place.
Vector3 firstGradient(const Vector3& p)
{
    return 1e-9 * Vector3{p.x + 2 * p.y, 2 * p.x + p.y - p.z, -p.y - 2 * p.z};
}

Vector3 secondGradient(const Vector3& p)
{
    return 1e-9 * Vector3{p.x * p.x - p.z * p.z, 2 * p.y * p.z, p.y * p.y - p.z * p.z - 2 * p.x * p.z};
}

TEST_F(Coefficients, ThereAreThreeMeasuredTablesAndTwoDesignedOnes)
{
    std::vector<std::string> types;
    std::vector<std::size_t> references;
    for (const CoefficientTable& one : tables) {
        types.push_back(one.type);
        references.push_back(one.references.size());
        EXPECT_EQ(one.gradiometers.size(), 275U);
        EXPECT_EQ(one.weights.size(), 275U);
        for (const auto& weights : one.weights)
            EXPECT_EQ(weights.size(), one.references.size());
    }
    EXPECT_THAT(types, ElementsAre("G1BR", "G2BR", "G3BR", "G2OI", "G3OI"));
    EXPECT_THAT(references, ElementsAre(3, 8, 29, 5, 20));
    for (const char* designed : {"G2OI", "G3OI"})
        for (const int index : table(designed).references)
            EXPECT_EQ(channel(index).kind, ChannelKind::referenceGradiometer);
}

TEST_F(Coefficients, EachOrderRemovesOneMoreGradientOfTheField)
{
    EXPECT_GT(reduce("G2BR", uniform).factor(), 20);
    EXPECT_GT(reduce("G3BR", uniform).factor(), 100);
    EXPECT_LT(reduce("G1BR", firstGradient).factor(), 2);
    EXPECT_GT(reduce("G2BR", firstGradient).factor(), 20);
    EXPECT_GT(reduce("G3BR", firstGradient).factor(), 100);
    EXPECT_LT(reduce("G2BR", secondGradient).factor(), 2);
    EXPECT_GT(reduce("G3BR", secondGradient).factor(), 20);
}

TEST_F(Coefficients, OrderThreeRemovesADistantMagnetAndLeavesTheBrain)
{
    const Field magnet = [](const Vector3& point) { return fieldOfMagnet({-6, 8, 3}, {10, -20, 15}, point); };
    EXPECT_GT(reduce("G3BR", magnet).factor(), 100);

    const CurrentDipole dipole = evokedDipole(instrument);
    const Field brain = [&](const Vector3& point) {
        const CurrentDipole centred{dipole.position - instrument.sphereCentre, dipole.moment};
        const Vector3 place = instrument.head.toHead(point) - instrument.sphereCentre;
        return instrument.head.directionToDewar(fieldOutsideSphere(centred, place));
    };
    EXPECT_NEAR(reduce("G3BR", brain).factor(), 1, 0.15);
}

TEST_F(Coefficients, OrderThreeLowersEachOfTheInterferingSourcesTwentyfold)
{
    const Sources sources(instrument, {});
    const CoefficientTable& used = table("G3BR");
    ASSERT_EQ(sources.count(), 9U);
    for (std::size_t source = 3; source < sources.count(); ++source) {
        double before = 0;
        double behind = 0;
        for (std::size_t i = 0; i < used.gradiometers.size(); ++i) {
            const double whole = sources.share(source, static_cast<std::size_t>(used.gradiometers[i]));
            double rest = whole;
            for (std::size_t j = 0; j < used.references.size(); ++j)
                rest -= used.weights[i][j] * sources.share(source, static_cast<std::size_t>(used.references[j]));
            before += whole * whole;
            behind += rest * rest;
        }
        EXPECT_GT(std::sqrt(before / behind), 20) << source;
    }
}

TEST_F(Coefficients, NoiseOfTheReferencesAddsLessThanTheGradiometersOwn)
{
    const CoefficientTable& used = table("G3BR");
    for (std::size_t i = 0; i < used.gradiometers.size(); ++i) {
        double added = 0;
        for (std::size_t j = 0; j < used.references.size(); ++j) {
            const double noise = used.weights[i][j] * channel(used.references[j]).noise;
            added += noise * noise;
        }
        const double own = channel(used.gradiometers[i]).noise;
        EXPECT_LT(added, 2 * own * own);
    }
}

TEST_F(Coefficients, DesignedTablesDoNotKnowTheImbalance)
{
    // A perfect gradiometer has no reading of a uniform field; the designed weights see none in the references either,
    // so that the imbalance stays.
    EXPECT_NEAR(reduce("G3OI", uniform).factor(), 1, 1e-9);
    for (Channel& one : instrument.channels)
        one.balance = 1;
    EXPECT_GT(reduce("G3OI", firstGradient).factor(), 100);
    EXPECT_GT(reduce("G2OI", firstGradient).factor(), 20);
}

TEST_F(Coefficients, AreStoredForIntegersOfTheFile)
{
    const CoefficientTable& used = table("G3BR");
    const double expected =
        used.weights[17][3] * channel(used.gradiometers[17]).gain() / channel(used.references[3]).gain();
    EXPECT_EQ(used.stored(instrument, 17, 3), expected);
    EXPECT_NE(expected, 0);
}

} // namespace

} // namespace megset::phantom::coefficients_test
