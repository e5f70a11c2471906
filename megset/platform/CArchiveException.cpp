#include "megset/platform/CArchiveException.h"

namespace megset {
namespace {

CString causeText(int cause)
{
    switch (cause) {
    case CArchiveException::none:
        return "No error occurred.";
    case CArchiveException::readOnly:
        return "The archive is open for loading and can't be written.";
    case CArchiveException::endOfFile:
        return "The file ended unexpectedly.";
    case CArchiveException::writeOnly:
        return "The archive is open for storing and can't be read.";
    case CArchiveException::badIndex:
    case CArchiveException::badClass:
    case CArchiveException::badSchema:
        return "The file is damaged or of another format.";
    case CArchiveException::bufferFull:
        return "The archive's buffer is full.";
    default:
        return "The archive failed.";
    }
}

} // namespace

CArchiveException::CArchiveException(int cause, const CString& fileName) : m_cause(cause), m_strFileName(fileName)
{
    const CString text = causeText(cause);
    setMessage(fileName.IsEmpty() ? text : fileName + ": " + text);
}

void AfxThrowArchiveException(int cause, const CString& fileName)
{
    throw CArchiveException(cause, fileName);
}

} // namespace megset
