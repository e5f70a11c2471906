#pragma once
// One coil of a MEG sensor, or one vapour cell: where it is in the dewar, in the head and at work, and how it is made.

#include "megset/platform/CString.h"
#include "megset/platform/formatVersion.h"

#include <array>

namespace megset {

/// Where a coil is in one frame: position, normal direction, orientation and a second axis in the coil's plane, each
/// x, y, z, w. Positions are in mm. The position's w is 1 when the place is known and 0 when it was never given.
using CoilPlace = std::array<double, 16>;

/// The frames that a coil's place is kept in. The numbers are those of CMEGSensor::getSnsPos and its like.
enum CoilFrame : int
{
    coilFrameWork = -1,
    coilFrameDewar = 0,
    coilFrameHead = 1
};

/// A coil. Every user of positions reads the working place; the other two are what it is set from.
class CBscMagSns
{
public:
    static constexpr int maxPoints = 18;

    bool operator==(const CBscMagSns&) const = default;

    /// Position at work, mm.
    void getCoilPositionD(double& x, double& y, double& z) const;
    void setCoilPositionD(double x, double y, double z);
    /// Normal direction at work, of length 1; 0, 0, 0 when none was given.
    void getNmlDirXYZ(double& x, double& y, double& z) const;
    /// The place in a frame; null for a number that is no frame.
    CoilPlace* getPlace(int frame);
    const CoilPlace* getPlace(int frame) const;
    /// Makes the place in a frame the working one. A place that is not known leaves the working one as it is.
    /// Gives 1, or 0 when it was left.
    int setPlace2work(int frame);

    /// Maps a point to a plane that is seen along the third axis. See flattenPoint.
    static void flatten3Dto2D(double a, double b, double c, double& u, double& v);

    CString m_strCoilName;
    CoilPlace m_dCoilHead{};
    CoilPlace m_dCoilDewar{};
    CoilPlace m_dCoilWork{};
    double m_dCoilDiameter = 0.0; // mm; 0 unknown
    double m_dCoilTurns = 1.0;    // windings; negative when wound the other way round
    // Points that a forward model integrates over, in the coil's frame: rows of x, y, z in mm and weight.
    std::array<double, 4 * maxPoints> m_dCoilMatrix{};
    int m_nCoilPoints = 0; // rows of m_dCoilMatrix in use, 0 to 18
    int m_nCoilShape = 0;  // 0 round, 1 square, other values as recorded

protected:
    /// The fields of a coil. 0 when the points in use are more than there is room for.
    int exchangeCoil(CArchive& ar);
};

/// The file layer of a coil.
class CBscMagSns09File : public CBscMagSns
{
public:
    /// Reads or writes the record "BSCMAGSNSZK". 1, or 0 with the messages of serializeRecord or for a bad count.
    int serializezk(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CBscMagSns09File> s_versions[];
};

/// A coil; this is the class that is made.
class CBscMagSnszk : public CBscMagSns09File
{
};

/// A pick-up coil. Its record is that of CBscMagSnszk.
class CMagCoilzk : public CBscMagSnszk
{
};

/// A vapour cell: as a coil, with the cell's own points and axes.
class CMagVapor : public CBscMagSns
{
public:
    bool operator==(const CMagVapor&) const = default;

    int m_nVaporAxes = 1; // sensitive axes, 1 to 3: the normal, then the orientation, then the second axis
    int m_nVaporMode = 0; // 0 zero-field, 1 total field, other values as recorded
    std::array<double, 4 * maxPoints> m_dVaporMatrix{}; // points in the cell: rows of x, y, z in mm and weight
    int m_nVaporPoints = 0;                             // rows of m_dVaporMatrix in use, 0 to 18
};

/// The file layer of a vapour cell.
class CMagVapor09File : public CMagVapor
{
public:
    /// Reads or writes the record "MAGVAPORZK". 1, or 0 with the messages of serializeRecord or for a bad count.
    int serializezk(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CMagVapor09File> s_versions[];
};

/// A vapour cell; this is the class that is made.
class CMagVaporzk : public CMagVapor09File
{
};

} // namespace megset
