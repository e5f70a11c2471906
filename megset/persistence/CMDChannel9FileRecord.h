#pragma once
// The channel record of an acquisition's trial file: tag "ACQMECHANNELZK", what a recording makes and no results of
// analyses. Needs the sections of CMDChannel9File.

#include "megset/persistence/CMDChannel9File.h"

namespace megset {

/// The channel's layer for its record in an acquisition, which has no results of analyses.
class CMDChannel9FileRecord : public CMDChannel9File
{
public:
    /// Writes the record, or reads one. 0 with "The opened file is not channel file or corrupted!" for another tag,
    /// "Wrong channel file format!!?" for an unknown version, or where a section failed, which has told why. Reading
    /// leaves spectra, wave results and shrink buffer as they are.
    int serializeAcqzk(CArchive& ar);

private:
    int serializeAcq20200727(CArchive& ar);

    int _01serializeAcqChnlInfo(CArchive& ar);
    int _02serializeAcqGeomHwx(CArchive& ar);
    int _03serializeAcqTimeData(CArchive& ar);

    static const FormatVersion<CMDChannel9FileRecord> s_acqVersions[1];
};

} // namespace megset
