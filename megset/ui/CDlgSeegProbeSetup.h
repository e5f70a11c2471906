// The dialog of one SEEG probe without its window: fields, texts and what the controls do. A program's window derives
// from it and brings the hooks.
#pragma once

#include "megset/platform/CWnd.h"
#include "megset/ui/CListSeegContactzk.h"

#include <array>
#include <memory>
#include <string_view>

namespace megset {

class CMDTrialzk;
class CMEGDatazk;
class CSeegContactzk;
class CSeegProbezk;

/// Edits the current probe of the current trial, both of which are looked up anew whenever a control acts, so that
/// nothing is held of a trial that leaves memory. Operations give 1, and 0 where there is no dataset, trial or probe to
/// act on. Positions and sizes are in mm.
class CDlgSeegProbeSetup : public CWnd
{
public:
    using Point = std::array<double, 3>;

    CDlgSeegProbeSetup();

    // Texts of the controls

    static constexpr std::string_view baseLabel = "Probe Base(Out)";
    static constexpr std::string_view tipLabel = "SEEG Tip ( In )";
    static constexpr std::string_view size3dLabel = "Size 3D";
    static constexpr std::string_view size2dLabel = "Size 2D";
    static constexpr std::string_view pointingLabel = "Pointing";
    static constexpr std::string_view extensionLabel = "Extension";
    static constexpr std::string_view percentLabel = "(%)";
    static constexpr std::string_view typeLabel = "SEEG Type";
    static constexpr std::string_view visibleLabel = "Visible";
    static constexpr std::string_view showContactsLabel = "Show Contacts";
    static constexpr std::string_view penSizeLabel = "Pen Size";
    static constexpr std::string_view nameLabel = "SEEG Name";
    static constexpr std::string_view contactNumberLabel = "Contact Num";
    static constexpr std::string_view contactDistanceLabel = "Contact Dist";
    static constexpr std::string_view channelIdLabel = "Chnl ID";
    static constexpr std::string_view contactNameLabel = "Cntct Name";
    static constexpr std::string_view updateLabel = "Update";
    static constexpr std::string_view applyLabel = "Apply";
    static constexpr std::string_view okLabel = "OK";
    static constexpr std::string_view getSelectLabel = "Get Select (MSI)";
    static constexpr std::string_view calculateLabel = "Calculate...";
    static constexpr std::string_view msiToContactLabel = "MSI to Contact";
    static constexpr std::string_view contactToChannelLabel = "Contact To Channel";
    static constexpr std::string_view contactColorLabel = "Contact Color";
    static constexpr std::string_view probeColorLabel = "Probe Color";
    static constexpr std::string_view setUserSeegLabel = "Set User SEEG";
    /// The list of types, whose index is the probe's mode.
    static std::string_view typeName(int mode);
    static int typeCount();

    // What the controls do

    /// "Update", and when the dialog is shown: title, channel label, contact list and fields. 1 also where there is no
    /// probe; the fields stay as they are then.
    int load();
    /// "Apply": the fields go to the probe, what it points to is computed, and name and channel of the contact go to
    /// the probe's current contact, a negative channel left out; one that had no channel so gets the one that the field
    /// shows. Then the probe manager is refreshed.
    int apply();
    /// "OK": that, and the dialog closes.
    int ok();
    /// "Get Select (MSI)": base or tip from the selected place, marked as set from it; then stored as by "Apply".
    int getBaseFromSelect();
    int getTipFromSelect();
    /// "Calculate...": places the probe's contacts (CSeegProbe::computeContactPos). The probe's own base and tip count,
    /// not what was typed since "Apply".
    int calculate();
    /// "MSI to Contact": the current contact goes to the selected place.
    int msiToContact();
    /// "Contact To Channel": CMDTrial6SeegIeeg::setSeegContact2Channel with the current contact, the channel and the
    /// name of the fields. "No channel data!?" without a trial.
    int contactToChannel();
    /// "Contact Color", "Probe Color": the next colour, and the parent is repainted.
    int contactColor();
    int probeColor();
    /// "Set User SEEG": CSeegProbe::setUserContact with the fields; then the parent is repainted, and all is loaded.
    int setUserSeeg();
    /// "Visible", "Show Contacts": at once to the probe, and the parent is repainted.
    int changeVisible(bool visible);
    int changeShowContacts(bool show);
    /// A row of the list of types was chosen: a probe takes the type, and its contacts are placed. 0 for no row.
    int chooseType(int mode);
    /// A row of the contact list was chosen: the contact becomes current (CListSeegContactzk::choose); its name and,
    /// unless negative, its channel come to the fields.
    int chooseContact(int row);

    // The fields

    CMEGDatazk* m_pDataset = nullptr; ///< not owned
    CWnd* m_pParent = nullptr;        ///< not owned
    Point m_dBase{30.0, 30.0, 30.0};
    double m_dBaseSize = 9.0;
    Point m_dTip{};
    double m_dTipSize = 6.0;
    Point m_dPointing{};        ///< read-only on the screen
    double m_dExtension = 10.0; ///< percent
    int m_nMode = 1;
    int m_bBaseSet = 0;
    int m_bTipSet = 0;
    int m_bVisible = 0;
    int m_nProbeSize2D = 0;
    int m_bShowContacts = 0;
    int m_nContactSize2D = 3;
    double m_dContactSize3D = 8.0;
    int m_nPenSize = 2;
    CString m_strName;
    int m_nContactNumber = 2;
    double m_dContactDistance = 3.5;
    int m_nChannelID = 0;
    CString m_strContactName;
    CString m_strChannelLabel; ///< "ChnID(0->...)"

    CListSeegContactzk& contactList() { return *m_pList; }

protected:
    // Hooks of a window

    /// A dialog with a list of the window's own.
    explicit CDlgSeegProbeSetup(std::unique_ptr<CListSeegContactzk> list);
    /// Takes what the controls hold into the fields.
    virtual void readFields() {}
    /// Shows the fields in the controls.
    virtual void showFields() {}
    /// Refreshes the list of the probe manager, where there is one.
    virtual void refreshManager() {}

private:
    CMDTrialzk* trial() const;
    CSeegProbezk* probe() const;
    CSeegContactzk* contact() const;
    int store();
    void takeProbe(const CSeegProbezk& from);
    void takeContact(const CSeegContactzk* from);
    void giveProbe(CSeegProbezk& to) const;
    void showTitle();
    void showChannelLabel();
    int refillContacts();
    void redrawParent();

    std::unique_ptr<CListSeegContactzk> m_pList;
};

} // namespace megset
