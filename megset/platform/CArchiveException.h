#pragma once

#include "megset/platform/CException.h"

namespace megset {

/// What can go wrong in an archive. The numbers are part of the interface.
class CArchiveException : public CException
{
public:
    enum
    {
        none = 0,
        genericException = 1,
        readOnly = 2,  ///< a store reached an archive that is open for loading
        endOfFile = 3, ///< the file ended before the field did
        writeOnly = 4, ///< a load reached an archive that is open for storing
        badIndex = 5,
        badClass = 6,
        badSchema = 7,
        bufferFull = 8
    };

    explicit CArchiveException(int cause = none, const CString& fileName = CString());

    int m_cause;
    CString m_strFileName; ///< library form; empty where the archive has no file or the kind names none
};

/// Raises a CArchiveException.
[[noreturn]] void AfxThrowArchiveException(int cause, const CString& fileName = CString());

} // namespace megset
