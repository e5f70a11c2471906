#pragma once
// The dataset file: tag "MEGDATASETZK", every version ever released, and the step that saves or opens trials with it;
// text export and exchange. Needs the clean operations and the saving of trials of CMEGData and checkFilePath of
// CMEGData9FileA00Basic.

#include "megset/import/CMEGData9FileA02Neuromag.h"
#include "megset/platform/formatVersion.h"

#include <initializer_list>
#include <memory>
#include <string_view>

namespace megset {

/// The dataset's layer for its file, of which the newest version is written and all are read, and for text and exchange
/// files.
class CMEGData9FileB : public CMEGData9FileA02Neuromag
{
public:
    // The file, in CMEGData9FileB.cpp; what only old versions have in CMEGData9FileBOld.cpp

    /// Writes the newest file and saves the trials in memory, or reads one of any version and opens its current trial.
    /// Set the document first. Storing gives 1 whatever happened. Loading gives 0 with "The opened file is not MEG
    /// dataset file or corrupted!" for another tag, with "Wrong MEG dataset file format!!?" for an unknown version,
    /// with "Not enough memory?!" for more trials than there is memory or than the file can hold, and without a further
    /// text where a record failed. What was read until then stays; a section that a version lacks leaves its fields as
    /// they are. Archive exceptions pass: a file of version 20161123 ends with one, after all of it was read.
    int serializezk(CArchive& ar);
    /// The same without the trials' own files: nothing is opened and nothing saved. What an old file has of trials in
    /// itself is read. For programs that look into a file and change nothing.
    int serializeWithoutTrials(CArchive& ar);
    /// The step behind the newest file's last byte. Storing saves every trial in memory to its own file, and it stays
    /// in memory; at the first that can't be saved it shows "Save trial data error!" and ends, and that trial goes to
    /// getUnsavedTrials(). Gives 1 always. Loading brings the current index into range and opens that trial. 0 with "No
    /// trial path for opening trial!" or "Open trial data failed "; other numbers of trials and paths show "File path
    /// and trial error!", a trial of other length and re-sampling than the recording "Sample has been changed:
    /// %I64d->%I64d, Please re-sample and check the data", and the load goes on.
    int _20serializeTrials(int isStoring);

    // Text files for other tools and the exchange file, in CMEGData9FileBText.cpp; docs/formats/export.md shows them.
    // Files are chosen by the user; ".txt" or ".mtb" is added to a name that doesn't end so. A trial of -1 is the
    // current one, an index beyond the last trial the last. 0 without trials, for a trial that isn't in memory, and
    // when the user cancels. A fault in a file, at its opening too, ends the work and is not told: the result is 1.

    /// Samples of the trial. Asks "Would you like to export all channels' data?" (otherwise `channel` alone), "Would
    /// you like to export visible channel only?" (of all), and for a selection of one sample or none "Selected Size <=
    /// 1? Export the entire epoch or trial?". With `bSelect` the selection alone; with `bOneFilePerChannel` and all
    /// channels each channel in a file of its own, with its index behind the chosen name.
    int exportMEGData2TxtFile(int trial, int bOneFilePerChannel, int channel, int bSelect);
    /// Session name, index and the names of the trial's channels.
    int exportSnsrInf2TxtFile(int trial);
    /// An exchange file of the trial: rate and session name. It can't be read by importMEGData.
    int exportMEGData(int trial);
    /// A new empty trial, which is current, from an exchange file. See export_importMEGData.
    int importMEGData();
    /// Writes the exchange file, or reads one: "This is not MEG trial data!" and 0 for another file, 0 with "Not enough
    /// memory?!". In a dataset of two trials or more another rate asks "Sampling Rate is different! Do you would like
    /// to continue?" (No gives 0), and in one that has a trial "Would you like to use the import parameters?" asks
    /// whether the session takes the name. The new trial gets no path. Exceptions of the file pass.
    int export_importMEGData(CFile& file, bool bImport, int trial);

protected:
    // Sections, each with its number in the file's order. 1, or 0 where one failed.

    int _00serializeMDTrialInfo(CArchive& ar);
    int _01serializeFiducialPts(CArchive& ar);
    int _02serializeTrgMkSgTrPtAm(CArchive& ar);
    int _03serializeSensors(CArchive& ar);
    int _04serializeFilterInfo(CArchive& ar);
    int _06serializeRecordInfo(CArchive& ar);
    int _09serializeShowInfo(CArchive& ar);
    int _10serializeMEGOthers(CArchive& ar);
    int _11serializeROI(CArchive& ar);
    int _12serializeParam4AllTrlChnlShow_new(CArchive& ar);
    int _13serializeMkMgSelect4Cut(CArchive& ar);
    int _14serializeEegData(CArchive& ar);
    int tailOf14(CArchive& ar);

