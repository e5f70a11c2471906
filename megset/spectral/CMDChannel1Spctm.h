#pragma once
// Spectra and frequency data of one channel, by class.

#include "megset/core/CMDChannel0SensorInfo.h"

namespace megset {

/// Classes: 0 active, 1 control, 2 result. Another class gives null.
class CMDChannel1Spctm : public CMDChannel0SensorInfo
{
public:
    /// The spectrum of a class; with bCreate an empty one is made when there is none. Null when there is none, and
    /// without memory.
    CSpctmChnlzk* getSpctmChnl(bool bCreate, int nClass);
    CSpctmChnlzk* getSpctmChnlA(bool bCreate);
    CSpctmChnlzk* getSpctmChnlC(bool bCreate);
    CSpctmChnlzk* getSpctmChnlR(bool bCreate);
    /// The same for the frequency data, each a CFreqDataChnlzk; the third class is called X here.
    void* getFreqChnl(bool bCreate, int nClass);
    void* getFreqDataA(int bCreate);
    void* getFreqDataC(int bCreate);
    void* getFreqDataX(int bCreate);
    /// 1 when there is a spectrum of any class, filled or not.
    int hasSpctmData() const;

    /// The mean of A and C, in R: with bInit R is made, takes their shape and is cleared, and I and M are averaged
    /// where both have them; without it R must have their shape, and only its R plane is touched. With bAssign the mean
    /// replaces the values, else it is added. With bBackup the result goes to R's backup. 0 without A and C of one
    /// shape, without their R planes, and without memory.
    int spctmAC2X_average(int bInit, int bAssign, int bBackup);
};

} // namespace megset
