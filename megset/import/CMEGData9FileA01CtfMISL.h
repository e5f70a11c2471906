#pragma once
// Import of recordings of CTF systems, which somebody else has read: first the geometry, which makes a dataset on disk
// with a file for every trial, then the samples. Needs folder and names of CMEGData9FileA00Basic, and the gains of
// CMDTrial2Process.
//
// The order of calls: importTrialChannels, initSensorBasic for channels that are no sensors, the recording information
// (setMEGRecordInfozk, then the coefficients), and one of the data operations until all samples are in. Trials reach
// their files as others are opened; the last one with saveAllTrials.

#include "megset/import/CMEGData9FileA00Maker.h"

namespace megset {

/// The dataset's layer for the import of CTF recordings. Samples come as recorded integers and become fT on MEG
/// channels by the gains of their sensors.
class CMEGData9FileA01CtfMISL : public CMEGData9FileA00Maker
{
public:
    /// Makes a dataset of `nTrial` trials "ImportTrial<index>" of `nChannel` channels without samples, in files
    /// "<folder><session>_<name>.trl" in the folder of setDocument(doc, true), and opens the first. The trials before
    /// them leave memory without being saved. `sensors` are CMEGSensorzk*, one per channel from the first on, with raw
    /// and working name in `sensorNames` and `channelNames`; `electrodes` are CEEGelectrodezk*, bound by raw name. Any
    /// list may be null, which is an empty one, and all stay the caller's.
    ///
    /// 1, also where a trial's file can't be written, which leaves it without a path, and where the first trial can't
    /// be opened. A null sensor shows "Finding recorded MEG sensor error!" and is passed over; one that can't be bound,
    /// or has no names, shows "Set sensor error", and the trial does without the rest of them. 0 for counts below 1,
    /// where setDocument gives 0, and with "Not enough memory?!" or "Not enough memory?", which leave a dataset
    /// without trials; files that were written stay.
    int importTrialChannels(int nTrial, int nChannel, const CPtrArray* sensors, const CPtrArray* electrodes,
                            const CStringArray* sensorNames, const CStringArray* channelNames, CDocument* doc);

    /// Sets up a sensor from arrays (CMEGSensor::initSensorBasic) in one channel of all trials that are in memory, and
    /// the channel's show flag. A channel that is not there is passed over. Gives 1.
    int initSensorBasic(int geometryCode, int channel, int type, bool show, const CString& name, const CString& name2,
                        int nItem, int* pTurns, double* pDewarPos, double* pDewarDir, double* pHeadPos,
                        double* pHeadDir);

    // Samples as recorded. The trial is opened and becomes current, the samples replace those that it has, and the
    // gain of each MEG sensor goes into working and raw ones. 0 with "Open trial data error?" or, for a trial without
    // channels, "Channels have not been initialized!?".

    /// One channel; 0 for a channel that is not there, for fewer than 1 sample, for null and without memory.
    int importCtfDataC(int trial, int channel, std::int64_t nSample, const std::int32_t* data);
    /// A whole trial, channel after channel. The gain goes into all channels of the trial, also into those that got no
    /// samples here; channels above the trial's count are passed over. Of a recording of two averages or more all
    /// samples are then multiplied by 2 / count: it is meant so.
    int importCtfDataT(int trial, int nChannel, std::int64_t nSample, const std::int32_t* data);
    /// Trials `block` * `nTrialPerBlock` and on, as many as a block has, from a stretch of `channelStride` samples for
    /// each channel in which one trial follows the other. Nothing is scaled by the averages here. 1, at once for no
    /// trial per block; 0 at the first trial that can't be opened.
    int importCtfDataTsplit(int block, int nTrialPerBlock, int nChannel, std::int64_t channelStride,
                            std::int64_t nSample, const std::int32_t* data);

private:
    struct Geometry;

    std::unique_ptr<CMDTrialzk> makeImportTrial(int index, int nChannel, const Geometry& geometry) const;
    int importTrialFiles(int nTrial, int nChannel, const Geometry& geometry);
    const CMDTrialzk* openForImport(int trial);
};

} // namespace megset
