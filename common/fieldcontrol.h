#pragma once
/// \file
/// What every entry control shares: caption and field layout, the background colour that records
/// focus and lock state, the caption colour for Mandatory, selection on focus, and persistence
/// through the public setters. A control states only where it departs.
#include "../forms/label.h"
#include "../forms/usercontrol.h"
#include "../library/librarysettings.h"
#include "../platform/kelexport.h"
#include "../platform/variant.h"

#include <QLocale>
#include <vector>

namespace kel {

/// A persisted property: readDefault on load; writeDefault on save, the value taken from
/// `writeFrom` when it names another member.
struct Persisted {
    QString name;
    Variant readDefault;
    Variant writeDefault;
    QString writeFrom = {};
};

// Assigns each entry of `order` from the bag through the control's public setter, in the
// table's order; a value the setter cannot take is skipped.
void readThroughSetters(QObject *control, PropertyBag &bag, const std::vector<Persisted> &order);
// Writes each entry of `order` from the control's getter, with its default.
void writeFromGetters(QObject *control, PropertyBag &bag, const std::vector<Persisted> &order);
// The run-time object's region (the system's when it does not say), for formatting numbers.
inline QLocale runtimeRegion() { return regionalLocale(); }
// The run-time object's field font on `field`; a run-time object without fonts leaves it alone.
void takeFieldFont(Child *field);

/// The base of the entry controls: a caption label (Label1) on the left, an editing field on the
/// right, and the behaviour they share. Not created by itself.
class KEL_EXPORT FieldControl : public UserControl
{
    Q_OBJECT
    Q_PROPERTY(QString Caption READ Caption WRITE setCaption)
    Q_PROPERTY(int CaptionWidth READ CaptionWidth WRITE setCaptionWidth)
    Q_PROPERTY(bool Enabled READ Enabled WRITE setEnabled)
    Q_PROPERTY(bool Locked READ Locked WRITE setLocked)
    Q_PROPERTY(bool Mandatory READ Mandatory WRITE setMandatory)
    Q_PROPERTY(bool SelectOnFocus READ SelectOnFocus WRITE setSelectOnFocus)

public:
    /// A control with an empty caption of width 0; its properties are set by the container next.
    explicit FieldControl(QWidget *parent = nullptr);

    /// The caption label; its width is CaptionWidth, its colour shows Mandatory.
    Label *const Label1;

    /// The caption text.
    QString Caption() const { return Label1->Caption(); }
    /// Sets the caption; the same text again changes and reports nothing.
    void setCaption(const QString &caption);
    /// The caption's width in twips; the field starts there.
    qint16 CaptionWidth() const { return qint16(Label1->Width()); }
    /// Sets the caption width and lays the control out at once; a negative width is ignored.
    void setCaptionWidth(qint16 width);
    /// Whether the control takes input (its own state, not its parent's).
    bool Enabled() const { return !testAttribute(Qt::WA_ForceDisabled); }
    /// Enables or disables the caption and the field, and recolours the field.
    void setEnabled(bool enabled);
    /// True: typed characters are inserted; false: they overwrite. The Insert key toggles it.
    bool InsertMode() const { return m_insertMode; }
    /// Sets the typing mode.
    void setInsertMode(bool insert);
    /// Whether the field is read-only (it can still be focused and selected).
    bool Locked() const { return fields().front()->Locked(); }
    /// Locks or unlocks the field, and recolours it.
    void setLocked(bool locked);
    /// Whether the field must not be left empty (see Valid); shown by the caption colour.
    bool Mandatory() const { return m_mandatory; }
    /// Sets Mandatory and the caption colour to match.
    void setMandatory(bool mandatory);
    /// Whether entering the field with Tab selects all of its text (a click selects nothing).
    bool SelectOnFocus() const { return m_selectOnFocus; }
    /// Sets SelectOnFocus.
    void setSelectOnFocus(bool select);

    /// Repaints the field in use.
    Q_INVOKABLE void Refresh() { activeField()->Refresh(); }
    /// Sets the tool tip of every field widget and of the control itself.
    Q_INVOKABLE void TooltipSet(const QString &Tooltip);

    /// Greater than 0 while properties are being read or the layout runs; layout waits meanwhile.
    qint16 LoadingDepth() const { return m_loadingDepth; }
    /// Whether the control is still being loaded: properties are being read, or it was made and
    /// has been neither read, shown, nor through a turn of the event loop yet (a .ui form's
    /// setters come then, in any order). Setters whose result depends on another property's take
    /// an order-independent rule meanwhile.
    bool loading() const { return m_loadingDepth > 0 || m_fresh; }

    /// What a layout gives the control: its caption and a usable field, 300 twips high (a
    /// multi-line field grows with the room it gets).
    QSize sizeHint() const override;
    /// The caption and a narrow field, 300 twips high.
    QSize minimumSizeHint() const override;

protected:
    friend class AccessibleField;
    friend class AccessibleFieldControl;
    /// The value as a number for screen readers, read without committing typed text; invalid
    /// for fields whose value is no number.
    virtual QVariant accessibleValue() const { return {}; }
    /// Every field widget, and the one in use.
    virtual std::vector<Child *> fields() const = 0;
    virtual Child *activeField() const = 0;   ///< the field widget in use

    /// Height of the control: at least, or exactly, 300 twips.
    enum class HeightRule { AtLeast300, Exactly300 };
    /// What a control narrower than its caption does.
    enum class WidthRule {
        CaptionShrinks,  ///< narrower than the caption: widen to 100 at least, shrink the caption
        StripMinimum,    ///< 100 twips plus the spinner strip at least, caption clear of the strip
    };
    /// Where a control departs from the common layout.
    struct LayoutRules {
        HeightRule height = HeightRule::AtLeast300;
        WidthRule width = WidthRule::CaptionShrinks;
        double strip = 0;              ///< twips kept free at the right edge (the spinner)
        bool fullHeightCaption = false;
        bool captionWithinWidth = false;    ///< CaptionWidth is cut to the inner width first
        bool captionTakesFieldFont = false; ///< the caption shows in the field font
    };
    /// This control's layout rules (the default: KelText's).
    virtual LayoutRules layoutRules() const { return {}; }
    /// Places whatever lives in the strip; the field itself is placed by layout().
    virtual void layoutStrip(double /*left*/, double /*width*/) {}
    /// Places caption and field; does nothing while LoadingDepth is not 0.
    void layout();

    /// Colours: the field's own background is the record of its focus and lock state.
    void colourFocused();                       ///< the active field got the focus
    void colourExited();                        ///< the control lost the focus
    void colourForState(bool lockedOrDisabled); ///< Locked or Enabled was set
    /// Selection on entry: all when the focus came by Tab, none when clicked.
    void selectOnEntry(EditChild *field);

    /// Reads every persisted property through its setter, in `order`, with layout held off.
    void readPersisted(PropertyBag &bag, const std::vector<Persisted> &order);
    /// Writes every persisted property with its default.
    void writePersisted(PropertyBag &bag, const std::vector<Persisted> &order);

    /// Bold caption and fields.
    void setFontBoldAll(bool bold);
    /// Whether an Enabled put also enables the control itself (the combo's leaves it alone).
    virtual bool enabledPutReachesControl() const { return true; }
    /// The load is over (see loading()): what was kept only for the load's sake can go.
    virtual void onLoaded() {}

    void onResize() override { layout(); }
    void onShow() override;

    bool m_insertMode = true;
    bool m_mandatory = true;
    bool m_selectOnFocus = false;
    qint16 m_loadingDepth = 0;

private:
    void endLoad();

    bool m_fresh = true;
};

} // namespace kel
