#pragma once

#include "megset/platform/CString.h"

namespace megset {

/// The application's document, of which the library reads path and title. An application may derive its own.
class CDocument
{
public:
    CDocument() = default;
    CDocument(const CDocument&) = delete;
    CDocument& operator=(const CDocument&) = delete;
    virtual ~CDocument() = default;

    /// The full path in library form; empty while the document has no file. The title becomes the file's title: its
    /// name without the extension.
    virtual void SetPathName(const CString& path);
    const CString& GetPathName() const { return m_strPathName; }

    virtual void SetTitle(const CString& title) { m_strTitle = title; }
    const CString& GetTitle() const { return m_strTitle; }

private:
    CString m_strPathName;
    CString m_strTitle;
};

} // namespace megset
