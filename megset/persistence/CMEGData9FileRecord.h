#pragma once
// The dataset file of an acquisition: tag "MEACQDATASETZK", and the step that makes it an ordinary dataset. Needs the
// sections of CMEGData9FileB and opening and saving of trials.

#include "megset/persistence/CMEGData9FileC.h"

namespace megset {

/// A recording is a file ".mega" and a file ".trla" for each trial, which stay as they are: reading them for a document
/// writes each trial as a file ".trl" into the document's folder. m_aRecordTrialPath and m_strRecordFolder keep what
/// the file tells of its own trials. The new files have the names of session and trial, with "_" for what would lead to
/// another folder.
class CMEGData9FileRecord : public CMEGData9FileC
{
public:
    /// Writes the newest file or reads one of any version; in both directions the acquired trials are then converted.
    /// 0 with "The opened file is not MEG acquisition file or corrupted!" for another tag, with "Wrong MEG acquisition
    /// file format!!?" for an unknown version, without a text for an archive without a file, and where a record failed,
    /// which has told why. A conversion that fails shows "Import recorded trial to data trail error!" and gives 1 all
    /// the same. A trial whose file is not found, or can't be read, shows "Open trial data failed " and gets no path.
    /// Archive exceptions pass; what was converted until then is in the list of paths.
    int serializeRecordMe(CArchive& ar, CDocument* doc);
    /// The same without the conversion, for programs that look into a file and change nothing.
    int serializeRecordWithoutTrials(CArchive& ar);
    /// Reads a file that the user chooses, for no document: the trials go to m_strTrialFolder as it stands. 1 once the
    /// file is open, whatever became of it; 0 when the user cancels or it can't be opened, which is told.
    int openRecordMeStd();
    /// Reads a file for a document, which becomes the dataset's with folder and names from its path. Gives what
    /// serializeRecordMe gives; 0, silently, for an empty path, no document or one without a path, a path of a document
    /// that can't be split, and a file that can't be opened.
    int openRecordMeX(const CString& path, CDocument* doc);
    /// openTrial, but with an `acqPath`, the path of a ".mega" file, the trial is read in the acquisition's form.
    /// Messages and results as there; also "Open trial data failed " and 0 without a document.
    int openTrialRecord(int trial, const CString& acqPath);
    /// openTrialRecord without a path, then the current trial; null when that failed.
    CMDTrialzk* getTrialRecord(int trial);

private:
    int serializeAcq20200727(CArchive& ar);
    int serializeAcq20220418(CArchive& ar);

    int _00serializeMDTrialInfo(CArchive& ar);
    int _01serializeAcqFiducialPts(CArchive& ar);
    int _02serializeAcqTrgMkSgTrPtAm(CArchive& ar);
    int _03serializeAcqSensors(CArchive& ar);
    int _04serializeAcqFilterInfo(CArchive& ar);
    int _06serializeAcqRecordInfo(CArchive& ar);
    int _09serializeAcqShowInfo(CArchive& ar);
    int _10serializeAcqMEGOthers(CArchive& ar);
    int _11serializeAcqROI(CArchive& ar);
    int _12serializeAcqParam4AllTrlChnlShow(CArchive& ar);
    int _12serializeAcqParam4AllTrlChnlShow_obsolete20220418(CArchive& ar);
    int _13serializeAcqMkMgSelect4Cut(CArchive& ar);
    int _14serializeAcqEegData(CArchive& ar);
    int sections00To11(CArchive& ar);
    int sections13To14(CArchive& ar);

    bool takeDocument(CDocument& doc);
    int moveRcdTrl2NewDatasetTrl(const CString& megaPath, CDocument* doc);
    int convertTrials(const CString& megaPath, CDocument* doc, CStringArray& written);
    std::unique_ptr<CMDTrialzk> takeAcquiredTrial(int index, bool wasInMemory, const CString& megaPath,
                                                  const CString& docFolder);
    void fillSessionName(const CDocument* doc);
    void saveConverted(int index, bool wasInMemory, CStringArray& written);

    static const FormatVersion<CMEGData9FileRecord> s_acqVersions[2];
};

} // namespace megset
