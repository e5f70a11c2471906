#include "apps/cli/dataset/TrialSummary.h"

#include "apps/cli/inspect/MessageRecorder.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/platform/ArchiveTracer.h"
#include "megset/platform/CArchive.h"
#include "megset/platform/CFile.h"
#include "megset/platform/paths.h"

namespace megset::cli {

namespace {

// Ends the reading of a file of which enough is known.
struct Enough
{
};

// Notes the fields of a summary as the trial's own reader comes by them.
class SummaryTracer : public ArchiveTracer
{
public:
    explicit SummaryTracer(TrialSummary& summary) : m_summary(summary) {}

    void enter(std::string_view, std::uint64_t) override {}
    void leave(std::uint64_t) override {}
    void integer(std::string_view name, std::string_view, std::uint64_t, std::int64_t value) override
    {
        if (name == "m_nGoodTrial")
            m_summary.good = value != 0;
        else if (name == "m_nVirtualTrial")
            m_summary.isVirtual = value != 0;
        else if (name == "m_nTotalChannel")
            m_summary.channels = static_cast<int>(value);
        else if (name == "m_nTotalSample")
            endWith(value);
        else if (name == "m_nTrigMarkFirst")
            throw Enough(); // behind the channels: none has samples
    }
    void real(std::string_view, std::string_view, std::uint64_t, double) override {}
    void text(std::string_view name, std::uint64_t, const CString& value) override
    {
        if (name == "m_strTrialName")
            m_summary.name = value.toUtf8();
    }
    void block(std::string_view, std::uint64_t, const TracedBlock&) override {}

private:
    void endWith(std::int64_t samples)
    {
        m_summary.samples = samples;
        throw Enough();
    }

    TrialSummary& m_summary;
};

bool readBeginning(CFile& file, TrialSummary& summary)
{
    const MessageRecorder host([] { return ReaderMessage(); });
    SummaryTracer tracer(summary);
    CArchive archive(&file, CArchive::load);
    archive.setTracer(&tracer);
    CMDTrialzk trial;
    try {
        return trial.serializezk(archive) != 0;
    } catch (const Enough&) {
        return true;
    } catch (const CArchiveException&) {
        return false;
    }
}

} // namespace

std::optional<TrialSummary> readTrialSummary(const std::filesystem::path& path)
{
    CFile file;
    if (!file.Open(fromNative(path), CFile::modeRead | CFile::shareDenyNone))
        return std::nullopt;
    TrialSummary summary;
    summary.bytes = file.GetLength();
    if (!readBeginning(file, summary))
        return std::nullopt;
    return summary;
}

} // namespace megset::cli
