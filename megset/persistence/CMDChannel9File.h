#pragma once
// The channel record of a trial file: tag "MEGCHANNELZK", every version ever released; and the channel in text files.
// Needs all fields of the channel.

#include "megset/core/CMDChannel7ProcessX.h"
#include "megset/platform/formatVersion.h"

namespace megset {

/// The channel's layer for its record in a trial's file, and for text files.
class CMDChannel9File : public CMDChannel7ProcessX
{
public:
    /// Writes the newest record, or reads one of any version. 0 with "The opened file is not channel file or
    /// corrupted!" for another tag, "Wrong channel file format!!?" for an unknown version or, in the three newest, a
    /// section that failed, which has told why: "Is there enough memory?!" (geometry), "Not enough memory!" (samples),
    /// "Read back up data error!?" (no samples there), "Is memory enough?!" (spectra, wave results, shrink buffer),
    /// "Read ShowShrink data error!?".
    int serializezk(CArchive& ar);
    /// The entry of the oldest files: a tag and a version, and nothing behind them. The tag is read with `readTag`
    /// alone ("The opened file is not MEG file or corrupted!" and 0 for another one). An unknown version shows "Wrong
    /// file format!!?" and gives 1 all the same.
    int serializezk_obsolete20071230(CArchive& ar, bool readTag);
    int export_importChalData(CArchive& ar);

    // Text, in CMDChannel9FileText.cpp: UTF-16, each piece with its terminating zero. Exceptions of the file pass.

    /// A line of name, number of samples and geometry, and a line of samples in the channel's unit: all of them, or
    /// with `bSelect` those from `from` to `to`, both included, as far as the channel has them. Gives 1.
    int exportMEGData2TxtFile(CFile& file, std::int64_t from, std::int64_t to, int bSelect) const;
    /// The channel's name, by exportCString. Gives 1.
    int exportSnsrInf2TxtFile(CFile& file) const;
    /// One value as "%s \n", "%d \n" (signed) or "%.32f \n". They give 1.
    static int exportCString(CFile& file, const CString& value);
    static int exportDWORD(CFile& file, std::uint32_t value);
    static int exportDouble(CFile& file, double value);

protected:
    // The carried fields of the oldest sections, and what follows them at the end of the older records.
    int _01serializeChnlInfo_obsolete20190609(CArchive& ar);
    int _02serializeGeomHwx(CArchive& ar);
    int _03serializeTimeData(CArchive& ar);
    int exchangeIdentity(CArchive& ar);
    int serializeRangeAndLabels(CArchive& ar);

private:
    int serialize_20080101(CArchive& ar);
    int serialize_20080316(CArchive& ar);
    int serialize_20090726(CArchive& ar);
    int serialize_20140513(CArchive& ar);
    int serialize_20150707(CArchive& ar);
    int serialize_20190112(CArchive& ar);
    int serialize_20190609(CArchive& ar);
    int serialize_20190723(CArchive& ar);
    int serialize_20200801(CArchive& ar);
    int serialize_2002_11_20(CArchive& ar);
    int serialize_2003_1_9(CArchive& ar);
    int serialize_2003_2_19(CArchive& ar);
    int serialize_2003_8_21(CArchive& ar);

    int _01serializeChnlInfo(CArchive& ar);
    int _02serializeGeomHwObsolete2014(CArchive& ar);
    int _02serializeGeomHwxObsolete2019(CArchive& ar);
    int _02serializeGeomHwx_obsolete20200730(CArchive& ar);
    int _04serializeSpctmData(CArchive& ar);
    int _06serializeWavAnlyRslt(CArchive& ar);
    int _07serializeShowShrinkData(CArchive& ar);

    int serializeGeometryType(CArchive& ar);
    int serializeGeometryRecord(CArchive& ar, std::span<const int> knownTypes);
    int serializeBalance(CArchive& ar);
    int exchangeRange(CArchive& ar);
    int exchangeSamples(CArchive& ar, SampleArray& samples, std::int64_t count, const char* name);
    CString textOfGeometry() const;
    CString textOfMEGSensor() const;
    CString textOfElectrode() const;

    static const FormatVersion<CMDChannel9File> s_versions[9];
};

} // namespace megset
