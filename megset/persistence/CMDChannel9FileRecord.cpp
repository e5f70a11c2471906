#include "megset/persistence/CMDChannel9FileRecord.h"

namespace megset {

const FormatVersion<CMDChannel9FileRecord> CMDChannel9FileRecord::s_acqVersions[1] = {
    {20200727, &CMDChannel9FileRecord::serializeAcq20200727},
};

int CMDChannel9FileRecord::serializeAcqzk(CArchive& ar)
{
    const FormatTexts texts{"ACQMECHANNELZK", "The opened file is not channel file or corrupted!",
                            "Wrong channel file format!!?"};
    return serializeFormat(ar, *this, texts, s_acqVersions);
}

int CMDChannel9FileRecord::serializeAcq20200727(CArchive& ar)
{
    return _01serializeAcqChnlInfo(ar) && _02serializeAcqGeomHwx(ar) && _03serializeAcqTimeData(ar) &&
           serializeRangeAndLabels(ar);
}

// Without range and labels, which end the record.
int CMDChannel9FileRecord::_01serializeAcqChnlInfo(CArchive& ar)
{
    const ArchiveSection section(ar, "_01serializeAcqChnlInfo");
    return exchangeIdentity(ar);
}

int CMDChannel9FileRecord::_02serializeAcqGeomHwx(CArchive& ar)
{
    return _02serializeGeomHwx(ar);
}

int CMDChannel9FileRecord::_03serializeAcqTimeData(CArchive& ar)
{
    return _03serializeTimeData(ar);
}

} // namespace megset
