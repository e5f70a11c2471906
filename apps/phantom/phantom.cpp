#include "apps/phantom/phantom.h"
#include "apps/phantom/SampleWriter.h"
#include "apps/phantom/Sources.h"
#include "apps/phantom/coefficients.h"
#include "apps/phantom/ctfFiles.h"
#include "megset/platform/stopRequest.h"

#include <fstream>
#include <stdexcept>
#include <system_error>

namespace megset::phantom {

namespace {

namespace fs = std::filesystem;

/// A folder that is made under a passing name, gets its own when it is complete, and else goes away with all in it.
class NewFolder
{
public:
    explicit NewFolder(const fs::path& folder) : m_folder(folder), m_building(folder)
    {
        m_building += ".part";
        refuseExisting();
        if (fs::exists(m_building))
            throw std::runtime_error(m_building.string() + " exists, and the recording is built there");
        std::error_code fault;
        if (!fs::create_directory(m_building, fault))
            throw std::runtime_error("the folder " + m_folder.string() + " can't be made: " + fault.message());
    }
    NewFolder(const NewFolder&) = delete;
    NewFolder& operator=(const NewFolder&) = delete;
    ~NewFolder()
    {
        std::error_code ignored;
        if (!m_complete)
            fs::remove_all(m_building, ignored);
    }

    fs::path file(const std::string& name) const { return m_building / name; }

    void complete()
    {
        refuseExisting();
        fs::rename(m_building, m_folder);
        m_complete = true;
    }

private:
    void refuseExisting() const
    {
        if (fs::exists(fs::symlink_status(m_folder)))
            throw std::runtime_error(m_folder.string() + " exists already");
    }

    StopSignals m_signals; // so that it goes when the program is asked to end
    fs::path m_folder;
    fs::path m_building;
    bool m_complete = false;
};

void writeFile(const fs::path& path, const std::string& bytes)
{
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file)
        throw std::runtime_error(path.string() + " can't be written");
}

/// The folder without a closing slash; its name ends with .ds and has something before.
fs::path checkedFolder(const fs::path& folder)
{
    const fs::path named = folder.has_filename() ? folder : folder.parent_path();
    if (named.extension() != ".ds")
        throw std::invalid_argument("the name of the folder ends with .ds: " + folder.string());
    return named;
}

} // namespace

PhantomReport writePhantom(const std::filesystem::path& folder, const PhantomOptions& options)
{
    PhantomReport report;
    report.plan = planPhantom(options);
    const fs::path checked = checkedFolder(folder);
    const std::string stem = checked.stem().string();
    const Instrument instrument = makeInstrument(options.channels);
    report.channels = instrument.channels.size();
    checkTrialFits(report.plan, report.channels, options.maxFileBytes);

    NewFolder target(checked);
    writeFile(target.file(stem + ".res4"),
              res4File(instrument, report.plan, options.rate, coefficientTables(instrument)));
    writeFile(target.file(stem + ".hc"), headCoilFile(instrument));
    writeFile(target.file("ClassFile.cls"), classFile());
    writeFile(target.file("BadChannels"), "");
    writeFile(target.file("bad.segments"), "");
    writeFile(target.file("MarkerFile.mrk"), markerFile(report.plan, options.rate));
    writeFile(target.file("phantom_truth.json"), truthFile(instrument, report.plan, options));
    SampleWriter writer(target.file(stem), instrument, options);
    report.sampleFiles = writer.writeTrials(report.plan);
    target.complete();
    return report;
}

} // namespace megset::phantom
