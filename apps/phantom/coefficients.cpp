#include "apps/phantom/coefficients.h"
#include "apps/phantom/Sources.h"
#include "apps/phantom/portable.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace megset::phantom {

namespace {

using Row = std::vector<double>;

struct Magnet
{
    Vector3 position;
    Vector3 moment;
};

// Magnets in all directions, along each axis, with a field of 3 nT amid the references.
std::vector<Magnet> magnetsAround()
{
    constexpr int places = 48;
    constexpr double goldenTurn = 0.6180339887498949;
    constexpr double distances[] = {5, 7, 9, 12};
    constexpr double field = 3e-9;
    std::vector<Magnet> magnets;
    for (int i = 0; i < places; ++i) {
        const double height = 1 - (2 * i + 1.0) / places;
        const double width = std::sqrt(1 - height * height);
        const double distance = distances[i % 4];
        const Vector3 position =
            distance * Vector3{width * cosineOfTurns(i * goldenTurn), width * sineOfTurns(i * goldenTurn), height};
        const double moment = field * distance * distance * distance * 1e7;
        for (const Vector3& axis : {Vector3{1, 0, 0}, Vector3{0, 1, 0}, Vector3{0, 0, 1}})
            magnets.push_back({position, moment * axis});
    }
    return magnets;
}

/// What the magnets do to a channel.
Row readings(const Channel& channel, const std::vector<Magnet>& magnets)
{
    Row row;
    for (const Magnet& magnet : magnets)
        row.push_back(magnetField(channel, magnet.position, magnet.moment));
    return row;
}

double product(const Row& a, const Row& b)
{
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        sum += a[i] * b[i];
    return sum;
}

/// Least squares by the normal equations, whose matrix is the same for all gradiometers: factored once (Cholesky).
class NormalEquations
{
public:
    /// `rows` are the readings of the references, `noise` their noise over the whole measurement.
    NormalEquations(std::vector<Row> rows, const Row& noise) : m_rows(std::move(rows))
    {
        const std::size_t n = m_rows.size();
        m_factor.assign(n, Row(n));
        for (std::size_t i = 0; i < n; ++i)
            for (std::size_t j = 0; j <= i; ++j) {
                double sum = product(m_rows[i], m_rows[j]) + (i == j ? noise[i] * noise[i] : 0);
                for (std::size_t k = 0; k < j; ++k)
                    sum -= m_factor[i][k] * m_factor[j][k];
                m_factor[i][j] = i == j ? std::sqrt(sum) : sum / m_factor[j][j];
            }
    }

    Row weightsOf(const Row& target) const
    {
        const std::size_t n = m_rows.size();
        Row weights(n);
        for (std::size_t i = 0; i < n; ++i) {
            double sum = product(m_rows[i], target);
            for (std::size_t k = 0; k < i; ++k)
                sum -= m_factor[i][k] * weights[k];
            weights[i] = sum / m_factor[i][i];
        }
        for (std::size_t i = n; i-- > 0;) {
            double sum = weights[i];
            for (std::size_t k = i + 1; k < n; ++k)
                sum -= m_factor[k][i] * weights[k];
            weights[i] = sum / m_factor[i][i];
        }
        return weights;
    }

private:
    std::vector<Row> m_rows;
    std::vector<Row> m_factor;
};

struct Order
{
    const char* type;
    bool asDesigned; ///< for gradiometers in perfect balance, which need no magnetometers
    /// How the names of the references begin.
    std::vector<std::string_view> references;
};

std::vector<Order> orders()
{
    return {{"G1BR", false, {"BG"}},
            {"G2BR", false, {"BG", "G"}},
            {"G3BR", false, {"BG", "BP", "BR", "G", "P", "Q", "R"}},
            {"G2OI", true, {"G"}},
            {"G3OI", true, {"G", "P", "Q", "R"}}};
}

std::vector<int> referencesOf(const Instrument& instrument, const Order& order)
{
    std::vector<int> indices;
    for (std::size_t i = 0; i < instrument.channels.size(); ++i) {
        const Channel& channel = instrument.channels[i];
        const bool isReference =
            channel.kind == ChannelKind::referenceMagnetometer || channel.kind == ChannelKind::referenceGradiometer;
        const auto begins = [&](std::string_view begin) { return channel.name.starts_with(begin); };
        if (isReference && std::any_of(order.references.begin(), order.references.end(), begins))
            indices.push_back(static_cast<int>(i));
    }
    return indices;
}

CoefficientTable tableOf(const Instrument& instrument, const Order& order, const std::vector<Magnet>& magnets)
{
    // How much of the references' noise counts against what is left of the magnets. It keeps the weights small: with
    // it, order 3 leaves 1/270 of the phantom's interference, and raises the noise of a gradiometer by a fourth.
    constexpr double noiseWeight = 1000;
    CoefficientTable table;
    table.type = order.type;
    table.references = referencesOf(instrument, order);
    table.gradiometers = instrument.ofKind(ChannelKind::gradiometer);
    std::vector<Row> rows;
    Row noise;
    for (const int index : table.references) {
        const Channel& channel = instrument.channels[static_cast<std::size_t>(index)];
        rows.push_back(readings(channel, magnets));
        noise.push_back(noiseWeight * channel.noise);
    }
    const NormalEquations equations(std::move(rows), noise);
    for (const int index : table.gradiometers) {
        Channel channel = instrument.channels[static_cast<std::size_t>(index)];
        if (order.asDesigned)
            channel.balance = 1;
        table.weights.push_back(equations.weightsOf(readings(channel, magnets)));
    }
    return table;
}

} // namespace

double CoefficientTable::stored(const Instrument& instrument, std::size_t gradiometer, std::size_t reference) const
{
    const auto gainOf = [&](int index) { return instrument.channels[static_cast<std::size_t>(index)].gain(); };
    return weights[gradiometer][reference] * gainOf(gradiometers[gradiometer]) / gainOf(references[reference]);
}

std::vector<CoefficientTable> coefficientTables(const Instrument& instrument)
{
    const std::vector<Magnet> magnets = magnetsAround();
    std::vector<CoefficientTable> tables;
    for (const Order& order : orders())
        tables.push_back(tableOf(instrument, order, magnets));
    return tables;
}

} // namespace megset::phantom
