// What works on a channel's planes in place, or reads single frequencies, against plain loops over random planes.

#include "tests/spectral/planes.h"

#include <functional>

namespace megset::spectrumLoops_test {
namespace {

std::int64_t clamped(std::int64_t index, std::int64_t limit)
{
    return std::min(std::max<std::int64_t>(index, 0), limit - 1);
}

/// A random plane, and numbers to work on it with.
class RandomPlane
{
public:
    RandomPlane(Shape planeShape, unsigned seed, int nDataType)
        : shape(planeShape), x(anyPlane(shape.nTimePt, shape.nFreqPt, seed)), type(nDataType), m_random(seed + 1)
    {
        setPlane(spectrum, type, shape.nTimePt, shape.nFreqPt, x);
    }
    std::int64_t between(std::int64_t low, std::int64_t high)
    {
        return low + static_cast<std::int64_t>(m_random() % static_cast<unsigned>(high - low + 1));
    }
    std::int64_t time() { return between(-2, shape.nTimePt + 2); }
    std::int64_t freq() { return between(-2, shape.nFreqPt + 2); }
    /// Few values, so that they meet those of the plane.
    double value()
    {
        const double values[] = {-700.0, -1.0, 0.1, 1.0, 2.5, 900.0};
        return values[m_random() % 6];
    }
    double& at(std::int64_t t, std::int64_t f) { return x[shape.at(t, f)]; }
    double mean(std::int64_t f, std::int64_t from, std::int64_t end)
    {
        double sum = 0.0;
        for (std::int64_t t = from; t < end; ++t)
            sum += at(t, f) / static_cast<double>(end - from);
        return sum;
    }
    void expectChanged() { EXPECT_TRUE(numeric::sameSamples(planeValues(spectrum, type), x)); }

