#pragma once
// Independent components of a trial.

#include "megset/platform/formatVersion.h"
#include "megset/records/results/resultArrays.h"

#include <vector>

namespace megset {

/// N channels taken apart into C components over S samples: channel = mean + mixing x components.
class CFaceIca
{
public:
    std::int64_t getTotalChannel() const { return static_cast<std::int64_t>(m_aChannel.size()); }
    /// Takes channels (indices of the trial's channels) and size over; all numbers are zero and every component is
    /// kept. 1, or 0 and an empty object.
    int setSize(const std::vector<std::int32_t>& channels, std::int64_t components, std::int64_t samples);
    /// The samples of a component, null outside; -1: the current one.
    const double* getComponentWave(std::int64_t iComponent) const;
    /// Marks a component as an artefact, or takes the mark away: 1, or 0 outside.
    int setRejected(std::int64_t iComponent, bool rejected);
    /// The channel without the rejected components: mean + sum of mixing x component. noValue outside.
    double cleanedValue(std::int64_t iChannel, std::int64_t iSample) const;

    bool operator==(const CFaceIca&) const = default;

    std::vector<std::int32_t> m_aChannel; ///< channel indices of the trial
    std::int64_t m_nComponent = 0;        ///< C
    std::int64_t m_nSample = 0;           ///< S
    std::int64_t m_nDataBegin = 0;        ///< sample of the trial that sample 0 stands for
    std::int64_t m_nCurrentComponent = 0;
    std::vector<double> m_aMean;           ///< per channel, in the channel's unit
    std::vector<double> m_aMixing;         ///< [channel][component]
    std::vector<double> m_aUnmixing;       ///< [component][channel]
    std::vector<double> m_aWave;           ///< [component][sample]
    std::vector<std::int32_t> m_aRejected; ///< per component, 1: an artefact

protected:
    bool isConsistent() const;
};

/// The file layer of independent components.
class CFaceIca09File : public CFaceIca
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serialize(CArchive& ar);

    bool operator==(const CFaceIca09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CFaceIca09File> s_versions[1];
};

/// Independent components; this is the class that is made.
class CFaceIcazk : public CFaceIca09File
{
public:
    bool operator==(const CFaceIcazk&) const = default;
};

} // namespace megset
