#include "controls/number/kelnumber.h"

#include "common/baskelcontrols.h"
#include "platform/format.h"
#include "platform/services.h"
#include "library/librarysettings.h"

#include <QCoreApplication>
#include <cmath>
#include <utility>

namespace kel {

namespace {

constexpr quint32 Red = 0x0000FF;
constexpr quint32 Black = 0x000000;

QChar regionalDecimalChar()
{
    if (const qint16 code = librarySettings().DecimalSeparatorCode)
        return QChar(char16_t(code));
    const QString dec = regionalLocale().decimalPoint();
    return dec.isEmpty() ? QChar(u'.') : dec[0];
}

// Read in this order so that Decimals rounds what follows and MaxValue cannot drag MinValue
// after MinValue is read.
const std::vector<Persisted> &readOrder()
{
    static const std::vector<Persisted> table = {
        {QStringLiteral("Decimals"), qint16(-1), qint16(-1)},
        {QStringLiteral("Caption"), QString(), QString()},
        {QStringLiteral("CaptionWidth"), qint16(0), qint16(0)},
        {QStringLiteral("Enabled"), true, true},
        {QStringLiteral("InsertMode"), false, false},
        {QStringLiteral("FontBold"), false, false},
        {QStringLiteral("GroupDigits"), true, true},
        {QStringLiteral("Locked"), false, false},
        {QStringLiteral("Mandatory"), true, true},
        {QStringLiteral("MaxValue"), 0.0, 0.0},
        {QStringLiteral("MinValue"), 0.0, 0.0},
        {QStringLiteral("SelectOnFocus"), false, false},
        {QStringLiteral("UpDown"), false, false},
        {QStringLiteral("UpDownChange"), 1.0, 1.0},
        // Written against an empty text, so a value is always stored.
        {QStringLiteral("Value"), 0.0, QString()},
    };
    return table;
}

const std::vector<Persisted> &writeOrder()
{
    static const std::vector<Persisted> table = [] {
        std::vector<Persisted> t;
        for (const char16_t *name : {u"Caption", u"CaptionWidth", u"Decimals", u"Enabled", u"FontBold", u"GroupDigits",
                                     u"InsertMode", u"Locked", u"Mandatory", u"MaxValue", u"MinValue", u"SelectOnFocus",
                                     u"UpDown", u"UpDownChange", u"Value"}) {
            for (const Persisted &p : readOrder())
                if (p.name == QStringView(name))
                    t.push_back(p);
        }
        return t;
    }();
    return table;
}

} // namespace

KelNumber::KelNumber(QWidget *parent)
    : SpinField(parent)
{
    m_insertMode = false;
    runtime(); // the regional default decimals come from it
    m_decimalsInUse = librarySettings().DefaultDecimals;
    m_decimalChar = regionalDecimalChar();
    UpDown1->setVisible(false);
    showText(QStringLiteral("0"));
}

bool KelNumber::ChangedCaption(QString &CaptionToSave) const
{
    CaptionToSave = Label1->Caption() != Label1->Tag ? Label1->Caption() : QString();
    return Label1->DataChanged;
}

void KelNumber::setDecimals(qint16 decimals)
{
    if (decimals < -1 || decimals > 16)
        return;
    runtime(); // the regional default comes from it
    m_decimals = decimals;
    propertyChanged(QStringLiteral("Decimals"));
    const auto dates = runtime().RuntimeDates();
    // A value typed or stepped since it was given is rounded from what it is now.
    const bool valueAsGiven = dates->NumberFromValue(m_valueGiven, m_decimalsInUse) == m_value;
    m_decimalsInUse = decimals == -1 ? librarySettings().DefaultDecimals : decimals;
    m_decimalChar = regionalDecimalChar();
    m_minValue = dates->RoundNumber(m_minGiven, m_decimalsInUse);
    m_maxValue = dates->RoundNumber(m_maxGiven, m_decimalsInUse);
    m_holdDisplay = m_readingBag;
    setValue(valueAsGiven ? m_valueGiven : Variant(m_value));
    m_holdDisplay = false;
}

void KelNumber::setFontBold(bool bold)
{
    setFontBoldAll(bold);
    propertyChanged(QStringLiteral("FontBold"));
}

void KelNumber::setGroupDigits(bool group)
{
    m_groupDigits = group;
    propertyChanged(QStringLiteral("GroupDigits"));
}

void KelNumber::setMaxValue(double value)
{
    if (!std::isfinite(value))
        return;
    m_maxGiven = value;
    m_maxValue = runtime().RuntimeDates()->RoundNumber(value, m_decimalsInUse);
    propertyChanged(QStringLiteral("MaxValue"));
    // The given bounds are kept in order too: a later Decimals rounds both again.
    if (m_minValue > m_maxValue || m_minGiven > m_maxGiven) {
        m_minValue = m_maxValue;
        m_minGiven = m_maxGiven;
    }
}

void KelNumber::setMinValue(double value)
{
    if (!std::isfinite(value))
        return;
    m_minGiven = value;
    m_minValue = runtime().RuntimeDates()->RoundNumber(value, m_decimalsInUse);
    propertyChanged(QStringLiteral("MinValue"));
    if (!(m_maxValue >= m_minValue) || m_minGiven > m_maxGiven) {
        m_maxValue = m_minValue;
        m_maxGiven = m_minGiven;
    }
}

void KelNumber::setUpDownChange(double step)
{
    if (!std::isfinite(step))
        return;
    m_upDownChange = step;
    propertyChanged(QStringLiteral("UpDownChange"));
}

void KelNumber::setValue(const Variant &value)
{
    if (!value.isNumeric())
        return;
    m_valueGiven = value;
    m_value = runtime().RuntimeDates()->NumberFromValue(value, m_decimalsInUse);
    m_valueOriginal = m_value;
    if (m_holdDisplay) {
        m_displayHeld = true;
        m_heldGroup = m_groupDigits;
    } else {
        showValue(m_groupDigits);
    }
    m_textDirty = false;
    notifyValue();
}

void KelNumber::showValue(bool group)
{
    m_displayHeld = false;
    showText(displayText(m_value, group));
    showSignColour();
}

void KelNumber::setPlainValue(const QVariant &value)
{
    if (const std::optional<Variant> v = fromQVariant(value))
        setValue(*v);
}

void KelNumber::notifyValue()
{
    if (m_valueWatch.moved(m_value))
        emit ValueChanged();
}

bool KelNumber::Valid(bool ShowMessage)
{
    if (Text1->Locked())
        return true;
    // What the user sees, not yet clamped.
    const double v = m_textDirty ? parseField() : m_value;
    QString message;
    if (m_mandatory && v == 0)
        message = QCoreApplication::translate("kel::KelNumber", "Please enter a non-zero value in this field.");
    else if (v >= m_minValue && v <= m_maxValue)
        return true;
    else
        message = QCoreApplication::translate("kel::KelNumber", "This field only accepts values from %1 to %2.")
                      .arg(displayText(m_minValue, true), displayText(m_maxValue, m_groupDigits));
    return invalid(ShowMessage, message, QCoreApplication::translate("kel::KelNumber", "Invalid Value"));
}

double KelNumber::currentValue()
{
    if (m_textDirty)
        commitText();
    return m_value;
}

QString KelNumber::displayText(double v, bool group) const
{
    return FormatNumberRegional(v, m_decimalsInUse, true, true, group, regionalLocale());
}

QString KelNumber::editText(double v) const
{
    QString pattern(15, u'#');
    if (m_decimalsInUse > 0)
        pattern += u'.' + QString(m_decimalsInUse, u'#');
    QString text = FormatNumber(v, pattern, regionalLocale());
    if (m_decimalsInUse > 0 && text.endsWith(m_decimalChar))
        text.chop(1);
    return text;
}

QVariant KelNumber::accessibleValue() const
{
    if (!m_textDirty)
        return m_value;
    try {
        return parseField();
    } catch (const std::exception &) {
        return m_value;
    }
}

double KelNumber::parseField() const
{
    return runtime().RuntimeDates()->NumberFromValue(Text1->Text(), m_decimalsInUse);
}

double KelNumber::clamped(double v) const
{
    if (v < m_minValue)
        return m_minValue;
    if (!(v <= m_maxValue))
        return m_maxValue;
    return v;
}

void KelNumber::commitText()
{
    m_textDirty = false;
    if (Text1->Locked())
        return;
    m_value = clamped(parseField());
    showText(displayText(m_value, m_groupDigits));
    notifyValue();
}

void KelNumber::stepValue(double delta)
{
    // A locked field would show the stepped text over a value that cannot change.
    if (Text1->Locked())
        return;
    // Commit, step through the general form, commit again; only the last text is ever seen,
    // so the box is written once.
    m_textDirty = false;
    const std::shared_ptr<IRuntimeDates> dates = runtime().RuntimeDates();
    const double from = clamped(parseField());
    const double sum = from + delta;
    // A sum past the largest double is past any bound; rounding infinity would give 0.
    if (std::isfinite(sum)) {
        const double stepped = dates->RoundNumber(sum, m_decimalsInUse);
        m_value = clamped(dates->NumberFromValue(GeneralNumber(stepped, regionalLocale()), m_decimalsInUse));
    } else {
        m_value = sum > 0 ? m_maxValue : m_minValue;
    }
    showText(displayText(m_value, m_groupDigits));
    notifyValue();
    if (m_value != m_valueOriginal) {
        emit Change();
        m_valueOriginal = m_value;
    }
}

void KelNumber::showSignColour()
{
    Text1->setForeColor(m_value < 0 ? Red : Black);
}

void KelNumber::keyDown(int &keyCode)
{
    m_keypadDecimal = keyCode == 110;
    SpinField::keyDown(keyCode);
}

void KelNumber::keyPress(int &keyAscii)
{
    TextBox *box = Text1;
    const bool keypadDecimal = std::exchange(m_keypadDecimal, false);
    if (passesOrMovesOn(keyAscii))
        return;

    if (keyAscii == u'-') {
        if (box->Locked())
            return;
        if (!box->Text().startsWith(u'-'))
            box->setText(u'-' + box->Text());
        box->setSelStart(1);
        box->setSelLength(int(box->Text().size()) - 1);
        keyAscii = 0;
        return;
    }

    // The keypad's separator key types the regional one, whatever its label.
    if (keyAscii == m_decimalChar.unicode() || (keypadDecimal && (keyAscii == u'.' || keyAscii == u','))) {
        if (box->Locked())
            return;
        keyAscii = 0;
        if (m_decimalsInUse <= 0)
            return;
        const QString dec(m_decimalChar);
        const int p = int(box->Text().indexOf(m_decimalChar)) + 1;
        if (p > 0) {
            // The separator moves to the caret; the digits it passes over go.
            int end = p;
            if (p <= box->SelStart()) {
                end = box->SelStart();
                box->setSelStart(p - 1);
            }
            box->setSelLength(end - box->SelStart());
        } else if (!m_insertMode) {
            box->setSelLength(1);
        }
        box->setSelText(dec);
        // The decimals after it are ready to be typed over.
        box->setSelLength(int(box->Text().size()) + 1 - box->SelStart());
        return;
    }

    if (keyAscii >= u'0' && keyAscii <= u'9') {
        overwriteNext();
        return;
    }

    keyAscii = 0;
    services().Beep();
}

void KelNumber::gotFocus()
{
    const bool locked = Text1->Locked();
    if (!locked) {
        if (m_spinFocus)
            m_spinFocus = false; // the spinner keeps the display form
        else
            showText(editText(currentValue()));
        Text1->setSelStart(0);
        if (m_selectOnFocus)
            Text1->setSelLength(int(Text1->Text().size()));
    }
    colourFocused();
    if (!locked && !(m_value >= m_minValue && m_value <= m_maxValue))
        m_textDirty = true;
}

void KelNumber::onInitProperties()
{
    if (!librarySettings().Runtime)
        InitControls();
    m_decimals = -1;
    m_decimalsInUse = librarySettings().DefaultDecimals;
    m_decimalChar = regionalDecimalChar();
    Label1->setCaption(objectName());
    m_groupDigits = true;
    m_insertMode = false;
    m_mandatory = true;
    m_selectOnFocus = false;
    m_upDown = false;
    UpDown1->setVisible(false);
    m_minValue = m_minGiven = -9999999999.0;
    m_maxValue = m_maxGiven = 9999999999.0;
    m_valueGiven = 0.0;
    m_upDownChange = 1;
    m_value = m_valueOriginal = 0;
    showText(QStringLiteral("0"));
    m_textDirty = false;
    notifyValue();
}

void KelNumber::onReadProperties(PropertyBag &bag)
{
    m_readingBag = true;
    readPersisted(bag, readOrder());
    m_readingBag = false;
    if (m_displayHeld) // a Value the field refused
        showValue(m_heldGroup);
}
void KelNumber::onWriteProperties(PropertyBag &bag) { writePersisted(bag, writeOrder()); }

void KelNumber::onEnterFocus()
{
    m_valueOriginal = currentValue();
    Text1->setForeColor(Black);
}

void KelNumber::onExitFocus()
{
    commitText();
    showSignColour();
    colourExited();
    m_spinFocus = false;
}

} // namespace kel
