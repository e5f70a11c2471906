#include "megset/persistence/CMDTrial9FileB.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/persistence/exchangeSlot.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CFileDialog.h"
#include "megset/platform/CUserHost.h"
#include "megset/platform/paths.h"
#include "megset/spectral/CSpctmTrialzk.h"

#include <algorithm>
#include <array>
#include <utility>

namespace megset {
namespace {

constexpr const char* saveError = "Save trail data error!";

int toldOfTrial(int result)
{
    return result ? result : fail("Trial file format!!?");
}

} // namespace

// The number that selects a routine and the date in its name differ in the last row but one: it is meant so.
const FormatVersion<CMDTrial9FileB> CMDTrial9FileB::s_versions[12] = {
    {20080229, &CMDTrial9FileB::serializezk20080229}, {20080601, &CMDTrial9FileB::serializezk20080601},
    {20091228, &CMDTrial9FileB::serializezk20091228}, {20100419, &CMDTrial9FileB::serializezk20100419},
    {20120228, &CMDTrial9FileB::serializezk20120228}, {20120618, &CMDTrial9FileB::serializezk20120618},
    {20130212, &CMDTrial9FileB::serializezk20130212}, {20160704, &CMDTrial9FileB::serializezk20160704},
    {20161110, &CMDTrial9FileB::serializezk20161110}, {20161122, &CMDTrial9FileB::serializezk20161122},
    {20190906, &CMDTrial9FileB::serializezk20190609}, {20190730, &CMDTrial9FileB::serializezk20190730},
};

int CMDTrial9FileB::serializezk(CArchive& ar)
{
    return serializeFormat(
        ar, *this, {"MEGTRIALZK", "The opened file is not trial or corrupted!", "Wrong MEG data file format!!?"},
        s_versions);
}

// ---- versions

int CMDTrial9FileB::serializezk20080229(CArchive& ar)
{
    return toldOfTrial(sections20080229(ar));
}
int CMDTrial9FileB::serializezk20080601(CArchive& ar)
{
    return toldOfTrial(sections20080601(ar));
}
int CMDTrial9FileB::serializezk20091228(CArchive& ar)
{
    return toldOfTrial(sections20080601(ar));
}
int CMDTrial9FileB::serializezk20100419(CArchive& ar)
{
    return toldOfTrial(sections20100419(ar));
}
int CMDTrial9FileB::serializezk20120228(CArchive& ar)
{
    return toldOfTrial(sections20120228(ar));
}
int CMDTrial9FileB::serializezk20120618(CArchive& ar)
{
    return toldOfTrial(sections20120228(ar) && serializeResampling(ar));
}
int CMDTrial9FileB::serializezk20130212(CArchive& ar)
{
    return toldOfTrial(sections20130212(ar) && serializeResampling(ar));
}
int CMDTrial9FileB::serializezk20160704(CArchive& ar)
{
    return toldOfTrial(sections20160704(ar) && serializeResampling(ar));
}
int CMDTrial9FileB::serializezk20161110(CArchive& ar)
{
    return toldOfTrial(sections20161110(ar) && serializeResampling(ar));
}
int CMDTrial9FileB::serializezk20161122(CArchive& ar)
{
    return toldOfTrial(sections20161122(ar) && serializeResampling(ar));
}

int CMDTrial9FileB::serializezk20190609(CArchive& ar)
{
    return toldOfTrial(sections20161122(ar) && m_waveResult.serialize(ar) && serializeResampling(ar));
}

int CMDTrial9FileB::serializezk20190730(CArchive& ar)
{
    return toldOfTrial(sections01To08(ar) && _09serializeVirtWaveSpctmSrcCoh(ar) && _11serializeMontages(ar) &&
                       _12serializeIcaFace(ar) && _13serializeSeegProbe(ar) && m_waveResult.serialize(ar) &&
                       serializeResampling(ar));
}

int CMDTrial9FileB::sections20080229(CArchive& ar)
{
    return _01serializeTralBasic(ar) && _02serializeTralChnls(ar) && _03serializeTrialVlmSrc01(ar) &&
           _04serializeTrialSpctms(ar) && _05serializeTrigMarks(ar) && _06serializeTrialHeadLocation(ar);
}

int CMDTrial9FileB::sections20080601(CArchive& ar)
{
    return sections20080229(ar) && _07serializeCoherence(ar);
}

int CMDTrial9FileB::sections20100419(CArchive& ar)
{
    return sections20080601(ar) && _08serializeSpctmCCDataFace(ar);
}

int CMDTrial9FileB::sections20120228(CArchive& ar)
{
    return sections20100419(ar) && _09serializeVirtWaveSpctmSrcCoh_obsolete20190730(ar);
}

int CMDTrial9FileB::sections20130212(CArchive& ar)
{
    return sections01To08(ar) && _09serializeVirtWaveSpctmSrcCoh_obsolete20190730(ar);
}

// The first sections since both halves of the third are there.
int CMDTrial9FileB::sections01To08(CArchive& ar)
{
    return _01serializeTralBasic(ar) && _02serializeTralChnls(ar) && _03serializeTrialVlmSrc01(ar) &&
           _03serializeTrialVlmSrcCoh02(ar) && _04serializeTrialSpctms(ar) && _05serializeTrigMarks(ar) &&
           _06serializeTrialHeadLocation(ar) && _07serializeCoherence(ar) && _08serializeSpctmCCDataFace(ar);
}

int CMDTrial9FileB::sections20160704(CArchive& ar)
{
    return sections20130212(ar) && _11serializeMontages(ar);
}

int CMDTrial9FileB::sections20161110(CArchive& ar)
{
    return sections20160704(ar) && _12serializeIcaFace(ar);
}

int CMDTrial9FileB::sections20161122(CArchive& ar)
{
    return sections20161110(ar) && _13serializeSeegProbe(ar);
}

// ---- sections

// What the trial is: flags, names, kind, extents. Two words of old files have no field any more.
int CMDTrial9FileB::_01serializeTralBasic(CArchive& ar)
{
    const ArchiveSection section(ar, "_01serializeTralBasic");
    std::int64_t unusedA = 0;
    std::int64_t unusedB = 0;
    EXCHANGE_FIELDS(ar, m_nTrialReservedA, m_nGoodTrial, m_nMegPlaneDone, unusedA, unusedB, m_nTrialReservedB,
                    m_nTrialReservedC, m_strTrialName, m_strTrialFilePath, m_nVirtualTrial, m_nTrialKind,
                    m_nTrialIndex);
    m_megContour.exchangeExtents(ar);
    return 1;
}

int CMDTrial9FileB::_02serializeTralChnls(CArchive& ar)
{
    const ArchiveSection section(ar, "_02serializeTralChnls");
    return exchangeChannels(ar, [](CMDChannelzk& channel, CArchive& archive) { return channel.serializezk(archive); });
}

int CMDTrial9FileB::exchangeChannels(CArchive& ar, ExchangeChannel exchange)
{
    if (ar.IsLoading())
        _cleanTrialChannels();
    EXCHANGE_FIELDS(ar, m_nCurrentChannel, m_nTotalChannel);
    if (!exchangeGuard(ar, static_cast<bool>(m_ppChannel), "m_ppChannel"))
        return 1;
    return ar.IsStoring() ? storeChannels(ar, exchange) : loadChannels(ar, exchange);
}

int CMDTrial9FileB::storeChannels(CArchive& ar, ExchangeChannel exchange)
{
    for (int i = 0; i < m_nTotalChannel; ++i) {
        CMDChannelzk* channel = m_ppChannel[i];
        if (exchangeGuard(ar, channel != nullptr) && !exchange(*channel, ar))
            return 0;
    }
    return 1;
}

// The array belongs to the trial only after its last channel, or where a channel can't be made, which is told and taken
// for done.
int CMDTrial9FileB::loadChannels(CArchive& ar, ExchangeChannel exchange)
{
    SlotArray<CMDChannelzk> channels;
    const bool possible =
        m_nTotalChannel >= 0 && ar.mayHold(static_cast<std::uint64_t>(m_nTotalChannel) * sizeof(void*));
    if (!possible || !channels.allocate(m_nTotalChannel))
        return fail("Not enough memory!");
    for (int i = 0; i < m_nTotalChannel; ++i) {
        if (!exchangeGuard(ar, false))
            continue;
        CMDChannelzk* channel = channels.set(i, tryNew<CMDChannelzk>());
        if (channel == nullptr) {
            AfxMessageBox("Not enough memory?", MB_OK);
            break;
        }
        if (!exchange(*channel, ar))
            return 0;
    }
    m_ppChannel = std::move(channels);
    return 1;
}

int CMDTrial9FileB::_03serializeTrialVlmSrc01(CArchive& ar)
{
    const ArchiveSection section(ar, "_03serializeTrialVlmSrc01");
    if (ar.IsLoading())
        _cleanTriallSourceData();
    return exchangeSlot(ar, m_pVolumeSrc, "m_pVolumeSrc", "Memory is not enough!?", [&ar](auto& image) {
        image.serializeSAMFace(ar); // what it answers is not looked at
        return 1;
    });
}

int CMDTrial9FileB::_03serializeTrialVlmSrcCoh02(CArchive& ar)
{
    const ArchiveSection section(ar, "_03serializeTrialVlmSrcCoh02");
    if (ar.IsLoading())
        _cleanTriallSourceCoherencData();
    return exchangeSlot(ar, m_pVolumeSrcCoh, "m_pVolumeSrcCoh", "Memory is not enough!?", [&ar](auto& image) {
        const int done = image.serializeFaceVlmSrcNtwk(ar);
        return done || ar.IsStoring() ? 1 : fail("Open volumetric source-coherence data error!?");
    });
}

int CMDTrial9FileB::_04serializeTrialSpctms(CArchive& ar)
{
    const ArchiveSection section(ar, "_04serializeTrialSpctms");
    if (ar.IsLoading())
        _cleanSpctmTrlData();
    const auto exchange = [&ar](CSpctmTrialzk& spectrum) {
        spectrum.serializeTrlSpctmZk(ar); // what it answers is not looked at
        return 1;
    };
    constexpr const char* noMemory = "Is memory enough?!";
    return exchangeSlot(ar, m_pSpctmTrialA, "m_pSpctmTrialA", noMemory, exchange) &&
           exchangeSlot(ar, m_pSpctmTrialC, "m_pSpctmTrialC", noMemory, exchange) &&
           exchangeSlot(ar, m_pSpctmTrialR, "m_pSpctmTrialR", noMemory, exchange);
}

int CMDTrial9FileB::_05serializeTrigMarks(CArchive& ar)
{
    const ArchiveSection section(ar, "_05serializeTrigMarks");
    EXCHANGE_FIELDS(ar, m_nTrigMarkPoint, m_dTrigMarkValue, m_nTrigMarkCode, m_strTrigMarkName, m_nTrigMarkFirst,
                    m_nTrigMarkLast);
    return 1;
}

int CMDTrial9FileB::_06serializeTrialHeadLocation(CArchive& ar)
{
    const ArchiveSection section(ar, "_06serializeTrialHeadLocation");
    return m_headLocalization.serializezk(ar);
}

int CMDTrial9FileB::_07serializeCoherence(CArchive& ar)
{
    const ArchiveSection section(ar, "_07serializeCoherence");
    if (ar.IsLoading())
        _cleanTrialCoherenceFacezkTime();
    return exchangeSlot(ar, m_pCohFaceTime, "m_pCohFaceTime", "Is memeory enough?!",
                        [&ar](auto& coherence) { return coherence.serialize(ar); });
}

int CMDTrial9FileB::_08serializeSpctmCCDataFace(CArchive& ar)
{
    const ArchiveSection section(ar, "_08serializeSpctmCCDataFace");
    if (ar.IsLoading())
        m_pSpctmCCFace.reset();
    return exchangeSlot(ar, m_pSpctmCCFace, "m_pSpctmCCFace", "",
                        [&ar](auto& spectra) { return spectra.serializeSpctmFace(ar); });
}

void CMDTrial9FileB::cleanVirtual()
{
    cleanFaceSrcCoh();
    cleanFaceVirtSpctm();
    cleanFaceVirtWave();
}

int CMDTrial9FileB::_09serializeVirtWaveSpctmSrcCoh(CArchive& ar)
{
    const ArchiveSection section(ar, "_09serializeVirtWaveSpctmSrcCoh");
    if (ar.IsLoading())
        cleanVirtual();
    return m_pkgVirtWave.serializezk(ar) && serializeVirtSpctmSrcCoh(ar);
}

// The old form has one wave in place of the package.
int CMDTrial9FileB::_09serializeVirtWaveSpctmSrcCoh_obsolete20190730(CArchive& ar)
{
    const ArchiveSection section(ar, "_09serializeVirtWaveSpctmSrcCoh_obsolete20190730");
    if (ar.IsLoading())
        cleanVirtual();
    CFaceVirtChnlWavezk* first = ar.IsStoring() ? m_pkgVirtWave.getFaceVirtChnlWave(0, 0) : nullptr;
    if (exchangeGuard(ar, first != nullptr, "m_pkgVirtWave")) {
        if (first != nullptr)
            return first->serializezk(ar) && serializeVirtSpctmSrcCoh(ar);
        auto wave = tryNew<CFaceVirtChnlWavezk>();
        if (wave == nullptr || !wave->serializezk(ar))
            return 0;
        m_pkgVirtWave.addFaceVirtChnlWave(std::move(wave));
    }
    return serializeVirtSpctmSrcCoh(ar);
}

int CMDTrial9FileB::serializeVirtSpctmSrcCoh(CArchive& ar)
{
    return exchangeSlot(ar, m_pVirtSpctm, "m_pVirtSpctm", "",
                        [&ar](auto& spectra) { return spectra.serializeSpctmC(ar); }) &&
           exchangeSlot(ar, m_pSrcCohFace, "m_pSrcCohFace", "",
                        [&ar](auto& coherence) { return coherence.serialize(ar); });
}

int CMDTrial9FileB::_11serializeMontages(CArchive& ar)
{
    const ArchiveSection section(ar, "_11serializeMontages");
    if (ar.IsLoading()) {
        cleanMontageCrInfo();
        cleanMontageIrInfo();
    }
    EXCHANGE_FIELDS(ar, m_bMontageCrDone, m_bMontageIrDone);
    if (!serializeMontageCr(ar))
        return 0;
    return exchangePointers<std::int64_t>(
        ar, m_aMontageIr, [&ar](auto& unit) { return unit.serialize(ar); }, "m_aMontageIr");
}

// The presence word that is written is not 1 but m_nTrialReservedB, so that a unit in a trial where that is 0 can't be
// read back. It is meant so. The word read is not kept.
int CMDTrial9FileB::serializeMontageCr(CArchive& ar)
{
    const std::int32_t presence = ar.exchangeInt(m_pMontageCr != nullptr ? m_nTrialReservedB : 0, "m_pMontageCr");
    if (ar.IsStoring()) {
        if (m_pMontageCr != nullptr)
            m_pMontageCr->serialize(ar);
        return 1;
    }
    if (presence == 0)
        return 1;
    m_pMontageCr = tryNew<CMtgUnit4CommonRefzk>();
    return m_pMontageCr != nullptr ? m_pMontageCr->serialize(ar) : 0;
}

int CMDTrial9FileB::_12serializeIcaFace(CArchive& ar)
{
    const ArchiveSection section(ar, "_12serializeIcaFace");
    if (ar.IsLoading())
        cleanIcaFace();
    return exchangeSlot(ar, m_pFaceIca, "m_pFaceIca", "Memory is not enough!?", [&ar](auto& components) {
        components.serialize(ar); // what it answers is not looked at
        return 1;
    });
}

int CMDTrial9FileB::_13serializeSeegProbe(CArchive& ar)
{
    const ArchiveSection section(ar, "_13serializeSeegProbe");
    if (ar.IsLoading()) {
        m_aSeegProbe.RemoveAll();
        m_nCurrentSeegProbe = -1;
    }
    EXCHANGE_FIELDS(ar, m_nCurrentSeegProbe);
    const auto exchange = [&ar](auto& probe) {
        probe.serializezk(ar); // what it answers is not looked at
        return 1;
    };
    if (!exchangePointers<std::int32_t>(ar, m_aSeegProbe, exchange, "m_aSeegProbe"))
        return 0;
    if (ar.IsLoading())
        correctCurrentProbe();
    return 1;
}

// An index one past the end stays as it is, others beyond it become the last: it is meant so.
void CMDTrial9FileB::correctCurrentProbe()
{
    const int count = m_aSeegProbe.GetSize();
    if (m_nCurrentSeegProbe > count)
        m_nCurrentSeegProbe = count - 1;
    if (count >= 1 && m_nCurrentSeegProbe < 0)
        m_nCurrentSeegProbe = 0;
}

int CMDTrial9FileB::serializeResampling(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_bTrialResampled, m_nTrialResampleStep);
    return 1;
}

