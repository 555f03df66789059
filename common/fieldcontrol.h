#pragma once
// What every entry control shares: caption and field layout, the background colour that records
// focus and lock state, the caption colour for Mandatory, selection on focus, and persistence
// through the public setters. A control states only where it departs.
#include "platform/kelexport.h"
#include "forms/label.h"
#include "forms/usercontrol.h"
#include "platform/variant.h"

#include <QLocale>
#include <vector>

namespace kel {

// A persisted property: readDefault on load; writeDefault on save, the value taken from
// `writeFrom` when it names another member.
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
QLocale runtimeRegion();
// The run-time object's field font on `field`; a run-time object without fonts leaves it alone.
void takeFieldFont(Child *field);

class KEL_EXPORT FieldControl : public UserControl
{
    Q_OBJECT
    Q_PROPERTY(QString Caption READ Caption WRITE setCaption)
    Q_PROPERTY(qint16 CaptionWidth READ CaptionWidth WRITE setCaptionWidth)
    Q_PROPERTY(bool Enabled READ Enabled WRITE setEnabled)
    Q_PROPERTY(bool InsertMode READ InsertMode WRITE setInsertMode)
    Q_PROPERTY(bool Locked READ Locked WRITE setLocked)
    Q_PROPERTY(bool Mandatory READ Mandatory WRITE setMandatory)
    Q_PROPERTY(bool SelectOnFocus READ SelectOnFocus WRITE setSelectOnFocus)

public:
    explicit FieldControl(QWidget *parent = nullptr);

    Label *const Label1;

    QString Caption() const { return Label1->Caption(); }
    void setCaption(const QString &caption);
    qint16 CaptionWidth() const { return qint16(Label1->Width()); }
    void setCaptionWidth(qint16 width);
    bool Enabled() const { return !testAttribute(Qt::WA_ForceDisabled); }
    void setEnabled(bool enabled);
    bool InsertMode() const { return m_insertMode; }
    void setInsertMode(bool insert);
    bool Locked() const { return fields().front()->Locked(); }
    void setLocked(bool locked);
    bool Mandatory() const { return m_mandatory; }
    void setMandatory(bool mandatory);
    bool SelectOnFocus() const { return m_selectOnFocus; }
    void setSelectOnFocus(bool select);

    Q_INVOKABLE void Refresh() { activeField()->Refresh(); }
    Q_INVOKABLE void TooltipSet(const QString &Tooltip);

    qint16 LoadingDepth() const { return m_loadingDepth; }

protected:
    // Every field widget, and the one in use.
    virtual std::vector<Child *> fields() const = 0;
    virtual Child *activeField() const = 0;

    enum class HeightRule { AtLeast300, Exactly300 };
    enum class WidthRule {
        CaptionShrinks,  // narrower than the caption: widen to 100 at least, shrink the caption
        StripMinimum,    // 100 twips plus the spinner strip at least, caption clear of the strip
    };
    struct LayoutRules {
        HeightRule height = HeightRule::AtLeast300;
        WidthRule width = WidthRule::CaptionShrinks;
        double strip = 0;              // twips kept free at the right edge (the spinner)
        bool fullHeightCaption = false;
        bool captionWithinWidth = false;    // CaptionWidth is cut to the inner width first
        bool captionTakesFieldFont = false; // the caption shows in the field font
    };
    virtual LayoutRules layoutRules() const { return {}; }
    // Places whatever lives in the strip; the field itself is placed by layout().
    virtual void layoutStrip(double /*left*/, double /*width*/) {}
    void layout();

    // Colours: the field's own background is the record of its focus and lock state.
    void colourFocused();                       // the active field got the focus
    void colourExited();                        // the control lost the focus
    void colourForState(bool lockedOrDisabled); // Locked or Enabled was set
    // Selection on entry: all when the focus came by Tab, none when clicked.
    void selectOnEntry(EditChild *field);

    void readPersisted(PropertyBag &bag, const std::vector<Persisted> &order);
    void writePersisted(PropertyBag &bag, const std::vector<Persisted> &order);

    void setFontBoldAll(bool bold);

    void onResize() override { layout(); }
    void onShow() override;

    bool m_insertMode = true;
    bool m_mandatory = true;
    bool m_selectOnFocus = false;
    qint16 m_loadingDepth = 0;
};

} // namespace kel
