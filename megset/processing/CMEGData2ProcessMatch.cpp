// Two selections made of the same length.
#include "megset/processing/CMEGData2Process.h"

#include "megset/platform/AfxMessageBox.h"

#include <algorithm>
#include <limits>

namespace megset {
namespace {

int refuse(const char* message)
{
    AfxMessageBox(message, MB_OK);
    return 0;
}

int refuseMatch()
{
    return refuse("Can't match the active and control selections!");
}

// a - b, or the end of the type that it would pass: ranges may be of any size.
std::int64_t difference(std::int64_t a, std::int64_t b)
{
    std::int64_t result = 0;
    if (!__builtin_sub_overflow(a, b, &result))
        return result;
    return a < b ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
}

// Samples that begin and end of a range move.
struct Moves
{
    std::int64_t begin = 0;
    std::int64_t end = 0;
    int isEnough = 0;
};

// Begin and end take turns, the begin first; what one of them has no room for the other moves.
Moves takeTurns(std::int64_t moves, std::int64_t beginRoom, std::int64_t endRoom)
{
    const std::int64_t end = std::min(moves / 2, endRoom);
    const std::int64_t begin = std::min(moves - end, beginRoom);
    const std::int64_t restOfEnd = std::min(moves - begin, endRoom);
    return {begin, restOfEnd, begin == moves - restOfEnd ? 1 : 0};
}

int grow(std::int64_t& begin, std::int64_t& end, std::int64_t total, std::int64_t samples)
{
    const std::int64_t beginRoom = std::max<std::int64_t>(begin, 0);
    const std::int64_t endRoom = std::max<std::int64_t>(difference(difference(total, 1), end), 0);
    const Moves moves = takeTurns(samples, beginRoom, endRoom);
    begin -= moves.begin;
    end += moves.end;
    return moves.isEnough ? 1 : refuseMatch();
}

// An end before the data comes to sample 0 when its turn comes, which makes the range longer; from then on the begin
// moves alone.
int shrinkFromBeforeData(std::int64_t& begin, std::int64_t& end, std::int64_t total, std::int64_t size)
{
    const std::int64_t last = difference(total, 1);
    if (begin < last) {
        ++begin;
        if (difference(end, begin - 1) <= size)
            return 1;
    }
    end = 0;
    const std::int64_t wanted = difference(difference(1, begin), size);
    const std::int64_t moved = std::clamp<std::int64_t>(difference(last, begin), 0, std::max<std::int64_t>(wanted, 0));
    begin += moved;
    return moved == wanted ? 1 : refuseMatch();
}

int shrink(std::int64_t& begin, std::int64_t& end, std::int64_t total, std::int64_t samples)
{
    const std::int64_t beginRoom = std::max<std::int64_t>(difference(difference(total, 1), begin), 0);
    const Moves moves = takeTurns(samples, beginRoom, end);
    begin += moves.begin;
    end -= moves.end;
    return moves.isEnough ? 1 : refuseMatch();
}

} // namespace

int CMEGData2Process::matchAtiveControl(std::int64_t& activeB, std::int64_t& activeE, std::int64_t& controlB,
                                        std::int64_t& controlE) const
{
    const std::int64_t active = difference(activeE, activeB);
    const std::int64_t control = difference(controlE, controlB);
    if (active == control)
        return 1;
    if (active <= 0 && control <= 0)
        return refuse("The selected data range is wrong!");
    const std::int64_t total = m_recordInfo.m_nRecTotalSample;
    return active < control ? grow(activeB, activeE, total, difference(control, active))
                            : grow(controlB, controlE, total, difference(active, control));
}

int CMEGData2Process::matchSelect2Size(std::int64_t& begin, std::int64_t& end, std::int64_t size) const
{
    const std::int64_t length = difference(end, difference(begin, 1));
    if (length == size)
        return 1;
    if (length <= 0 && size <= 0)
        return refuse("The selected data range or size is wrong!");
    const std::int64_t total = m_recordInfo.m_nRecTotalSample;
    if (length < size)
        return grow(begin, end, total, difference(size, length));
    return end < 0 ? shrinkFromBeforeData(begin, end, total, size)
                   : shrink(begin, end, total, difference(length, size));
}

} // namespace megset
