#include "megset/persistence/CMEGData9FileA00Basic.h"

#include "megset/platform/CArchive.h"

namespace megset {

int CMEGData9FileA00Basic::checkFilePath(CArchive* ar)
{
    if (ar == nullptr || ar->GetFile() == nullptr)
        return 0;
    m_strDatasetPath = ar->GetFile()->GetFilePath();
    return 1;
}

} // namespace megset
