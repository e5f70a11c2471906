#include "megset/records/head/CHeadLocalization.h"

#include "megset/platform/CArchive.h"
#include "megset/records/recordFormat.h"

#include <cmath>

namespace megset {
namespace {

using Vector = std::array<double, 3>;
using Matrix = std::array<double, 16>;

constexpr Matrix identity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

Vector positionOf(const CFiducial& fiducials, CFiducial::Point point)
{
    const auto& at = fiducials.getFiducialPt(point)->m_dFidPos;
    return {at[0], at[1], at[2]};
}

Vector combined(const Vector& a, double factor, const Vector& b)
{
    return {a[0] + factor * b[0], a[1] + factor * b[1], a[2] + factor * b[2]};
}

double product(const Vector& a, const Vector& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector across(const Vector& a, const Vector& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double length(const Vector& a)
{
    return std::hypot(a[0], a[1], a[2]);
}

Vector scaled(const Vector& a, double factor)
{
    return {a[0] * factor, a[1] * factor, a[2] * factor};
}

// Axes of a frame, in another one, and its origin there.
struct Frame
{
    Vector origin;
    std::array<Vector, 3> axes;
};

bool headFrame(const CFiducial& fiducials, Frame& frame)
{
    const Vector left = positionOf(fiducials, CFiducial::leftEar);
    const Vector right = positionOf(fiducials, CFiducial::rightEar);
    frame.origin = scaled(combined(left, 1.0, right), 0.5);
    const Vector toLeft = combined(left, -1.0, right);
    const Vector toBack = combined(frame.origin, -1.0, positionOf(fiducials, CFiducial::nasion));
    // On one line when the angle at the origin is below a thousandth of a degree or so; also without any length, and
    // for what isn't a number.
    constexpr double leastSine = 1e-5;
    if (!(length(across(toLeft, toBack)) > leastSine * length(toLeft) * length(toBack)) ||
        !std::isfinite(length(toLeft) * length(toBack)))
        return false;
    const Vector x = scaled(toLeft, 1.0 / length(toLeft));
    const Vector back = combined(toBack, -product(toBack, x), x);
    const Vector z = scaled(back, 1.0 / length(back));
    frame.axes = {x, across(z, x), z};
    return true;
}

Matrix intoFrame(const Frame& frame)
{
    Matrix m = identity;
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column)
            m[4 * row + column] = frame.axes[row][column];
        m[4 * row + 3] = -product(frame.axes[row], frame.origin);
    }
    return m;
}

Matrix outOfFrame(const Frame& frame)
{
    Matrix m = identity;
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column)
            m[4 * row + column] = frame.axes[column][row];
        m[4 * row + 3] = frame.origin[row];
    }
    return m;
}

// w is 1 for a point and 0 for a direction.
void apply(const Matrix& m, double& x, double& y, double& z, double w)
{
    const auto row = [&](std::size_t i) { return m[i] * x + m[i + 1] * y + m[i + 2] * z + m[i + 3] * w; };
    const Vector result{row(0), row(4), row(8)};
    x = result[0];
    y = result[1];
    z = result[2];
}

} // namespace

void CHeadLocalization::initDefaultHeadLocalParams()
{
    CFiducialzk standard;
    standard.setUpFiducialPoint(-1);
    m_nWorkCoordinate = 0;
    m_fidDewarStd = standard;
    m_fidDewarMsr = standard;
    m_fidHeadMsr = standard;
    m_fidWorkMeg = standard;
    m_dDewar2Head = identity;
    m_dHead2Dewar = identity;
}

int CHeadLocalization::computeDewar2Head()
{
    Frame frame{};
    if (!headFrame(m_fidDewarMsr, frame))
        return 0;
    m_dDewar2Head = intoFrame(frame);
    m_dHead2Dewar = outOfFrame(frame);
    m_fidHeadMsr = m_fidDewarMsr;
    for (CFiduciaryPtzk& point : m_fidHeadMsr.m_aFidPt)
        dewar2Head(point.m_dFidPos[0], point.m_dFidPos[1], point.m_dFidPos[2]);
    return 1;
}

void CHeadLocalization::dewar2Head(double& x, double& y, double& z) const
{
    apply(m_dDewar2Head, x, y, z, 1.0);
}

void CHeadLocalization::head2Dewar(double& x, double& y, double& z) const
{
    apply(m_dHead2Dewar, x, y, z, 1.0);
}

void CHeadLocalization::dewar2HeadDir(double& x, double& y, double& z) const
{
    apply(m_dDewar2Head, x, y, z, 0.0);
}

void CHeadLocalization::head2DewarDir(double& x, double& y, double& z) const
{
    apply(m_dHead2Dewar, x, y, z, 0.0);
}

const FormatVersion<CHeadLocalization09File> CHeadLocalization09File::s_versions[] = {
    {20261121, &CHeadLocalization09File::serialize_20261121},
};

int CHeadLocalization09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "HEADLOCALIZATIONZK", s_versions);
}

int CHeadLocalization09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nWorkCoordinate);
    if (!m_fidDewarStd.serialize(ar) || !m_fidDewarMsr.serialize(ar) || !m_fidHeadMsr.serialize(ar) ||
        !m_fidWorkMeg.serialize(ar))
        return 0;
    EXCHANGE_FIELDS(ar, m_dDewar2Head, m_dHead2Dewar);
    return 1;
}

} // namespace megset
