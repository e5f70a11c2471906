// The real recording of a CTF system in the head's frame, held against MNE-Python 1.3.0, and back in the dewar's.

#include "apps/cli/dataset/openDataset.h"

#include "tests/kit/Program.h"
#include "tests/kit/TemporaryFolder.h"
#include "tests/kit/realData.h"

#include <array>
#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace megset::headFrame_test {
namespace {

using nlohmann::json;
using Point = std::array<double, 3>;

struct HeadPlace
{
    const char* name;
    Point position;
};

// Sensors as MNE-Python has them in its head frame (dev_head_t applied to the sensors' places), mm: x through the ears
// to the right, y through the nasion, z up.
constexpr std::array<HeadPlace, 10> headPlaces = {{
    {"BG1-4304", {66.46877529657787, -76.10467385890287, 255.0804174637029}},
    {"BR1-4304", {-75.17471984522061, 50.42207119521819, 268.50662579013476}},
    {"G11-4304", {92.77459784104167, -47.160249948159695, 259.83268268508715}},
    {"MLC11-4304", {-15.936662166735282, 68.10795306465616, 159.5368037980771}},
    {"MLF25-4304", {-84.3683475328268, 90.90006085453737, 70.84502453161578}},
    {"MRO53-4304", {72.54651647604895, -79.15984153843003, -3.7035213976672336}},
    {"MRT31-4304", {84.99055432905439, 94.20348279084698, 43.83334534189479}},
    {"MZC02-4304", {-2.884690182435224, 13.017919813926683, 169.87133154512813}},
    {"MZP01-4304", {4.784113341215082, -98.87264427124127, 106.7620032234087}},
    {"MLT14-4304", {-103.30916026944318, -12.988443060634241, 70.0876500246495}},
}};

// Electrodes there, mm.
constexpr std::array<HeadPlace, 2> electrodePlaces = {{
    {"EEG057", {-21.797849787034924, -97.98404737613156, 73.5818}},
    {"EEG064", {57.82690920319871, -89.42331858722537, 14.1991}},
}};

// Its fiducials there, mm.
constexpr Point nasion = {0.0, 117.67487527359759, 0.0};
constexpr Point leftEar = {-74.32056585164933, 0.0, 0.0};
constexpr Point rightEar = {84.86847149082722, 0.0, 0.0};

constexpr double tolerance = 0.01; // mm

Point minus(const Point& a, const Point& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

double product(const Point& a, const Point& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Point unit(const Point& a)
{
    const double length = std::sqrt(product(a, a));
    return {a[0] / length, a[1] / length, a[2] / length};
}

Point placeOf(const CFiducial& fiducials, CFiducial::Point point)
{
    Point place{};
    fiducials.getFiducialPt(point)->getFidPos(place[0], place[1], place[2]);
    return place;
}

// From a frame of the library to that of the fiducials themselves, as docs/formats/head.md tells.
class FiducialFrame
{
public:
    explicit FiducialFrame(const CFiducial& fiducials)
    {
        const Point left = placeOf(fiducials, CFiducial::leftEar);
        const Point nose = placeOf(fiducials, CFiducial::nasion);
        m_x = unit(minus(placeOf(fiducials, CFiducial::rightEar), left));
        const double along = product(minus(nose, left), m_x);
        m_origin = {left[0] + along * m_x[0], left[1] + along * m_x[1], left[2] + along * m_x[2]};
        m_y = unit(minus(nose, m_origin));
        // The library's frames are left-handed: the product is the other way round.
        m_z = {m_y[1] * m_x[2] - m_y[2] * m_x[1], m_y[2] * m_x[0] - m_y[0] * m_x[2], m_y[0] * m_x[1] - m_y[1] * m_x[0]};
    }

    Point from(const Point& place) const
    {
        const Point v = minus(place, m_origin);
        return {product(v, m_x), product(v, m_y), product(v, m_z)};
    }

private:
    Point m_origin{};
    Point m_x{};
    Point m_y{};
    Point m_z{};
};

void expectNear(const Point& actual, const Point& wanted, const std::string& what)
{
    for (std::size_t axis = 0; axis < 3; ++axis)
        EXPECT_NEAR(actual[axis], wanted[axis], tolerance) << what << ", axis " << axis;
}

class RealHeadFrame : public testing::Test
{
protected:
    void SetUp() override
    {
        const auto data = realDataFolder();
        if (!data)
            GTEST_SKIP() << noRealData;
        run({"import", (*data / "ctf" / "testdata_ctf_short_discontinuous.ds").string(), path()});
    }

    std::string path() const { return m_folder.native("run.meg").string(); }
    std::string run(const std::vector<std::string>& arguments) const
    {
        const auto result = kit::runProgram(MEGSET_PROGRAM, arguments);
        EXPECT_EQ(result.exitCode, 0) << arguments.front() << ": " << result.errors;
        return result.output;
    }
    void moveTo(const char* frame) const { run({"head", path(), "--frame", frame, "--in-place"}); }
    json info() const { return json::parse(run({"info", path(), "--json"})); }
    std::map<std::string, Point> places() const
    {
        std::map<std::string, Point> all;
        const json told = info();
        for (const json& channel : told.at("channels"))
            if (!channel.at("position_mm").is_null())
                all[channel.at("name")] = channel.at("position_mm");
        return all;
    }
    CFiducialzk fiducials() const
    {
        cli::ReadingNotes notes;
        return *cli::openDatasetToLook(path(), notes)->dataset.getFidWorkMeg();
    }
    std::map<std::string, std::vector<std::byte>> files() const
    {
        std::map<std::string, std::vector<std::byte>> all;
        for (const std::string& name : m_folder.names())
            all[name] = m_folder.read(CString(name));
        return all;
    }

    TemporaryFolder m_folder;
};

TEST_F(RealHeadFrame, CoilsAreWhereMnePythonHasThemInItsHeadFrame)
{
    const auto dewar = [this] {
        moveTo("dewar");
        return places();
    }();
    moveTo("head");
    ASSERT_EQ(info().at("frame"), "head");
    const FiducialFrame frame(fiducials());
    const auto head = places();
    for (const HeadPlace& wanted : headPlaces) {
        expectNear(frame.from(head.at(wanted.name)), wanted.position, wanted.name);
        EXPECT_GT(std::abs(head.at(wanted.name)[1] - dewar.at(wanted.name)[1]), 1.0) << wanted.name << " has moved";
    }
}

TEST_F(RealHeadFrame, ElectrodesAreWhereMnePythonHasThem)
{
    const FiducialFrame frame(fiducials());
    const auto head = places();
    for (const HeadPlace& wanted : electrodePlaces)
        expectNear(frame.from(head.at(wanted.name)), wanted.position, wanted.name);
}

TEST_F(RealHeadFrame, FiducialsAreWhereMnePythonHasThem)
{
    moveTo("head");
    const CFiducialzk ours = fiducials();
    const FiducialFrame frame(ours);
    expectNear(frame.from(placeOf(ours, CFiducial::nasion)), nasion, "nasion");
    expectNear(frame.from(placeOf(ours, CFiducial::leftEar)), leftEar, "left ear");
    expectNear(frame.from(placeOf(ours, CFiducial::rightEar)), rightEar, "right ear");
}

// In the dewar, too, the measured fiducials give MNE-Python's head frame: the places agree whatever frame is in use.
TEST_F(RealHeadFrame, TheDewarsCoilsAndMeasuredFiducialsGiveTheSamePlaces)
{
    moveTo("dewar"); // which takes the measured ones
    const FiducialFrame frame(fiducials());
    const auto dewar = places();
    for (const HeadPlace& wanted : headPlaces)
        expectNear(frame.from(dewar.at(wanted.name)), wanted.position, wanted.name);
}

TEST_F(RealHeadFrame, ThereAndBackRestoresTheSameBits)
{
    const auto before = files(); // an import works in the head
    const auto head = places();
    ASSERT_EQ(before.size(), 3U);
    moveTo("head");
    EXPECT_EQ(files(), before);
    for (const char* frame : {"dewar", "dewar-measured"}) {
        moveTo(frame);
        EXPECT_EQ(info().at("frame"), frame);
        EXPECT_NE(places(), head);
        EXPECT_NE(files(), before);
        moveTo("head");
        EXPECT_EQ(places(), head);
        EXPECT_EQ(files(), before) << frame;
    }
}

} // namespace
} // namespace megset::headFrame_test
