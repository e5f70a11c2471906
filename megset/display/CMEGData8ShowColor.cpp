// Colours of sensors and electrodes by value.
#include "megset/display/CMEGData8Show.h"

#include "megset/platform/CBrush.h"
#include "megset/platform/CDC.h"
#include "megset/platform/CPen.h"

#include <algorithm>
#include <cmath>

namespace megset {
namespace {

// The colour scale of one kind of sensors.
struct ColorScale
{
    double low; // bounds of the neutral band
    double high;
    double stepLow;
    double stepHigh;
};

// How far a value lies beyond the band, counted in colours.
using Distance = double (*)(double beyond, double step);

double divided(double beyond, double step)
{
    constexpr double farthest = HUGE_VAL;
    return step != 0.0 ? beyond / step : farthest;
}

double dividedAnySign(double beyond, double step)
{
    return std::abs(divided(beyond, step));
}

double multiplied(double beyond, double step)
{
    return beyond * step;
}

// The index in a table, limited before it is cut. The last colour of a table is never reached: it is meant so.
int colorIndex(double distance)
{
    constexpr double last = 510.0;
    return std::isnan(distance) ? 0 : static_cast<int>(std::clamp(distance, 0.0, last));
}

// The colour of a value, and on which side of the band it lies: 2 above, 1 below, 0 inside.
struct SidedColor
{
    COLORREF color;
    int side;
};

SidedColor colorOf(const CM3DIndex2Colorzk& table, const ColorScale& scale, double value, Distance above,
                   Distance below)
{
    if (value > scale.high)
        return {table.getColorHigh(colorIndex(above(value - scale.high, scale.stepHigh))), 2};
    if (value < scale.low)
        return {table.getColorLow(colorIndex(below(scale.low - value, scale.stepLow))), 1};
    return {table.getNeutralColor(), 0};
}

int selectBrush(CDC* canvas, CBrush* brush, const SidedColor& wanted)
{
    const bool isMade = brush != nullptr && brush->CreateSolidBrush(wanted.color);
    if (isMade && canvas != nullptr)
        canvas->SelectObject(brush);
    return wanted.side;
}

int selectPen(CDC* canvas, CPen* pen, const SidedColor& wanted)
{
    constexpr int width = 1;
    const bool isMade = pen != nullptr && pen->CreatePen(PS_SOLID, width, wanted.color);
    if (isMade && canvas != nullptr)
        canvas->SelectObject(pen);
    return wanted.side;
}

ColorScale sensorScale(const CMEGData& data)
{
    return {data.m_d2DSensorColorLow, data.m_d2DSensorColorHigh, data.m_d2DSensorColorStepLow,
            data.m_d2DSensorColorStepHigh};
}

ColorScale electrodeScale(const CMEGData& data)
{
    return {data.m_d2DElectrodeColorLow, data.m_d2DElectrodeColorHigh, data.m_d2DElectrodeColorStepLow,
            data.m_d2DElectrodeColorStepHigh};
}

} // namespace

int CMEGData8Show::set2DSensorColorBrush(CDC* canvas, CBrush* brush, double value)
{
    if (m_bShowMEGSensorActive == 0)
        return 0;
    return selectBrush(canvas, brush, colorOf(m_colorIndex, sensorScale(*this), value, divided, dividedAnySign));
}

int CMEGData8Show::set2DSensorColorPen(CDC* canvas, CPen* pen, double value)
{
    if (m_bShowMEGSensorActive == 0)
        return 0;
    return selectPen(canvas, pen, colorOf(m_colorIndex, sensorScale(*this), value, multiplied, multiplied));
}

int CMEGData8Show::set2DElectrodeColorBrush(CDC* canvas, CBrush* brush, double value)
{
    if (m_bShowMEGSensorActive == 0) // electrodes have no switch of their own
        return 0;
    return selectBrush(canvas, brush, colorOf(m_colorIndex, electrodeScale(*this), value, divided, dividedAnySign));
}

int CMEGData8Show::set2DElectrodeColorPen(CDC* canvas, CPen* pen, double value)
{
    if (m_bShowMEGSensorActive == 0)
        return 0;
    return selectPen(canvas, pen, colorOf(m_colorIndex, electrodeScale(*this), value, multiplied, multiplied));
}

} // namespace megset
