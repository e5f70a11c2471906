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

    /// Adds the trial of a file that the user chooses, and asks "Add the Trial as Virtual (e.g. averaged)?". From
    /// another folder than the dataset's it asks "Add to the same fold with the dataset file?": Yes copies it there. 1,
    /// with "The trial data does not match with the recording, please re-sample and check the data!" where length and
    /// re-sampling are others; 0 when cancelled, with "Open trial data failed " or "Not enough memory?!", and for a
    /// trial without channels, which is added all the same.
    int addNewTrial2Dataset();

    // New datasets. The trials before them leave memory without being saved.

    /// Makes a dataset of recorded trials "<index><suffix>" in files "<folder><session>_<name>.trl", with channels as
    /// those of the model (null: unnamed ones), and opens the first. Folder and names come from
    /// setDocument(null, true). 1, also where a file can't be written, which leaves its trial without a path; 0 for
    /// counts below 1, without a folder (cancelled, or "File directory has not been initialized!"), or with "Not
    /// enough memory?", which leaves a dataset without trials. A model in the dataset ends with the other trials.
    int setTrialChannels(int trials, int channels, CMDTrialzk* model, const CString& suffix);
    /// Makes a dataset of one virtual trial, which stays in memory, in the file "<folder><session>1<suffix>.trl"; a
    /// null suffix is none. 0 as above.
    int setOneTrialChannels(int channels, CMDTrialzk* model, CDocument* doc, const CString* suffix);

    // Virtual trials. A null source stands for the current trial.

    /// A virtual trial with the channels of the source, of that many samples of zero, for the file
    /// "<directory><name>.trl", which is not written. It belongs to the caller. Null with "There is no data to make a
    /// new trial!" or "Not enough memory?", and for a source without channels.
    CMDTrialzk* makeInitTrial(CMDTrialzk* source, std::int64_t samples, int kind, const CString& directory,
                              const CString& name);
    /// Adds a virtual trial "VirtualTrial<index><suffix>.trl", with the source's channels and no samples, makes it
    /// current and writes its file beside the source's or, where that has none, in the document's folder. Detached it
    /// leaves memory and belongs to the caller, who gives it back by wkVtTrialReturn or saves it by virtualTrialUpdate;
    /// else it stays the dataset's. Null with "There is no data for making virtual trial!" or "Not enough memory?!";
    /// for a source without channels or samples; and, with a trial added, with "Not enough memory?" or where the
    /// source's file is not found.
    CMDTrialzk* virtualTrialInit(CMDTrialzk* source, int kind, const CString& suffix, bool detach);
    /// Replaces the samples of a virtual trial by a block, channel after channel, and saves it. The trial stays whose
    /// it is. 1; 0 for null, for fewer than 1 channel or sample, for more channels than the trial has, without memory,
    /// or with "Virtual trial ID is out of range!", "The updated virtual trial file path does not match!" or "Save
    /// updated virtual trial error!".
    int virtualTrialUpdate(CMDTrialzk* trial, int channels, std::int64_t samples, const double* data);

    // The work trial

    /// Opens and saves a trial and gives it to the caller, who owns it from then on. Its place reads as on disk. Null
    /// when it can't be opened, is not virtual with `virtualOnly`, or with "Save trial data error!".
    CMDTrialzk* wkVtTrialRent(int trial, bool virtualOnly);
    /// Saves a work trial, puts it back to its place and makes it current. With 1 it belongs to the dataset again; with
    /// 0, and with an exception, it stays the caller's: null, no place, "Save wkVtTrial trial data error!", or No to
    /// "The work trial has been changed  or corrupted! continue?", which is asked when its path is another. An index
    /// outside the list of paths raises the invalid-argument exception.
    int wkVtTrialReturn(CMDTrialzk* trial);

    // The list of trials and their files

    /// Removes a trial from the dataset; its file stays. 1; 0 with "Delete Trial ID error!", also for -1, or "Not
    /// enough memory?!".
    int deleteTrial4Dataset(int trial);
    /// Writes all trials to files "<folder><session><name>.trl" in the folder of setDocument(doc, true), with "_" for
    /// separators and control characters in the names, and lists these; the old files stay. 1, also where a trial can't
    /// be written, which has no path then; 0 when cancelled, or with "Open trial for synchronization error!" and the
    /// list as it was, but for a trial that was in memory and has its new file already.
    int moveTrlFile2DocFold(CDocument* doc);
    /// Writes one trial as "<folder><name>.trl" under that name, or without one as "<session>Trial<index>", and lists
    /// the new file; the old one stays. With a document setDocument(doc, true) comes first. 1; 0 when that is
    /// cancelled, or with "Open trial error for saving trial to new name!" or "Save trial to new name error!".
    int saveTrlFile2NewName(CDocument* doc, const CString& name, int trial);
    /// Mends the paths without opening trials: each as it stands, else in the folder of setDocument(doc, true), else in
    /// the folder that the user pointed at before, else as the user points now. 0 when cancelled, with the paths before
    /// it mended.
    int updateTrlPath4Doc(CDocument* doc);

protected:
    using TrialArray = SlotArray<CMDTrialzk>;

    CMDTrialzk& installLast(TrialArray longer, std::unique_ptr<CMDTrialzk> trial);
    CString freePath(const CString& stem, int exceptPlace, const CStringArray& more = {}) const;
    CString freePathOfNewDataset(const CString& stem) const;
    void saveAddedTrial(CMDTrialzk& trial, const CString& path);

private:
    int takeDocumentPath(const CString& path);
    int askForFolder();

    int saveTrialAs(CMDTrialzk& trial, const CString& path, const CString& name) const;

    void correctTotal();
    template <class Add>
    int takeOver(CMDTrialzk* trial, Add add);
    CString addedPath() const;
    template <class Sample, class Add>
    int fillTrial(int trial, int channels, std::int64_t samples, const Sample* data, Add add);

    std::unique_ptr<CMDTrialzk> dropTrials(const CMDTrialzk* model);
    CString virtualTrialStem(const CMDTrialzk& source, const CString& name);
    void copyToFolder(CMDTrialzk& trial, const CString& title) const;
    void keepWhatIsInMemory(int place);
    int deleteTrial(int trial);
    void moveTrial(int place, bool wasInMemory, CStringArray& moved);
    bool mendPath(CString& path, CString& pointedFolder) const;
};

} // namespace megset
