#pragma once
// What stands behind a MEG sensor: its gains, its noise reduction modes, and its coils or vapour cells.

#include "megset/records/magnetic/CBscMagSns.h"

#include <vector>

namespace megset {

/// Gains and modes, common to both families of MEG sensors.
///
/// Field in tesla = recorded integer / (proper gain * Q gain * IO gain), as CTF systems have it. A gain of 0 was not
/// recorded and counts as 1.
class CMegGrdBsc
{
public:
    bool operator==(const CMegGrdBsc&) const = default;

    /// Proper gain * Q gain. Coefficients of noise reduction are given for signals in this scale.
    double sensorGain() const;
    /// Femtotesla per recorded integer: 1e15 / (proper gain * Q gain * IO gain). 1 when no gain was recorded: samples
    /// are taken to be femtotesla already.
    double getSnsGainCtf() const;

    CString m_strGrdName;
    double m_dProperGain = 0.0; // V/T, with the sensor's sign
    double m_dQGain = 0.0;      // integers per V
    double m_dIOGain = 0.0;     // of the input stage, without unit
    double m_dIOOffset = 0.0;   // integers; carried, never subtracted
    // What noise reduction was applied to the channel's data; the order is the sensor's.
    bool m_bRealIdealCoefMode = false; // true: real coefficients, false: ideal ones
    bool m_bAdaptiveBalance = false;

protected:
    void exchangeGrd(CArchive& ar);
};

/// A sensor of superconducting coils. Each coil holds its dewar, head and working place.
class CMegSquid : public CMegGrdBsc
{
public:
    bool operator==(const CMegSquid&) const = default;

    std::vector<CMagCoilzk> m_aCoils; // up to 8 by the operations
};

/// The file layer of a sensor of superconducting coils.
class CMegSquid09File : public CMegSquid
{
public:
    /// Reads or writes the record "MEGSQUIDZK". 1, or 0 with the messages of serializeRecord or for a bad coil.
    int serializezk(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CMegSquid09File> s_versions[];
};

/// A sensor of superconducting coils; this is the class that is made.
class CMegSquidzk : public CMegSquid09File
{
};

/// A sensor of vapour cells.
class CMegOpm : public CMegGrdBsc
{
public:
    bool operator==(const CMegOpm&) const = default;

    std::vector<CMagVaporzk> m_aCells;
};

/// The file layer of a sensor of vapour cells.
class CMegOpm09File : public CMegOpm
{
public:
    /// Reads or writes the record "MEGOPMZK". 1, or 0 with the messages of serializeRecord or for a bad cell.
    int serializezk(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CMegOpm09File> s_versions[];
};

/// A sensor of vapour cells; this is the class that is made.
class CMegOpmzk : public CMegOpm09File
{
};

} // namespace megset
