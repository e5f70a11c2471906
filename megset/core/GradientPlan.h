#pragma once
// Noise reduction by reference channels, worked out for one trial before any sample changes: which channels change, and
// by which weighted sums.

#include "megset/numeric/weightedSums.h"
#include "megset/platform/CString.h"

#include <cstdint>
#include <map>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace megset {

class CCoefficientDatazk;
class CCoefficientManager;
class CMDChannelzk;
class CMDTrialzk;

/// What the coefficients are for.
struct GradientMode
{
    int order = 0; ///< gradient order, 0 to 3
    bool realIdeal = false;
    bool adaptive = false;
};

/// The trial and the coefficients must outlive the plan; channels, names, sensors, arrays and records stay as they are.
///
/// A channel with a record of coefficients changes by s[i], the sum over the record's references k, in their order, of
/// reference sample i * w[k], with w[k] = gain of the reference * coefficient / gain of the channel's sensor.
/// References are found by name (see CMDTrial0SensorInfo); one that is missing or has no samples is passed over, and
/// one that is shorter than the channel adds nothing from its end on.
class GradientPlan
{
public:
    GradientPlan(const CMDTrialzk& trial, const CCoefficientManager& coefficients);
    GradientPlan(GradientPlan&&) = default;
    GradientPlan(const GradientPlan&) = delete;
    GradientPlan& operator=(const GradientPlan&) = delete;
    ~GradientPlan() = default;

    /// Plans to add s to each MEG measure channel, by the record that its sensor's own mode says.
    void addOldSums();
    /// Plans to take s from each channel that has a sensor and a record of the mode; its sensor gets the mode.
    void subtractNewSums(const GradientMode& mode);

    /// Does what is planned, in the order of planning. Nothing here asks for memory.
    void run() const;

private:
    /// A reference channel by the name that the records have for it.
    struct Reference
    {
        std::span<const double> samples;
        double gain = 0.0;
    };
    /// What a sum of m_sums refers to.
    struct Terms
    {
        std::vector<std::span<const double>> references;
        std::vector<double> weights;
    };

    /// The texts of one length that the names of records hold, each with the first record that holds it.
    using RecordsByText = std::unordered_map<std::u16string_view, const CCoefficientDatazk*>;
    /// The records of one type in their order.
    struct Records
    {
        std::vector<const CCoefficientDatazk*> list;
        std::size_t characters = 0; ///< of all names
        std::map<std::size_t, RecordsByText> byLength;
    };

    void planSum(const CMDChannelzk& channel, const CCoefficientDatazk& record, bool subtracted);
    Terms termsOf(const CMDChannelzk& channel, const CCoefficientDatazk& record);
    const CCoefficientDatazk* recordOf(const CString& sensorName, const GradientMode& mode);
    Records& recordsOf(std::uint32_t type);
    const Reference& referenceOf(const CString& name);

    const CMDTrialzk& m_trial;
    const CCoefficientManager& m_coefficients;
    std::map<std::uint32_t, Records> m_records; ///< by type
    std::map<CString, Reference> m_references;  ///< the records of all channels name the same few
    std::vector<Terms> m_terms;
    std::vector<numeric::WeightedSum> m_sums;
    std::vector<CMDChannelzk*> m_changed; ///< channels whose sensors get m_mode
    GradientMode m_mode;
};

} // namespace megset
