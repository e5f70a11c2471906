#include "apps/phantom/helmet.h"
#include "apps/phantom/portable.h"

#include <algorithm>
#include <functional>

namespace megset::phantom {

namespace {

constexpr int leftPlaces = 132;

Vector3 directionAt(double polarTurns, double azimuthTurns)
{
    const double sine = sineOfTurns(polarTurns);
    return {sine * cosineOfTurns(azimuthTurns), sine * sineOfTurns(azimuthTurns), cosineOfTurns(polarTurns)};
}

/// Part of a parallel of the left side, from front to back: angles in turns.
struct Arc
{
    double polar;
    double begin;
    double end;

    double length() const { return sineOfTurns(polar) * (end - begin); }
};

// Parallels 10 degrees apart. They keep off the midline, and leave the face free below the forehead.
std::vector<Arc> leftArcs()
{
    constexpr int rows = 11;
    constexpr double midline = 0.0143;
    std::vector<Arc> arcs;
    for (int row = 1; row <= rows; ++row) {
        const double polar = row / 36.0;
        const double margin = midline / sineOfTurns(polar);
        const double face = row > 7 ? (row - 7) / 24.0 : 0;
        arcs.push_back({polar, std::max(margin, face), 0.5 - margin});
    }
    return arcs;
}

// Places at equal distances along all arcs, as if these were one line.
std::vector<Vector3> leftDirections()
{
    const std::vector<Arc> arcs = leftArcs();
    double total = 0;
    for (const Arc& arc : arcs)
        total += arc.length();
    std::vector<Vector3> directions;
    double before = 0;
    for (const Arc& arc : arcs) {
        for (;;) {
            const double along = (static_cast<double>(directions.size()) + 0.5) * total / leftPlaces - before;
            if (along >= arc.length() || directions.size() == leftPlaces)
                break;
            directions.push_back(directionAt(arc.polar, arc.begin + along / sineOfTurns(arc.polar)));
        }
        before += arc.length();
    }
    return directions;
}

/// A region of one side: its letter and how many places each of its rows has.
struct Region
{
    char letter;
    std::vector<int> rows;

    int places() const
    {
        int sum = 0;
        for (const int row : rows)
            sum += row;
        return sum;
    }
};

/// Takes the `count` foremost directions by an order out of the list.
std::vector<Vector3> takeFirst(std::vector<Vector3>& from, int count,
                               const std::function<bool(const Vector3&, const Vector3&)>& order)
{
    std::stable_sort(from.begin(), from.end(), order);
    std::vector<Vector3> taken(from.begin(), from.begin() + count);
    from.erase(from.begin(), from.begin() + count);
    return taken;
}

std::vector<HelmetPlace> named(char side, const Region& region, const std::vector<Vector3>& directions)
{
    std::vector<HelmetPlace> places;
    for (std::size_t row = 0; row < region.rows.size(); ++row)
        for (int column = 1; column <= region.rows[row]; ++column)
            places.push_back(
                {std::string("M") + side + region.letter + std::to_string(row + 1) + std::to_string(column),
                 directions[places.size()]});
    return places;
}

std::vector<HelmetPlace> leftSide()
{
    const Region central{'C', {7, 5, 2, 2, 5, 3}};
    const Region frontal{'F', {4, 5, 5, 6, 6, 7}};
    const Region occipital{'O', {4, 4, 4, 4, 3}};
    const Region parietal{'P', {2, 3, 5, 5, 7}};
    const Region temporal{'T', {6, 7, 7, 7, 7}};
    const auto foremost = [](const Vector3& a, const Vector3& b) { return a.x > b.x; };
    const auto hindmost = [](const Vector3& a, const Vector3& b) { return a.x < b.x; };
    const auto lowest = [](const Vector3& a, const Vector3& b) { return a.z < b.z; };
    const auto topmost = [](const Vector3& a, const Vector3& b) { return a.z > b.z; };

    std::vector<Vector3> left = leftDirections();
    const auto frontalPlaces = takeFirst(left, frontal.places(), foremost);
    const auto occipitalPlaces = takeFirst(left, occipital.places(), hindmost);
    const auto temporalPlaces = takeFirst(left, temporal.places(), lowest);
    const auto parietalPlaces = takeFirst(left, parietal.places(), hindmost);
    const auto centralPlaces = takeFirst(left, central.places(), topmost);

    std::vector<HelmetPlace> places;
    const auto add = [&places](const Region& region, const std::vector<Vector3>& directions) {
        const auto more = named('L', region, directions);
        places.insert(places.end(), more.begin(), more.end());
    };
    add(central, centralPlaces);
    add(frontal, frontalPlaces);
    add(occipital, occipitalPlaces);
    add(parietal, parietalPlaces);
    add(temporal, temporalPlaces);
    return places;
}

/// Places of the midline, 17 degrees apart, from the forehead over the crown to the nape.
std::vector<HelmetPlace> midline()
{
    struct Named
    {
        const char* name;
        int degrees; ///< from the crown, positive to the front
    };
    constexpr Named order[] = {{"MZC01", 14},  {"MZC02", -3},   {"MZC03", -20}, {"MZC04", -37},
                               {"MZF01", 65},  {"MZF02", 48},   {"MZF03", 31},  {"MZO01", -71},
                               {"MZO02", -88}, {"MZO03", -105}, {"MZP01", -54}};
    std::vector<HelmetPlace> places;
    for (const Named& place : order)
        places.push_back({place.name, directionAt(place.degrees / 360.0, 0)});
    return places;
}

} // namespace

std::vector<HelmetPlace> helmetPlaces()
{
    std::vector<HelmetPlace> places = leftSide();
    for (int i = 0; i < leftPlaces; ++i) {
        HelmetPlace mirrored = places[static_cast<std::size_t>(i)];
        mirrored.name[1] = 'R';
        mirrored.direction.y = -mirrored.direction.y;
        places.push_back(std::move(mirrored));
    }
    const std::vector<HelmetPlace> middle = midline();
    places.insert(places.end(), middle.begin(), middle.end());
    return places;
}

} // namespace megset::phantom
