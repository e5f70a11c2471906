#pragma once
// The record of one MEG sensor: names, type, gains, noise reduction modes, and up to 8 coils, each with a place in the
// dewar, in the head and at work.

#include "megset/records/magnetic/CMegGrdBsc.h"
#include "megset/records/sensors/CGeomzk.h"

namespace megset {

/// A MEG sensor. In the operations on places the set is a CoilFrame (-1 working, 0 dewar, 1 head) and coils count from
/// 0. Positions are in mm. A sensor without coils still has one place, that of coil 0, in m_dSnsGeom.
class CMEGSensor : public CGeomzk
{
public:
    static constexpr int maxCoils = 8;
    /// Position, direction and one axis across it, each x, y, z, w.
    using Geometry = std::array<double, 12>;

    bool operator==(const CMEGSensor&) const = default;

    /// Position of a coil. 1, or 0 with zeros for an unknown set or coil.
    int getSnsPos(int nSet, int nCoil, double& x, double& y, double& z) const;
    /// Sets it. Coil 0 of a sensor without coils is made. 1, or 0 for an unknown set or coil.
    int setSnsPos(int nSet, int nCoil, double x, double y, double z);
    /// Normal direction of a coil, of length 1 (0, 0, 0 when none was given). 1 or 0 as getSnsPos.
    int getSnsNmlDir(int nSet, int nCoil, double& x, double& y, double& z) const;
    /// The same direction as it was given, of any length. 1 or 0 as getSnsPos and setSnsPos.
    int getSnsOrn(int nSet, int nCoil, double& x, double& y, double& z) const;
    int setSnsOrn(int nSet, int nCoil, double x, double y, double z);

    /// A coil, whose own operations give its working place; null outside the list.
    CBscMagSnszk* getCoil(int nCoil);
    const CBscMagSnszk* getCoil(int nCoil) const;
    int getTotalCoils() const { return static_cast<int>(m_pSnsCoils.m_aCoils.size()); }
    /// Makes the head or dewar places the working ones. A coil whose place in that frame was never given stays where
    /// it is. Gives 1.
    int setCoilsHead2work() { return setCoils2work(coilFrameHead); }
    int setCoilsDewar2work() { return setCoils2work(coilFrameDewar); }
    /// Distance of the first two coils at work, mm; 0 with fewer coils.
    double getCoilBaseLine() const;
    /// 1 when the second coil lies along the normal of the first, within 45 degrees, to either side; else 0, as for a
    /// magnetometer and a planar gradiometer.
    int isAxialGrad() const;

    /// 0 none, 1 hardware, 2 and 3 synthetic. Setting another order gives 0 and changes nothing.
    int getGradOrderNo() const { return m_nGradOrderNo; }
    int setGradOrderNo(int nOrder);
    /// What kind of coefficients was applied last: real (true) or ideal, with adaptive balancing or without.
    bool getRealIdealCoefMode() const { return m_pSnsCoils.m_bRealIdealCoefMode; }
    void setRealIdealCoefMode(bool bReal) { m_pSnsCoils.m_bRealIdealCoefMode = bReal; }
    bool getAdaptiveBalance() const { return m_pSnsCoils.m_bAdaptiveBalance; }
    void setAdaptiveBalance(bool bAdaptive) { m_pSnsCoils.m_bAdaptiveBalance = bAdaptive; }

    /// Proper gain * Q gain; see CMegGrdBsc.
    double sensorGain() const { return m_pSnsCoils.sensorGain(); }
    /// Femtotesla per recorded integer, 1e15 / (proper gain * Q gain * IO gain); see CMegGrdBsc.
    double getSnsGainCtf() const { return m_pSnsCoils.getSnsGainCtf(); }

    const CString& getSensorName() const { return m_strSensorName; }
    const CString& getSensorTypeName() const { return m_strSensorTypeName; }
    const CString& getSensorCoilTypeName() const { return m_strSensorCoilTypeName; }

    /// Sets names and coils from arrays. `nItem` counts the numbers in each array of doubles, three per coil: x, y, z
    /// of the coil's place in the dewar, its direction in the dewar, its place in the head, its direction in the head;
    /// a rest of one or two is not read. `pTurns` has the windings, one int per coil. An array may be null: then that
    /// was not recorded (windings: 1). The working place is the head's, or the dewar's where no head place is given.
    /// `nGeometryCode` is kept in m_nSnsWordC. Gains and modes stay. 1, or 0 with nothing changed for a negative
    /// `nItem` or more than 8 coils.
    int initSensorBasic(int nGeometryCode, const CString& strName, const CString& strTypeName, int nItem,
                        const int* pTurns, const double* pDewarPos, const double* pDewarDir, const double* pHeadPos,
                        const double* pHeadDir);
    /// Sets the sensor's number in its recording, channel type, coil shape (0 round, 1 square; of every coil there is)
    /// and gradient order (one outside 0 to 3 counts as 0), and its gains as CMegGrdBsc tells. Gives 1.
    int initSensorInfo(int nSensorID, int nChannelType, int nCoilShape, int nGradOrder, double dProperGain,
                       double dQGain, double dIOGain, double dIOOffset);

    std::int64_t m_nSnsValueA = 0; // carried for the application
    CString m_strSensorName;
    CString m_strSensorTypeName;
    CString m_strSensorCoilTypeName;
    int m_nSnsWordA = 0; // number in the recording, by initSensorInfo
    int m_nChannelType = -1;
    int m_nGradOrderNo = 0;
    int m_nSnsWordB = 0;           // coil shape, by initSensorInfo
    CMegSquidzk m_pSnsCoils;       // coils, gains and modes, owned by value
    Geometry m_dSnsGeom{};         // as recorded, in the head frame: that of coil 0 where its head place is known
    int m_nSnsWordC = 0;           // geometry code, by initSensorBasic
    int m_nSnsWordD = 0;           // carried for the application
    std::int64_t m_nSnsValueB = 0; // carried for the application
    Geometry m_dSnsGeomWork{};     // at work: follows coil 0

private:
    // The twelve numbers of a coil's place, or of the sensor's own without coils; null for an unknown set or coil.
    const double* placeOf(int nSet, int nCoil) const;
    CoilPlace* placeToSet(int nSet, int nCoil);
    void makeFirstCoil();
    void followFirstCoil();
    int setCoils2work(int nFrame);
};

/// The file layer of a MEG sensor.
class CMEGSensor09File : public CMEGSensor
{
public:
    /// Reads or writes the record "MEGSENSORZK". 1, or 0 with the messages of serializeRecord or for a bad coil.
    int serializezk(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CMEGSensor09File> s_versions[];
};

/// A MEG sensor; this is the class that is made.
class CMEGSensorzk : public CMEGSensor09File
{
};

} // namespace megset
