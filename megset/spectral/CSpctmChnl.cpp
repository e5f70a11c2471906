#include "megset/spectral/CSpctmChnl.h"

#include "megset/numeric/arithmetic.h"
#include "megset/numeric/convert.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/spectral/spectralPlanes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

namespace megset {
namespace {

// The planes by data type.
constexpr std::array currentPlanes{&CSpctmChnl::m_pSpctmR, &CSpctmChnl::m_pSpctmI, &CSpctmChnl::m_pSpctmM,
                                   &CSpctmChnl::m_pSpctmA};
constexpr std::array backupPlanes{&CSpctmChnl::m_pBkSpctmR, &CSpctmChnl::m_pBkSpctmI, &CSpctmChnl::m_pBkSpctmM,
                                  &CSpctmChnl::m_pBkSpctmA};
static_assert(currentPlanes.size() == spectrumDataTypes);

SampleArray& currentPlane(CSpctmChnl& spectrum, int nDataType)
{
    return spectrum.*currentPlanes[static_cast<std::size_t>(nDataType)];
}

SampleArray& backupPlane(CSpctmChnl& spectrum, int nDataType)
{
    return spectrum.*backupPlanes[static_cast<std::size_t>(nDataType)];
}

// Copies a plane onto another, which is made when it is missing; false without memory.
bool copyPlane(const SampleArray& from, SampleArray& to, std::int64_t count)
{
    if (to == nullptr)
        to = tryNewSamples(count, false);
    if (to == nullptr)
        return false;
    numeric::copy(planeSpan(from, count), planeSpan(to, count));
    return true;
}

} // namespace

struct CSpctmChnl::Addition
{
    // What an addition brings for one plane: row pointers, or one array in plane order.
    struct PlaneInput
    {
        double* const* rows = nullptr;
        const double* flat = nullptr;

        bool isThere() const { return rows != nullptr || flat != nullptr; }
    };

    std::array<PlaneInput, spectrumDataTypes> inputs;
    int nCarried; ///< the data types 0 .. nCarried - 1 are carried
    std::int64_t nTimePt;
    std::int64_t nFreqPt;
    bool restart;
    bool assign;
    bool backup;
    bool newPlaneClearsR = false;

