// Text files for other tools, and the exchange file.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/persistence/CMEGData9FileB.h"
#include "megset/persistence/textExport.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CFileDialog.h"
#include "megset/platform/memory.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <exception>

namespace megset {
namespace {

constexpr unsigned toWrite = CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive;
constexpr const char* exchangeFilter = "MEG Trial file(*.mtb)|*.mtb|All Files(*.*)|*.*||";

// The first half of the wide text "MEGT" is written, the narrow one is asked for, so that no file that is written can
// be read. It is meant so.
constexpr std::array<unsigned char, 4> writtenMagic = {0x4D, 0x00, 0x45, 0x00};
constexpr std::array<unsigned char, 4> readMagic = {0x4D, 0x45, 0x47, 0x54};

constexpr std::size_t nameUnits = 257;
constexpr unsigned nameBytes = 257; // of the file: half of the buffer, and half of its last character
using NameBuffer = std::array<char16_t, nameUnits>;

bool asksYes(const char* question)
{
    return AfxMessageBox(question, MB_YESNO) == IDYES;
}

bool endsIn(const CString& path, const CString& extension)
{
    return path.Right(extension.GetLength()) == extension;
}

// The chosen file with its extension; empty when the user cancels.
CString askForTarget(const CString& extension, const CString& filter, FileDialogMemory& memory)
{
    CFileDialog dialog(false, extension, "", OFN_OVERWRITEPROMPT, filter);
    dialog.remember(memory);
    if (dialog.DoModal() != IDOK)
        return {};
    const CString path = dialog.GetPathName();
    const CString ending = "." + extension;
    return endsIn(path, ending) ? path : path + ending;
}

// Runs the steps that touch a file. A fault ends them and is not told: the result is then 1 all the same.
template <class Steps>
int swallowingFaults(Steps steps)
{
    try {
        return steps();
    } catch (const std::exception&) {
        return 1;
    }
}

NameBuffer nameAsStored(const CString& name)
{
    NameBuffer buffer = {};
    const std::u16string_view units = name.view().substr(0, buffer.size());
    std::copy(units.begin(), units.end(), buffer.begin());
    return buffer;
}

NameBuffer readName(CFile& file)
{
    NameBuffer buffer = {};
    file.Read(buffer.data(), nameBytes);
    return buffer;
}

// Up to the first zero, which stands in the second half of the buffer at the latest.
CString textOf(const NameBuffer& buffer)
{
    return CString::formatted("%s", buffer.data());
}

} // namespace

// What the user wants in a text file of samples.
struct CMEGData9FileB::TextExport
{
    int trial = 0;
    int channel = 0;
    bool allChannels = false;
    bool shownOnly = false;
    bool fileEach = false;
    int bSelect = 0;
    std::int64_t from = 0;
    std::int64_t to = 0;
    CString path;
};

// An index beyond the last trial is the last one. -1 where there is no trial.
int CMEGData9FileB::exportedTrial(int trial) const
{
    return std::min(trialIndex(trial), std::max(m_nTotalTrial, 0) - 1);
}

int CMEGData9FileB::exportMEGData2TxtFile(int trial, int bOneFilePerChannel, int channel, int bSelect)
{
    TextExport wanted;
    wanted.trial = exportedTrial(trial);
    wanted.channel = channel;
    wanted.bSelect = bSelect;
    if (wanted.trial < 0 || getMDTrial(wanted.trial) == nullptr)
        return 0;
    static FileDialogMemory memory;
    wanted.path = askForTarget("txt", "MEG Channel data(*.txt)|*.txt|All Files(*.*)|*.*||", memory);
    if (wanted.path.IsEmpty())
        return 0;
    wanted.allChannels = asksYes("Would you like to export all channels' data?");
    wanted.shownOnly = asksYes("Would you like to export visible channel only?");
    wanted.fileEach = bOneFilePerChannel && wanted.allChannels;
    const std::int64_t selected = getSelect(wanted.from, wanted.to);
    if (bSelect && selected <= 1 && asksYes("Selected Size <= 1? Export the entire epoch or trial?"))
        wanted.bSelect = 0;
    // The selection is of the current trial, which has been opened for it: that may have saved and freed this one.
    const CMDTrialzk* exported = getMDTrial(wanted.trial);
    if (exported == nullptr)
        return 0;
    return swallowingFaults([&] {
        wanted.fileEach ? exportFileEach(*exported, wanted) : exportOneFile(*exported, wanted);
        return 1;
    });
}

// A channel without a flag counts as not shown.
bool CMEGData9FileB::isExported(int channel, const TextExport& wanted) const
{
    if (!wanted.shownOnly)
        return true;
    return m_pChnlShow != nullptr && channel < m_nChnlParamCount && m_pChnlShow[static_cast<std::size_t>(channel)] != 0;
}

void CMEGData9FileB::writeTextHeader(CFile& file, const TextExport& wanted) const
{
    writeText(file, CString::formatted("DataName:%s Trial: %d SamplingRate: %f \n", m_strSessionName, wanted.trial,
                                       m_recordInfo.m_dRecSampleRate));
}

void CMEGData9FileB::exportOneFile(const CMDTrialzk& trial, const TextExport& wanted) const
{
    CFile file(wanted.path, toWrite);
    writeTextHeader(file, wanted);
    if (!wanted.allChannels)
        trial.exportMEGData2TxtFile(file, wanted.channel, wanted.from, wanted.to, wanted.bSelect);
    for (int i = 0; wanted.allChannels && i < trial.getTotalChannel(); ++i)
        if (isExported(i, wanted))
            trial.exportMEGData2TxtFile(file, i, wanted.from, wanted.to, wanted.bSelect);
    file.Close();
}

void CMEGData9FileB::exportFileEach(const CMDTrialzk& trial, const TextExport& wanted) const
{
    const CString base = wanted.path.Left(wanted.path.GetLength() - 4); // without ".txt"
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        if (!isExported(i, wanted))
            continue;
        CFile file(CString::formatted("%s%d.txt", base, i), toWrite);
        writeTextHeader(file, wanted);
        trial.exportMEGData2TxtFile(file, i, wanted.from, wanted.to, wanted.bSelect);
        file.Close();
    }
}