// ---- opening and saving

int CMDTrial9FileB::openTrialData(CString& path, const CDocument* doc, const CString& datasetPath)
{
    return readFound(findFile4FilePath(path, doc, datasetPath, true),
                     [](CMDTrial9FileB& trial, CArchive& ar) { return trial.serializezk(ar); });
}

int CMDTrial9FileB::readFound(const CString& found, ExchangeTrial exchange)
{
    if (found.IsEmpty())
        return 0;
    CFile file;
    if (!file.Open(found, CFile::modeRead | CFile::shareExclusive))
        return 0;
    CArchive archive(&file, CArchive::load);
    if (!exchange(*this, archive))
        return fail(saveError); // this text for a load as well
    archive.Close();
    file.Close();
    m_strTrialFilePath = found;
    return 1;
}

int CMDTrial9FileB::saveTrialData(CString& path, const CDocument* doc, const CString& datasetPath, bool useGivenPath)
{
    CString target = useGivenPath ? path : findFile4FilePath(path, doc, datasetPath, false);
    static FileDialogMemory memory;
    CFile file;
    if (openForSaving(file, target, {"trl", "MEG trial files (*.trl)|*.trl|All Files (*.*)|*.*||", memory}) ==
        OpenedAt::nowhere)
        return 0;
    return writeOpened(file, target);
}