    bool hasShape() const { return nTimePt >= 1 && nFreqPt >= 1; }
    bool isComplete() const
    {
        return std::all_of(inputs.begin(), inputs.begin() + nCarried,
                           [](const PlaneInput& input) { return input.isThere(); });
    }
    void apply(const PlaneInput& input, std::span<double> plane) const;
};

// Copies or adds the input, a whole row or plane at a time.
void CSpctmChnl::Addition::apply(const PlaneInput& input, std::span<double> plane) const
{
    const auto apply = assign
                           ? [](std::span<const double> from, std::span<double> to) { numeric::copy(from, to); }
                           : [](std::span<const double> from, std::span<double> to) { numeric::addInPlace(to, from); };
    if (input.rows == nullptr) {
        apply({input.flat, plane.size()}, plane);
        return;
    }
    const auto rowSize = static_cast<std::size_t>(nFreqPt);
    for (std::size_t t = 0; t < static_cast<std::size_t>(nTimePt); ++t)
        apply({input.rows[t], rowSize}, plane.subspan(t * rowSize, rowSize));
}

CSpctmChnl::~CSpctmChnl()
{
    _cleanSpctmData();
    _cleanBkSpctmData();
}

int CSpctmChnl::_cleanSpctmData()
{
    for (const auto plane : currentPlanes)
        (this->*plane).reset();
    m_nTimePt = m_nFreqPt = 0;
    return 1;
}

int CSpctmChnl::_cleanBkSpctmData()
{
    for (const auto plane : backupPlanes)
        (this->*plane).reset();
    m_nBkTimePt = m_nBkFreqPt = 0;
    return 1;
}

double* CSpctmChnl::getSpctmDataPtr(int nDataType, std::int64_t* pTimePt, std::int64_t* pFreqPt) const
{
    if (pTimePt != nullptr)
        *pTimePt = m_nTimePt;
    if (pFreqPt != nullptr)
        *pFreqPt = m_nFreqPt;
    if (nDataType < 0 || nDataType >= spectrumDataTypes)
        return nullptr;
    return (this->*currentPlanes[static_cast<std::size_t>(nDataType)]).get();
}

int CSpctmChnl::initSpctmSpace(std::int64_t nTimePt, std::int64_t nFreqPt, bool bZero, int bWithI, int bWithMA)
{
    const bool hasShape = nTimePt >= 1 && nFreqPt >= 1;
    if (!hasShape || nTimePt != m_nTimePt || nFreqPt != m_nFreqPt)
        _cleanSpctmData();
    if (!hasShape)
        return 0;
    m_nTimePt = nTimePt;
    m_nFreqPt = nFreqPt;
    const std::int64_t count = planeCount(nTimePt, nFreqPt);
    const std::array<bool, spectrumDataTypes> wanted{true, bWithI != 0, bWithMA != 0, bWithMA != 0};
    for (int type = 0; type < spectrumDataTypes; ++type) {
        SampleArray& plane = currentPlane(*this, type);
        if (plane != nullptr && bZero)
            numeric::fill(planeSpan(plane, count), 0.0);
        if (plane != nullptr || !wanted[static_cast<std::size_t>(type)])
            continue;
        plane = tryNewSamples(count, true); // without bZero too: the caller may not fill all of what is filed
        if (plane == nullptr)
            return 0;
    }
    return 1;
}

double** CSpctmChnl::newBufferF2d(std::int64_t nRow, std::int64_t nCol, bool bZero)
{
    if (nRow < 1 || nCol < 1)
        return nullptr;
    double** ppBuffer = tryNewArray<double*>(nRow).release();
    for (std::int64_t row = 0; ppBuffer != nullptr && row < nRow; ++row) {
        ppBuffer[row] = (bZero ? tryNewZeroArray<double>(nCol) : tryNewArray<double>(nCol)).release();
        if (ppBuffer[row] != nullptr)
            continue;
        while (row-- > 0)
            std::unique_ptr<double[]>(ppBuffer[row]).reset();
        freeBufferF2d(0, nCol, ppBuffer);
    }
    if (ppBuffer == nullptr)
        AfxMessageBox("Has enough memory?", MB_OK);
    return ppBuffer;
}

int CSpctmChnl::freeBufferF2d(std::int64_t nRow, std::int64_t, double**& ppBuffer)
{
    if (ppBuffer == nullptr)
        return 0;
    const std::unique_ptr<double*[]> rows(ppBuffer);
    ppBuffer = nullptr;
    for (std::int64_t row = 0; row < nRow; ++row)
        std::unique_ptr<double[]>(rows[static_cast<std::size_t>(row)]).reset();
    return 1;
}

int CSpctmChnl::addSpctmDataR(double** ppR, std::int64_t nTimePt, std::int64_t nFreqPt, int bRestart, int bAssign,
                              int bBackup)
{
    return addPlanes({{{{ppR}}}, 1, nTimePt, nFreqPt, bRestart != 0, bAssign != 0, bBackup != 0});
}

int CSpctmChnl::addSpctmDataRI(double** ppR, double** ppI, std::int64_t nTimePt, std::int64_t nFreqPt, int bRestart,
                               int bAssign, int bBackup)
{
    return addPlanes({{{{ppR}, {ppI}}}, 2, nTimePt, nFreqPt, bRestart != 0, bAssign != 0, bBackup != 0, true});
}

int CSpctmChnl::addSpctmDataRIM(double** ppR, double** ppI, double** ppM, std::int64_t nTimePt, std::int64_t nFreqPt,
                                int bRestart, int bAssign, int bBackup)
{
    return addPlanes({{{{ppR}, {ppI}, {ppM}}}, 3, nTimePt, nFreqPt, bRestart != 0, bAssign != 0, bBackup != 0, true});
}

int CSpctmChnl::addSpctmDataRIM1d(double* pR, double* pI, double* pM, std::int64_t nTimePt, std::int64_t nFreqPt,
                                  int bRestart, int bAssign, int bBackup)
{
    return addPlanes({{{{nullptr, pR}, {nullptr, pI}, {nullptr, pM}}},
                      3,
                      nTimePt,
                      nFreqPt,
                      bRestart != 0,
                      bAssign != 0,
                      bBackup != 0});
}

int CSpctmChnl::addSpctmDataRIMA(double** ppR, double** ppI, double** ppM, double** ppA, std::int64_t nTimePt,
                                 std::int64_t nFreqPt, int bRestart, int bAssign, int bBackup)
{
    return addPlanes({{{{ppR}, {ppI}, {ppM}, {ppA}}}, 4, nTimePt, nFreqPt, bRestart != 0, bAssign != 0, bBackup != 0});
}

int CSpctmChnl::addSpctmDataRIMA1d(double* pR, double* pI, double* pM, double* pA, std::int64_t nTimePt,
                                   std::int64_t nFreqPt, int bRestart, int bAssign, int bBackup)
{
    return addPlanes({{{{nullptr, pR}, {nullptr, pI}, {nullptr, pM}, {nullptr, pA}}},
                      4,
                      nTimePt,
                      nFreqPt,
                      bRestart != 0,
                      bAssign != 0,
                      bBackup != 0});
}

// The frame that all forms share.
int CSpctmChnl::addPlanes(const Addition& addition)
{
    if (addition.hasShape() && !addition.isComplete())
        return 0;
    if (!addition.hasShape() || addition.restart || addition.nTimePt != m_nTimePt || addition.nFreqPt != m_nFreqPt) {
        _cleanSpctmData();
        _cleanBkSpctmData();
    }
    if (!addition.hasShape() || !makeCarriedPlanes(addition))
        return 0;
    m_nTimePt = addition.nTimePt;
    m_nFreqPt = addition.nFreqPt;
    const std::int64_t count = planeCount(m_nTimePt, m_nFreqPt);
    for (int type = 0; type < addition.nCarried; ++type)
        addition.apply(addition.inputs[static_cast<std::size_t>(type)], planeSpan(currentPlane(*this, type), count));
    if (addition.backup)
        storeData2Backupfile();
    return 1;
}

// Deletes the planes that are not carried and makes those that are missing. What this leaves may be filed even when it
// fails, so that planes which nothing is going to be assigned to are zero.
int CSpctmChnl::makeCarriedPlanes(const Addition& addition)
{
    for (int type = addition.nCarried; type < spectrumDataTypes; ++type)
        currentPlane(*this, type).reset();
    const std::int64_t count = planeCount(addition.nTimePt, addition.nFreqPt);
    std::array<bool, spectrumDataTypes> made{};
    for (int type = 0; type < addition.nCarried; ++type) {
        SampleArray& plane = currentPlane(*this, type);
        if (plane != nullptr)
            continue;
        plane = tryNewSamples(count, !addition.assign);
        if (plane == nullptr) {
            for (int before = 0; before < type; ++before)
                if (made[static_cast<std::size_t>(before)])
                    numeric::fill(planeSpan(currentPlane(*this, before), count), 0.0);
            return 0;
        }
        made[static_cast<std::size_t>(type)] = true;
        // As it is meant: in some forms a new plane beside R wipes the sum that R holds.
        if (type > 0 && addition.newPlaneClearsR && !addition.assign)
            numeric::fill(planeSpan(m_pSpctmR, count), 0.0);
    }
    return 1;
}

int CSpctmChnl::storeData2Backupfile()
{
    const bool hasShape = m_nTimePt >= 1 && m_nFreqPt >= 1;
    if (!hasShape || m_nBkTimePt != m_nTimePt || m_nBkFreqPt != m_nFreqPt)
        _cleanBkSpctmData();
    if (!hasShape)
        return 0;
    m_nBkTimePt = m_nTimePt;
    m_nBkFreqPt = m_nFreqPt;
    return copyToBackup(0);
}

int CSpctmChnl::storeSpctmResult()
{
    constexpr int magnitude = 2;
    if (m_nBkTimePt == m_nTimePt && m_nBkFreqPt == m_nFreqPt)
        return copyToBackup(magnitude);
    return storeData2Backupfile();
}

// Copies the current planes from that data type on to a backup of the same shape.
int CSpctmChnl::copyToBackup(int firstDataType)
{
    const std::int64_t count = planeCount(m_nTimePt, m_nFreqPt);
    for (int type = firstDataType; type < spectrumDataTypes; ++type) {
        const SampleArray& plane = currentPlane(*this, type);
        if (plane != nullptr && !copyPlane(plane, backupPlane(*this, type), count))
            return 0;
    }
    return 1;
}

int CSpctmChnl::reloadRawSpctmDataRIX()
{
    // As it is meant: a backup that holds R is refused.
    if (m_nBkTimePt < 1 || m_nBkFreqPt < 1 || m_pBkSpctmR != nullptr) {
        AfxMessageBox("No backup sepctral data?!", MB_OK);
        return 0;
    }
    if (m_nBkFreqPt != m_nFreqPt)
        _cleanSpctmData();
    else if (m_nBkTimePt != m_nTimePt && !resizeForReload())
        return 0;
    m_nTimePt = m_nBkTimePt;
    m_nFreqPt = m_nBkFreqPt;
    const std::int64_t count = planeCount(m_nTimePt, m_nFreqPt);
    for (int type = 1; type < spectrumDataTypes; ++type) {
        const SampleArray& plane = backupPlane(*this, type);
        if (plane != nullptr && !copyPlane(plane, currentPlane(*this, type), count))
            return 0;
    }
    return 1;
}

// Brings the current planes to the T of the backup. Those without a backup plane keep their rows, and new rows are
// zero; the others are given up. Without memory nothing changes.
bool CSpctmChnl::resizeForReload()
{
    const std::int64_t count = planeCount(m_nBkTimePt, m_nBkFreqPt);
    std::array<SampleArray, spectrumDataTypes> resized;
    for (int type = 0; type < spectrumDataTypes; ++type) {
        const SampleArray& plane = currentPlane(*this, type);
        if (plane == nullptr || backupPlane(*this, type) != nullptr)
            continue;
        SampleArray& target = resized[static_cast<std::size_t>(type)];
        target = tryNewSamples(count, true);
        if (target == nullptr)
            return false;
        numeric::copy(planeSpan(plane, planeCount(m_nTimePt, m_nFreqPt)), planeSpan(target, count));
    }
    for (int type = 0; type < spectrumDataTypes; ++type)
        currentPlane(*this, type) = std::move(resized[static_cast<std::size_t>(type)]);
    return true;
}

} // namespace megset
