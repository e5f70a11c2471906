// Prints what each trial's MEG channels do: walkTrials DATASET.meg
#include "megset/megset.h"

#include <cmath>
#include <cstdio>
#include <exception>

using namespace megset;

// One trial is in memory at a time: each step puts the last one back into its file and reads the next.
static void walk(CMEGDatazk& dataset)
{
    for (int i = 0; i < dataset.getTotalTrial(); ++i) {
        CMDTrialzk* const trial = dataset.getTrialzk(i);
        if (trial == nullptr)
            continue; // the library has told why
        double min = 0.0, mean = 0.0, max = 0.0, meanSquare = 0.0;
        dataset.setSelect(0, dataset.getTotalSample() - 1);
        const int channels = dataset.getMeasurementResults(min, mean, max, meanSquare, false, 1, 0);
        std::printf("%s: %d MEG channels, %g to %g fT, rms at most %g fT\n", trial->m_strTrialName.toUtf8().c_str(),
                    channels, min, max, std::sqrt(meanSquare));
    }
}

int main(int argc, char* argv[])
try {
    CDocument document;
    document.SetPathName(fromNative(argc > 1 ? argv[1] : ""));
    CMEGDatazk dataset;
    dataset.setDocument(&document, false);
    CFile file(document.GetPathName(), CFile::modeRead | CFile::shareDenyWrite);
    CArchive archive(&file, CArchive::load);
    if (!dataset.serializezk(archive))
        return 1;
    walk(dataset);
} catch (const std::exception& exception) {
    std::fprintf(stderr, "%s\n", exception.what());
    return 1;
}