int CMDTrial9FileB::writeOpened(CFile& file, const CString& path)
{
    m_strTrialFilePath = path; // before anything is written: the file holds its own path
    CArchive archive(&file, CArchive::store);
    if (!serializezk(archive))
        return fail(saveError);
    archive.Flush();
    archive.Close();
    file.Flush();
    file.Close();
    return 1;
}

// Opens the file for writing, or tells why not and lets the user choose another, which `path` then is.
CMDTrial9FileB::OpenedAt CMDTrial9FileB::openForSaving(CFile& file, CString& path, const SaveDialog& other) const
{
    constexpr unsigned flags = CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive;
    CFileException exception;
    AfxGetHost().trialFileIsWritten(path);
    if (file.Open(path, flags, &exception))
        return OpenedAt::given;
    std::array<char16_t, 1024> message = {};
    exception.GetErrorMessage(message.data(), static_cast<unsigned>(message.size()));
    AfxMessageBox(message.data(), MB_OK);
    const CString question =
        CString::formatted("File save error:%s %d, would you like to save as a new file?", path, exception.m_cause);
    if (AfxMessageBox(question, MB_YESNO) != IDYES)
        return OpenedAt::nowhere;
    // No title is suggested where one of the three parts does not fit.
    CString directory;
    CString title;
    CString extension;
    constexpr std::size_t longestPart = 256;
    _wsplitpath_s(path, nullptr, 0, &directory, longestPart, &title, longestPart, &extension, longestPart);
    CFileDialog dialog(false, other.extension, title, OFN_OVERWRITEPROMPT, other.filter);
    dialog.remember(other.memory);
    if (dialog.DoModal() != IDOK || !file.Open(dialog.GetPathName(), flags))
        return OpenedAt::nowhere;
    path = dialog.GetPathName();
    return OpenedAt::chosen;
}

} // namespace megset
