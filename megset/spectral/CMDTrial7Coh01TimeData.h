#pragma once
// Sensor coherence of a trial in time, and statistics over its pairs. Needs the channels' names.

#include "megset/spectral/CMDTrial6VirtSns.h"

namespace megset {

/// The statistics are of one value for each pair of the analysis, that of the current selection. They start from the
/// first value; with no pair at all minimum and maximum are 0, mean and root mean square no number.
class CMDTrial7Coh01TimeData : public CMDTrial6VirtSns
{
public:
    ~CMDTrial7Coh01TimeData() override;

    /// The coherence data; with `bCreate` an empty object is made where there is none. Null without one or without
    /// memory.
    CSnsCohFacezk* getCoherenceFacezkTime(bool bCreate);
    /// Takes the data over. Where there are others it asks "Would you like to delete the existing coherence data?!":
    /// with No nothing changes, pNew stays the caller's, and the result is 0. Null ends those that are there.
    int setCoherenceFacezkTime(CSnsCohFacezk* pNew);
    /// Ends the coherence data. Gives 1.
    int _cleanTrialCoherenceFacezkTime();

    /// The group's coherence; with `bCreate` an empty object is made where there is none. Null without one or without
    /// memory. It lives until the trial ends.
    CGroupMeegCxcFacezk* getGroupCxcData(int bCreate);

    /// Minimum, mean, maximum and root mean square of an analysis (-1: the current one) as "%f      %f      %f    %f ",
    /// or "None".
    CString getCohMeasurementResults(int iData) const;
    /// The same as numbers; the last argument is not read. 0 with nothing written when there is no such analysis.
    int getCohMeasurementResults(int iData, double& dMin, double& dMean, double& dMax, double& dRms, bool) const;
    /// The same over the pairs whose channel has the text in its working name, case mattering; an empty text counts
    /// every pair. Also 0 with no channel array.
    int getCohMeasurementResultsSN(int iData, CString strName, double& dMin, double& dMean, double& dMax, double& dRms,
                                   bool) const;

private:
    const CSnsCohDatazk* coherenceData(int iData) const;
    CString nameOfPair(const CohPair& pair) const;
};

} // namespace megset
