#include "megset/platform/CFileException.h"

#include "megset/platform/paths.h"

#include <system_error>

namespace megset {
namespace {

// The name as the person knows it: in the form of this system.
CString shownName(const CString& fileName)
{
    return fileName.IsEmpty() ? CString("the file") : "\"" + CString(toNative(fileName).native()) + "\"";
}

CString causeText(int cause, const CString& name)
{
    switch (cause) {
    case CFileException::none:
        return "No error occurred.";
    case CFileException::fileNotFound:
        return "Can't find " + name + ".";
    case CFileException::badPath:
        return "The path of " + name + " is not valid, or its folder does not exist.";
    case CFileException::tooManyOpenFiles:
        return "Can't open " + name + ": too many files are open.";
    case CFileException::accessDenied:
        return "Access to " + name + " is denied.";
    case CFileException::invalidFile:
        return "Can't use " + name + ": it is not open, or not open for this.";
    case CFileException::badSeek:
        return "A position outside " + name + " was asked for.";
    case CFileException::hardIO:
        return "The device failed while working on " + name + ".";
    case CFileException::sharingViolation:
    case CFileException::lockViolation:
        return "Can't open " + name + ": another program, or another part of this one, is using it.";
    case CFileException::diskFull:
        return "The disk is full: can't write " + name + ".";
    case CFileException::endOfFile:
        return "Unexpected end of " + name + ".";
    default:
        return "Working on " + name + " failed.";
    }
}

} // namespace

CFileException::CFileException(int cause, int osError, const CString& fileName)
    : m_cause(cause), m_lOsError(osError), m_strFileName(fileName)
{
    CString text = causeText(cause, shownName(fileName));
    if (osError != 0 && (cause == genericException || cause == hardIO || cause == badPath))
        text += " (" + CString(std::generic_category().message(osError)) + ")";
    setMessage(text);
}

void AfxThrowFileException(int cause, int osError, const CString& fileName)
{
    throw CFileException(cause, osError, fileName);
}

} // namespace megset
