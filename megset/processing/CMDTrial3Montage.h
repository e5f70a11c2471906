#pragma once
// Common-reference and individual-reference montages of a trial. Needs the samples by index of CMDTrial2Process.

#include "megset/processing/CMDTrial2Process.h"

#include <span>
#include <vector>

namespace megset {

/// Channel IDs are indices into the trial's channels. A montage changes working samples and keeps no copy: only
/// CMDTrialzk::copyRawData brings back what was before it.
class CMDTrial3Montage : public CMDTrial2Process
{
public:
    // One reference for a list of channels: a channel as it is, or the weighted sum of several over a divisor. IDs are
    // trusted; an operator of ID -1 is the current channel, another one out of range has no samples.

    /// Adds a copy to the list of channels. 0 for null or without memory.
    int addCopyMcrChnl(const CMtgChnlIdNamezk* channel);
    /// Sets name, divisor and flag, and adds copies of the reference channels (CMtgChnlOperatorzk*) to those that are
    /// there: for another montage call cleanMontageCrInfo first. Gives the number added; 0 without memory.
    int setMontageCr(const CString& name, const CPtrArray* operators, double divisor, int backupToo);
    /// Ends the unit; the samples and the done-flag stay as they are.
    int cleanMontageCrInfo()
    {
        m_pMontageCr.reset();
        return 1;
    }
    /// Takes a montage that was done back (reverseMontageCrW, whatever comes of that), and subtracts the reference from
    /// each channel of the list in order, as far as both have samples. A single reference channel is taken as it stands
    /// at each channel's turn, without weight and divisor: where it is in the list it becomes zero, and the channels
    /// after it stay as they are. Of several, null ones included, the weighted sum is formed before the first
    /// subtraction, and divided by a divisor above 0. 1; 0 without a unit, without operators ("No reference channel has
    /// been setup"), without channels or without samples of a reference.
    int doCommonRefSubstractW();
    /// Adds the reference to the channels of the list. It is formed from the samples as they are now, so that the
    /// reversal is exact only when no reference channel is in the list. When the unit's flag says so, the reference is
    /// added once more before that, and to the backup samples too, which the subtraction never changed: it is meant so.
    /// 1; 0 as above, with "No reference channel has been setup or reversed" for no operators.
    int reverseMontageCrW();

    // A reference for each target channel, from backup samples to a target that starts from its own backup. An ID out
    // of range, -1 included, is looked up by name (findChnlID4NameS).

    /// Adds a copy to the list of units. 0 for null or without memory.
    int addCopyMuIr(const CMtgUnit4IndividualRefzk* unit);
    /// Ends all units, and gives 0 for null or an empty list. Any other raises the invalid-argument exception, because
    /// each index is tested on the list that was just emptied: it is meant so. Units come in by addCopyMuIr.
    int setMontageIr(const CPtrArray* units);
    /// Ends all units; the samples and the done-flag stay as they are.
    int cleanMontageIrInfo()
    {
        m_aMontageIr.RemoveAll();
        return 1;
    }
    /// Restores each target from its backup and subtracts the unit's reference: the backup of a single operator as it
    /// is, or the weighted sum of several, null ones included, divided by a divisor above 0. After a common-reference
    /// montage reverseMontageIr runs first. A unit whose target or single reference can't be found is passed over; one
    /// without operators raises the invalid-argument exception. IDs of operators that were found by name are stored.
    /// 1; 0 without units ("No reference channel has been setup") or channels, and where no unit has two operators that
    /// can be found or nothing has backup samples.
    int doIndividualRefSubstract();
    /// The same with the reference added to the restored target, and without looking anything up; it clears no flag. So
    /// it doesn't give the unmontaged signal, but backup + reference: it is meant so.
    int reverseMontageIr();

private:
    enum class Sign
    {
        subtract,
        add
    };
    /// Working or backup samples.
    enum class Store
    {
        wave,
        backup
    };
    /// The largest number of operators in a unit, and the longest backup of them all.
    struct Survey
    {
        int operators = 0;
        std::int64_t samples = 0;
    };

    std::span<double> samplesOf(int channel, Store store) const;
    bool isInRange(int channel) const { return channel >= 0 && channel < getTotalChannel(); }
    int ensureMontageCr();
    bool canBeReferenced(const CString& noOperators) const;
    std::int64_t longestOperator(Store store) const;
    std::vector<std::span<double>> listedTargets(Store store) const;
    void applyCommon(Sign sign, Store store, std::int64_t length) const;
    int reverseMontageCrWB();

    int findOperator(const CMtgChnlOperatorzk& reference, bool byName) const;
    Survey surveyIndividual(bool byName);
    int applyIndividual(Sign sign, bool byName);
    void applyUnit(const CMtgUnit4IndividualRefzk& unit, Sign sign, bool byName, std::int64_t length);
};

} // namespace megset
