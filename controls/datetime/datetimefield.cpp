#include "controls/datetime/datetimefield.h"

#include "library/librarysettings.h"
#include "platform/dayserial.h"
#include "platform/format.h"
#include "platform/services.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace kel {

bool isPartSeparator(QChar c)
{
    const char16_t u = c.toUpper().unicode();
    return !((u >= u'0' && u <= u'9') || (u >= u'A' && u <= u'Z'));
}

QString upperInPlace(const QString &text)
{
    QString upper = text;
    for (QChar &c : upper)
        c = c.toUpper();
    return upper;
}

DateTimeField::DateTimeField(QWidget *parent) : SpinField(parent)
{
    m_insertMode = false;
    m_upDown = true;
}

void DateTimeField::onChildKeyPress(Child *, int &keyAscii)
{
    if (keyAscii == 13 || (keyAscii < 32 && controlCharacterPasses(keyAscii))) {
        passesOrMovesOn(keyAscii);
        return;
    }
    if (keyAscii == u'+' || keyAscii == u'-') {
        step(keyAscii == u'+' ? 1 : -1);
        keyAscii = 0;
        return;
    }
    if (!accepts(keyAscii)) {
        keyAscii = 0;
        return;
    }
    overwriteNext();
}

void DateTimeField::onChildMouseDown(Child *, int button, int, double, double)
{
    // The box's own context menu can paste or delete.
    if (button == 2)
        m_textDirty = true;
}

void DateTimeField::setEnabled(bool enabled)
{
    FieldControl::setEnabled(enabled);
    showSpinnerState();
}

void DateTimeField::setLocked(bool locked)
{
    FieldControl::setLocked(locked);
    showSpinnerState();
}

void DateTimeField::showSpinnerState()
{
    UpDown1->setEnabled(Enabled() && !Locked());
}

void DateTimeField::setMaxValue(Date value)
{
    if (!isValidDaySerial(value.serial))
        return;
    m_maxValue = bound(value.serial);
    propertyChanged(QStringLiteral("MaxValue"));
    if (m_minValue > m_maxValue)
        m_minValue = m_maxValue;
}

void DateTimeField::setMinValue(Date value)
{
    if (!isValidDaySerial(value.serial))
        return;
    m_minValue = bound(value.serial);
    propertyChanged(QStringLiteral("MinValue"));
    if (m_maxValue < m_minValue)
        m_maxValue = m_minValue;
}

// The same through the one mapping of plain values: an invalid date is no bound.
void DateTimeField::setMaxValue(const QDateTime &value) { setPlainMaxValue(value); }
void DateTimeField::setMinValue(const QDateTime &value) { setPlainMinValue(value); }
void DateTimeField::setMaxValue(QDate value) { setPlainMaxValue(value); }
void DateTimeField::setMinValue(QDate value) { setPlainMinValue(value); }

void DateTimeField::setPlainMaxValue(const QVariant &value)
{
    if (const std::optional<double> s = daySerialOf(value))
        setMaxValue(Date{*s});
}

void DateTimeField::setPlainMinValue(const QVariant &value)
{
    if (const std::optional<double> s = daySerialOf(value))
        setMinValue(Date{*s});
}

double DateTimeField::bound(double serial) const
{
    // Otherwise a bound a split second before midnight reads back as the next day while a value
    // clamped to it stays on the day before.
    return fromQDateTime(toQDateTime(serial)).value_or(serial);
}

QDateTime DateTimeField::maxDateTime() const { return toQDateTime(m_maxValue); }
QDateTime DateTimeField::minDateTime() const { return toQDateTime(m_minValue); }

bool DateTimeField::Valid(bool ShowMessage)
{
    if (Text1->Locked())
        return true;
    // What the user sees, not yet clamped.
    const std::optional<double> v = m_textDirty ? parse(Text1->Text()) : serialOf(m_value);
    const Wording w = wording();
    QString message;
    if (v) {
        if (*v >= m_minValue && *v <= m_maxValue)
            return true;
        message = w.range.arg(formatted(m_minValue), formatted(m_maxValue));
    } else if (!m_mandatory && (nullAlwaysValidWhenOptional() || Text1->Text().isEmpty())) {
        return true;
    } else {
        message = w.noValue;
    }
    return invalid(ShowMessage, message, w.title);
}

Variant DateTimeField::Value()
{
    if (m_textDirty)
        commitText();
    return m_value;
}

void DateTimeField::setValue(const Variant &value)
{
    std::optional<double> v;
    if (value.isString()) {
        // Text given is a value given: a time field, which saves and reads back no date, keeps the
        // time of day of text that carries one.
        v = parse(*value.get<QString>());
        if (v)
            v = normalised(*v);
    } else if (const std::optional<double> given = serialOf(value)) {
        v = normalised(*given);
    }
    if (v) {
        m_value = Date{pinned(*v)};
        showText(formatted(m_value.get<Date>()->serial));
    } else {
        m_value = Null;
        showText(QString());
    }
    m_valueOriginal = m_value;
    m_textDirty = false;
    notifyValue();
}

void DateTimeField::setValue(const QDateTime &value)
{
    setValue(fromQVariant(value).value_or(Null));
}

void DateTimeField::setValue(QDate value)
{
    setValue(fromQVariant(value).value_or(Null));
}

void DateTimeField::setValue(QTime value)
{
    setValue(fromQVariant(value).value_or(Null));
}

QVariant DateTimeField::plainValue()
{
    const Variant v = Value();
    // Designer offers no editor for a value of no type.
    if (!AmbientUserMode() && (v.isEmpty() || v.isNull()))
        return dateForm() == QtDateForm::Time ? QVariant(QTime()) : QVariant(QDate());
    return toQVariant(v, dateForm());
}

