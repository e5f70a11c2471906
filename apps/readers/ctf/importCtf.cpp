#include "apps/readers/ctf/importCtf.h"
#include "apps/readers/ctf/libraryRecords.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/CDocument.h"

#include <set>

namespace megset::ctf {

namespace {

class Import
{
public:
    Import(Recording& recording, CMEGDatazk& dataset, CDocument& document)
        : m_recording(recording), m_dataset(dataset), m_document(document)
    {
    }

    std::vector<std::string> run()
    {
        makeTrials();
        setInformation();
        setGoodFlags();
        importSamples();
        addMarks();
        saveTrials();
        return std::move(m_notes);
    }

private:
    void makeTrials();
    void setInformation();
    void setGoodFlags();
    void importSamples();
    void finishTrial(CMDTrialzk& trial, bool isGood) const;
    void addMarks();
    void saveTrials();

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

// Every channel gets a sensor, since the library takes them by the channel's place in the recording.
void Import::makeTrials()
{
    std::vector<CMEGSensorzk> sensors = librarySensors(m_recording.header);
    std::vector<CEEGelectrodezk> electrodes = libraryElectrodes(m_recording.header);
    CStringArray names;
    for (const Channel& channel : m_recording.header.channels)
        names.Add(channel.name);
    const CPtrArray sensorList = pointersTo(sensors);
    const CPtrArray electrodeList = pointersTo(electrodes);
    if (!m_dataset.importTrialChannels(m_recording.trials(), totalChannels(), &sensorList, &electrodeList, &names,
                                       &names, &m_document))
        fail("no dataset could be made of the recording");
    if (m_dataset.m_aTrialFilePath.GetSize() != m_recording.trials())
        fail("only " + std::to_string(m_dataset.m_aTrialFilePath.GetSize()) + " of " +
             std::to_string(m_recording.trials()) + " trial files could be written");
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

void Import::importSamples()
{
    std::vector<std::int32_t> block(m_recording.data.trialSize());
    const std::vector<int> bad = m_recording.badTrials();
    const std::set<int> badTrials(bad.begin(), bad.end());
    for (int trial = 0; trial < m_recording.trials(); ++trial) {
        m_recording.data.readTrial(trial, block);
        if (!m_dataset.importCtfDataT(trial, totalChannels(), m_recording.header.samples, block.data()) ||
            m_dataset.getMDTrial(trial) == nullptr)
            fail("trial " + std::to_string(trial + 1) + " could not be imported");
        finishTrial(*m_dataset.getMDTrial(trial), !badTrials.contains(trial));
    }
}

void Import::finishTrial(CMDTrialzk& trial, bool isGood) const
{
    for (int i = 0; i < totalChannels(); ++i) {
        const Channel& from = m_recording.header.channels[static_cast<std::size_t>(i)];
        CMDChannelzk* const channel = trial.m_ppChannel[i];
        if (channel == nullptr)
            continue;
        if (channel->getTotalSample() != m_recording.header.samples)
            fail("there is no memory for the samples of channel \"" + from.name + "\"");
        finishChannel(from, *channel);
    }
    trial.m_headLocalization = m_dataset.m_headLocalization;
    trial.setTrialGood(isGood);
}

void Import::addMarks()
{
    addBadSegments(m_recording, m_dataset.m_mkSegment);
    const int outside = addMarkers(m_recording.header, m_recording.markers, m_dataset.m_mkMarker);
    if (outside > 0)
        m_notes.push_back("Marks outside their trials are left out: " + std::to_string(outside) + ".");
}

void Import::saveTrials()
{
    if (!m_dataset.saveAllTrials() || m_dataset.getUnsavedTrials().GetSize() > 0)
        fail("the last trial could not be saved");
}

} // namespace

std::vector<std::string> importCtf(Recording& recording, CMEGDatazk& dataset, CDocument& document)
{
    return Import(recording, dataset, document).run();
}

} // namespace megset::ctf
