#pragma once
// A sum channel in a file.
// Needs the planes of CSumChnlSpctmData.

#include "megset/platform/CArchive.h"
#include "megset/spectral/CSumChnlSpctmData.h"

namespace megset {

/// The file layer of a sum channel.
class CSumChnlSpctmData09File : public CSumChnlSpctmData
{
public:
    /// Reads or writes the record "SUMCHNLZK". 0 for another tag ("The opened file is not trial data or corrupted!"),
    /// an unknown version ("Wrong trial sum-channel spectrum!!?"), the oldest version ("Old file format is not
    /// supported!"), and, without a message, for planes that memory or the file can't hold.
    int serialSumChnl(CArchive& ar);

private:
    int serialSumChnl20120423(CArchive& ar);
    int serialSumChnl20120725(CArchive& ar);
    int serialSumChnl20131220(CArchive& ar);

    int b00serialSumChnData(CArchive& ar);
    int b00serialSumChnData_New(CArchive& ar);
    int b00serialSumChnData_Fast(CArchive& ar);
    int b01serialInfo(CArchive& ar);
    int b01serialInfo_New(CArchive& ar);
    int b03serialPeakFreqValue(CArchive& ar);

    void exchangeShape(CArchive& ar);
};

} // namespace megset
