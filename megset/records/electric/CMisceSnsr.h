#pragma once
// Inputs that are neither MEG sensor nor electrode: miscellaneous ones, accelerometers and analogue inputs.

#include "megset/platform/CString.h"
#include "megset/platform/formatVersion.h"
#include "megset/records/sensors/CGeomzk.h"

namespace megset {

/// An input of which only the name is known.
class CMisceSnsr : public CGeomzk
{
public:
    bool operator==(const CMisceSnsr&) const = default;

    CString m_strSnsName;
    CString m_strSnsTypeName;
};

/// The file layer of a miscellaneous input.
class CMisceSnsr09File : public CMisceSnsr
{
public:
    /// Reads or writes the record "MISCESNSRZK". 1, or 0 with the messages of serializeRecord.
    int serializezk(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CMisceSnsr09File> s_versions[];
};

/// A miscellaneous input; this is the class that is made.
class CMisceSnsrzk : public CMisceSnsr09File
{
};

/// One axis of an accelerometer.
class CSensorAccelerator : public CGeomzk
{
public:
    bool operator==(const CSensorAccelerator&) const = default;

    int m_nAccelID = -1;
    int m_nAccelAxis = 0; // 0 x, 1 y, 2 z
    CString m_strAccelName;
    CString m_strAccelTypeName;
};

/// The file layer of an axis of an accelerometer.
class CSensorAccelerator09File : public CSensorAccelerator
{
public:
    /// Reads or writes the record "SENSORACCELERATORZK". 1, or 0 with the messages of serializeRecord.
    int serializezk(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CSensorAccelerator09File> s_versions[];
};

/// An axis of an accelerometer; this is the class that is made.
class CSensorAcceleratorzk : public CSensorAccelerator09File
{
};

/// An analogue input.
class CSensorAnalog : public CGeomzk
{
public:
    bool operator==(const CSensorAnalog&) const = default;

    double m_dAnalogScale = 1.0; // units per recorded number
    CString m_strAnalogName;
    CString m_strAnalogUnit;
};

/// The file layer of an analogue input.
class CSensorAnalog09File : public CSensorAnalog
{
public:
    /// Reads or writes the record "SENSORANALOGZK". 1, or 0 with the messages of serializeRecord.
    int serializezk(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CSensorAnalog09File> s_versions[];
};

/// An analogue input; this is the class that is made.
class CSensorAnalogzk : public CSensorAnalog09File
{
};

} // namespace megset
