#pragma once
// What a channel is and where it is: type numbers, predicates on them, names, and its sensor. Needs the fields only.

#include "megset/core/CMDChannel.h"

namespace megset {

class CBscMagSns;
class CCoefficientDatazk;
class CEEGelectrodezk;
class CMEGSensorzk;
class CMisceSnsrzk;
class CStimTrigzk;

/// The channel's layer for what it is and where: type, names, geometry object.
class CMDChannel0SensorInfo : public CMDChannel
{
public:
    int getChannelType() const { return m_nChannelType; }
    int getGeomType() const { return m_nGeomType; }
    CString getChannelTypeName() const { return m_strChannelTypeName; }
    int setChannelTypeName(const CString& name);
    /// 0 with nothing changed for a type above 4000 or of -1.
    int setChannelType(int type);
    /// 0 with nothing changed outside 1 to 4.
    int setGeomType(int type);
    /// The working name, in spite of its own name.
    CString getSensorTypeName() const { return m_strChannelName; }
    int setChannelName(const CString& name, bool raw);
    /// Replaces every `from` in the working name, which is reset to the raw name first with `fromRaw`. Gives the count.
    int replaceDataChannlName(const CString& from, const CString& to, bool fromRaw);

    /// The MEG sensor, or null for a channel of another geometry.
    CMEGSensorzk* getMEGSensorzk() const;
    /// One of the sensor's coils; null without a sensor or past its end.
    CBscMagSns* getMEGCoilzk(int coil) const;
    /// The electrode of an EEG channel, with `strict` of a channel of type 302 alone; null otherwise.
    CEEGelectrodezk* getEegElectrode(int strict) const;
    /// Position in mm of the sensor's first coil in the working frame; the first argument is not read. 0 without a
    /// sensor.
    int getSnsCoilWkCpyXYZ(int coil, double& x, double& y, double& z) const;
    /// Stores the type, makes a sensor when none is there, and sets it up from arrays (see CMEGSensor), which gives the
    /// result. 0 without memory.
    int initSensorBasic(int id, int type, const CString& name, const CString& typeName, int coils, int* words,
                        double* a, double* b, double* c, double* d);
    /// Stores the type; makes a new sensor for a MEG type, and sets it up from numbers (see CMEGSensor). 0 without
    /// memory, and for another type where no sensor is there.
    int initSensorInfo(int id, int type, int wordA, int wordB, double a, double b, double c, double d);
    /// Whether the sensor stands at gradient order `order`, 0 to 3; 0 for another order, null data or no sensor.
    int setGradientNoiseReduction(int order, const CCoefficientDatazk* coefficients);

    // The geometry object of a class, made when none of that class is there; null without memory, with nothing changed.
    CMEGSensorzk* ensureMEGSensor();
    CEEGelectrodezk* ensureEegElectrode();
    CStimTrigzk* ensureStimTrig();
    CMisceSnsrzk* ensureMisceSnsr();

    // Kinds, by the channel type t. A type of -1 is of no kind.
    int isMEGChannel() const { return isIn(10, 200); }
    int isMEGMeasureChannel() const { return isIn(100, 103); }
    int isMEGReferenceChannel() const { return isIn(10, 13); }
    int isMKGChannel() const { return isIn(120, 140); }
    int isMKGMeasureChannel() const { return isIn(120, 120); }
    int isMKGReferenceChannel() const { return isIn(140, 140); }
    int isEEGChannel() const { return isIn(300, 354); }
    int isEEGMeasureChannel() const { return isIn(302, 303); }
    int isEEGReferenceChannel() const { return isIn(300, 300); }
    int isEKGChannel() const { return isIn(330, 330); }
    int isIeegChannel() const { return isIn(340, 340); }
    int isSeegChannel() const { return isIn(350, 350); }
    int isTriggerChannel() const { return isIn(600, 600); }
    int isMEG_EEG_Channel() const { return isIn(10, 200) | isIn(300, 354); }
    /// Wider at the low ends and narrower in the EEG range than isMEG_EEG_Channel: it is meant so.
    int isMXG_EXG_Channel() const { return isIn(9, 209) | isIn(299, 309); }
    int isNeuromagQuaternionChnl() const { return 1; }

    /// Row of the electrode type list ("Reference" to "Others") for a channel type. Any other type gives row 10, one
    /// past "Others": the two conversions are not inverse there, and are meant so.
    static int chnlType2eegType(int type);
    static int eegType2ChnlType(int row);
    /// Whether channels of a type are drawn unless somebody says otherwise.
    static bool getShow4SensorType01(int type);

private:
    int isIn(int low, int high) const { return m_nChannelType >= low && m_nChannelType <= high ? 1 : 0; }
    int isVirtualChannel_obsolete() const { return isIn(902, 904); }
};

} // namespace megset
