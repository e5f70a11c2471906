#pragma once
// A channel's spectrum in a file: the current planes, then the backup.
// Needs the planes of CSpctmChnl.

#include "megset/platform/CArchive.h"
#include "megset/spectral/CSpctmChnl03Process.h"

namespace megset {

/// The file layer of a channel's spectrum.
class CSpctmChnl09File : public CSpctmChnl03Process
{
public:
    /// Reads or writes the record "SPCTMCHNLZK". 0 for another tag ("This is error in opening channel spectral data!"),
    /// an unknown version ("Channel spectral fileformat error !!!?"), and for planes that memory or the file can't hold
    /// ("Has enough memory?", "Not enough memory!"); what was read until then stays. The three oldest versions bring
    /// the shape and the range, and no planes.
    int serializeSpctmCzk(CArchive& ar);

private:
    int serializeSpctmC20090726(CArchive& ar);
    int serializeSpctmC20120725(CArchive& ar);
    int serializeSpctmC20131218(CArchive& ar);
    int serializeSpctmC20131219(CArchive& ar);
    int serializeSpctmC20190609(CArchive& ar);

    int _01serializeSpctmData(CArchive& ar);
    int _02serializeSpctm2BkFile(CArchive& ar);
    int _01serializeSpctmData_New(CArchive& ar);
    int _02serializeSpctm2BkFile_new(CArchive& ar);
    int _01serializeSpctmData_New2(CArchive& ar);
    int _02serializeSpctm2BkFile_new2(CArchive& ar);
    int _01serializeSpctmData_Fast_obsolete201906(CArchive& ar);
    int _02serializeSpctm2BkFile_Fast_obsolete201906(CArchive& ar);
    int _01serializeSpctmData_Fast(CArchive& ar);
    int _02serializeSpctm2BkFile_Fast(CArchive& ar);

    void exchangeHeader(CArchive& ar);
    void exchangeBkHeader(CArchive& ar);
};

} // namespace megset
