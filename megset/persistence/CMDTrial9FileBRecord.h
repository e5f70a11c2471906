#pragma once
// The trial file of an acquisition: tag "MEACQTRIALZK", what a recording makes and no results of analyses. Needs the
// sections and the opening of files of CMDTrial9FileB.

#include "megset/persistence/CMDTrial9FileB.h"

namespace megset {

/// The trial's layer for its file in an acquisition, which has no results of analyses.
class CMDTrial9FileBRecord : public CMDTrial9FileB
{
public:
    /// Writes the file, or reads one. 0 with "The opened file is not trial or corrupted!" for another tag, "Wrong
    /// MeAcqTrial file format!!?" for an unknown version, and without a further text where a section failed. Reading
    /// leaves results of analyses as they are. Archive exceptions pass.
    int serializeAcq(CArchive& ar);
    /// Finds an acquisition's trial file and reads it; its path is then in m_strTrialFilePath. It is looked for as
    /// `path` stands, beside the acquisition's dataset file and at the current directory; then "Find trial file%s ?"
    /// asks the user. The document's path has no part in the search. 0, silently, when it is not found or can't be
    /// opened; 0 with "Save trail data error!" when it can't be read.
    int openTrialAcq(const CString& path, const CString& megaPath, const CString& docPath);
    /// Writes the trial in the form of CMDTrial9FileB::serializezk, which openTrialAcq can't read: it is meant so. A
    /// file that can't be opened is told, and "File save error:%s %d, would you like to save as a new file?" asks for
    /// another. 1; 2 when the user chose another, with its path and, with the closing backslash, its folder in the
    /// arguments; 0 when there is none, or with "Save trail data error!". A full disk raises CFileException.
    int saveTrialAcq(CString& path, CString& newFolder);

private:
    int serializeAcq20200727(CArchive& ar);

    int _01serializeAcqTralBasic(CArchive& ar);
    int _02serializeAcqTralChnls(CArchive& ar);
    int _05serializeAcqTrigMarks(CArchive& ar);
    int _06serializeAcqTrialHeadLocation(CArchive& ar);
    int _11serializeAcqMontages(CArchive& ar);
    int _13serializeAcqSeegProbe(CArchive& ar);

    static CString checkfindTrialAcq(const CString& path, const CString& megaPath, const CString& docPath);

    static const FormatVersion<CMDTrial9FileBRecord> s_acqVersions[1];
};

} // namespace megset