    // What the acquisition's file has in common with this one.

    void cleanTrialList(CArchive& ar);
    void exchangePaths(CArchive& ar, CStringArray& paths, std::string_view name);
    bool exchangeSlots(CArchive& ar, bool& present);
    int exchangeFlags(CArchive& ar, std::unique_ptr<int[]>& flags, std::string_view name);
    int exchangeGoodShow(CArchive& ar);
    int makeMissingFlags(CArchive& ar);

private:
    int serializezk20200729(CArchive& ar);
    int serializezk20190725(CArchive& ar);
    int serializezk20190609(CArchive& ar);
    int serializezk20171006(CArchive& ar);
    int serializezk20170706(CArchive& ar);
    int serializezk20161123(CArchive& ar);
    int serializezk20160222(CArchive& ar);
    int serializezk20150806(CArchive& ar);
    int serializezk20150724(CArchive& ar);
    int serializezk20140516(CArchive& ar);
    int serializezk20130508(CArchive& ar);
    int serializezk20130502(CArchive& ar);
    int serializezk20130421(CArchive& ar);
    int serializezk20130404(CArchive& ar);
    int serializezk20120824(CArchive& ar);
    int serializezk20120527(CArchive& ar);
    int serializezk20120501(CArchive& ar);
    int serializezk20120419(CArchive& ar);
    int serializezk20120326(CArchive& ar);
    int serializezk20110210(CArchive& ar);
    int serializezk20100428(CArchive& ar);
    int serializezk20090727(CArchive& ar);
    int serializezk20080104(CArchive& ar);
    int readFile20161123(CArchive& ar);

    // What versions of the file have in common, each named by the oldest that has it.
    int sections20190609(CArchive& ar);
    int sections20170706(CArchive& ar);
    int sections20160222(CArchive& ar);
    int sections20140516(CArchive& ar);
    int sections20130421(CArchive& ar);
    int sections20120824(CArchive& ar);
    int sections20120419(CArchive& ar);
    int sections20080609(CArchive& ar);
    int sections03To11(CArchive& ar);
    int sections03To12(CArchive& ar);

    // The tail, by its number of items.
    int tailOf2(CArchive& ar);
    int tailOf5(CArchive& ar);
    int tailOf8(CArchive& ar);
    int tailOf10(CArchive& ar);
    int tailOf11(CArchive& ar);
    int tailOf15(CArchive& ar);
    int tailOf16(CArchive& ar);

    int _Zold_00serializeMDTrialzk_doubleStoreOpenTrl(CArchive& ar);
    int _Zold_00serializeMDTrialzksml(CArchive& ar);
    int _Zold_02serializeTrigs20170706(CArchive& ar);
    int _Zold_02serializeTrigs(CArchive& ar);
    int _zold_Zold_02serializeTrigs_obsolete20140421(CArchive& ar);
    int _04serializeProcessInfo(CArchive& ar);
    int _09serializeShowInfo_obsolete20120419(CArchive& ar);
    int _Zold_12serializeParam4AllTrlChnlShow(CArchive& ar);
    int _zold_13serializeSelectCut(CArchive& ar);

    void exchangeTrialListOld(CArchive& ar);
    int loadEmbeddedTrial(CArchive& ar, int index);
    int exchangeMarkers(CArchive& ar, std::initializer_list<CMarkerManagerzk CMEGData::*> managers);
    void exchangeShowInfo(CArchive& ar);
    int storeTrials();
    int openCurrentTrial();

    struct TextExport;
    int exportedTrial(int trial) const;
    bool isExported(int channel, const TextExport& wanted) const;
    void writeTextHeader(CFile& file, const TextExport& wanted) const;
    void exportOneFile(const CMDTrialzk& trial, const TextExport& wanted) const;
    void exportFileEach(const CMDTrialzk& trial, const TextExport& wanted) const;
    int exportExchange(CFile& file, int index);
    int importExchange(CFile& file);
    CMDTrialzk* appendEmptyTrial();

    bool m_bWithoutTrials = false; ///< during serializeWithoutTrials

    static const FormatVersion<CMEGData9FileB> s_versions[23];
};

} // namespace megset
