#include "megset/persistence/CMDChannel9File.h"

#include "megset/persistence/exchangeSlot.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/records/records.h"
#include "megset/spectral/CSpctmChnlzk.h"

#include <algorithm>
#include <array>

namespace megset {
namespace {

constexpr const char* wrongFormat = "Wrong channel file format!!?";
constexpr const char* noMemoryForObject = "Is memory enough?!";

// The three newest versions tell of a failed section once more.
int toldOfChannel(int result)
{
    return result ? result : fail(wrongFormat);
}

} // namespace

// The number that selects a routine and the date in its name differ for the second one: it is meant so.
const FormatVersion<CMDChannel9File> CMDChannel9File::s_versions[9] = {
    {20080101, &CMDChannel9File::serialize_20080101}, {20080216, &CMDChannel9File::serialize_20080316},
    {20090726, &CMDChannel9File::serialize_20090726}, {20140513, &CMDChannel9File::serialize_20140513},
    {20150707, &CMDChannel9File::serialize_20150707}, {20190112, &CMDChannel9File::serialize_20190112},
    {20190609, &CMDChannel9File::serialize_20190609}, {20190723, &CMDChannel9File::serialize_20190723},
    {20200801, &CMDChannel9File::serialize_20200801}, // the one that is written
};

int CMDChannel9File::serializezk(CArchive& ar)
{
    return serializeFormat(
        ar, *this, {"MEGCHANNELZK", "The opened file is not channel file or corrupted!", wrongFormat}, s_versions);
}

int CMDChannel9File::serializezk_obsolete20071230(CArchive& ar, bool readTag)
{
    CString tag("MEGCHANNELZK");
    std::int32_t version = 20080101;
    if (ar.IsStoring() || readTag)
        ar.exchangeNamed("tag", tag);
    if (tag != CString("MEGCHANNELZK"))
        return fail("The opened file is not MEG file or corrupted!");
    ar.exchangeNamed("version", version);
    if (ar.IsStoring())
        return 1;
    switch (version) {
    case 20021120:
        return serialize_2002_11_20(ar);
    case 20030219:
        return serialize_2003_2_19(ar);
    case 20030309:
        return serialize_2003_1_9(ar);
    case 20030821:
        return serialize_2003_8_21(ar);
    default:
        AfxMessageBox("Wrong file format!!?", MB_OK);
        return 1;
    }
}

// These versions hold nothing behind their number.
int CMDChannel9File::serialize_2002_11_20(CArchive&)
{
    return 1;
}
int CMDChannel9File::serialize_2003_1_9(CArchive&)
{
    return 1;
}
int CMDChannel9File::serialize_2003_2_19(CArchive&)
{
    return 1;
}
int CMDChannel9File::serialize_2003_8_21(CArchive&)
{
    return 1;
}
int CMDChannel9File::export_importChalData(CArchive&)
{
    return 1;
}
int CMDChannel9File::serialize_20080101(CArchive&)
{
    return 1;
}
int CMDChannel9File::serialize_20080316(CArchive&)
{
    return 1;
}

int CMDChannel9File::serialize_20090726(CArchive& ar)
{
    return _01serializeChnlInfo_obsolete20190609(ar) && _02serializeGeomHwObsolete2014(ar) &&
           _03serializeTimeData(ar) && _04serializeSpctmData(ar);
}

int CMDChannel9File::serialize_20140513(CArchive& ar)
{
    return _01serializeChnlInfo_obsolete20190609(ar) && _02serializeGeomHwxObsolete2019(ar) &&
           _03serializeTimeData(ar) && _04serializeSpctmData(ar) && exchangeRange(ar);
}

int CMDChannel9File::serialize_20150707(CArchive& ar)
{
    return _01serializeChnlInfo_obsolete20190609(ar) && _02serializeGeomHwxObsolete2019(ar) &&
           _03serializeTimeData(ar) && _04serializeSpctmData(ar) && serializeRangeAndLabels(ar);
}

int CMDChannel9File::serialize_20190112(CArchive& ar)
{
    return _01serializeChnlInfo_obsolete20190609(ar) && _02serializeGeomHwx_obsolete20200730(ar) &&
           _03serializeTimeData(ar) && _04serializeSpctmData(ar) && serializeRangeAndLabels(ar);
}

int CMDChannel9File::serialize_20190609(CArchive& ar)
{
    return toldOfChannel(_01serializeChnlInfo(ar) && _02serializeGeomHwx_obsolete20200730(ar) &&
                         _03serializeTimeData(ar) && _04serializeSpctmData(ar) && _06serializeWavAnlyRslt(ar));
}

int CMDChannel9File::serialize_20190723(CArchive& ar)
{
    return toldOfChannel(_01serializeChnlInfo(ar) && _02serializeGeomHwx_obsolete20200730(ar) &&
                         _03serializeTimeData(ar) && _04serializeSpctmData(ar) && _06serializeWavAnlyRslt(ar) &&
                         _07serializeShowShrinkData(ar));
}

int CMDChannel9File::serialize_20200801(CArchive& ar)
{
    return toldOfChannel(_01serializeChnlInfo(ar) && _02serializeGeomHwx(ar) && _03serializeTimeData(ar) &&
                         _04serializeSpctmData(ar) && _06serializeWavAnlyRslt(ar) && _07serializeShowShrinkData(ar));
}

// Who the channel is: list place, place on the plane, carried values, names, range of values, labels.
int CMDChannel9File::_01serializeChnlInfo(CArchive& ar)
{
    const ArchiveSection section(ar, "_01serializeChnlInfo");
    return exchangeIdentity(ar) && serializeRangeAndLabels(ar);
}

int CMDChannel9File::_01serializeChnlInfo_obsolete20190609(CArchive& ar)
{
    const ArchiveSection section(ar, "_01serializeChnlInfo_obsolete20190609");
    return exchangeIdentity(ar);
}

int CMDChannel9File::exchangeIdentity(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nMegListID, m_dChnlParamA, m_dSns2dX, m_dSns2dY, m_nChnlParamE, m_nChnlParamD, m_nChnlParamF,
                    m_nChnlParamG, m_nSnsGainApplied, m_nChnlParamH, m_nChnlParamI, m_dChnlParamJ, m_dChnlParamK,
                    m_dChnlParamL, m_strChannelName, m_strChannelNameRaw);
    return 1;
}

