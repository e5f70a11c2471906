#include "megset/records/magnetic/CMegGrdBsc.h"

#include "megset/records/recordFormat.h"

namespace megset {
namespace {

constexpr double femtoPerTesla = 1e15;

double recordedOr1(double gain)
{
    return gain != 0.0 ? gain : 1.0;
}

// A list of records that grows as they come. 0 when one of them can't be read.
template <class Coil>
int exchangeCoils(CArchive& ar, std::vector<Coil>& coils)
{
    const std::int32_t count = ar.exchangeInt(static_cast<std::int32_t>(coils.size()), "count");
    if (ar.IsStoring()) {
        for (Coil& coil : coils)
            if (!coil.serializezk(ar))
                return 0;
        return 1;
    }
    coils.clear();
    for (std::int32_t i = 0; i < count; ++i) {
        coils.emplace_back();
        if (!coils.back().serializezk(ar))
            return 0;
    }
    return 1;
}

} // namespace

double CMegGrdBsc::sensorGain() const
{
    return recordedOr1(m_dProperGain) * recordedOr1(m_dQGain);
}

double CMegGrdBsc::getSnsGainCtf() const
{
    if (m_dProperGain == 0.0 && m_dQGain == 0.0 && m_dIOGain == 0.0)
        return 1.0;
    return femtoPerTesla / (recordedOr1(m_dProperGain) * recordedOr1(m_dQGain) * recordedOr1(m_dIOGain));
}

void CMegGrdBsc::exchangeGrd(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_strGrdName, m_dProperGain, m_dQGain, m_dIOGain, m_dIOOffset, m_bRealIdealCoefMode,
                    m_bAdaptiveBalance);
}

const FormatVersion<CMegSquid09File> CMegSquid09File::s_versions[] = {
    {20261121, &CMegSquid09File::serialize_20261121},
};

int CMegSquid09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "MEGSQUIDZK", s_versions);
}

int CMegSquid09File::serialize_20261121(CArchive& ar)
{
    exchangeGrd(ar);
    return exchangeCoils(ar, m_aCoils);
}

const FormatVersion<CMegOpm09File> CMegOpm09File::s_versions[] = {
    {20261121, &CMegOpm09File::serialize_20261121},
};

int CMegOpm09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "MEGOPMZK", s_versions);
}

int CMegOpm09File::serialize_20261121(CArchive& ar)
{
    exchangeGrd(ar);
    return exchangeCoils(ar, m_aCells);
}

} // namespace megset
