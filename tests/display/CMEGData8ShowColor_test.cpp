// Colours of sensors and electrodes by value.
#include "megset/display/CMEGData8Show.h"

#include "megset/core/CMEGDatazk.h"
#include "megset/platform/CDC.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace megset::CMEGData8ShowColor_test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();

// What came of a value: the result, and the colour that is selected.
struct Painted
{
    bool operator==(const Painted&) const = default;

    int side = 0;
    std::uint32_t color = 0;
};

void PrintTo(const Painted& painted, std::ostream* out)
{
    *out << "side " << painted.side << ", colour " << painted.color;
}

class SensorColors : public ::testing::Test
{
protected:
    // Tables in which every colour tells its place.
    void SetUp() override
    {
        for (std::uint32_t i = 0; i < CM3DIndex2Color::colorCount; ++i) {
            data.m_colorIndex.m_nColorHigh[i] = 1000 + i;
            data.m_colorIndex.m_nColorLow[i] = 5000 + i;
        }
        data.m_d2DSensorColorHigh = 10.0;
        data.m_d2DSensorColorLow = -10.0;
        data.m_d2DSensorColorStepHigh = 2.0;
        data.m_d2DSensorColorStepLow = 4.0;
    }
    Painted brush(double value)
    {
        CDC canvas;
        CBrush made;
        const int side = data.set2DSensorColorBrush(&canvas, &made, value);
        EXPECT_EQ(canvas.GetCurrentBrush(), &made);
        return {side, made.getColor()};
    }
    Painted pen(double value)
    {
        CDC canvas;
        CPen made;
        const int side = data.set2DSensorColorPen(&canvas, &made, value);
        EXPECT_EQ(canvas.GetCurrentPen(), &made);
        EXPECT_EQ(made.getStyle(), PS_SOLID);
        EXPECT_EQ(made.getWidth(), 1);
        return {side, made.getColor()};
    }
    static Painted high(std::uint32_t index) { return {2, 1000 + index}; }
    static Painted low(std::uint32_t index) { return {1, 5000 + index}; }

    CMEGDatazk data;
    const Painted neutral{0, 1000};
};

TEST_F(SensorColors, ABrushDividesByTheStep)
{
    EXPECT_EQ(brush(17.0), high(3)); // 7 / 2 = 3.5
    EXPECT_EQ(brush(10.5), high(0));
    EXPECT_EQ(brush(-27.0), low(4)); // 17 / 4 = 4.25
    EXPECT_EQ(brush(-10.5), low(0));
}

TEST_F(SensorColors, APenMultipliesByTheStep)
{
    EXPECT_EQ(pen(17.25), high(14)); // 7.25 x 2 = 14.5
    EXPECT_EQ(pen(10.25), high(0));
    EXPECT_EQ(pen(-27.2), low(68)); // 17.2 x 4 = 68.8
    EXPECT_EQ(pen(-10.1), low(0));
}

TEST_F(SensorColors, AValueEqualToABoundIsNeutral)
{
    for (const double value : {10.0, -10.0, 0.0, 9.9}) {
        EXPECT_EQ(brush(value), neutral) << value;
        EXPECT_EQ(pen(value), neutral) << value;
    }
}

TEST_F(SensorColors, WhatIsNoNumberIsNeutral)
{
    EXPECT_EQ(brush(std::nan("")), neutral);
    EXPECT_EQ(pen(std::nan("")), neutral);
}

TEST_F(SensorColors, EndWithTheLastColourButOne)
{
    EXPECT_EQ(brush(10.0 + 2.0 * 509.9), high(509));
    for (const double value : {10.0 + 2.0 * 511.0, 1e300, inf}) {
        EXPECT_EQ(brush(value), high(510)) << value;
        EXPECT_EQ(pen(value), high(510)) << value;
        EXPECT_EQ(brush(-2.0 * value), low(510)) << value;
        EXPECT_EQ(pen(-value), low(510)) << value;
    }
}

TEST_F(SensorColors, AStepOfZeroNeverDivides)
{
    data.m_d2DSensorColorStepHigh = 0.0;
    data.m_d2DSensorColorStepLow = -0.0;
    EXPECT_EQ(brush(10.1), high(510));
    EXPECT_EQ(brush(-10.1), low(510));
    EXPECT_EQ(pen(1000.0), high(0));
    EXPECT_EQ(pen(-1000.0), low(0));
}

TEST_F(SensorColors, ANegativeStepCountsForABrushBelowTheBandAlone)
{
    data.m_d2DSensorColorStepHigh = -2.0;
    data.m_d2DSensorColorStepLow = -4.0;
    EXPECT_EQ(brush(17.0), high(0));
    EXPECT_EQ(pen(17.0), high(0));
    EXPECT_EQ(brush(-27.0), low(4));
    EXPECT_EQ(pen(-27.0), low(0));
}

TEST_F(SensorColors, AStepThatIsNoNumberGivesTheFirstColour)
{
    data.m_d2DSensorColorStepHigh = data.m_d2DSensorColorStepLow = std::nan("");
    EXPECT_EQ(brush(17.0), high(0));
    EXPECT_EQ(pen(-27.0), low(0));
    data.m_d2DSensorColorStepHigh = inf;
    EXPECT_EQ(brush(inf), high(0)) << "infinite both ways";
}

