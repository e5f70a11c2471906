#pragma once
// Folder, names and trial files of a dataset: where files go, how trials come into the dataset and leave it, and how
// one is lent. Needs opening and saving of CMEGData and the trial file of CMDTrial9FileB.

#include "megset/display/CMEGData8Show.h"

namespace megset {

class CArchive;

/// Every trial of a dataset has a file and a full path in m_aTrialFilePath, which must stay as long as the array of
/// trials; operations that find it otherwise show "File path and trial error!". The names of new files begin with the
/// session name. A name that would be that of another trial's file gets "_1", "_2" and so on before its extension, so
/// that no trial is written over another. A full disk raises CFileException, with all trials kept.
///
/// Several operations change the current directory of the process.
class CMEGData9FileA00Basic : public CMEGData8Show
{
public:
    // Folder and names

    /// Sets the document, which stays the caller's. With `updatePath` also folder, session name and path of the
    /// dataset, from the path of the document or, for null, of the one before; without a path there, the folder alone
    /// from the file of the current trial; or else from the user: "Please select a direcotry to store the  data!". The
    /// folder becomes the current directory. 1; 0 when the user cancels.
    int setDocument(CDocument* doc, bool updatePath);
    CDocument* getDocument() const { return m_pDocument; }
    /// Takes the folder of an existing file, and makes it the current directory. 0 with "Find file:%s error \n" or "Set
    /// directory error:%s error \n".
    int setFilePathDirectory(const CString& path);
    /// Takes the path of the archive's file as the dataset's. 1; 0 for null or an archive without a file.
    int checkFilePath(CArchive* ar);

    // Trials from elsewhere. They come behind the last one, become current and stay in memory.

    /// Adds a trial and writes its file "<folder><session>Trial<index>.trl". Takes over the trial in every case: with
    /// no memory ("Not enough memory?!", 0) it goes to getUnsavedTrials(). A file that can't be written leaves the
    /// trial without a path, and the result is 1. 0 for null and for a trial of the dataset.
    int addTrial(CMDTrialzk* trial, int isVirtual);
    /// The same for a trial that is complete: its name and kind stay. Without `save` it gets neither file nor path. The
    /// file is `path` as it stands or, where that is empty, named as above in a folder that setDocument(null, true)
    /// finds. Takes over the trial in every case.
    int addTrialSave(CMDTrialzk* trial, const CString& path, int save);
    /// Replaces the samples of a trial, which is opened, from a block, channel after channel. 1; 0 with "Open trial
    /// data error?" or "Channels have not been initialized!?", for fewer than 1 channel or sample, for more channels
    /// than the trial has, and for null data.
    int addTrialDataL2F(int trial, int channels, std::int64_t samples, const std::int32_t* data);
    int setTrialDataF(int trial, int channels, std::int64_t samples, const double* data);
    /// Grows the dataset to that many trials, the new ones empty and in memory, the last one current. Their paths are
    /// for the caller to add. 0 unless it grows, and without memory ("Not enough memory?!").
    int expandTrialSpace(int total);

protected:
    using TrialArray = SlotArray<CMDTrialzk>;

    int takeDocumentPath(const CString& path);
    int askForFolder();
    template <class Add>
    int takeOver(CMDTrialzk* trial, Add add);
    bool makeLonger(TrialArray& longer, int total) const;
    CMDTrialzk& installLast(TrialArray longer, std::unique_ptr<CMDTrialzk> trial);
    int saveTrialAs(CMDTrialzk& trial, const CString& path) const;
    void saveAddedTrial(CMDTrialzk& trial, const CString& path);
    CString freePath(const CString& stem, int exceptPlace) const;
    CString addedPath() const;
    template <class Sample, class Add>
    int fillTrial(int trial, int channels, std::int64_t samples, const Sample* data, Add add);
};

} // namespace megset