int CMDChannel9File::exchangeRange(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nChnlRangeState, m_dDataMin, m_dDataMean, m_dDataMax, m_dDataMaxAbs);
    return 1;
}

// Two of the carried values stand in the record for the second time here, and this place wins.
int CMDChannel9File::serializeRangeAndLabels(CArchive& ar)
{
    exchangeRange(ar);
    EXCHANGE_FIELDS(ar, m_dPhysicalMin, m_dPhysicalMax, m_strChnlLabelA, m_strChnlLabelB, m_dChnlParamK, m_dChnlParamL,
                    m_dChnlParamM);
    return 1;
}

int CMDChannel9File::_02serializeGeomHwx(CArchive& ar)
{
    static constexpr std::array knownTypes = {1, 2, 3, 4, 5};
    const ArchiveSection section(ar, "_02serializeGeomHwx");
    return serializeGeometryType(ar) && serializeGeometryRecord(ar, knownTypes) && serializeBalance(ar);
}

int CMDChannel9File::_02serializeGeomHwx_obsolete20200730(CArchive& ar)
{
    static constexpr std::array knownTypes = {1, 2, 3, 4};
    const ArchiveSection section(ar, "_02serializeGeomHwx_obsolete20200730");
    return serializeGeometryType(ar) && serializeGeometryRecord(ar, knownTypes) && serializeBalance(ar);
}

int CMDChannel9File::_02serializeGeomHwxObsolete2019(CArchive& ar)
{
    static constexpr std::array knownTypes = {1, 2, 4};
    const ArchiveSection section(ar, "_02serializeGeomHwxObsolete2019");
    // In this section and the next a channel of type 3 has no guard at all.
    return serializeGeometryType(ar) && (m_nGeomType == 3 || serializeGeometryRecord(ar, knownTypes)) &&
           serializeBalance(ar);
}

int CMDChannel9File::_02serializeGeomHwObsolete2014(CArchive& ar)
{
    static constexpr std::array knownTypes = {1, 2, 4};
    const ArchiveSection section(ar, "_02serializeGeomHwObsolete2014");
    serializeGeometryType(ar);
    // Files of that time had one kind of MEG channel, without a number.
    if (ar.IsLoading() && m_nChannelType == 0)
        m_nChannelType = 10;
    return (m_nGeomType == 3 || serializeGeometryRecord(ar, knownTypes)) && serializeBalance(ar);
}

int CMDChannel9File::serializeGeometryType(CArchive& ar)
{
    if (ar.IsLoading())
        _cleanGeomHw();
    EXCHANGE_FIELDS(ar, m_strChannelTypeName, m_nChannelType, m_nGeomType);
    return 1;
}

namespace {

// A guarded geometry record. What the record itself answers is not looked at. An object of another class than the
// channel's geometry type tells, which setGeomType() can leave behind, is not written.
template <class Record>
int exchangeGeometry(CArchive& ar, std::unique_ptr<CGeomzk>& geometry)
{
    auto* record = dynamic_cast<Record*>(geometry.get());
    if (!exchangeGuard(ar, record != nullptr, "m_pGeomHw"))
        return 1;
    if (ar.IsLoading()) {
        auto made = tryNew<Record>();
        if (made == nullptr)
            return fail("Is there enough memory?!");
        record = made.get();
        geometry = std::move(made);
    }
    record->serializezk(ar);
    return 1;
}

} // namespace