TEST_F(SensorColors, ABandTheWrongWayRoundIsHighFirst)
{
    data.m_d2DSensorColorHigh = -10.0;
    data.m_d2DSensorColorLow = 10.0;
    EXPECT_EQ(brush(0.0), high(5));
    EXPECT_EQ(brush(-20.0), low(7));
}

TEST_F(SensorColors, OfANewDatasetDoNotDivideByZero)
{
    CMEGDatazk fresh;
    CDC canvas;
    CBrush made;
    EXPECT_EQ(fresh.set2DSensorColorBrush(&canvas, &made, 1.0), 2);
    EXPECT_EQ(made.getColor(), fresh.m_colorIndex.getColorHigh(510));
}

TEST_F(SensorColors, WhileSensorsAreNotActiveNothingIsMadeOrSelected)
{
    data.m_bShowMEGSensorActive = 0;
    CDC canvas;
    CBrush brush;
    CPen pen;
    EXPECT_EQ(data.set2DSensorColorBrush(&canvas, &brush, 1000.0), 0);
    EXPECT_EQ(data.set2DSensorColorPen(&canvas, &pen, 1000.0), 0);
    EXPECT_EQ(data.set2DElectrodeColorBrush(&canvas, &brush, 1000.0), 0);
    EXPECT_EQ(data.set2DElectrodeColorPen(&canvas, &pen, 1000.0), 0);
    EXPECT_FALSE(brush.hasObject());
    EXPECT_FALSE(pen.hasObject());
    EXPECT_EQ(canvas.GetCurrentBrush(), nullptr);
    EXPECT_EQ(canvas.GetCurrentPen(), nullptr);
}

TEST_F(SensorColors, AnObjectThatIsTakenAlreadyIsNotSelected)
{
    CDC canvas;
    CBrush brush;
    CPen pen;
    ASSERT_TRUE(brush.CreateSolidBrush(7));
    ASSERT_TRUE(pen.CreatePen(PS_DASH, 3, 8));
    EXPECT_EQ(data.set2DSensorColorBrush(&canvas, &brush, 1000.0), 2);
    EXPECT_EQ(data.set2DSensorColorPen(&canvas, &pen, -1000.0), 1);
    EXPECT_EQ(canvas.GetCurrentBrush(), nullptr);
    EXPECT_EQ(canvas.GetCurrentPen(), nullptr);
    EXPECT_EQ(brush.getColor(), 7U);
    EXPECT_EQ(pen.getColor(), 8U);
}

TEST_F(SensorColors, WithoutCanvasOrObjectTheResultStays)
{
    CDC canvas;
    CBrush made;
    CPen pen;
    EXPECT_EQ(data.set2DSensorColorBrush(nullptr, &made, 12.0), 2);
    EXPECT_EQ(made.getColor(), 1001U);
    EXPECT_EQ(data.set2DSensorColorPen(nullptr, &pen, 12.0), 2);
    EXPECT_EQ(data.set2DSensorColorBrush(&canvas, nullptr, -12.0), 1);
    EXPECT_EQ(data.set2DSensorColorPen(&canvas, nullptr, -12.0), 1);
    EXPECT_EQ(canvas.GetCurrentBrush(), nullptr);
    EXPECT_EQ(canvas.GetCurrentPen(), nullptr);
}

TEST_F(SensorColors, OfElectrodesGoByTheirOwnScale)
{
    data.m_d2DElectrodeColorHigh = 1.0;
    data.m_d2DElectrodeColorLow = -2.0;
    data.m_d2DElectrodeColorStepHigh = 0.5;
    data.m_d2DElectrodeColorStepLow = 0.25;
    CDC canvas;
    const auto brushAt = [&](double value) {
        CBrush made;
        const int side = data.set2DElectrodeColorBrush(&canvas, &made, value);
        EXPECT_EQ(canvas.SelectObject(static_cast<CBrush*>(nullptr)), &made);
        return Painted{side, made.getColor()};
    };
    const auto penAt = [&](double value) {
        CPen made;
        const int side = data.set2DElectrodeColorPen(&canvas, &made, value);
        EXPECT_EQ(canvas.SelectObject(static_cast<CPen*>(nullptr)), &made);
        return Painted{side, made.getColor()};
    };
    EXPECT_EQ(brushAt(2.75), high(3)); // 1.75 / 0.5 = 3.5
    EXPECT_EQ(penAt(8.0), high(3));    // 7 x 0.5 = 3.5
    EXPECT_EQ(brushAt(-3.1), low(4));  // 1.1 / 0.25 = 4.4
    EXPECT_EQ(penAt(-20.0), low(4));   // 18 x 0.25 = 4.5
    EXPECT_EQ(brushAt(1.0), neutral);
    EXPECT_EQ(penAt(-2.0), neutral);
}

} // namespace
} // namespace megset::CMEGData8ShowColor_test
