#include "apps/cli/inspect/recordKinds.h"

#include "megset/core/CArrayMEDataSet.h"
#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/records/records.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/CSpctmTrialzk.h"
#include "megset/spectral/CSumChnlSpctmDatazk.h"

#include <algorithm>
#include <memory>
#include <type_traits>

namespace megset::cli {

namespace {

// The operation may be a base's.
template <class Base>
int load(std::type_identity_t<Base>& record, int (Base::*serialize)(CArchive&), CArchive& ar)
{
    return (record.*serialize)(ar);
}

template <class Record, auto serialize>
int load(CArchive& ar)
{
    return load(*std::make_unique<Record>(), serialize, ar);
}

// The files of electrodes and probes give what they hold to trials; here there are none.

int loadElectrodes(CArchive& ar)
{
    return std::make_unique<CMEGDatazk>()->serializeElectrodeInfo(ar, false);
}

int loadProbes(CArchive& ar)
{
    return std::make_unique<CMEGDatazk>()->serializeSeegInfo(ar, 0);
}

// One line for each kind: tag, what it is, and the class with the function that reads it.
constexpr RecordKind kinds[] = {
    {"MEGDATASETZK", "dataset file (.meg)", load<CMEGDatazk, &CMEGDatazk::serializeWithoutTrials>},
    {"MEGTRIALZK", "trial file (.trl)", load<CMDTrialzk, &CMDTrialzk::serializezk>},
    {"MEGCHANNELZK", "channel of a trial", load<CMDChannelzk, &CMDChannelzk::serializezk>},
    {"MEGRECORDINFO", "recording information", load<CMEGRecordInfozkProzk, &CMEGRecordInfozkProzk::serialize>},
    {"SENSORCOEFFICIENTZK", "sensor coefficients", load<CCoefficientManagerzk, &CCoefficientManagerzk::serialize>},
    {"SPCTMTRIALZK", "spectrum of a trial", load<CSpctmTrialzk, &CSpctmTrialzk::serializeTrlSpctmZk>},
    {"SPCTMCHNLZK", "spectrum of a channel", load<CSpctmChnlzk, &CSpctmChnlzk::serializeSpctmCzk>},
    {"SUMCHNLZK", "spectrum over channels", load<CSumChnlSpctmDatazk, &CSumChnlSpctmDatazk::serialSumChnl>},
    {"ARRAYMEGDATASETZK", "array of datasets", load<CArrayMEDataSetzk, &CArrayMEDataSetzk::serializeWithoutTrials>},
    {"MEACQDATASETZK", "acquired dataset (.mega)", load<CMEGDatazk, &CMEGDatazk::serializeRecordWithoutTrials>},
    {"MEACQTRIALZK", "acquired trial (.trla)", load<CMDTrialzk, &CMDTrialzk::serializeAcq>},
    {"ACQMECHANNELZK", "channel of an acquired trial", load<CMDChannelzk, &CMDChannelzk::serializeAcqzk>},
    {"ELECTRODINFOFILE", "electrodes (.epos)", loadElectrodes},
    {"SEEGINFO", "depth probes (.seeg)", loadProbes},

    {"MEGRECORDINFOBASEZK", "basic recording information", load<CMEGRecordInfozk, &CMEGRecordInfozk::serialize>},
    {"DATASETINFO", "coefficients of one sensor", load<CCoefficientDatazk, &CCoefficientDatazk::serialize>},

    {"MEGSENSORZK", "MEG sensor", load<CMEGSensorzk, &CMEGSensorzk::serializezk>},
    {"BSCMAGSNSZK", "coil of a MEG sensor", load<CBscMagSnszk, &CBscMagSnszk::serializezk>},
    {"MAGVAPORZK", "vapour cell of a MEG sensor", load<CMagVaporzk, &CMagVaporzk::serializezk>},
    {"MEGSQUIDZK", "gradiometer of coils", load<CMegSquidzk, &CMegSquidzk::serializezk>},
    {"MEGOPMZK", "gradiometer of vapour cells", load<CMegOpmzk, &CMegOpmzk::serializezk>},
    {"EEGELECTRODEZK", "electrode", load<CEEGelectrodezk, &CEEGelectrodezk::serializezk>},
    {"STIMTRIGZK", "stimulus trigger", load<CStimTrigzk, &CStimTrigzk::serializezk>},
    {"MISCESNSRZK", "miscellaneous input", load<CMisceSnsrzk, &CMisceSnsrzk::serializezk>},
    {"SENSORACCELERATORZK", "accelerator input", load<CSensorAcceleratorzk, &CSensorAcceleratorzk::serializezk>},
    {"SENSORANALOGZK", "analog input", load<CSensorAnalogzk, &CSensorAnalogzk::serializezk>},

    {"MARKERMANAGERZK", "lists of marks", load<CMarkerManagerzk, &CMarkerManagerzk::serializeMLM>},
    {"MARKERDATAZK", "list of marks", load<CMarkerDatazk, &CMarkerDatazk::serializezk>},
    {"HEADLOCALIZATIONZK", "head localisation", load<CHeadLocalizationzk, &CHeadLocalizationzk::serializezk>},
    {"FIDUCIALZK", "fiducial points", load<CFiducialzk, &CFiducialzk::serialize>},
    {"FIDUCIARYPTZK", "fiducial point", load<CFiduciaryPtzk, &CFiduciaryPtzk::serialize>},
    {"SPHEREZK", "sphere of a head", load<CSpherezk, &CSpherezk::serializezk>},
    {"FILTERDCLTZK", "filter settings", load<CFilterDcLtSettingzk, &CFilterDcLtSettingzk::serializezk>},
    {"MTGUNITCOMMONREFZK", "montage with one reference", load<CMtgUnit4CommonRefzk, &CMtgUnit4CommonRefzk::serialize>},
    {"MTGUNITINDIVIDUALREFZK", "montage with a reference for each channel",
     load<CMtgUnit4IndividualRefzk, &CMtgUnit4IndividualRefzk::serialize>},
    {"MTGCHNLOPERATORZK", "weighted channel of a montage", load<CMtgChnlOperatorzk, &CMtgChnlOperatorzk::serialize>},
    {"MTGCHNLIDNAMEZK", "channel of a montage", load<CMtgChnlIdNamezk, &CMtgChnlIdNamezk::serialize>},
    {"SEEGPROBEZK", "depth probe", load<CSeegProbezk, &CSeegProbezk::serializezk>},
    {"SEEGCONTACTZK", "contact of a depth probe", load<CSeegContactzk, &CSeegContactzk::serializezk>},
    {"CONTOURMAP2DINFOZK", "extent of a contour map", load<CContourMap2DInfozk, &CContourMap2DInfozk::serializezk>},
    {"M3DINDEX2COLORZK", "colours of an index", load<CM3DIndex2Colorzk, &CM3DIndex2Colorzk::serializezk>},

    {"WADXZK", "wave", load<CWadXzk, &CWadXzk::serializezk>},
    {"CHNLWAVEANALYZEDRESULTZK", "wave results of a channel",
     load<CChnlWaveAnalyzedResultzk, &CChnlWaveAnalyzedResultzk::serialize>},
    {"TRLWAVEANALYZEDRESULTZK", "wave results of a trial",
     load<CTrlWaveAnalyzedResultzk, &CTrlWaveAnalyzedResultzk::serialize>},
    {"FACEWAVEANALYZEDRESULTZK", "wave results of a dataset",
     load<CFaceWaveAnalyzedResultzk, &CFaceWaveAnalyzedResultzk::serialize>},
    {"FREQDATACHNLZK", "frequency data of a channel", load<CFreqDataChnlzk, &CFreqDataChnlzk::serializezk>},
    {"SUMCHNLFREQDATAZK", "frequency data over channels", load<CSumChnlFreqDatazk, &CSumChnlFreqDatazk::serializezk>},
    {"FREQDATATRIALZK", "frequency data of a trial", load<CFreqDataTrialzk, &CFreqDataTrialzk::serializezk>},
    {"FREQDATASETFACEZK", "frequency data of a dataset", load<CFreqDatasetFacezk, &CFreqDatasetFacezk::serializezk>},
    {"SNSCOHFACEZK", "coherence of sensors", load<CSnsCohFacezk, &CSnsCohFacezk::serialize>},
    {"SNSCOHDATAZK", "coherence of a pair of sensors", load<CSnsCohDatazk, &CSnsCohDatazk::serializezk>},
    {"SRCCOHFACEZK", "coherence of sources", load<CSrcCohFacezk, &CSrcCohFacezk::serialize>},
    {"MEGSPCTMCCDATAFACEZK", "cross spectra", load<CMEGSpctmCCDataFacezk, &CMEGSpctmCCDataFacezk::serializeSpctmFace>},
    {"MEGSPCTMCCTRLDATAZK", "cross spectra of a trial", load<CMEGSpctmCCTrlDatazk, &CMEGSpctmCCTrlDatazk::serializezk>},
    {"GROUPMEEGCXCFACEZK", "cross spectra of a group", load<CGroupMeegCxcFacezk, &CGroupMeegCxcFacezk::serializezk>},
    {"FACEVOLUMSOURCEIMAGEZK", "source images",
     load<CFaceVolumSourceImagezk, &CFaceVolumSourceImagezk::serializeSAMFace>},
    {"VOLUMSOURCIMAGZK", "source image", load<CVolumSourcImagzk, &CVolumSourcImagzk::serializezk>},
    {"FACEVOLUMSOURCECOHERENCEIMAGEZK", "images of source coherence",
     load<CFaceVolumSourceCoherenceImagezk, &CFaceVolumSourceCoherenceImagezk::serializeFaceVlmSrcNtwk>},
    {"VOLUMSOURCCOHERENCIMAGZK", "image of source coherence",
     load<CVolumSourcCoherencImagzk, &CVolumSourcCoherencImagzk::serializezk>},
    {"PKGFACEVIRTCHNLWAVEZK", "packages of virtual channels",
     load<CPkgFaceVirtChnlWavezk, &CPkgFaceVirtChnlWavezk::serializezk>},
    {"FACEVIRTCHNLWAVEZK", "waves of virtual channels", load<CFaceVirtChnlWavezk, &CFaceVirtChnlWavezk::serializezk>},
    {"VIRTCHNLWAVEZK", "wave of a virtual channel", load<CVirtChnlWavezk, &CVirtChnlWavezk::serializezk>},
    {"FACEVIRTCHNLSPCTMZK", "spectra of virtual channels",
     load<CFaceVirtChnlSpctmzk, &CFaceVirtChnlSpctmzk::serializeSpctmC>},
    {"VIRTCHNLSPCTMZK", "spectrum of a virtual channel", load<CVirtChnlSpctmzk, &CVirtChnlSpctmzk::serializezk>},
    {"VIRTSNSPOXLISTZK", "places of virtual sensors", load<CVirtSnsPOXlistzk, &CVirtSnsPOXlistzk::serializezk>},
    {"FACEICAZK", "independent components", load<CFaceIcazk, &CFaceIcazk::serialize>},
};

} // namespace

std::span<const RecordKind> recordKinds()
{
    return kinds;
}

const RecordKind* findRecordKind(std::string_view tag)
{
    const auto* const found = std::ranges::find(kinds, tag, &RecordKind::tag);
    return found != std::end(kinds) ? found : nullptr;
}

} // namespace megset::cli
