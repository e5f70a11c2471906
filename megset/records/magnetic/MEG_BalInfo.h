#pragma once

#include "megset/platform/CString.h"

namespace megset {

/// One entry of a MEG channel's balance: how much of a reference channel is subtracted from it.
struct MEG_BalInfo
{
    double m_dBalCoefficient = 0.0;
    int m_nBalChannelID = 0;
    CString m_strBalChannelName;

    bool operator==(const MEG_BalInfo&) const = default;
};

} // namespace megset
