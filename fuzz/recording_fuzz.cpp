// Loads a record from the input. What could be loaded is stored, loaded and stored again, and must be the same then;
// and whatever came of the load, the operations on the record must get along with it.
//
// The first byte says which record the rest is: recording information, its basic part, or one of those that are made to
// be kept by themselves. Coefficients are those of coefficients_fuzz.

#include "fuzz/storeAndReload.h"
#include "fuzz/useRecord.h"

#include "megset/records/records.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace megset {
namespace {

template <class Base>
struct Record : Base
{
    int serializezk(CArchive& ar)
    {
        Base& record = *this;
        if constexpr (requires { record.serializezk(ar); })
            return record.serializezk(ar);
        else if constexpr (requires { record.serializeMLM(ar); })
            return record.serializeMLM(ar);
        else if constexpr (requires { record.serializeSAMFace(ar); })
            return record.serializeSAMFace(ar);
        else if constexpr (requires { record.serializeFaceVlmSrcNtwk(ar); })
            return record.serializeFaceVlmSrcNtwk(ar);
        else if constexpr (requires { record.serializeSpctmFace(ar); })
            return record.serializeSpctmFace(ar);
        else if constexpr (requires { record.serializeSpctmC(ar); })
            return record.serializeSpctmC(ar);
        else
            return record.serialize(ar);
    }
};

template <class Base>
void run(std::span<const std::byte> input)
{
    Record<Base> record;
    if (load(record, input))
        storeAndReload(record);
    limitMemory(input.size(), 16);
    if constexpr (requires { use(static_cast<Base&>(record)); })
        use(static_cast<Base&>(record));
}

} // namespace

void fuzzInput(std::span<const std::byte> input)
{
    // Inputs count on this order: more go to its end.
    runChosen(input, {run<CMEGRecordInfozkProzk>,
                      run<CMEGRecordInfozk>,
                      run<CFreqDataChnlzk>,
                      run<CSumChnlFreqDatazk>,
                      run<CFreqDataTrialzk>,
                      run<CFreqDatasetFacezk>,
                      run<CGroupMeegCxcFacezk>,
                      run<CVirtSnsPOXlistzk>,
                      run<CM3DIndex2Colorzk>,
                      run<CContourMap2DInfozk>,
                      run<CMegSquidzk>,
                      run<CMegOpmzk>,
                      run<CMagVaporzk>,
                      run<CSpherezk>,
                      run<CSensorAnalogzk>,
                      run<CEEGelectrodezk>,
                      run<CFiducialzk>,
                      run<CHeadLocalizationzk>,
                      run<CBscMagSnszk>,
                      run<CMEGSensorzk>,
                      run<CSeegProbezk>,
                      run<CMarkerDatazk>,
                      run<CMarkerManagerzk>,
                      run<CFaceIcazk>,
                      run<CVolumSourcImagzk>,
                      run<CVolumSourcCoherencImagzk>,
                      run<CMEGSpctmCCDataFacezk>,
                      run<CSnsCohDatazk>,
                      run<CSrcCohFacezk>,
                      run<CFaceVirtChnlWavezk>,
                      run<CFaceVirtChnlSpctmzk>,
                      run<CChnlWaveAnalyzedResultzk>,
                      run<CTrlWaveAnalyzedResultzk>,
                      run<CFaceWaveAnalyzedResultzk>});
}

} // namespace megset
