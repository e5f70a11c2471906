#pragma once
// A sphere that stands for the head, or a part of it, in a source model.

#include "megset/platform/CString.h"
#include "megset/platform/formatVersion.h"

namespace megset {

/// A sphere, in mm.
class CSphere
{
public:
    bool operator==(const CSphere&) const = default;

    double m_dSphereX = 0.0;
    double m_dSphereY = 0.0;
    double m_dSphereZ = 0.0;
    double m_dSphereRadius = 0.0; // 0: not set up
    int m_nSphereID = 0;          // of several shells, the innermost first
    int m_nSphereShow = 1;
    CString m_strSphereName;
};

/// The file layer of a sphere.
class CSphere09File : public CSphere
{
public:
    /// Reads or writes the record "SPHEREZK". 1, or 0 with the messages of serializeRecord.
    int serializezk(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CSphere09File> s_versions[];
};

/// A sphere; this is the class that is made.
class CSpherezk : public CSphere09File
{
};

} // namespace megset
