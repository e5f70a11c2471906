#pragma once
// The record of a stimulus or trigger input: how its levels are read, and the triggers that were found.

#include "megset/platform/CString.h"
#include "megset/platform/formatVersion.h"
#include "megset/records/sensors/CGeomzk.h"

#include <vector>

namespace megset {

/// A trigger input.
class CStimTrig : public CGeomzk
{
public:
    bool operator==(const CStimTrig&) const = default;

    CString m_strTrigName;
    CString m_strTrigTypeName;
    int m_nTrigID = -1; // number of the input
    int m_nChannelType = 600;
    int m_nTrigMode = 0;                    // how a trigger begins: 0 rising, 1 falling, 2 any change
    std::vector<std::int64_t> m_aTrigBegin; // samples at which triggers begin
    int m_nTrigCurrent = -1;                // index of the one in hand
    CString m_strTrigCode;                  // name of the code that is looked for
    int m_nTrigValue = 0;                   // the code; 0 any
    int m_nTrigMask = -1;                   // bits of the input that count
    int m_nTrigMinSamples = 0;              // shorter ones are noise
    CString m_strTrigNote;
    std::vector<double> m_aTrigLevel; // thresholds in units of the channel
};

/// The file layer of a trigger input.
class CStimTrig09File : public CStimTrig
{
public:
    /// Reads or writes the record "STIMTRIGZK". 1, or 0 with the messages of serializeRecord.
    int serializezk(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CStimTrig09File> s_versions[];
};

/// A trigger input; this is the class that is made.
class CStimTrigzk : public CStimTrig09File
{
};

} // namespace megset