int CMEGData9FileB::exportSnsrInf2TxtFile(int trial)
{
    const int index = std::max(exportedTrial(trial), 0);
    const CMDTrialzk* exported = getMDTrial(index);
    if (exported == nullptr)
        return 0;
    static FileDialogMemory memory;
    const CString path = askForTarget("txt", "Sensor Info(*.txt)|*.txt|All Files(*.*)|*.*||", memory);
    if (path.IsEmpty())
        return 0;
    return swallowingFaults([&] {
        CFile file(path, toWrite);
        CMDChannelzk::exportCString(file, m_strSessionName);
        CMDChannelzk::exportDWORD(file, static_cast<std::uint32_t>(index));
        exported->exportSnsrInf2TxtFile(file);
        file.Close();
        return 1;
    });
}

int CMEGData9FileB::exportMEGData(int trial)
{
    const int index = exportedTrial(trial);
    if (index < 0 || getMDTrial(index) == nullptr)
        return 0;
    static FileDialogMemory memory;
    const CString path = askForTarget("mtb", exchangeFilter, memory);
    if (path.IsEmpty())
        return 0;
    return swallowingFaults([&] {
        CFile file(path, toWrite);
        const int done = export_importMEGData(file, false, index);
        file.Close();
        return done;
    });
}

int CMEGData9FileB::importMEGData()
{
    static FileDialogMemory memory;
    CFileDialog dialog(true, "mtb", "", OFN_FILEMUSTEXIST, exchangeFilter);
    dialog.remember(memory);
    if (dialog.DoModal() != IDOK)
        return 0;
    return swallowingFaults([&] {
        CFile file(dialog.GetPathName(), CFile::modeRead | CFile::shareExclusive);
        const int done = export_importMEGData(file, true, -1);
        file.Close();
        return done;
    });
}

int CMEGData9FileB::export_importMEGData(CFile& file, bool bImport, int trial)
{
    return bImport ? importExchange(file) : exportExchange(file, exportedTrial(trial));
}

int CMEGData9FileB::exportExchange(CFile& file, int index)
{
    CMDTrialzk* exported = index < 0 ? nullptr : getMDTrial(index);
    if (exported == nullptr)
        return 0;
    const double rate = m_recordInfo.m_dRecSampleRate;
    const NameBuffer name = nameAsStored(m_strSessionName);
    file.Write(writtenMagic.data(), writtenMagic.size());
    file.Write(&rate, sizeof rate);
    file.Write(name.data(), nameBytes);
    return exported->export_importMEGTrial(&file, false);
}

int CMEGData9FileB::importExchange(CFile& file)
{
    std::array<unsigned char, 4> magic = {};
    file.Read(magic.data(), magic.size());
    if (magic != readMagic) {
        AfxMessageBox("This is not MEG trial data!", MB_OK);
        return 0;
    }
    double rate = 0.0; // it is compared and not kept
    file.Read(&rate, sizeof rate);
    // The trials are counted before the new one for the rate, and with it for the name: it is meant so.
    const bool joinsSeveral = m_nTotalTrial > 1;
    if (joinsSeveral && !(rate == m_recordInfo.m_dRecSampleRate) &&
        !asksYes("Sampling Rate is different! Do you would like to continue?"))
        return 0;
    CMDTrialzk* imported = appendEmptyTrial();
    if (imported == nullptr)
        return 0;
    const NameBuffer name = readName(file);
    if (m_nTotalTrial <= 1 || asksYes("Would you like to use the import parameters?")) {
        m_strSessionName = textOf(name);
    } else {
        std::array<std::byte, 8> dropped;
        file.Read(dropped.data(), dropped.size());
    }
    return imported->export_importMEGTrial(&file, true);
}

// No path is added: the numbers of trials and of paths differ from here on. It is meant so.
CMDTrialzk* CMEGData9FileB::appendEmptyTrial()
{
    m_nTotalTrial = std::max(m_nTotalTrial, 0);
    TrialArray longer;
    auto trial = tryNew<CMDTrialzk>();
    if (trial == nullptr || !longer.allocate(m_nTotalTrial + 1)) {
        AfxMessageBox("Not enough memory?!", MB_OK);
        return nullptr;
    }
    return &installLast(std::move(longer), std::move(trial));
}

} // namespace megset
