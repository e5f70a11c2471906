#pragma once
// The exceptions of the library. They are thrown by value.

#include "megset/platform/CString.h"

#include <exception>
#include <string>

namespace megset {

/// Base of what the library throws. `what()` is the message in UTF-8.
class CException : public std::exception
{
public:
    explicit CException(const CString& message = CString()) { setMessage(message); }

    const char* what() const noexcept override { return m_utf8.c_str(); }
    CString GetErrorMessage() const { return CString(m_utf8); }
    /// Copies the message, cut to `size` - 1 code units, with its terminating zero; false for no room at all.
    bool GetErrorMessage(char16_t* buffer, unsigned size) const;

protected:
    void setMessage(const CString& message) { m_utf8 = message.toUtf8(); }

private:
    std::string m_utf8;
};

/// An argument outside what an operation takes, such as an index outside an array.
class CInvalidArgException : public CException
{
public:
    CInvalidArgException() : CException("An argument is outside the allowed range.") {}
};

/// Raises a CInvalidArgException.
[[noreturn]] void AfxThrowInvalidArgException();

} // namespace megset