void DateTimeField::setPlainValue(const QVariant &value)
{
    if (const std::optional<Variant> v = fromQVariant(value))
        setValue(*v);
}

// A reference that is no number of days (NaN, infinity) would make Changed true for ever.
static bool isReference(const Variant &v)
{
    return v.type() != Variant::Type::Double || std::isfinite(v.toDouble());
}

void DateTimeField::setPlainValueOriginal(const QVariant &value)
{
    if (const std::optional<Variant> v = fromQVariant(value); v && isReference(*v))
        m_valueOriginal = *v;
}

void DateTimeField::setPlainValueSaved(const QVariant &value)
{
    if (const std::optional<Variant> v = fromQVariant(value); v && isReference(*v))
        m_valueSaved = *v;
}

void DateTimeField::notifyValue()
{
    if (m_valueWatch.moved(toQVariant(m_value, dateForm())))
        emit ValueChanged();
}

FieldControl::LayoutRules DateTimeField::layoutRules() const
{
    LayoutRules r = SpinField::layoutRules();
    r.captionWithinWidth = false;
    r.captionTakesFieldFont = false;
    return r;
}

QString DateTimeField::formatted(double serial) const
{
    // The run-time object's region, so that what the field shows parses back.
    const QLocale region = regionalLocale();
    // A step formats the value it reads back from the box, most often the one it showed last.
    const auto bits = std::bit_cast<quint64>(serial);
    LastFormatted &last = m_lastFormatted;
    if (last.text.isNull() || last.serial != bits || last.format != m_format || last.region != region)
        last = {bits, m_format, region, FormatDate(serial, m_format, region)};
    return last.text;
}

double DateTimeField::clamped(double v) const
{
    if (v < m_minValue)
        return m_minValue;
    if (v > m_maxValue)
        return m_maxValue;
    return v;
}

std::optional<double> DateTimeField::serialOf(const Variant &v) const
{
    using T = Variant::Type;
    if (v.type() != T::Date && v.type() != T::Double && v.type() != T::Integer && v.type() != T::Long)
        return std::nullopt;
    const double serial = v.toDouble();
    if (!isValidDaySerial(serial))
        return std::nullopt;
    return serial;
}

double DateTimeField::today()
{
    return fromQDate(services().Today()).value_or(0);
}

void DateTimeField::commitText()
{
    m_textDirty = false;
    if (Text1->Locked())
        return;
    const std::optional<double> v = parse(Text1->Text());
    // Pinned after the clamp, so a pinned day may lie outside the range again.
    m_value = v ? Variant(Date{pinned(clamped(entered(*v)))}) : Variant(Null);
    showText(v ? formatted(m_value.get<Date>()->serial) : QString());
    notifyValue();
}

void DateTimeField::formatChanged()
{
    // The text is read again in the new format, as typed text would be. While a form loads, the
    // value is shown in it instead, so that Format before or after Value gives one field.
    if (m_textDirty || !loading()) {
        commitText();
        return;
    }
    if (Text1->Locked())
        return;
    if (const Date *d = m_value.get<Date>()) {
        m_value = Date{pinned(clamped(entered(d->serial)))};
        showText(formatted(m_value.get<Date>()->serial));
        notifyValue();
    }
}

void DateTimeField::finishStep(double value, const QString &shown, int caret, bool noValue, bool focus)
{
    m_value = Date{value};
    showText(shown, caret);
    notifyValue();
    if (focus)
        Text1->SetFocus();
    Text1->setSelStart(caret);
    if (differs(m_valueOriginal, m_value) || noValue) {
        emit Change();
        m_valueOriginal = m_value;
    }
}

void DateTimeField::writeProperties(PropertyBag &bag, const std::vector<Persisted> &readOrder)
{
    // Value is written where UpDown is read and UpDown where Value is. Done by address rather
    // than by swapping copies of the table, which also stays defined when either entry is missing.
    const auto named = [&](QStringView name) -> const Persisted * {
        const auto it = std::find_if(readOrder.begin(), readOrder.end(), [&](const Persisted &p) { return p.name == name; });
        return it == readOrder.end() ? nullptr : &*it;
    };
    const Persisted *upDown = named(u"UpDown");
    const Persisted *value = named(u"Value");
    for (const Persisted &entry : readOrder) {
        const Persisted &p = (&entry == upDown && value) ? *value : (&entry == value && upDown) ? *upDown : entry;
        if (&p == value)
            bag.WriteProperty(p.name, persistedValue(), p.writeDefault);
        else
            writePersisted(bag, {p});
    }
}

void DateTimeField::initDefaults(const QString &format, double min, double max)
{
    m_format = format;
    m_insertMode = false;
    m_mandatory = true;
    m_minValue = min;
    m_maxValue = max;
    m_selectOnFocus = false;
    m_upDown = true;
    UpDown1->setVisible(true);
    Label1->setCaption(objectName());
    Label1->setForeColor(0x8000000D);
    showText(QString());
}

bool DateTimeField::changedFrom(const Variant &reference)
{
    const Variant v = Value();
    if (reference.isNull())
        return !v.isNull();
    if (v.isNull())
        return true;
    return differs(reference, v);
}

void DateTimeField::gotFocus()
{
    selectOnEntry(Text1);
    colourFocused();
    if (Text1->Locked())
        return;
    if (const Date *d = m_value.get<Date>(); d && (d->serial < m_minValue || d->serial > m_maxValue))
        m_textDirty = true; // the next read clamps it
}

void DateTimeField::onExitFocus()
{
    commitText();
    colourExited();
    m_spinFocus = false;
}

} // namespace kel