// A guard and a record of a known type; a guard alone, 0 when written and dropped when read, for any other.
int CMDChannel9File::serializeGeometryRecord(CArchive& ar, std::span<const int> knownTypes)
{
    const bool known = std::find(knownTypes.begin(), knownTypes.end(), m_nGeomType) != knownTypes.end();
    switch (known ? m_nGeomType : 0) {
    case 1:
        return exchangeGeometry<CMEGSensorzk>(ar, m_pGeomHw);
    case 2:
        return exchangeGeometry<CEEGelectrodezk>(ar, m_pGeomHw);
    case 3:
        return exchangeGeometry<CStimTrigzk>(ar, m_pGeomHw);
    case 4:
        return exchangeGeometry<CMisceSnsrzk>(ar, m_pGeomHw);
    case 5:
        return exchangeGeometry<CSensorAcceleratorzk>(ar, m_pGeomHw);
    default:
        exchangeGuard(ar, false, "m_pGeomHw");
        return 1;
    }
}

int CMDChannel9File::serializeBalance(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nMegBalMode, m_nMegChnlNumBal);
    if (!exchangeGuard(ar, m_pMegBalInf != nullptr, "m_pMegBalInf"))
        return 1;
    if (ar.IsLoading()) {
        const bool possible =
            m_nMegChnlNumBal >= 0 && ar.mayHold(static_cast<std::uint64_t>(m_nMegChnlNumBal) * sizeof(MEG_BalInfo));
        m_pMegBalInf = possible ? tryNewZeroArray<MEG_BalInfo>(m_nMegChnlNumBal) : nullptr;
        if (m_pMegBalInf == nullptr)
            return 0; // without a message: it is meant so
    }
    for (int i = 0; i < m_nMegChnlNumBal; ++i) {
        MEG_BalInfo& entry = m_pMegBalInf[static_cast<std::size_t>(i)];
        ar.exchangeNamed("m_nBalChannelID, m_strBalChannelName, m_dBalCoefficient", entry.m_nBalChannelID,
                         entry.m_strBalChannelName, entry.m_dBalCoefficient);
    }
    return 1;
}

int CMDChannel9File::_03serializeTimeData(CArchive& ar)
{
    const ArchiveSection section(ar, "_03serializeTimeData");
    if (ar.IsLoading())
        _cleanTimeDataC(true);
    EXCHANGE_FIELDS(ar, m_nBkDataSample);
    if (!exchangeSamples(ar, m_pBkData, m_nBkDataSample, "m_pBkData"))
        return 0;
    EXCHANGE_FIELDS(ar, m_nTotalSample, m_nCurrentSample);
    return exchangeSamples(ar, m_pDataWave, m_nTotalSample, "m_pDataWave");
}

// A block that is cut short goes unnoticed; only one that gives nothing is an error. A block of no bytes is none.
int CMDChannel9File::exchangeSamples(CArchive& ar, SampleArray& samples, std::int64_t count, const char* name)
{
    switch (exchangeGuardedBlock(ar, samples, count, name)) {
    case BlockResult::noMemory:
        return fail("Not enough memory!");
    case BlockResult::empty:
        return fail("Read back up data error!?");
    default:
        return 1;
    }
}

int CMDChannel9File::_04serializeSpctmData(CArchive& ar)
{
    const ArchiveSection section(ar, "_04serializeSpctmData");
    if (ar.IsLoading())
        _cleanSpctmDataChnl();
    const auto exchange = [&ar](CSpctmChnlzk& spectrum) {
        spectrum.serializeSpctmCzk(ar); // what it answers is not looked at
        return 1;
    };
    return exchangeSlot(ar, m_pSpctmChnlA, "m_pSpctmChnlA", noMemoryForObject, exchange) &&
           exchangeSlot(ar, m_pSpctmChnlC, "m_pSpctmChnlC", noMemoryForObject, exchange) &&
           exchangeSlot(ar, m_pSpctmChnlR, "m_pSpctmChnlR", noMemoryForObject, exchange);
}

int CMDChannel9File::_06serializeWavAnlyRslt(CArchive& ar)
{
    const ArchiveSection section(ar, "_06serializeWavAnlyRslt");
    if (ar.IsLoading())
        _cleanWaveAnlzRsltChnl();
    const auto exchange = [&ar](CChnlWaveAnalyzedResultzk& result) { return result.serialize(ar); };
    // The third record is written from the X slot and read into the C slot, over the one just read: old files read so,
    // and it stays.
    std::unique_ptr<CChnlWaveAnalyzedResultzk>& third = ar.IsStoring() ? m_pWaveResultX : m_pWaveResultC;
    return exchangeSlot(ar, m_pWaveResultA, "m_pWaveResultA", noMemoryForObject, exchange) &&
           exchangeSlot(ar, m_pWaveResultC, "m_pWaveResultC", noMemoryForObject, exchange) &&
           exchangeSlot(ar, third, "m_pWaveResultX", noMemoryForObject, exchange);
}

int CMDChannel9File::_07serializeShowShrinkData(CArchive& ar)
{
    const ArchiveSection section(ar, "_07serializeShowShrinkData");
    if (ar.IsLoading())
        _cleanShowShrinkData();
    return exchangeSlot(ar, m_pShowShrink, "m_pShowShrink", noMemoryForObject,
                        [&ar](SHOW_SHRINK_DATAF& buffer) { return buffer.serialize(ar); });
}

} // namespace megset
