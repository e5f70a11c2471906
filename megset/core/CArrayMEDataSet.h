#pragma once
// Several datasets of one document, such as the sessions of one subject, with one of them current; their file; and the
// re-sampling dialog that they share.

#include "megset/platform/CTypedPtrArray.h"
#include "megset/platform/formatVersion.h"

#include <memory>

namespace megset {

class CDlgReSamplingMEGData;
class CDocument;
class CMEGDatazk;
class CPtrArray;
class CWnd;

/// Several datasets of one document, which it owns; one of them is current.
class CArrayMEDataSet
{
public:
    CArrayMEDataSet();
    CArrayMEDataSet(const CArrayMEDataSet&) = delete;
    CArrayMEDataSet& operator=(const CArrayMEDataSet&) = delete;
    virtual ~CArrayMEDataSet();

    /// Takes over a dataset, behind the others; null is passed over. Gives the number of datasets.
    int addNewData(CMEGDatazk* data);
    /// Ends all datasets; none is current then. 1.
    int cleanData();
    /// The current index, as it stands: it may be out of range.
    int getCurrentID() const { return m_nCurrentDataset; }
    int getTotalDataset() const { return m_aDataset.GetSize(); }
    /// A dataset, -1 for the current one; null without any. An index out of range raises the invalid-argument
    /// exception, also that of the current one.
    CMEGDatazk* getSessionData(int index) const;
    /// Makes a dataset current; an index out of range is brought into it. 1; 0 without any.
    int setCurrentSession(int index);
    /// Ends a dataset, -1 for the current one, and closes up. A current index behind the new last one becomes that, -1
    /// with none left. 1; 0 without any and for an index out of range.
    int _deleteSessionData(int index);

    CTypedPtrArray<CMEGDatazk> m_aDataset;
    int m_nCurrentDataset = 0; ///< -1 after cleanData
};

/// The file layer of an array of datasets.
class CArrayMEDataSet09File : public CArrayMEDataSet
{
public:
    /// Writes the file, tag "ARRAYMEGDATASETZK", or reads one: its datasets come behind those that are there, and the
    /// current index is that of the file. Datasets find their trials by the document. 0 with "The opened file is not
    /// array for MEG dataset file or corrupted!" for another tag or version, and with "Not enough memory!". What a
    /// dataset answers is not looked at. Archive exceptions pass.
    int serialize(CArchive& ar, CDocument* doc);
    /// The same without the trials' own files: see CMEGData9FileB::serializeWithoutTrials.
    int serializeWithoutTrials(CArchive& ar);

private:
    int serializeFile(CArchive& ar, CDocument* doc, bool withTrials);
    int serialize20160909(CArchive& ar);
    int _01serializeMEGData(CArchive& ar);
    void exchangeDataset(CArchive& ar, CMEGDatazk& data) const;

    CDocument* m_pFileDocument = nullptr; ///< during serialize, as the next one
    bool m_bWithTrials = true;

    static const FormatVersion<CArrayMEDataSet09File> s_versions[1];
};

/// An array of datasets with the re-sampling dialog that they share; this is the class that is made.
class CArrayMEDataSetzk : public CArrayMEDataSet09File
{
public:
    CArrayMEDataSetzk();
    /// Waits for a re-sampling that is under way.
    ~CArrayMEDataSetzk() override;

    /// Shows the dialog, made at first use, for a dataset, null for the current one. See CDlgReSamplingMEGData::show. 0
    /// also without a dataset.
    int showDlgResampling2NewData(CMEGDatazk* data, CWnd* parent, CDocument* (*createDoc)(),
                                  int (*attachDatasets)(CPtrArray*, CDocument*));

    std::unique_ptr<CDlgReSamplingMEGData> m_pDlgResampling;
};

} // namespace megset
