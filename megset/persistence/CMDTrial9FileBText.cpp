// The trial in a text file for other tools, and in the exchange file.

#include "megset/core/CMDChannelzk.h"
#include "megset/persistence/CMDTrial9FileB.h"

namespace megset {

int CMDTrial9FileB::exportMEGData2TxtFile(CFile& file, int channel, std::int64_t from, std::int64_t to,
                                          int bSelect) const
{
    const CMDChannelzk* exported = getChannel(channel);
    return exported != nullptr ? exported->exportMEGData2TxtFile(file, from, to, bSelect) : 0;
}

int CMDTrial9FileB::exportSnsrInf2TxtFile(CFile& file) const
{
    for (int i = 0; i < m_nTotalChannel; ++i)
        if (const CMDChannelzk* channel = getChannel(i))
            channel->exportSnsrInf2TxtFile(file);
    return 1;
}

// The exchange file holds nothing of a trial.
int CMDTrial9FileB::export_importMEGTrial(CFile* /*file*/, bool /*bImport*/)
{
    return 1;
}

} // namespace megset
