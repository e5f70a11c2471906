// The dialog of the region of interest in the dewar without its window: fields, texts and what the controls do. A
// program's window derives from it and brings the hooks.
#pragma once

#include "megset/platform/CWnd.h"

#include <array>
#include <string_view>

namespace megset {

class CMEGDatazk;

/// A modeless dialog; mm. Operations give 1, and 0 for a dialog without a dataset.
class CDlgSetupROIDewar : public CWnd
{
public:
    CDlgSetupROIDewar();

    // Texts of the controls

    static constexpr std::array<std::string_view, 3> columns = {"Minimim", "Maximum", "Dimension"};
    static constexpr std::array<std::string_view, 3> rows = {"X(Sagittal)", "Y(Axial)", "Z(Coronal)"};
    static constexpr std::string_view getLabel = "Get ROI";
    static constexpr std::string_view setLabel = "Set ROI";
    static constexpr std::string_view okLabel = "OK";
    static constexpr std::string_view cancelLabel = "Cancel";

    /// One row of fields.
    struct Row
    {
        bool operator==(const Row&) const = default;

        double minimum = 0.0;
        double maximum = 0.0;
        double dimension = 0.0; ///< read-only on the screen
    };

    // What the controls do

    /// The fields from the dataset.
    int load();
    /// A minimum or maximum was typed in a row, 0 to 2: its dimension follows. Limits the wrong way round are taken. 0
    /// for another row.
    int changeMinimum(int row, double value);
    int changeMaximum(int row, double value);
    /// "Get ROI": loads, then the parent is repainted.
    int getRoi();
    /// "Set ROI": stores limits and dimensions in the dataset, then the parent is repainted.
    int setRoi();
    /// "OK": stores and closes.
    int ok();
    /// "Cancel": closes; the dataset keeps what it has.
    void cancel();

    // The fields

    CMEGDatazk* m_pDataset = nullptr; ///< not owned
    CWnd* m_pParent = nullptr;        ///< not owned
    std::array<Row, 3> m_aRow;

protected:
    // Hooks of a window

    /// Takes what the controls hold into the fields.
    virtual void readFields() {}
    /// Shows the fields in the controls.
    virtual void showFields() {}

private:
    int store();
    int showDimension(int row);
    void redrawParent();
};

} // namespace megset
