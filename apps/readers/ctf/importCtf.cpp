#include "apps/readers/ctf/importCtf.h"
#include "apps/readers/ctf/importSamples.h"
#include "apps/readers/ctf/libraryRecords.h"

#include "megset/core/CMEGDatazk.h"
#include "megset/platform/CDocument.h"

namespace megset::ctf {

namespace {

class Import
{
public:
    Import(Recording& recording, CMEGDatazk& dataset, CDocument& document)
        : m_recording(recording), m_dataset(dataset), m_document(document)
    {
    }

    std::vector<std::string> run(int threads)
    {
        makeTrial();
        setInformation();
        setGoodFlags();
        importSamples(m_recording, m_dataset, threads);
        addMarks();
        return std::move(m_notes);
    }

private:
    void makeTrial();
    void setInformation();
    void setGoodFlags();
    void addMarks();

    int totalChannels() const { return static_cast<int>(m_recording.header.channels.size()); }
    [[noreturn]] void fail(const std::string& fault) const { throw CtfError(m_recording.folder, fault); }

    Recording& m_recording;
    CMEGDatazk& m_dataset;
    CDocument& m_document;
    std::vector<std::string> m_notes;
};

template <class Record>
CPtrArray pointersTo(std::vector<Record>& records)
{
    CPtrArray pointers;
    for (Record& record : records)
        pointers.Add(&record);
    return pointers;
}

// The first trial, of which the samples make the others. Every channel gets a sensor, since the library takes them by
// the channel's place in the recording.
void Import::makeTrial()
{
    std::vector<CMEGSensorzk> sensors = librarySensors(m_recording.header);
    std::vector<CEEGelectrodezk> electrodes = libraryElectrodes(m_recording.header);
    CStringArray names;
    for (const Channel& channel : m_recording.header.channels)
        names.Add(channel.name);
    const CPtrArray sensorList = pointersTo(sensors);
    const CPtrArray electrodeList = pointersTo(electrodes);
    if (!m_dataset.importTrialChannels(1, totalChannels(), &sensorList, &electrodeList, &names, &names, &m_document))
        fail("no dataset could be made of the recording");
    if (m_dataset.m_aTrialFilePath.GetSize() != 1)
        fail("the first trial file could not be written");
}

// The coefficients come after the information, of which a copy has none.
void Import::setInformation()
{
    CMEGRecordInfozkProzk information;
    setRecordingInformation(m_recording.header, information);
    m_dataset.setMEGRecordInfozk(&information);
    const std::vector<CCoefficientDatazk> coefficients = libraryCoefficients(m_recording.header);
    m_dataset.getMEGRecordInfozk()->getSensorCoefficientzk()->addCoefficientsData(static_cast<int>(coefficients.size()),
                                                                                  coefficients.data());
    setHeadLocalization(m_recording.coils, m_dataset.m_headLocalization);
}

void Import::setGoodFlags()
{
    m_dataset.checkInitChnlParam(m_dataset.getTrialzk(0));
    for (const int channel : m_recording.badChannels)
        if (channel < m_dataset.m_nChnlParamCount && m_dataset.m_pChnlGood != nullptr)
            m_dataset.m_pChnlGood[static_cast<std::size_t>(channel)] = 0;
}

void Import::addMarks()
{
    addBadSegments(m_recording, m_dataset.m_mkSegment);
    const int outside = addMarkers(m_recording.header, m_recording.markers, m_dataset.m_mkMarker);
    if (outside > 0)
        m_notes.push_back("Marks outside their trials are left out: " + std::to_string(outside) + ".");
}

} // namespace

std::vector<std::string> importCtf(Recording& recording, CMEGDatazk& dataset, CDocument& document, int threads)
{
    return Import(recording, dataset, document).run(threads > 0 ? threads : importThreads(recording));
}

} // namespace megset::ctf
