#pragma once
// The person at the program, as the library sees them: everything that is shown or asked goes to one host.

#include "megset/platform/CString.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace megset {

class CWnd;

/// What a file dialog asks for. Paths are in library form.
struct FileRequest
{
    bool open = true;         ///< false: a file to save to
    CString filter;           ///< as in the call of the dialog; parseFileFilters takes it apart
    int filterIndex = 1;      ///< the kind of file offered first, counted from 1
    CString fileName;         ///< first suggestion, may be empty
    CString defaultExtension; ///< without dot; goes behind a name that has no extension; may be empty
    bool fileMustExist = false;
    bool pathMustExist = false; ///< the folder must exist
    bool confirmOverwrite = false;
};

/// A file that was chosen: its full path in library form, and the kind of file that was on offer then.
struct FileChoice
{
    CString path;
    int filterIndex = 1;
};

/// Boxes to tick, under a title: what each says, and whether it is ticked at first.
struct FlagRequest
{
    /// A box to tick.
    struct Flag
    {
        CString label;
        bool set = false;
    };
    CString title;
    std::vector<Flag> flags;
};

/// Where the library shows and asks. Any thread may call any operation, so a host does its own locking.
class CUserHost
{
public:
    CUserHost() = default;
    CUserHost(const CUserHost&) = delete;
    CUserHost& operator=(const CUserHost&) = delete;
    virtual ~CUserHost() = default;

    /// Shows a text and waits for its answer: IDOK for MB_OK, IDYES or IDNO for MB_YESNO.
    virtual int messageBox(const CString& text, unsigned type) = 0;

    /// Lets the user choose a file that meets the request; nothing when cancelled.
    virtual std::optional<FileChoice> chooseFile(const FileRequest& request) = 0;

    /// Lets the user set flags: one value for each of the request's; nothing when cancelled. A host that has no way to
    /// ask leaves it at that.
    virtual std::optional<std::vector<bool>> chooseFlags(const FlagRequest& /*request*/) { return std::nullopt; }

    /// A bar over from..to. `id` tells the bars of the process apart; bars may nest and may come from several threads.
    virtual void beginProgress(int id, const CString& title, std::int64_t from, std::int64_t to) = 0;
    virtual void setProgress(int id, std::int64_t position) = 0;
    virtual void endProgress(int id) = 0;

    /// Shows a longer text for reading under a title: 1 when shown, 0 when that failed.
    virtual int showReport(const CString& text, const CString& title) = 0;

    /// Each begin has its end; pairs nest.
    virtual void beginWaitCursor() = 0;
    virtual void endWaitCursor() = 0;

    /// A trial is about to be written to this path. A file that is there will be written over from its beginning: a
    /// host that wants to keep it puts it aside. Paths are in library form.
    virtual void trialFileIsWritten(const CString& /*path*/) {}

    /// Asks for a repaint of the whole view, with `erase` of its background too.
    virtual void invalidate(CWnd& view, bool erase) = 0;
};

/// Makes `host` the host of the process and gives the former one. Null, in and out, is the default host: the console.
/// The host stays the caller's, and must live until another is set and no thread is inside the library.
CUserHost* AfxSetHost(CUserHost* host);

/// The host of the process.
CUserHost& AfxGetHost();

} // namespace megset
