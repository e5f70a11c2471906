#include "apps/cli/demo/demo.h"

#include "apps/cli/dataset/DatasetInfo.h"
#include "apps/cli/dataset/TrialReader.h"
#include "apps/cli/export/exportSamples.h"
#include "apps/cli/import/importRecording.h"
#include "apps/cli/inspect/fileTag.h"
#include "apps/cli/layout/SensorMap.h"
#include "apps/cli/process/gradientOrder.h"
#include "apps/phantom/phantom.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iomanip>
#include <ostream>
#include <regex>
#include <stdexcept>
#include <vector>

namespace megset::cli {

namespace {

namespace fs = std::filesystem;

// What a demonstration makes, and leaves when it is killed. Somebody may have a recording of a phantom that is named
// so, too; but it has no file of the truth.
bool isMadeHere(const fs::path& path)
{
    const std::string name = path.filename().string();
    if (name == "phantom.ds" && !fs::exists(path / "phantom_truth.json"))
        return false;
    static const std::regex made(
        R"((phantom\.(ds|meg)|phantom_ImportTrial\d+\.trl|clean\.(meg|npy)|cleanTrial\d+\.trl))"
        R"((\.part)?|sensors\.svg)");
    return std::regex_match(name, made);
}

class Demo
{
public:
    Demo(fs::path folder, std::ostream& out) : m_folder(std::move(folder)), m_out(out) {}

    void run()
    {
        prepareFolder();
        simulate();
        import();
        tell();
        reduce();
        draw();
        exportAll();
        listFiles();
    }

private:
    fs::path file(const char* name) const { return m_folder / name; }
    std::string path(const char* name) const { return file(name).string(); }

    void step(const std::string& command, const std::string& result)
    {
        m_out << ++m_steps << ". megset " << command << "\n   " << result << '\n' << std::flush;
    }

    // Nothing of the user's is removed: every entry must be one that a demonstration makes.
    void prepareFolder() const
    {
        std::error_code fault;
        fs::create_directories(m_folder, fault);
        if (fault)
            throw std::runtime_error(shownPath(m_folder) + ": can't be made: " + fault.message());
        for (const fs::directory_entry& entry : fs::directory_iterator(m_folder)) {
            const std::string name = shownPath(entry.path().filename());
            if (!isMadeHere(entry.path()))
                throw std::runtime_error(shownPath(m_folder) + ": holds other files, such as " + name +
                                         "; name another folder");
        }
        for (const fs::directory_entry& entry : fs::directory_iterator(m_folder))
            fs::remove_all(entry.path());
    }

    void simulate()
    {
        const phantom::PhantomReport report = phantom::writePhantom(file("phantom.ds"));
        step("phantom phantom.ds", std::to_string(report.channels) + " channels, " +
                                       std::to_string(report.plan.trials) + " trials of " +
                                       std::to_string(report.plan.samples) + " samples, " +
                                       std::to_string(report.plan.stimuli.size()) + " stimuli");
    }

    void import()
    {
        const ImportSummary summary = importRecording({path("phantom.ds"), path("phantom.meg"), "", false});
        step("import phantom.ds phantom.meg",
             std::to_string(summary.trials) + " trials, " + std::to_string(summary.channels) + " channels");
    }

    void tell()
    {
        ReadingNotes notes;
        const auto open = openDatasetToLook(file("phantom.meg"), notes);
        const DatasetInfo info = collectInfo(*open);
        const auto count = [&info](const char* kind) {
            return std::to_string(std::ranges::count(info.channels, kind, &ChannelInfo::kind)) + ' ' + kind;
        };
        std::ostringstream text;
        text << info.rate << " Hz, " << count("meg") << ", " << count("ref") << ", " << count("eeg");
        step("info phantom.meg", text.str());
    }

    void reduce()
    {
        ChangeArguments change;
        change.dataset = path("phantom.meg");
        change.out = path("clean.meg");
        change.no = true;
        const GradientResult result = reduceNoise(change, {3, false, false});
        const double before = rmsOfMeg("phantom.meg");
        const double after = rmsOfMeg("clean.meg");
        std::ostringstream text;
        text << std::fixed << std::setprecision(1) << result.reduced << " channels; root mean square of MEG " << before
             << " fT before, " << after << " fT after: " << before / after << " times less";
        step("gradient phantom.meg --order 3 --out clean.meg", text.str());
    }

    // Over the MEG channels and samples of all trials, each channel about its mean.
    double rmsOfMeg(const char* name) const
    {
        ReadingNotes notes;
        const auto open = openDatasetToLook(file(name), notes);
        TrialReader reader(*open);
        double sum = 0.0;
        double count = 0.0;
        for (int i = 0; i < open->dataset.getTotalTrial(); ++i) {
            const CMDTrialzk& trial = reader.read(i);
            for (int c = 0; c < trial.getTotalChannel(); ++c) {
                const CMDChannelzk& channel = *trial.getChannel(c);
                if (!channel.isMEGMeasureChannel())
                    continue;
                double mean = 0.0;
                double meanSquare = 0.0;
                const auto samples = static_cast<double>(
                    channel.getSelectMinMeaMaxV(0, channel.getTotalSample() - 1, nullptr, &mean, nullptr, &meanSquare));
                sum += (meanSquare - mean * mean) * samples;
                count += samples;
            }
        }
        return count > 0.0 ? std::sqrt(sum / count) : 0.0;
    }

    void draw()
    {
        ReadingNotes notes;
        const auto open = openDatasetToLook(file("clean.meg"), notes);
        CMDTrialzk* const trial = open->dataset.getCurrentTrialPt();
        if (trial == nullptr)
            throw std::runtime_error(shownPath(file("clean.meg")) + ": its trial can't be read");
        const auto maps = makeSensorMaps(*trial);
        std::ofstream svg(file("sensors.svg"));
        writeSvg(maps, svg);
        std::string text;
        for (const SensorMap& map : maps)
            text += (text.empty() ? "" : ", ") + std::to_string(map.points.size()) + ' ' + map.title;
        step("layout clean.meg --svg sensors.svg", text);
    }

    void exportAll()
    {
        ReadingNotes notes;
        const auto open = openDatasetToLook(file("clean.meg"), notes);
        const ExportedShape shape = exportNpy(*open, ExportOptions(), file("clean.npy"));
        step("export clean.meg --npy clean.npy",
             std::to_string(shape.channels) + " channels x " + std::to_string(shape.samples) + " samples");
    }

    void listFiles() const
    {
        std::vector<fs::path> files;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(m_folder))
            if (entry.is_regular_file())
                files.push_back(entry.path());
        std::ranges::sort(files);
        m_out << "All of it is in " << shownPath(m_folder) << ":\n";
        for (const fs::path& path : files)
            m_out << std::setw(12) << fs::file_size(path) << "  " << shownPath(path.lexically_relative(m_folder))
                  << '\n';
    }

    fs::path m_folder;
    std::ostream& m_out;
    int m_steps = 0;
};

} // namespace

void runDemo(const fs::path& folder, std::ostream& out)
{
    const fs::path path = fs::absolute(folder).lexically_normal();
    const bool isThere = fs::exists(path);
    try {
        Demo(path, out).run();
    } catch (...) {
        std::error_code ignored; // it stays where there is something in it
        if (!isThere)
            fs::remove(path, ignored);
        throw;
    }
}

} // namespace megset::cli
