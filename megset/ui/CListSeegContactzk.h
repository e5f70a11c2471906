// The list of a probe's contacts without its window: the texts of its rows, and what choosing one does. A program's
// list derives from it and brings the hooks.
#pragma once

#include "megset/platform/CString.h"

#include <array>
#include <string_view>
#include <vector>

namespace megset {

class CMEGDatazk;

/// The list of the contacts of a dataset's current probe, a row of texts for each.
class CListSeegContactzk
{
public:
    static constexpr std::array<std::string_view, 9> columns = {
        "Index", "Name", "X(mm)", "Y(mm)", "Z(mm)", "Size(mm)", "Channel ID", "Channel Name", "Notes"};
    using Row = std::array<CString, columns.size()>;

    CListSeegContactzk() = default;
    CListSeegContactzk(const CListSeegContactzk&) = delete;
    CListSeegContactzk& operator=(const CListSeegContactzk&) = delete;
    virtual ~CListSeegContactzk() = default;

    /// Fills the list anew with the contacts of the current probe of the current trial, which is opened, and notes the
    /// row in each contact, and the probe as CMEGDatazk::m_nSelectSeegProbeID. A place without a contact has no row.
    /// 1; 0 for an empty list without trial or probe, and with "Remove list item error" when the old rows stay.
    int refill(CMEGDatazk& data);
    /// Makes the contact with that row the probe's current one, and hands it out for all datasets:
    /// CMEGDatazk::m_nSelectSeegProbeContactID and setSeegProbContact2Me. 0 when there is none, with nothing changed.
    int choose(CMEGDatazk& data, int row);
    /// Takes what is edited in the list to where it belongs; nothing is, unless a window brings it.
    virtual void storeState() {}

    std::vector<Row> m_aRow;

protected:
    /// Hook of a window: empties the list; false when that failed.
    virtual bool removeAllRows()
    {
        m_aRow.clear();
        return true;
    }
    virtual void addRow(const Row& row) { m_aRow.push_back(row); }
};

} // namespace megset
