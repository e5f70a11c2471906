#pragma once
// A dataset in a folder of its own, and what an import hands to it.

#include "megset/platform/CDocument.h"

#include "tests/core/filedDataset.h"
#include "tests/kit/ScriptedHost.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace megset {

/// The document is "run.meg" in the folder.
struct ImportSession : ::testing::Test
{
    ImportSession() { doc.SetPathName(folder.path("run.meg")); }

    CMDTrialzk& trial(int index) { return *data.getMDTrial(index); }
    CMDChannelzk& channel(int trialIndex, int index) { return *trial(trialIndex).getChannel(index); }
    std::unique_ptr<CMDTrialzk> read(const CString& name) const
    {
        auto made = std::make_unique<CMDTrialzk>();
        CString path = folder.path(name);
        EXPECT_EQ(made->openTrialData(path, nullptr, ""), 1) << name;
        return made;
    }
    /// A folder in a file's place: the file can't be written, and the library asks for another one.
    void block(const CString& name) const { folder.makeFolder(name); }

    ScriptedHost host;
    TemporaryFolder folder;
    CDocument doc;
    CMEGDatazk data;
};

/// Sensors, electrodes and names as lists, which own them.
struct RecordedGeometryLists
{
    /// A sensor of 2 fT per recorded integer.
    void addSensor(int type, const CString& name)
    {
        auto sensor = std::make_unique<CMEGSensorzk>();
        sensor->m_strSensorName = name;
        sensor->initSensorInfo(owned.GetSize(), type, 0, 0, 1e15, 0.5, 1.0, 0.0);
        sensors.Add(sensor.get());
        owned.Add(std::move(sensor));
        sensorNames.Add(name);
        channelNames.Add(name + "-w");
    }
    void addElectrode(const CString& name, double x)
    {
        auto electrode = std::make_unique<CEEGelectrodezk>();
        electrode->m_strElectrodeName = name;
        electrode->setElectrodePositionD(x, 0.0, 0.0);
        electrodes.Add(electrode.get());
        ownedElectrodes.Add(std::move(electrode));
    }

    CPtrArray sensors;
    CPtrArray electrodes;
    CStringArray sensorNames;
    CStringArray channelNames;
    CTypedPtrArray<CMEGSensorzk> owned;
    CTypedPtrArray<CEEGelectrodezk> ownedElectrodes;
};

} // namespace megset
