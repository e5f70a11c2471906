#pragma once
// The trial file: tag "MEGTRIALZK", every version ever released, and opening and saving of a trial. Needs the path
// operations of CMDTrial9FileA and the clean operations of the layers that own what a section holds.

#include "megset/persistence/CMDTrial9FileA.h"
#include "megset/platform/formatVersion.h"

namespace megset {

class CMDChannelzk;
struct FileDialogMemory;

/// The trial's layer for its file: the newest version is written, all are read.
class CMDTrial9FileB : public CMDTrial9FileA
{
public:
    /// Writes the newest file, or reads one of any version. 0 with "The opened file is not trial or corrupted!" for
    /// another tag, "Wrong MEG data file format!!?" for an unknown version, or "Trial file format!!?" where a section
    /// failed, which has told why. Archive exceptions pass. What was read until then stays; a section that a version
    /// lacks leaves its fields as they are.
    int serializezk(CArchive& ar);
    /// Finds the file (CMDTrial9FileA::findFile4FilePath, which may ask) and reads it; its path is then in
    /// m_strTrialFilePath. 0, silently, when it is not found or can't be opened; 0 with "Save trail data error!" when
    /// it can't be read.
    int openTrialData(CString& path, const CDocument* doc, const CString& datasetPath);
    /// Writes the trial to `path`, or with `useGivenPath` false to where that file is found now. A file that can't be
    /// opened is told, and "File save error:%s %d, would you like to save as a new file?" asks for another. The path
    /// used is then in m_strTrialFilePath; `path` stays as it is. 0 when there is none, or with "Save trail data
    /// error!" when writing failed, which leaves a part of a file. A full disk raises CFileException.
    int saveTrialData(CString& path, const CDocument* doc, const CString& datasetPath, bool useGivenPath);

    // Text and exchange, in CMDTrial9FileBText.cpp. Exceptions of the file pass.

    /// A channel, -1 for the current one, as CMDChannel9File::exportMEGData2TxtFile writes it; 0 for no channel.
    int exportMEGData2TxtFile(CFile& file, int channel, std::int64_t from, std::int64_t to, int bSelect) const;
    /// The name of each channel in turn. Gives 1.
    int exportSnsrInf2TxtFile(CFile& file) const;
    /// Does nothing: the exchange file holds no samples. Gives 1.
    int export_importMEGTrial(CFile* file, bool bImport);

protected:
    // Sections that an acquisition's trial has as well. 1, or 0 where one failed.

    int _01serializeTralBasic(CArchive& ar);
    int _05serializeTrigMarks(CArchive& ar);
    int _06serializeTrialHeadLocation(CArchive& ar);
    int _11serializeMontages(CArchive& ar);
    int _13serializeSeegProbe(CArchive& ar);
    int serializeResampling(CArchive& ar);
    /// The record of one channel, by its own class.
    using ExchangeChannel = int (*)(CMDChannelzk& channel, CArchive& ar);
    int exchangeChannels(CArchive& ar, ExchangeChannel exchange);

    /// Where a trial's file was opened for writing.
    enum class OpenedAt
    {
        nowhere,
        given,
        chosen ///< by the user, and the path is the chosen one
    };
    /// What the dialog for another place shows and remembers.
    struct SaveDialog
    {
        const char* extension;
        const char* filter;
        FileDialogMemory& memory;
    };
    OpenedAt openForSaving(CFile& file, CString& path, const SaveDialog& other) const;
    /// Writes the newest form to a file that is open, and closes it. 0 as saveTrialData() tells.
    int writeOpened(CFile& file, const CString& path);
    /// The record of a trial in one form.
    using ExchangeTrial = int (*)(CMDTrial9FileB& trial, CArchive& ar);
    /// Reads the file of that path, which is then the trial's. 0 as openTrialData() tells, also for an empty path.
    int readFound(const CString& found, ExchangeTrial exchange);

private:
    int serializezk20080229(CArchive& ar);
    int serializezk20080601(CArchive& ar);
    int serializezk20091228(CArchive& ar);
    int serializezk20100419(CArchive& ar);
    int serializezk20120228(CArchive& ar);
    int serializezk20120618(CArchive& ar);
    int serializezk20130212(CArchive& ar);
    int serializezk20160704(CArchive& ar);
    int serializezk20161110(CArchive& ar);
    int serializezk20161122(CArchive& ar);
    int serializezk20190609(CArchive& ar);
    int serializezk20190730(CArchive& ar);

    // What versions of the file have in common, each with the sections of the one above and its own.
    int sections20080229(CArchive& ar);
    int sections20080601(CArchive& ar);
    int sections20100419(CArchive& ar);
    int sections20120228(CArchive& ar);
    int sections20130212(CArchive& ar);
    int sections20160704(CArchive& ar);
    int sections20161110(CArchive& ar);
    int sections20161122(CArchive& ar);
    int sections01To08(CArchive& ar);

    int _02serializeTralChnls(CArchive& ar);
    int _03serializeTrialVlmSrc01(CArchive& ar);
    int _03serializeTrialVlmSrcCoh02(CArchive& ar);
    int _04serializeTrialSpctms(CArchive& ar);
    int _07serializeCoherence(CArchive& ar);
    int _08serializeSpctmCCDataFace(CArchive& ar);
    int _09serializeVirtWaveSpctmSrcCoh(CArchive& ar);
    int _09serializeVirtWaveSpctmSrcCoh_obsolete20190730(CArchive& ar);
    int _12serializeIcaFace(CArchive& ar);

    int storeChannels(CArchive& ar, ExchangeChannel exchange);
    int loadChannels(CArchive& ar, ExchangeChannel exchange);
    void cleanVirtual();
    int serializeVirtSpctmSrcCoh(CArchive& ar);
    int serializeMontageCr(CArchive& ar);
    void correctCurrentProbe();

    static const FormatVersion<CMDTrial9FileB> s_versions[12];
};

} // namespace megset
