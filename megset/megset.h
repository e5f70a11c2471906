#pragma once
// Everything public: the three chains, the spectra, the records, the catalogues, the dialogs and the platform they
// stand on.

#include "megset/core/CArrayMEDataSet.h"
#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/core/catalogues.h"
#include "megset/platform/AfxBeginThread.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CArchive.h"
#include "megset/platform/CConsoleHost.h"
#include "megset/platform/CDC.h"
#include "megset/platform/CDocument.h"
#include "megset/platform/CFileDialog.h"
#include "megset/platform/CFileFind.h"
#include "megset/platform/CMemFile.h"
#include "megset/platform/CProgresszk.h"
#include "megset/platform/CRichInfozk.h"
#include "megset/platform/CUserHost.h"
#include "megset/platform/CWaitCursor.h"
#include "megset/platform/CWnd.h"
#include "megset/platform/paths.h"
#include "megset/platform/version.h"
#include "megset/records/records.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/CSpctmTrialzk.h"
#include "megset/spectral/CSumChnlSpctmDatazk.h"
#include "megset/ui/CDlgChnlSelect.h"
#include "megset/ui/CDlgReSamplingMEGData.h"
#include "megset/ui/CDlgSeegProbeSetup.h"
#include "megset/ui/CDlgSetupROIDewar.h"
#include "megset/ui/CListSeegContactzk.h"

/// The library: sessions of MEG and EEG as datasets of trials of channels.
namespace megset {

/// Loops over contiguous samples: pure functions on spans, which know no class of the library.
namespace numeric {
}

} // namespace megset
