#pragma once
// The bottom of the chain of a channel's spectrum: the time-frequency planes of one channel for one spectral class, and
// a backup of them in memory. The layers above add operations and no fields; the chain has no virtual operation.

#include "megset/platform/memory.h"

#include <cstdint>

namespace megset {

/// A plane is T x F doubles in one block, time-major: the value at time point t and frequency point f stands at index
/// t * F + f. Data types: 0 R real, 1 I imaginary, 2 M magnitude, 3 A phase in radians. Every operation that gives int
/// gives 1 when done and 0 when failed; where nothing else is said, failure is lack of memory and shows no message.
class CSpctmChnl
{
public:
    CSpctmChnl() = default;
    CSpctmChnl(const CSpctmChnl&) = delete;
    CSpctmChnl& operator=(const CSpctmChnl&) = delete;
    ~CSpctmChnl();

    /// Deletes the current planes and sets T and F to 0. Range and backup stay.
    int _cleanSpctmData();
    /// The same for the backup.
    int _cleanBkSpctmData();

    /// The plane of that data type, not to be freed; null when absent and for other data types. T and F go through
    /// those of the pointers that are not null, in every case.
    double* getSpctmDataPtr(int nDataType, std::int64_t* pTimePt, std::int64_t* pFreqPt) const;

    /// Makes planes for direct filling: R always, I with `bWithI`, M and A with `bWithMA`. Planes of that shape keep
    /// their content without `bZero`; new ones are zero. T or F below 1, or another shape, ends the current planes;
    /// below 1 gives 0.
    int initSpctmSpace(std::int64_t nTimePt, std::int64_t nFreqPt, bool bZero, int bWithI, int bWithMA);

    /// nRow rows of nCol doubles, zero with `bZero`, for the row forms below; freeBufferF2d ends it. Null for a count
    /// below 1, and without memory ("Has enough memory?").
    static double** newBufferF2d(std::int64_t nRow, std::int64_t nCol, bool bZero);
    /// Ends such a buffer and sets it to null; 0 when it is null. With nRow below 1 only the array of pointers is
    /// ended.
    static int freeBufferF2d(std::int64_t nRow, std::int64_t nCol, double**& ppBuffer);

    // Taking what was computed. The row forms get T pointers to F doubles, the 1d forms one array in plane order; all
    // are only read. Planes that a form does not carry are deleted. With bRestart, or for another T or F, all begins
    // anew and the backup is dropped. With bAssign the values replace those held, else they are added, with no
    // count kept; with bBackup the result is copied to the backup. T or F below 1 clears the object, backup
    // included, and gives 0. A null array gives 0 and changes nothing.

    int addSpctmDataR(double** ppR, std::int64_t nTimePt, std::int64_t nFreqPt, int bRestart, int bAssign, int bBackup);
    /// This form and addSpctmDataRIM clear R again when they add to planes one of which is newly made.
    int addSpctmDataRI(double** ppR, double** ppI, std::int64_t nTimePt, std::int64_t nFreqPt, int bRestart,
                       int bAssign, int bBackup);
    int addSpctmDataRIM(double** ppR, double** ppI, double** ppM, std::int64_t nTimePt, std::int64_t nFreqPt,
                        int bRestart, int bAssign, int bBackup);
    int addSpctmDataRIM1d(double* pR, double* pI, double* pM, std::int64_t nTimePt, std::int64_t nFreqPt, int bRestart,
                          int bAssign, int bBackup);
    int addSpctmDataRIMA(double** ppR, double** ppI, double** ppM, double** ppA, std::int64_t nTimePt,
                         std::int64_t nFreqPt, int bRestart, int bAssign, int bBackup);
    int addSpctmDataRIMA1d(double* pR, double* pI, double* pM, double* pA, std::int64_t nTimePt, std::int64_t nFreqPt,
                           int bRestart, int bAssign, int bBackup);

    /// Copies the current planes to the backup; a backup plane without a current one stays when the shape is the same.
    /// T or F below 1 clears the backup and gives 0.
    int storeData2Backupfile();
    /// The same for M and A alone when the backup has the same shape, else for all.
    int storeSpctmResult();
    /// Copies the I, M and A planes of the backup back; current planes without a backup plane stay. An empty
    /// backup, and one that holds R, is refused: "No backup sepctral data?!".
    int reloadRawSpctmDataRIX();

    // Fields, in the order in which the chain declares them. A plane that exists has T x F elements of its set.

    std::int64_t m_nTimePt = 0; ///< T of the current planes
    std::int64_t m_nFreqPt = 0; ///< F of the current planes
    SampleArray m_pSpctmR;
    SampleArray m_pSpctmI;
    SampleArray m_pSpctmM;
    SampleArray m_pSpctmA;
    double m_dSpctmMax = 0.0; ///< range as last computed; outlives the planes and is filed
    double m_dSpctmMin = 0.0;
    double m_dSpctmMean = 0.0;
    std::int64_t m_nBkTimePt = 0; ///< T of the backup
    std::int64_t m_nBkFreqPt = 0; ///< F of the backup
    SampleArray m_pBkSpctmR;
    SampleArray m_pBkSpctmI;
    SampleArray m_pBkSpctmM;
    SampleArray m_pBkSpctmA;

private:
    struct Addition;
    int addPlanes(const Addition& addition);
    int makeCarriedPlanes(const Addition& addition);
    int copyToBackup(int firstDataType);
    bool resizeForReload();
};

} // namespace megset
