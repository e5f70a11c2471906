#pragma once

#include "megset/platform/CException.h"

namespace megset {

/// What can go wrong with a file. The numbers are part of the interface: messages show them.
class CFileException : public CException
{
public:
    enum
    {
        none = 0,
        genericException = 1,
        fileNotFound = 2,
        badPath = 3,
        tooManyOpenFiles = 4,
        accessDenied = 5,
        invalidFile = 6,
        removeCurrentDir = 7,
        directoryFull = 8,
        badSeek = 9,
        hardIO = 10,
        sharingViolation = 11,
        lockViolation = 12,
        diskFull = 13,
        endOfFile = 14
    };

    /// `osError` is the system's own error number, 0 where there is none; `fileName` is in library form.
    explicit CFileException(int cause = none, int osError = 0, const CString& fileName = CString());

    int m_cause;
    int m_lOsError;
    CString m_strFileName;
};

/// Raises a CFileException.
[[noreturn]] void AfxThrowFileException(int cause, int osError = 0, const CString& fileName = CString());

} // namespace megset
