#pragma once
// The record of one electrode: names, place, channel type, and which contact of an SEEG probe it is.

#include "megset/platform/CPtrArray.h"
#include "megset/platform/CString.h"
#include "megset/platform/formatVersion.h"
#include "megset/records/sensors/CGeomzk.h"

#include <array>

namespace megset {

/// An electrode. Positions are in mm.
class CEEGelectrode : public CGeomzk
{
public:
    bool operator==(const CEEGelectrode&) const = default;

    void getElectrodePositionD(double& x, double& y, double& z) const;
    void setElectrodePositionD(double x, double y, double z);
    /// Stores position and direction from arrays of three; a null array leaves what is there. Gives 1.
    int setPosDiir(const double* pPos, const double* pDir);
    /// Maps a point to a plane that is seen along the third axis. See flattenPoint.
    static void flatten3Dto2D(double a, double b, double c, double& u, double& v);

    /// Looks the name up as it stands, with its case (the tables are in upper case), in g_aEegStd21 and g_aEegStd32.
    /// A hit fills position, channel type, type row and standard name, sets m_nPosFound, and gives the row's index.
    /// -1 for a name that the table hasn't, -2 for an empty name; both change nothing.
    int findPosMe();
    int findPosEasyCap74();
    /// The same in g_aEegStd32 and then in g_aEegStd21; the index is that of the table with the hit. It is the last
    /// resort, so that an empty name gives -1, too.
    int findAll();
    /// The same against a list of CEEGelectrodezk*, in its order, with the direction as well. Null entries are passed
    /// over; a null list gives -1.
    int findPosReadPea(const CPtrArray* pList);

    CString m_strElectrodeLabel;
    CString m_strElectrodeName; // compared with raw channel names
    CString m_strElectrodeStd;  // name in the standard that the position is from
    std::array<double, 4> m_dElectrodePos{};
    std::array<double, 4> m_dElectrodeDir{};
    double m_dImpedance = 0.0; // kilohm; 0 not measured
    int m_nElectrodeID = -1;
    int m_nChannelType = 302;  // set by a lookup
    int m_nElectrodeWord = 2;  // row of the electrode type list
    int m_nNameSet = 0;        // the name has been set
    int m_nPosFound = 0;       // a position has been found
    int m_nSeegProbeID = -1;   // the probe that it belongs to
    int m_nSeegContactID = -1; // and which of its contacts it is

private:
    template <class Table>
    int findIn(const Table& table);
};

/// The file layer of an electrode.
class CEEGelectrode09File : public CEEGelectrode
{
public:
    /// Reads or writes the record "EEGELECTRODEZK". 1, or 0 with the messages of serializeRecord.
    int serializezk(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CEEGelectrode09File> s_versions[];
};

/// An electrode; this is the class that is made.
class CEEGelectrodezk : public CEEGelectrode09File
{
};

} // namespace megset
