#include "megset/records/results/CFaceVirtChnlWave.h"

#include "megset/platform/archiveLists.h"
#include "megset/records/recordFormat.h"

#include <utility>

namespace megset {

const FormatVersion<CVirtChnlWave9File> CVirtChnlWave9File::s_versions[1] = {
    {20261121, &CVirtChnlWave9File::serialize_20261121},
};

int CVirtChnlWave9File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "VIRTCHNLWAVEZK", s_versions);
}

int CVirtChnlWave9File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_strChannelName, m_strChannelNameRaw, m_strWaveUnit, m_nMegListID, m_dSns2dX, m_dSns2dY,
                    m_bShow, m_dPosition, m_dDirection);
    exchangeNumbers(ar, m_aWave, "m_aWave");
    return 1;
}

bool CFaceVirtChnlWave::isUsable(int index) const
{
    const CVirtChnlWavezk* wave = m_aVirtChnl[index];
    return wave != nullptr && m_nTotalSample > 0 && hasShape(wave->m_aWave, {m_nTotalSample});
}

int CFaceVirtChnlWave::checkVirtChnl() const
{
    int count = 0;
    for (int i = 0; i < m_aVirtChnl.GetSize(); ++i)
        count += isUsable(i) ? 1 : 0;
    return count;
}

CVirtChnlWavezk* CFaceVirtChnlWave::getVirtChnlWavezk(int index) const
{
    const int at = index == -1 ? m_nCurrentChannel : index;
    return isWithin(at, m_aVirtChnl.GetSize()) ? m_aVirtChnl[at] : nullptr;
}

int CFaceVirtChnlWave::addVirtChnlWave(const CVirtChnlWavezk* wave)
{
    return wave != nullptr ? m_aVirtChnl.addCopy(*wave) : -1;
}

int CFaceVirtChnlWave3Draw::getNumShowSns() const
{
    int count = 0;
    for (int i = 0; i < m_aVirtChnl.GetSize(); ++i)
        count += isUsable(i) && m_aVirtChnl[i]->m_bShow != 0 ? 1 : 0;
    return count;
}

const FormatVersion<CFaceVirtChnlWave9File> CFaceVirtChnlWave9File::s_versions[1] = {
    {20261121, &CFaceVirtChnlWave9File::serialize_20261121},
};

int CFaceVirtChnlWave9File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "FACEVIRTCHNLWAVEZK", s_versions);
}

int CFaceVirtChnlWave9File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_strFaceName, m_nTotalSample, m_nDataBegin, m_dSampleRate, m_nCurrentChannel);
    if (ar.IsLoading())
        m_aVirtChnl.RemoveAll();
    return exchangePointers<std::int32_t>(ar, m_aVirtChnl,
                                          [&ar](CVirtChnlWavezk& wave) { return wave.serializezk(ar); });
}

CFaceVirtChnlWavezk* CPkgFaceVirtChnlWave::getFaceVirtChnlWave(int iFace, int bCreate)
{
    if (bCreate != 0 && iFace == m_aFace.GetSize())
        m_aFace.Add(std::make_unique<CFaceVirtChnlWavezk>());
    return isWithin(iFace, m_aFace.GetSize()) ? m_aFace[iFace] : nullptr;
}

int CPkgFaceVirtChnlWave::addFaceVirtChnlWave(std::unique_ptr<CFaceVirtChnlWavezk> face)
{
    if (face == nullptr)
        return 0;
    m_aFace.Add(std::move(face));
    return 1;
}

int CPkgFaceVirtChnlWave::addFaceVirtChnlWave(const CFaceVirtChnlWavezk* face)
{
    if (face == nullptr)
        return 0;
    m_aFace.addCopy(*face);
    return 1;
}

int CPkgFaceVirtChnlWave::cleanFaceVirtSnsWav()
{
    m_aFace.RemoveAll();
    return 1;
}

const FormatVersion<CPkgFaceVirtChnlWave09File> CPkgFaceVirtChnlWave09File::s_versions[1] = {
    {20261121, &CPkgFaceVirtChnlWave09File::serialize_20261121},
};

int CPkgFaceVirtChnlWave09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "PKGFACEVIRTCHNLWAVEZK", s_versions);
}

int CPkgFaceVirtChnlWave09File::serialize_20261121(CArchive& ar)
{
    if (ar.IsLoading())
        m_aFace.RemoveAll();
    return exchangePointers<std::int32_t>(ar, m_aFace,
                                          [&ar](CFaceVirtChnlWavezk& face) { return face.serializezk(ar); });
}

} // namespace megset
