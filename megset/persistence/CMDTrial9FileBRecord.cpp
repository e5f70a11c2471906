#include "megset/persistence/CMDTrial9FileBRecord.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CFileDialog.h"

namespace megset {
namespace {

CString askForAcquiredTrial(const CString& name)
{
    if (AfxMessageBox(CString::formatted("Find trial file%s ?", name), MB_YESNO) != IDYES)
        return {};
    static FileDialogMemory memory;
    CFileDialog dialog(true, "trla", "", OFN_FILEMUSTEXIST, "Acq trial files (*.trla)|*.trla|All Files (*.*)|*.*||");
    dialog.remember(memory);
    return dialog.DoModal() == IDOK ? dialog.GetPathName() : CString();
}

} // namespace

const FormatVersion<CMDTrial9FileBRecord> CMDTrial9FileBRecord::s_acqVersions[1] = {
    {20200727, &CMDTrial9FileBRecord::serializeAcq20200727},
};

int CMDTrial9FileBRecord::serializeAcq(CArchive& ar)
{
    const FormatTexts texts{"MEACQTRIALZK", "The opened file is not trial or corrupted!",
                            "Wrong MeAcqTrial file format!!?"};
    return serializeFormat(ar, *this, texts, s_acqVersions);
}

int CMDTrial9FileBRecord::serializeAcq20200727(CArchive& ar)
{
    return _01serializeAcqTralBasic(ar) && _02serializeAcqTralChnls(ar) && _05serializeAcqTrigMarks(ar) &&
           _06serializeAcqTrialHeadLocation(ar) && _11serializeAcqMontages(ar) && _13serializeAcqSeegProbe(ar) &&
           serializeResampling(ar);
}

int CMDTrial9FileBRecord::_01serializeAcqTralBasic(CArchive& ar)
{
    return _01serializeTralBasic(ar);
}

int CMDTrial9FileBRecord::_02serializeAcqTralChnls(CArchive& ar)
{
    const ArchiveSection section(ar, "_02serializeAcqTralChnls");
    return exchangeChannels(ar,
                            [](CMDChannelzk& channel, CArchive& archive) { return channel.serializeAcqzk(archive); });
}

int CMDTrial9FileBRecord::_05serializeAcqTrigMarks(CArchive& ar)
{
    return _05serializeTrigMarks(ar);
}

int CMDTrial9FileBRecord::_06serializeAcqTrialHeadLocation(CArchive& ar)
{
    return _06serializeTrialHeadLocation(ar);
}

int CMDTrial9FileBRecord::_11serializeAcqMontages(CArchive& ar)
{
    return _11serializeMontages(ar);
}

int CMDTrial9FileBRecord::_13serializeAcqSeegProbe(CArchive& ar)
{
    return _13serializeSeegProbe(ar);
}

// The document's path is carried along and not looked at: it is meant so.
CString CMDTrial9FileBRecord::checkfindTrialAcq(const CString& path, const CString& megaPath, const CString&)
{
    const CString name = filePath2FileName(path);
    CString found;
    if (findFile(path, found))
        return found;
    if (!path.IsEmpty() && !megaPath.IsEmpty() && findFile(filePath2FileDirectory(megaPath) + name, found))
        return found;
    found = findAtCurrentDirectory(name);
    return found.IsEmpty() ? askForAcquiredTrial(name) : found;
}

int CMDTrial9FileBRecord::openTrialAcq(const CString& path, const CString& megaPath, const CString& docPath)
{
    return readFound(checkfindTrialAcq(path, megaPath, docPath), [](CMDTrial9FileB& trial, CArchive& ar) {
        return static_cast<CMDTrial9FileBRecord&>(trial).serializeAcq(ar);
    });
}

int CMDTrial9FileBRecord::saveTrialAcq(CString& path, CString& newFolder)
{
    static FileDialogMemory memory;
    newFolder.Empty();
    CFile file;
    const OpenedAt opened =
        openForSaving(file, path, {"trla", "Trial acquired files (*.trla)|*.trla|All Files (*.*)|*.*||", memory});
    if (opened == OpenedAt::nowhere)
        return 0;
    if (opened == OpenedAt::chosen)
        newFolder = filePath2FileDirectory(path);
    if (!writeOpened(file, path)) // not in the form of an acquisition: it is meant so
        return 0;
    return opened == OpenedAt::chosen ? 2 : 1;
}

} // namespace megset
