#pragma once
// A trial's spectrum in a file.
// Needs the fields of CSpctmTrial and the record of the sum channel.

#include "megset/platform/CArchive.h"
#include "megset/spectral/CSpctmTrial03Process.h"

namespace megset {

/// The file layer of what the channels of a trial share for one class.
class CSpctmTrial09File : public CSpctmTrial03Process
{
public:
    /// Reads or writes the record "SPCTMTRIALZK". 0 for another tag ("The opened file is not trial data or
    /// corrupted!"), an unknown version ("Wrong trial spectral file format!!?"), the three oldest versions ("Old file
    /// format is not supported!"), and when the record of a sum channel fails; what was read until then stays.
    int serializeTrlSpctmZk(CArchive& ar);

    /// The record with all labels and sum channels, without tag and version. It stands ready: serializeTrlSpctmZk
    /// neither writes nor accepts it yet.
    int serializeTrlSpctm20190609(CArchive& ar);

private:
    int serializeTrlSpctm20090726(CArchive& ar);
    int serializeTrlSpctm20111112(CArchive& ar);
    int serializeTrlSpctm20111206(CArchive& ar);
    int serializeTrlSpctm20120423(CArchive& ar);
    int serializeTrlSpctm20150707(CArchive& ar);

    int _00serializeTralSpctmBasic_old(CArchive& ar);
    int _00serializeTralSpctmBasic_obsolete20190609(CArchive& ar);
    int _00serializeTralSpctmBasic(CArchive& ar);
    int _01serializeTralSpctmData_old(CArchive& ar);
    int _01serializeTralSpctmData_obsolete201906(CArchive& ar);

    void exchangeAxesAndSelection(CArchive& ar);
    int exchangeSumsRIM(CArchive& ar);
};

} // namespace megset
