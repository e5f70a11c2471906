#pragma once
// Electrode and SEEG information files: positions and probes that are worked out once and wanted for other datasets of
// the same subject. Needs the opening of trials.

#include "megset/persistence/CMEGData9FileB.h"

namespace megset {

/// The dataset's layer for files of electrodes and of SEEG probes.
class CMEGData9FileC : public CMEGData9FileB
{
public:
    // Files that the user chooses; ".epos" or ".seeg" is added to the name of one to be written unless it has it
    // anywhere. 1 once the file is open, whatever became of it; 0 when the user cancels or when it can't be opened,
    // which is told. Exceptions of archive and file pass. With no trial to be written the file ends behind its version.

    /// Gives the current trial, or all of them, the electrodes of a file.
    int openElectrodeInfo(bool bAllTrials);
    /// Writes the electrodes of the current trial.
    int saveElectrodesInfo();
    /// Gives the current trial, or all of them, the probes of a file.
    int openSeegInfo(int bAllTrials);
    /// Writes the probes of the current trial.
    int saveSeegInfo();

    // The files themselves. Trials are opened, and each that is left is saved. One that can't be opened, or has no
    // channels, is passed over.

    /// Tag "ELECTRODINFOFILE". Storing gives 0 without a trial. Loading puts the electrodes into the channels by index,
    /// with their channel types; a channel of another geometry gives that up. Where the first trial has another number
    /// of channels, "Channel number does not match: %d->%d ! Continue?" is asked. 0 with nothing changed on No, with
    /// "The opened file is not electrode information file or corrupted!" for another tag, with "Wrong electrode
    /// information file format!!?" for an unknown version, for fewer than 1 channel, without memory, and where a
    /// record can't be read, which has told why.
    int serializeElectrodeInfo(CArchive& ar, bool bAllTrials);
    /// Tag "SEEGINFO". Storing gives 0 without a trial. Loading replaces the probes, of which the first is current
    /// then. 0 with "The opened file is not electrode information file or corrupted!" for another tag, with "Wrong SEEG
    /// information file format!!?" for an unknown version, and without memory or where a record can't be read, which
    /// leaves the trials that were not reached as they are.
    int serializeSeegInfo(CArchive& ar, int bAllTrials);

private:
    struct ElectrodeEntry;
    using ElectrodeEntries = std::unique_ptr<ElectrodeEntry[]>;

    int serializeElectrodeInfo20170726(CArchive& ar, bool allTrials);
    int storeElectrodes(CArchive& ar);
    int loadElectrodes(CArchive& ar, bool allTrials);
    int spreadElectrodes(const ElectrodeEntries& entries, int count, bool allTrials);
    int serializeSeegInfo20171006(CArchive& ar, bool allTrials);
    int storeProbes(CArchive& ar);
    int loadProbes(CArchive& ar, bool allTrials);
    CMDTrialzk* trialWithChannels(int trial);
};

} // namespace megset