    CSpctmChnlzk spectrum;
    Shape shape;
    Values x; ///< what the plane is to be
    int type;

private:
    std::mt19937 m_random;
};

void forRandomPlanes(const std::function<void(RandomPlane&)>& body)
{
    for (const Shape shape : shapes)
        for (unsigned seed = 0; seed < 12; ++seed) {
            SCOPED_TRACE(::testing::Message() << shape.nTimePt << " x " << shape.nFreqPt << ", seed " << seed);
            RandomPlane plane(shape, seed, static_cast<int>(seed % 4));
            body(plane);
        }
}

TEST(SpectrumLoops, CutsOverwriteTheValuesInside)
{
    forRandomPlanes([](RandomPlane& p) {
        const double low = p.value();
        const double high = p.value();
        ASSERT_EQ(p.spectrum.cutSpctmDataExtrama(low, high, 7.0, p.type), 1);
        for (double& v : p.x)
            v = v < low || v > high ? 7.0 : v;
        p.expectChanged();
        for (const int kind : {0, 1, 2}) { // times, frequencies, both
            const std::int64_t t0 = p.time(), t1 = p.time(), f0 = p.freq(), f1 = p.freq();
            const double fill = 10.0 + kind;
            ASSERT_EQ(kind == 0   ? p.spectrum.cutSpctmTimeBlock(t0, t1, fill, p.type)
                      : kind == 1 ? p.spectrum.cutSpctmFreqBlock(f0, f1, fill, p.type)
                                  : p.spectrum.cutSpctmSelect(t0, t1, f0, f1, fill, p.type),
                      1);
            const std::int64_t T = p.shape.nTimePt;
            const std::int64_t F = p.shape.nFreqPt;
            for (std::int64_t t = 0; t < T; ++t)
                for (std::int64_t f = 0; f < F; ++f)
                    if ((kind == 1 || (t >= clamped(t0, T) && t <= clamped(t1, T))) &&
                        (kind == 0 || (f >= clamped(f0, F) && f <= clamped(f1, F))))
                        p.at(t, f) = fill;
            p.expectChanged();
        }
    });
}

TEST(SpectrumLoops, SingleFrequenciesAreReadOverAllTimes)
{
    forRandomPlanes([](RandomPlane& p) {
        p.spectrum.m_dSpctmMean = 42.0;
        const auto n = static_cast<double>(p.shape.nTimePt);
        const bool isEmpty = p.x[0] == 0.0;
        for (std::int64_t f = 0; f < p.shape.nFreqPt; ++f) {
            double largest = 0.0;
            double squares = 0.0;
            Values course;
            for (std::int64_t t = 0; t < p.shape.nTimePt; ++t) {
                const double v = p.at(t, f);
                largest = std::fabs(v) > largest ? std::fabs(v) : largest;
                squares += v * v;
                course.push_back(v);
            }
            EXPECT_TRUE(numeric::sameBits(p.spectrum.getSpctmFreqAbsMax(f, p.type), largest));
            EXPECT_TRUE(numeric::sameBits(p.spectrum.getSpctmFreqRootMean(f, p.type), squares / n));
            EXPECT_TRUE(numeric::sameBits(p.spectrum.getSpctmFreqAverage(f, true, p.type),
                                          isEmpty ? 0.0 : p.mean(f, 0, p.shape.nTimePt)));
            EXPECT_EQ(p.spectrum.getSpctmFreqAverage(f, false, p.type), isEmpty ? 0.0 : 42.0);
            Values out(course.size(), 5.0);
            ASSERT_EQ(p.spectrum.getOneFreqBandData(p.type, out.data(), f, p.shape.nTimePt), 1);
            EXPECT_TRUE(numeric::sameSamples(out, course));
            const std::int64_t from = p.between(0, p.shape.nTimePt - 1);
            const std::int64_t to = p.between(from, p.shape.nTimePt - 1);
            Values part(static_cast<std::size_t>(to - from) + 1, 5.0);
            ASSERT_EQ(p.spectrum.getOneFreqBandDataTbe(p.type, part.data(), f, from, to), 1);
            Values expected(course.begin() + from, course.begin() + to);
            expected.push_back(5.0); // the time at the end is not delivered
            EXPECT_TRUE(numeric::sameSamples(part, expected));
        }
    });
}

TEST(SpectrumLoops, RangesHaveARunningMean)
{
    forRandomPlanes([](RandomPlane& p) {
        for (const bool absolute : {false, true}) {
            const auto value = [&](std::size_t i) { return absolute ? std::fabs(p.x[i]) : p.x[i]; };
            double min = value(0);
            double max = value(0);
            double sum = 0.0;
            double mean = 0.0;
            for (std::int64_t t = 0; t < p.shape.nTimePt; ++t) {
                for (std::int64_t f = 0; f < p.shape.nFreqPt; ++f) {
                    const double v = value(p.shape.at(t, f));
                    min = v < min ? v : min;
                    max = v > max ? v : max;
                    sum += v;
                }
                mean += sum / static_cast<double>(absolute ? p.shape.nFreqPt : p.shape.nTimePt * p.shape.nFreqPt);
            }
            if (absolute)
                mean /= static_cast<double>(p.shape.nTimePt);
            double a = 0.0, b = 0.0, c = 0.0;
            ASSERT_EQ(absolute ? p.spectrum.getSpctmRangeAbs(&a, &b, &c, 0, p.type)
                               : p.spectrum.getSpctmRange(&a, &b, &c, 1, p.type),
                      1);
            EXPECT_TRUE(numeric::sameSamples(Values{a, b, c}, Values{min, max, mean}));
        }
    });
}

TEST(SpectrumLoops, NormalisationsAndTransformsGoOverEveryValue)
{
    const auto each = [](double (*operation)(double, double, double), int (*ours)(CSpctmChnlzk&, double, double, int)) {
        forRandomPlanes([=](RandomPlane& p) {
            const double a = p.value();
            const double b = p.value();
            ASSERT_EQ(ours(p.spectrum, a, b, p.type), 1);
            for (double& v : p.x)
                v = operation(v, a, b);
            p.expectChanged();
        });
    };
    each([](double v, double a, double b) { return (v - b) * a; },
         [](CSpctmChnlzk& s, double a, double b, int type) { return s.normSpctmValue2Shrt(a, b, type); });
    each([](double v, double a, double) { return v * a; },
         [](CSpctmChnlzk& s, double a, double, int type) { return s.scaleSpctm(a, type); });
    each([](double v, double, double) { return std::isnan(v) || std::isinf(v) ? 0.0 : v; },
         [](CSpctmChnlzk& s, double, double, int type) { return s.setSpctmNAN2zero(type); });
    each([](double v, double, double) { return std::log(v); },
         [](CSpctmChnlzk& s, double, double, int type) { return s.transformSpctm2log(type); });
}

TEST(SpectrumLoops, FrequenciesAreDividedByAValueOrByTheirOwnMean)
{
    forRandomPlanes([](RandomPlane& p) {
        const std::int64_t f = p.freq();
        const double divisor = p.value();
        const bool isDone = p.x[0] != 0.0 && f >= 0 && f < p.shape.nFreqPt;
        ASSERT_EQ(p.spectrum.globaleNormalSpctmFreq(f, divisor, p.type), isDone ? 1 : 0);
        for (std::int64_t t = 0; isDone && t < p.shape.nTimePt; ++t)
            p.at(t, f) /= divisor;
        p.expectChanged();
        ASSERT_EQ(p.spectrum.normalizeSpctm4FreqX(0.0, p.type), 1);
        for (std::int64_t k = 0; k < p.shape.nFreqPt; ++k) {
            const double mean = p.mean(k, 0, p.shape.nTimePt);
            for (std::int64_t t = 0; mean != 0.0 && t < p.shape.nTimePt; ++t)
                p.at(t, k) /= mean;
        }
        p.expectChanged();
    });
}

TEST(SpectrumLoops, BaselinesAreHalfOpen)
{
    forRandomPlanes([](RandomPlane& p) {
        const std::int64_t begin = p.time();
        const std::int64_t end = p.time();
        const double scale = p.value();
        const std::int64_t e = std::max<std::int64_t>(std::min(p.shape.nTimePt, end), 1);
        const std::int64_t b = std::max<std::int64_t>(begin > e ? e - 1 : begin, 0); // a negative one counts as 0
        ASSERT_EQ(p.spectrum.rootStrip(begin, end, scale, p.type), e > b ? 1 : 0);
        for (std::int64_t f = 0; e > b && f < p.shape.nFreqPt; ++f) {
            const double base = p.mean(f, b, e);
            for (std::int64_t t = 0; t < p.shape.nTimePt; ++t)
                p.at(t, f) = p.at(t, f) / base * scale;
        }
        p.expectChanged();
    });
}

TEST(SpectrumLoops, PolarityIsThatOfRIOrTheLarger)
{
    for (const Shape shape : shapes)
        for (unsigned seed = 0; seed < 6; ++seed) {
            const Values r = anyPlane(shape.nTimePt, shape.nFreqPt, seed);
            const Values i = anyPlane(shape.nTimePt, shape.nFreqPt, seed + 50);
            CSpctmChnlzk spectrum;
            setPlane(spectrum, R, shape.nTimePt, shape.nFreqPt, r);
            setPlane(spectrum, I, shape.nTimePt, shape.nFreqPt, i);
            for (const int polarity : {1, 2, 3}) {
                ASSERT_EQ(spectrum.setPolarity2Magnitude(polarity), 1);
                Values expected;
                for (std::size_t k = 0; k < r.size(); ++k) {
                    const bool takesI = polarity == 2 || (polarity == 3 && std::fabs(i[k]) > std::fabs(r[k]));
                    const double m = std::fabs(std::sqrt((r[k] * r[k] + i[k] * i[k]) * 0.5));
                    expected.push_back((takesI ? i[k] : r[k]) < 0.0 ? -m : m);
                }
                EXPECT_TRUE(numeric::sameSamples(planeValues(spectrum, M), expected)) << polarity;
            }
        }
}

TEST(SpectrumLoops, SpectraAreAddedAndCombinedElementByElement)
{
    for (const Shape shape : shapes)
        for (unsigned seed = 0; seed < 6; ++seed) {
            CSpctmChnlzk x;
            CSpctmChnlzk y;
            Values a[4];
            Values b[4];
            for (const int type : {R, I, M, A}) {
                const auto number = static_cast<unsigned>(type) + 10 * seed;
                a[type] = anyPlane(shape.nTimePt, shape.nFreqPt, number);
                b[type] = anyPlane(shape.nTimePt, shape.nFreqPt, number + 5);
                setPlane(x, type, shape.nTimePt, shape.nFreqPt, a[type]);
                setPlane(y, type, shape.nTimePt, shape.nFreqPt, b[type]);
            }
            const auto expectAll = [&](const CSpctmChnlzk& spectrum, double (*operation)(double, double)) {
                for (const int type : {R, I, M, A}) {
                    Values expected;
                    for (std::size_t k = 0; k < a[type].size(); ++k)
                        expected.push_back(operation(a[type][k], b[type][k]));
                    EXPECT_TRUE(numeric::sameSamples(planeValues(spectrum, type), expected));
                }
            };
            CSpctmChnlzk z;
            for (const int operation : {0, 1, 2, 3}) {
                ASSERT_EQ(z.operateSpctmChnlAB2C(&x, &y, true, operation), 1);
                expectAll(
                    z, operation == 0   ? [](double v, double w) { return v - w; }
                       : operation == 1 ? [](double v, double w) { return v + w; }
                       : operation == 2 ? [](double v, double w) { return v * w; }
                                        : [](double, double) { return 0.0; });
            }
            ASSERT_EQ(x.addSpctmChnlzk(&y, false), 1);
            expectAll(x, [](double v, double w) { return v + w; });
        }
}

} // namespace
} // namespace megset::spectrumLoops_test
