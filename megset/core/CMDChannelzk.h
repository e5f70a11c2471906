#pragma once
// The channel that is made: copies of what a channel is, and arithmetic of two channels.

#include "megset/persistence/CMDChannel9FileRecord.h"

namespace megset {

/// The channel that is made; it closes the chain of the channel.
class CMDChannelzk : public CMDChannel9FileRecord
{
public:
    /// Takes over type, geometry, balance, list places, carried values and both names; not the samples, the gain count,
    /// the range fields or the labels. 0 for null; 0 without memory for the geometry ("Is there enough memory?!").
    int copyChannelInfo(const CMDChannelzk* src);
    /// Makes both arrays as long as a's: a - b (mode 0), a + b (1) or a * b (2) of the working samples, 0 where b has
    /// none. 0 without samples of a and b, without memory, or for another mode, which leaves zeros.
    int operateChnl(const CMDChannelzk* a, const CMDChannelzk* b, bool unused, int mode);

private:
    bool copyGeometry(const CMDChannelzk& src);
    bool copyBalance(const CMDChannelzk& src);
};

} // namespace megset
