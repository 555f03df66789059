#include "randomuse.h"

#include "controls/combo/kelcombo.h"
#include "controls/datetime/datetimefield.h"
#include "controls/datetime/keldate.h"
#include "controls/kelcontrols8.h"
#include "forms/child.h"
#include "forms/units.h"
#include "forms/usercontrol.h"
#include "library/librarysettings.h"
#include "library/classfactory.h"
#include "library/dispatch.h"
#include "library/typemodel.h"
#include "platform/dayserial.h"
#include "platform/propertybag.h"
#include "platform/services.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDate>
#include <QElapsedTimer>
#include <QKeySequence>
#include <QLineEdit>
#include <QMap>
#include <QMenu>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QPointer>
#include <QSize>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <cfloat>
#include <chrono>
#include <cmath>
#include <csignal>
#include <optional>
#include <cstdio>
#include <thread>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__) && __has_include(<sanitizer/common_interface_defs.h>)
#include <sanitizer/common_interface_defs.h>
#define KEL_HAVE_SANITIZER_CALLBACK 1
#endif

namespace kel::randomuse {

namespace {

// ---------------------------------------------------------------------------------------------
// Where we are, for crash and hang reports; written before every event.

char g_position[1024] = "randomuse: not running\n";
std::atomic<qint64> g_busySince{0};
quint64 g_seed = 0;
QByteArray g_class;

qint64 nowMs()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void writePosition()
{
    const ssize_t n = ::write(2, g_position, strlen(g_position));
    Q_UNUSED(n);
}

// ---------------------------------------------------------------------------------------------
// Randomness that is the same on every platform (no std distributions).

class Rng
{
public:
    // Mixed, so that neighbouring seeds do not give the same stream shifted by one.
    explicit Rng(quint64 seed) : m_state(mix(seed ^ 0x632BE59BD9B4E019ull)) {}
    quint64 next() { return mix(m_state += 0x9E3779B97F4A7C15ull); }
    int below(int n) { return n <= 0 ? 0 : int(next() % quint64(n)); }
    bool chance(int percent) { return below(100) < percent; }
    template<class C> const auto &pick(const C &c) { return c[below(int(c.size()))]; }

private:
    static quint64 mix(quint64 z)
    {
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    quint64 m_state;
};

// ---------------------------------------------------------------------------------------------
// Hostile values.

QString longText(int n, char16_t c) { return QString(n, QChar(c)); }

const QStringList &strings()
{
    static const QStringList all = {
        QString(), u"0"_qs, u"-1"_qs, u" 12,345.67 "_qs, u"(5)"_qs, u"1e308"_qs, u"-1E-308"_qs, u"&HFF"_qs,
        u"abc"_qs, u"Ab Cd  "_qs, u"\t"_qs, u"\r"_qs, u"\n"_qs, u"\r\n"_qs, u"a\r\n\r\n"_qs, u"a\rb\nc\r\n"_qs,
        u" \r\n "_qs, QString(QChar(0)) + u"x"_qs, u"\u00e4\u00f6\u00fc \u00df \u20ac"_qs, u"\u4e2d\u6587"_qs,
        u"\u05e9\u05dc\u05d5\u05dd"_qs, u"e\u0301"_qs, u"\u00a0"_qs, u"a\u2028b"_qs, u"\ufeff1"_qs, u"\ufffd"_qs,
        u"\uffff"_qs, u"\U0001F600"_qs, u"a\U0001F600b"_qs, QString(QChar(0xD800)), QString(QChar(0xDC00)) + u"z"_qs,
        u"1,2,3"_qs, u"\"a,b\",c"_qs, QString(300, u','), u"01/02/2003"_qs, u"31.12.9999"_qs, u"23:59:59"_qs,
        u"Now"_qs, u"\u202eevil"_qs, u"a\ufdeab"_qs, u"\ufdeb"_qs, u"\ufdec"_qs, u"\ufdd0"_qs, u"x\ufdd1"_qs,
        u"x\u2029y"_qs,
    };
    return all;
}

// Code points typed or pasted one by one.
const std::vector<char32_t> &characters()
{
    static const std::vector<char32_t> all = [] {
        std::vector<char32_t> c;
        for (char32_t i = 32; i < 127; ++i)
            c.push_back(i);
        for (char32_t d : U"0123456789-.,0123456789-.,()")
            if (d)
                c.push_back(d);
        for (char32_t u : U"\r\n\t\u00e9\u00df\u20ac\u0416\u4e2d\u05d0\u0301\u00a0\u2028\ufeff\U0001F600\U00010348"
                          U"\ufdd0\ufdd1\ufdea\ufdeb\ufdec\u2029")
            if (u)
                c.push_back(u);
        return c;
    }();
    return all;
}

QString randomString(Rng &rng)
{
    // Rare: a long text makes every later layout of a narrow multi-line box slow.
    if (rng.below(1000) < 3) {
        static const QString longer[] = {longText(5000, u'x'), longText(40000, u'y')};
        return longer[rng.below(2)];
    }
    if (rng.chance(40))
        return rng.pick(strings());
    const int n = rng.chance(10) ? rng.below(200) : rng.below(12);
    QString s;
    for (int i = 0; i < n; ++i) {
        const char32_t c = rng.pick(characters());
        s += QString::fromUcs4(&c, 1);
    }
    return s;
}

const std::vector<double> &doubles()
{
    static const std::vector<double> d = {
        std::nan(""), INFINITY, -INFINITY, 1e308, -1e308, DBL_MAX, -DBL_MAX, DBL_MIN, 5e-324, -0.0, 0, 1, -1, 0.5,
        -0.5, 0.005, 2.675, 32767, 32768, -32768, -32769, 65535, 2147483647.0, 2147483648.0, -2147483649.0, 1e15,
        1e16, 9999999999.0, -9999999999.0, 123456.789, 1e300, -1e-300, 100, 1000, 12.34,
    };
    return d;
}

double randomDouble(Rng &rng)
{
    if (rng.chance(70))
        return rng.pick(doubles());
    const double scale = std::pow(10.0, rng.below(12) - 3);
    return (double(rng.below(2000001)) - 1000000.0) / 1000.0 * scale;
}

int randomInt(Rng &rng)
{
    static const int ints[] = {0, 1, -1, 2, 5, 10, 100, 195, 240, 300, 1000, 1440, 32767, -32768, 40000, -40000,
                               65536, 2147483647, int(0x80000000u), 16, 17, -2, 3};
    return rng.chance(70) ? ints[rng.below(int(std::size(ints)))] : rng.below(6000) - 1000;
}

Variant randomVariant(Rng &rng)
{
    switch (rng.below(10)) {
    case 0: return rng.chance(50) ? Variant() : Variant(Null);
    case 1: return rng.chance(50);
    case 2: return qint16(randomInt(rng));
    case 3: return qint32(randomInt(rng));
    case 4: case 5: return randomDouble(rng);
    case 6: return Date{randomDouble(rng)};
    case 7: return rng.chance(95) ? Variant(randomString(rng)) : Variant(std::shared_ptr<QObject>());
    default: return rng.pick(strings());
    }
}

QVariant randomQVariant(Rng &rng)
{
    switch (rng.below(14)) {
    case 0: return QVariant();
    case 1: return rng.chance(50);
    case 2: return randomInt(rng);
    case 3: return qint64(1) << (30 + rng.below(33));
    case 4: case 5: return randomDouble(rng);
    case 6: case 7: return randomString(rng);
    case 8: {
        static const QDate dates[] = {QDate(2024, 2, 29), QDate(), QDate(1, 1, 1), QDate(9999, 12, 31), QDate(1899, 12, 30), QDate(100, 3, 1)};
        return dates[rng.below(int(std::size(dates)))];
    }
    case 9: return rng.chance(50) ? QVariant(QDateTime(QDate(2000, 1, 1), QTime(23, 59, 59, 999))) : QVariant(QDateTime());
    case 10: return rng.chance(50) ? QVariant(QTime(12, 30)) : QVariant(QTime());
    case 11: return QVariant::fromValue(randomVariant(rng));
    case 12: return QStringList{u"a"_qs, u"b"_qs};
    default: return rng.chance(50) ? QVariant(QByteArray("12")) : QVariant(QSize(1, 2));
    }
}

// A value of the property's own type most of the time, anything at all otherwise.
// A disabled or locked field takes no typing: keep it usable most of the time.
bool usuallyUsable(Rng &rng, const QString &property, bool value)
{
    if (property == u"Enabled")
        return rng.chance(85);
    if (property == u"Locked")
        return rng.chance(20);
    return value;
}

QVariant valueFor(Rng &rng, QMetaType type)
{
    if (rng.chance(35))
        return randomQVariant(rng);
    if (type == QMetaType::fromType<bool>())
        return rng.chance(50);
    if (type == QMetaType::fromType<qint16>() || type == QMetaType::fromType<qint32>())
        return randomInt(rng);
    if (type == QMetaType::fromType<double>())
        return randomDouble(rng);
    if (type == QMetaType::fromType<QString>())
        return randomString(rng);
    if (type == QMetaType::fromType<Date>())
        return QVariant::fromValue(Date{randomDouble(rng)});
    if (type == QMetaType::fromType<Variant>())
        return rng.chance(50) ? QVariant::fromValue(randomVariant(rng)) : randomQVariant(rng);
    return randomQVariant(rng);
}

Variant variantFor(Rng &rng, typemodel::VType type)
{
    using typemodel::VType;
    if (rng.chance(20))
        return randomVariant(rng);
    switch (type) {
    case VType::String: return randomString(rng);
    case VType::Boolean: return rng.chance(50);
    case VType::Int16: case VType::Int32: return rng.chance(50) ? Variant(qint32(randomInt(rng))) : Variant(randomDouble(rng));
    case VType::DaysFlag: return qint32(rng.below(6) - 1);
    case VType::Double: return randomDouble(rng);
    case VType::Date: return Date{randomDouble(rng)};
    default: return randomVariant(rng);
    }
}

// ---------------------------------------------------------------------------------------------
// What a class offers, read once from an instance.

struct ClassInfo {
    struct Prop { QString name; QMetaType type; bool writable; };
    std::vector<Prop> properties;          // the control's own (not QWidget's)
    QStringList children;                  // object names of its child widgets, and "" for itself
    QStringList focusable;                 // those of them that take the focus
    std::vector<const typemodel::Member *> members;
    QStringList methods;                   // of Valid, Refresh, TooltipSet: those it has
};

const QStringList childNames = {u"Label1"_qs, u"Text1(0)"_qs, u"Text1(1)"_qs, u"UpDown1"_qs, u"Combo1"_qs, u"Check1"_qs, u"Picture1"_qs};

const ClassInfo &classInfo(const QString &className)
{
    static QMap<QString, ClassInfo> cache;
    auto it = cache.find(className);
    if (it != cache.end())
        return *it;
    ClassInfo info;
    QWidget holder;
    QObject *o = createObject(className, &holder);
    if (o) {
        const QMetaObject *mo = o->metaObject();
        for (int i = UserControl::staticMetaObject.propertyOffset(); i < mo->propertyCount(); ++i) {
            const QMetaProperty p = mo->property(i);
            info.properties.push_back({QString::fromLatin1(p.name()), p.metaType(), p.isWritable()});
        }
        info.children << QString();
        for (const QString &c : childNames)
            if (QWidget *w = o->findChild<QWidget *>(c)) {
                info.children << c;
                if (w->focusPolicy() != Qt::NoFocus)
                    info.focusable << c;
            }
        if (info.focusable.isEmpty())
            info.focusable << QString();
        if (const typemodel::ClassInfo *cls = typemodel::findClass(className))
            for (const typemodel::Member &m : cls->members)
                info.members.push_back(&m);
        for (const char *m : {"Valid", "Refresh", "TooltipSet"}) {
            bool found = false;
            for (int i = 0; i < mo->methodCount() && !found; ++i)
                found = mo->method(i).name() == m;
            if (found || mo->indexOfProperty(m) >= 0)
                info.methods << QString::fromLatin1(m);
        }
        delete o;
    }
    return *cache.insert(className, info);
}

bool hasProperty(QObject *o, const char *name) { return o->metaObject()->indexOfProperty(name) >= 0; }

// ---------------------------------------------------------------------------------------------
// Keys.

struct KeySpec { int key; int mods; QString text; };

const std::vector<KeySpec> &specialKeys()
{
    using namespace Qt;
    static const std::vector<KeySpec> k = {
        {Key_Insert, 0, {}}, {Key_Delete, 0, u"\x7f"_qs}, {Key_Up, 0, {}}, {Key_Down, 0, {}}, {Key_Up, 0, {}},
        {Key_Down, 0, {}}, {Key_Left, 0, {}}, {Key_Right, 0, {}}, {Key_Home, 0, {}}, {Key_End, 0, {}},
        {Key_PageUp, 0, {}}, {Key_PageDown, 0, {}}, {Key_Return, 0, u"\r"_qs}, {Key_Enter, KeypadModifier, u"\r"_qs},
        {Key_Tab, 0, u"\t"_qs}, {Key_Backtab, ShiftModifier, {}}, {Key_Backspace, 0, u"\b"_qs},
        {Key_Escape, 0, u"\x1b"_qs}, {Key_F4, 0, {}}, {Key_Down, AltModifier, {}}, {Key_Period, KeypadModifier, u"."_qs},
        {Key_Comma, KeypadModifier, u","_qs}, {Key_Minus, KeypadModifier, u"-"_qs},
        {Key_C, ControlModifier, u"\x03"_qs}, {Key_V, ControlModifier, u"\x16"_qs}, {Key_X, ControlModifier, u"\x18"_qs},
        {Key_A, ControlModifier, u"\x01"_qs}, {Key_Z, ControlModifier, u"\x1a"_qs}, {Key_Y, ControlModifier, u"\x19"_qs},
        {Key_Z, ControlModifier | ShiftModifier, u"\x1a"_qs}, {Key_Insert, ShiftModifier, {}}, {Key_Insert, ControlModifier, {}},
        {Key_Delete, ShiftModifier, {}}, {Key_Backspace, ControlModifier, {}}, {Key_Delete, ControlModifier, {}},
        {Key_Left, ShiftModifier, {}}, {Key_Right, ShiftModifier, {}}, {Key_Home, ShiftModifier, {}},
        {Key_End, ShiftModifier, {}}, {Key_Up, ShiftModifier, {}}, {Key_Down, ControlModifier, {}},
        {Key_M, ControlModifier, u"\r"_qs}, {Key_J, ControlModifier, u"\n"_qs}, {Key_H, ControlModifier, u"\b"_qs},
        {Key_I, ControlModifier, u"\t"_qs}, {Key_B, ControlModifier, u"\x02"_qs}, {Key_Space, 0, u" "_qs},
    };
    return k;
}

KeySpec keyForCharacter(char32_t c)
{
    if (c == U'\r' || c == U'\n')
        return {Qt::Key_Return, 0, u"\r"_qs};
    if (c == U'\t')
        return {Qt::Key_Tab, 0, u"\t"_qs};
    const QString text = QString::fromUcs4(&c, 1);
    int key = int(QChar::toUpper(c));
    if (c < 0x20)
        key = Qt::Key_A + int(c) - 1;
    const int mods = c < 0x20 ? int(Qt::ControlModifier) : (QChar::isUpper(c) ? int(Qt::ShiftModifier) : 0);
    return {key, mods, text};
}

// ---------------------------------------------------------------------------------------------
// Printing.

QString escaped(const QString &s)
{
    QString out;
    auto plain = [&](qsizetype from, qsizetype to) {
        for (qsizetype i = from; i < to; ++i) {
            const QChar c = s[i];
            if (c == u'"' || c == u'\\')
                out += u'\\' + QString(c);
            else if (c == u'\r')
                out += u"\\r"_qs;
            else if (c == u'\n')
                out += u"\\n"_qs;
            else if (c == u'\t')
                out += u"\\t"_qs;
            else if (c.unicode() >= 32 && c.unicode() < 127)
                out += c;
            else
                out += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        }
    };
    if (s.size() > 80 && s.count(s[0]) == s.size()) {
        plain(0, 1);
        return u"\""_qs + out + QStringLiteral("\" x %1").arg(s.size());
    }
    if (s.size() > 80) {
        plain(0, 40);
        return u"\""_qs + out + QStringLiteral("...\" (%1 chars)").arg(s.size());
    }
    plain(0, s.size());
    return u"\""_qs + out + u'"';
}

QString describe(const Variant &v)
{
    if (v.isString())
        return u"String "_qs + escaped(v.toString());
    return v.debugString();
}

QString describe(const QVariant &v)
{
    if (!v.isValid())
        return u"QVariant()"_qs;
    if (v.metaType() == QMetaType::fromType<Variant>())
        return u"Variant("_qs + describe(v.value<Variant>()) + u')';
    if (v.metaType() == QMetaType::fromType<Date>())
        return QStringLiteral("Date(%1)").arg(v.value<Date>().serial, 0, 'g', 17);
    if (v.metaType() == QMetaType::fromType<QString>())
        return u"QString "_qs + escaped(v.toString());
    if (v.metaType() == QMetaType::fromType<double>())
        return QStringLiteral("double %1").arg(v.toDouble(), 0, 'g', 17);
    return QString::fromLatin1(v.typeName()) + u' ' + escaped(v.toString());
}

QString describeArgs(const std::vector<Variant> &args)
{
    QStringList parts;
    for (const Variant &a : args)
        parts << describe(a);
    return parts.join(u", "_qs);
}

// ---------------------------------------------------------------------------------------------
// One run: a shown form holding the control and a neighbour, and a second window.

class Session
{
public:
    Session(const QString &className, const Options &options) : m_class(className), m_options(options)
    {
        auto rec = std::make_unique<RecordingServices>();
        m_services = rec.get();
        setServices(std::move(rec));
        QGuiApplication::clipboard()->setText(QString());
        m_window.setObjectName(u"Form"_qs);
        m_window.resize(420, 110);
        m_other = new QLineEdit(&m_window);
        m_other->setObjectName(u"Other"_qs);
        m_other->setGeometry(10, 70, 200, 22);
        m_second.setObjectName(u"SecondWindow"_qs);
        m_second.resize(200, 60);
        new QLineEdit(&m_second);
        makeControl();
        m_control->InitProperties();
        m_second.show();
        m_window.show();
        m_window.activateWindow();
        QApplication::setActiveWindow(&m_window);
        if (QWidget *first = m_window.nextInFocusChain(); first && first != &m_window) // the form opens with the focus in its first field
            first->setFocus(Qt::TabFocusReason);
        QApplication::processEvents();
    }

    ~Session()
    {
        settle();
        delete m_control;
    }

    Failure apply(const Event &e, int index)
    {
        Before before = snapshot(e);
        m_textSet.reset();
        m_tooltipSet.reset();
        m_undone = e.kind == Event::Key && e.mods & Qt::ControlModifier && (e.key == Qt::Key_Z || e.key == Qt::Key_Y);
        QElapsedTimer clock;
        clock.start();
        execute(e);
        settle();
        if (qEnvironmentVariableIsSet("KEL_RANDOMUSE_PROFILE"))
            std::fprintf(stderr, "%lld ms, focus %s: %s\n", static_cast<long long>(clock.elapsed()),
                         QApplication::focusWidget() ? qPrintable(QApplication::focusWidget()->objectName()) : "none",
                         qPrintable(e.describe().left(100)));
        // Typed text is one event per key, as the user sees it: with a long unbroken word in a narrow
        // multi-line box, the stock plain-text editor alone takes about a second per key.
        const qint64 limit = m_options.slowMs * (e.kind == Event::Type ? qMax<qsizetype>(1, e.text.toUcs4().size()) : 1);
        if (clock.elapsed() > limit)
            return fail(index, u"slow"_qs, QStringLiteral("the event took %1 ms").arg(clock.elapsed()));
        QString check, message;
        if (!checkAll(e, before, &check, &message))
            return fail(index, check, message);
        return {};
    }

private:
    struct Before {
        bool focusInside = false;
        qsizetype rawLength = 0;
        bool stepCheck = false;
        double value = 0, step = 0, min = 0, max = 0;
        int direction = 0;
        QPointer<UserControl> control;
    };

    static Failure fail(int index, const QString &check, const QString &message) { return {index, check, message}; }

    // The control's child whose widget bears `name`.
    const Child *childNamed(const char16_t *name) const
    {
        for (const Child *c : m_control->findChildren<Child *>(Qt::FindDirectChildrenOnly))
            if (c->widget() && c->widget()->objectName() == QStringView(name))
                return c;
        return nullptr;
    }

    void makeControl()
    {
        QObject *o = createObject(m_class, &m_window);
        m_control = qobject_cast<UserControl *>(o);
        if (!m_control) {
            delete o;
            qFatal("randomuse: %s is not a control", qPrintable(m_class));
        }
        m_control->setGeometry(10, 10, 300, 20);
        m_control->show();
    }

    void settle()
    {
        QApplication::processEvents();
        for (int i = 0; i < 4; ++i) {
            QWidget *popup = QApplication::activePopupWidget();
            if (!popup)
                break;
            popup->close();
            QApplication::processEvents();
        }
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    QWidget *child(const QString &name) const
    {
        if (name.isEmpty())
            return m_control;
        QWidget *w = m_control->findChild<QWidget *>(name);
        return w && w->isVisible() ? w : nullptr;
    }

    static QWidget *mouseTarget(QWidget *w)
    {
        if (auto *area = qobject_cast<QAbstractScrollArea *>(w))
            return area->viewport();
        return w;
    }

    static QPoint at(QWidget *w, int xPerMille, int yPerMille)
    {
        return QPoint(qMin(w->width() - 1, w->width() * xPerMille / 1000), qMin(w->height() - 1, w->height() * yPerMille / 1000));
    }

    QWidget *keyTarget() const
    {
        if (QWidget *w = QApplication::focusWidget())
            return w;
        if (QWidget *w = QApplication::activeWindow())
            return w;
        return const_cast<QWidget *>(static_cast<const QWidget *>(&m_window));
    }

    void sendKey(const KeySpec &k)
    {
        QTest::sendKeyEvent(QTest::Click, keyTarget(), Qt::Key(k.key), k.text, Qt::KeyboardModifiers(k.mods));
    }

    bool readCommits() const { return hasProperty(m_control, "Value") && hasProperty(m_control, "MinValue"); }

    // Reads that commit typed text are a host's right, but would reshape the typing under test.
    bool safeToRead() const { return !readCommits() || !m_control->focusInside(); }

    Before snapshot(const Event &e)
    {
        Before b;
        b.control = m_control;
        b.focusInside = m_control->focusInside();
        b.rawLength = characters(rawText());
        if (hasProperty(m_control, "UpDownChange") && !m_control->property("Locked").toBool()) {
            if (e.kind == Event::Key && e.mods == 0 && (e.key == Qt::Key_Up || e.key == Qt::Key_Down))
                b.direction = e.key == Qt::Key_Up ? 1 : -1;
            if (e.kind == Event::Click && e.name == u"UpDown1" && child(e.name))
                b.direction = e.mods < 500 ? 1 : -1;
        }
        if (b.direction) {
            // What the step starts from: a host may read Value at any time.
            b.value = number(m_control->property("Value"));
            b.step = number(m_control->property("UpDownChange"));
            b.min = number(m_control->property("MinValue"));
            b.max = number(m_control->property("MaxValue"));
            b.stepCheck = b.min <= b.value && b.value <= b.max && std::isfinite(b.step);
        }
        return b;
    }

    static double number(const QVariant &v, bool *ok = nullptr)
    {
        // Dates, times and the values of the date fields (Empty, Null) through the library's
        // mapping: a date is its day serial, Empty, Null and text are no number.
        const QMetaType t = v.metaType();
        if (!v.isValid() || t == QMetaType::fromType<std::nullptr_t>() || t == QMetaType::fromType<Variant>()
            || t == QMetaType::fromType<Date>() || t == QMetaType::fromType<QDate>()
            || t == QMetaType::fromType<QDateTime>() || t == QMetaType::fromType<QTime>()) {
            const Variant k = fromQVariant(v).value_or(Variant());
            if (k.isEmpty() || k.isNull() || k.isString()) {
                if (ok)
                    *ok = false;
                return 0;
            }
            return k.toDouble(ok);
        }
        return v.toDouble(ok);
    }

    static Variant toKel(const QVariant &v) { return fromQVariant(v).value_or(Variant(v.toDouble())); }

    QString rawText() const
    {
        if (hasProperty(m_control, "TextRaw"))
            return m_control->property("TextRaw").toString();
        if (hasProperty(m_control, "Text") && !readCommits())
            return m_control->property("Text").toString();
        return {};
    }

    void execute(const Event &e)
    {
        const qint64 started = nowMs();
        g_busySince = started;
        switch (e.kind) {
        case Event::Key: case Event::Type: case Event::Paste:
            if (e.refocus && !(QApplication::focusWidget() && m_control->isAncestorOf(QApplication::focusWidget())))
                focusField();
            break;
        default:
            break;
        }
        switch (e.kind) {
        case Event::Key:
            sendKey({e.key, e.mods, e.text});
            break;
        case Event::Type: {
            const auto ucs = e.text.toUcs4();
            for (char32_t c : ucs)
                sendKey(keyForCharacter(c));
            break;
        }
        case Event::Paste:
            QGuiApplication::clipboard()->setText(e.text);
            if (e.extra)
                sendKey({Qt::Key_Insert, Qt::ShiftModifier, {}});
            else
                sendKey({Qt::Key_V, Qt::ControlModifier, u"\x16"_qs});
            break;
        case Event::Click: case Event::DoubleClick: case Event::RightClick:
            if (QWidget *w = child(e.name))
                click(e, mouseTarget(w));
            break;
        case Event::FocusField:
            if (QWidget *w = child(e.name))
                w->setFocus(Qt::FocusReason(e.mods));
            break;
        case Event::FocusOther:
            m_other->setFocus(Qt::TabFocusReason);
            break;
        case Event::SwitchWindow: case Event::SwitchBack: {
            QWidget &w = e.kind == Event::SwitchWindow ? m_second : m_window;
            w.activateWindow();
            QApplication::setActiveWindow(&w);
            if (e.kind == Event::SwitchWindow && e.extra) { // away and straight back, as Alt+Tab twice
                QApplication::processEvents();
                m_window.activateWindow();
                QApplication::setActiveWindow(&m_window);
            }
            break;
        }
        case Event::SetProperty: {
            const QVariant &v = e.value;
            const bool ok = m_control->setProperty(e.name.toLatin1().constData(), v);
            if (ok && (e.name == u"Text" || e.name == u"Caption") && v.metaType() == QMetaType::fromType<QString>())
                m_textSet = {e.name, v.toString()};
            break;
        }
        case Event::Dispatch:
            dispatch(e);
            break;
        case Event::Method:
            method(e);
            break;
        case Event::SaveLoad: case Event::Reload:
            saveLoad(e.kind == Event::Reload);
            break;
        case Event::Resize:
            if (e.extra == 0)
                m_control->setWidth(e.key);
            else if (e.extra == 1)
                m_control->setHeight(e.key);
            else
                m_control->resize(qBound(0, e.key, 3000), qBound(0, e.mods, 400));
            break;
        }
        g_busySince = 0;
    }

    void focusField()
    {
        if (QApplication::activeWindow() != &m_window) {
            m_window.activateWindow();
            QApplication::setActiveWindow(&m_window);
        }
        for (const char16_t *name : {u"Text1(0)", u"Text1(1)", u"Combo1", u"Check1"}) {
            QWidget *w = child(QString::fromUtf16(name));
            if (w && w->isEnabled()) {
                w->setFocus(Qt::MouseFocusReason);
                return;
            }
        }
    }

    void click(const Event &e, QWidget *w)
    {
        const QPoint p = at(w, e.key, e.mods);
        if (e.kind == Event::DoubleClick) {
            QTest::mouseDClick(w, Qt::LeftButton, {}, p);
            return;
        }
        if (e.kind == Event::Click) {
            QTest::mouseClick(w, Qt::LeftButton, {}, p);
            return;
        }
        const bool wasActive = QApplication::activeWindow() == &m_window;
        QTest::mouseClick(w, Qt::RightButton, {}, p);
        // The context menu a real right click opens; a modal one must not block the run.
        QTimer guard;
        guard.setSingleShot(true);
        QObject::connect(&guard, &QTimer::timeout, [] {
            if (QWidget *popup = QApplication::activePopupWidget())
                popup->close();
        });
        guard.start(0);
        QContextMenuEvent menuEvent(QContextMenuEvent::Mouse, p, w->mapToGlobal(p));
        QApplication::sendEvent(w, &menuEvent);
        guard.stop();
        if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())) {
            QList<QAction *> actions;
            for (QAction *a : menu->actions())
                if (a->isEnabled() && !a->isSeparator() && !a->menu())
                    actions << a;
            const int choice = e.extra % int(actions.size() + 1);
            if (choice > 0) {
                const QString action = actions[choice - 1]->objectName();
                m_undone = action == u"edit-undo" || action == u"edit-redo";
                actions[choice - 1]->trigger();
            }
            menu->close();
        }
        // A closed popup gives the activation back to its window; offscreen it does not.
        if (wasActive && QApplication::activeWindow() != &m_window) {
            m_window.activateWindow();
            QApplication::setActiveWindow(&m_window);
        }
    }

    void dispatch(const Event &e)
    {
        const typemodel::ClassInfo *cls = typemodel::findClass(m_class);
        const typemodel::Member *m = cls ? typemodel::findMember(*cls, e.name) : nullptr;
        if (!m)
            return;
        const DispatchKind kind = DispatchKind(e.extra & 3);
        std::vector<Variant> args = e.args;
        const std::vector<Variant> put = args;
        const DispatchResult r = (e.extra & 4) ? dispatchInvoke(m_control, m->dispid, kind, args)
                                               : dispatchInvoke(m_control, m->name, kind, args);
        if (r.ok && kind == DispatchKind::PropertyPut && (m->name == u"Text" || m->name == u"Caption") && put[0].isString())
            m_textSet = {m->name, put[0].toString()};
        if (r.ok && kind == DispatchKind::Method && m->name == u"TooltipSet" && !put.empty())
            m_tooltipSet = put[0].toString();
    }

    void method(const Event &e)
    {
        const QMetaObject *mo = m_control->metaObject();
        const QByteArray name = e.name.toLatin1();
        for (int i = 0; i < mo->methodCount(); ++i) {
            const QMetaMethod m = mo->method(i);
            if (m.name() != name || m.parameterCount() != int(e.args.size()))
                continue;
            bool result = false;
            const QGenericReturnArgument ret = m.returnMetaType() == QMetaType::fromType<bool>() ? Q_RETURN_ARG(bool, result)
                                                                                               : QGenericReturnArgument();
            if (e.args.empty()) {
                m.invoke(m_control, Qt::DirectConnection, ret);
            } else if (m.parameterMetaType(0) == QMetaType::fromType<bool>()) {
                const bool b = e.args[0].toBool();
                m.invoke(m_control, Qt::DirectConnection, ret, Q_ARG(bool, b));
            } else if (m.parameterMetaType(0) == QMetaType::fromType<QString>()) {
                const QString s = e.args[0].toString();
                m.invoke(m_control, Qt::DirectConnection, ret, Q_ARG(QString, s));
                if (e.name == u"TooltipSet")
                    m_tooltipSet = s;
            }
            return;
        }
        if (e.args.empty())
            (void)m_control->property(name.constData());
    }

    static QString bagText(const MemoryPropertyBag &bag)
    {
        QStringList parts;
        for (const auto &entry : bag.entries())
            parts << entry.first + u'=' + describe(entry.second);
        return parts.join(u"; "_qs);
    }

    // A date's saved Value as the day it means: no entry is "Now", and so is today in digits (today
    // with a time of day is saved so, and reloads as today).
    static QString digits(double day)
    {
        const QChar zero = u'0';
        return QStringLiteral("%1%2%3").arg(Day(day), 2, 10, zero).arg(Month(day), 2, 10, zero).arg(Year(day), 4, 10, zero);
    }
    QString asDay(const QString &saved) const
    {
        return saved == digits(fromQDate(m_services->Today()).value_or(0)) ? u"Now"_qs : saved;
    }
    QString savedDay(const MemoryPropertyBag &bag) const
    {
        return asDay(bag.contains(u"Value"_qs) ? bag.value(u"Value"_qs).toString() : u"Now"_qs);
    }

    // The day a reload of a date must save. One saved unpinned under FirstDay or LastDay (a DaysFlag
    // put at run time pins nothing until the next commit) comes back pinned, as its commit would.
    std::optional<QString> reloadedDay(const MemoryPropertyBag &saved) const
    {
        const auto *date = qobject_cast<const KelDate *>(m_control);
        if (!date)
            return std::nullopt;
        const QString v = savedDay(saved);
        if (date->DaysFlag() != KelDate::FirstDay && date->DaysFlag() != KelDate::LastDay)
            return v;
        const auto day = v == u"Now"_qs ? fromQDate(m_services->Today())
                         : v.size() == 8 ? DateSerial(v.mid(4).toInt(), v.mid(2, 2).toInt(), v.left(2).toInt())
                                         : std::nullopt;
        if (!day)
            return v;
        return asDay(digits(date->DaysFlag() == KelDate::FirstDay ? DateSerial(Year(*day), Month(*day), 1).value_or(*day)
                                                                   : LastDayOfMonth(*day)));
    }

    // A combo showing under the limit a host's TextOriginal that is no item: loading refuses it.
    QString notCarried() const
    {
        if (const auto *combo = qobject_cast<const KelCombo *>(m_control)) {
            const QString t = combo->Combo1->Text();
            if (combo->LimitToList() && !t.isEmpty() && !combo->Combo1->items().contains(t))
                return u"Text"_qs;
        }
        return {};
    }

    void saveLoad(bool replace)
    {
        MemoryPropertyBag first;
        m_control->WriteProperties(first);
        QObject *o = createObject(m_class, &m_window);
        auto *fresh = qobject_cast<UserControl *>(o);
        if (!fresh) {
            delete o;
            return;
        }
        // A host sizes a control in pixels before it reads its properties, and shows it afterwards.
        // Twips that no whole pixel count carries (500 is 33.3 pixels) come from the saved form.
        fresh->setGeometry(m_control->geometry());
        if (twipsToPixelsX(m_control->Width()) * twipsPerPixelX() != m_control->Width())
            fresh->setWidth(m_control->Width());
        if (twipsToPixelsY(m_control->Height()) * twipsPerPixelY() != m_control->Height())
            fresh->setHeight(m_control->Height());
        fresh->ReadProperties(first);
        MemoryPropertyBag second;
        fresh->WriteProperties(second);
        QString unsaved = notCarried();
        // As saved again, never read as a day: a reload of "Now" must not take a time of day.
        const QString reloaded = second.contains(u"Value"_qs) ? second.value(u"Value"_qs).toString() : u"Now"_qs;
        if (const auto day = reloadedDay(first); day && reloaded == *day)
            unsaved = u"Value"_qs;
        const auto carried = [&](const MemoryPropertyBag &bag) {
            auto entries = bag.entries();
            entries.removeIf([&](const auto &e) { return e.first == unsaved; });
            return entries;
        };
        if (carried(first) != carried(second))
            m_bagError = u"saved: "_qs + bagText(first) + u"\nloaded and saved again: "_qs + bagText(second);
        if (!replace) {
            delete fresh;
            return;
        }
        delete m_control;
        m_control = fresh;
        m_control->show();
    }

    bool checkAll(const Event &e, const Before &b, QString *check, QString *message)
    {
        auto failed = [&](const QString &c, const QString &m) {
            *check = c;
            *message = m;
            return false;
        };
        QObject *c = m_control;
        const bool sameControl = b.control == m_control;

        if (!m_bagError.isEmpty()) {
            const QString text = m_bagError;
            m_bagError.clear();
            return failed(u"bag"_qs, text);
        }

        if (hasProperty(c, "MinValue") && hasProperty(c, "MaxValue")) {
            bool okMin = false, okMax = false;
            const double mn = number(c->property("MinValue"), &okMin), mx = number(c->property("MaxValue"), &okMax);
            if (okMin && okMax && !(mn <= mx))
                return failed(u"bounds"_qs, QStringLiteral("MinValue %1 > MaxValue %2").arg(mn, 0, 'g', 17).arg(mx, 0, 'g', 17));
            // Leaving the field commits what was typed, clamped into the bounds.
            if (okMin && okMax && sameControl && b.focusInside && !m_control->focusInside() && clampsOnExit()
                && !c->property("Locked").toBool()) {
                bool ok = false;
                const double v = number(c->property("Value"), &ok);
                if (ok && !(mn <= v && v <= mx))
                    return failed(u"clamp"_qs, QStringLiteral("Value %1 outside %2..%3 after leaving the field")
                                                  .arg(v, 0, 'g', 17).arg(mn, 0, 'g', 17).arg(mx, 0, 'g', 17));
            }
        }

        if (b.stepCheck && sameControl) {
            const double v = number(c->property("Value"));
            const double sign = b.step * b.direction;
            const bool ok = (sign > 0 ? v >= b.value : sign < 0 ? v <= b.value : v == b.value) && b.min <= v && v <= b.max;
            if (!ok)
                return failed(u"step"_qs, QStringLiteral("%1 with UpDownChange %2 in %3..%4 moved Value %5 to %6")
                                              .arg(b.direction > 0 ? u"Up"_qs : u"Down"_qs).arg(b.step, 0, 'g', 17)
                                              .arg(b.min, 0, 'g', 17).arg(b.max, 0, 'g', 17).arg(b.value, 0, 'g', 17).arg(v, 0, 'g', 17));
        }

        const QString raw = rawText();
        if (hasProperty(c, "TextOriginal") && hasProperty(c, "Changed")) {
            const bool changed = c->property("Changed").toBool();
            if (changed != (raw != c->property("TextOriginal").toString()))
                return failed(u"changed"_qs, QStringLiteral("Changed is %1 for text %2 against TextOriginal %3")
                                                 .arg(changed).arg(escaped(raw), escaped(c->property("TextOriginal").toString())));
            const bool changedSaved = c->property("ChangedSaved").toBool();
            if (changedSaved != (raw != c->property("TextSaved").toString()))
                return failed(u"changed"_qs, QStringLiteral("ChangedSaved is %1 for text %2 against TextSaved %3")
                                                 .arg(changedSaved).arg(escaped(raw), escaped(c->property("TextSaved").toString())));
        }
        if (hasProperty(c, "ValueOriginal") && hasProperty(c, "Changed") && safeToRead()) {
            for (const char *pair : {"Original", "Saved"}) {
                const QByteArray flag = pair == QByteArrayView("Original") ? "Changed" : "ChangedSaved";
                const bool changed = c->property(flag.constData()).toBool();
                // The date and time fields' references hold what the host put, to the last bit; Qt's
                // property system shows them to the millisecond. Changed answers for the former.
                auto *dt = qobject_cast<DateTimeField *>(c);
                const Variant value = dt ? dt->Value() : toKel(c->property("Value"));
                const Variant reference = !dt ? toKel(c->property(QByteArray("Value") + pair))
                        : pair == QByteArrayView("Original") ? dt->ValueOriginal() : dt->ValueSaved();
                if (changed != changedFrom(reference, value))
                    return failed(u"changed"_qs, QStringLiteral("%1 is %2 for Value %3 against Value%4 %5")
                                                     .arg(QString::fromLatin1(flag)).arg(changed)
                                                     .arg(value.debugString(), QString::fromLatin1(pair), reference.debugString()));
            }
        }

        // Undo may bring back a longer text that code had set. A combo puts TextOriginal back, whatever
        // its length, when it refuses a keystroke or is left empty while mandatory.
        const bool restored = hasProperty(c, "LimitToList") && raw == c->property("TextOriginal").toString();
        if (hasProperty(c, "MaxLength") && sameControl && isTyping(e) && !m_undone && !isListItem(raw) && !restored) {
            const int max = c->property("MaxLength").toInt();
            if (max > 0 && characters(raw) > qMax(b.rawLength, qsizetype(max)))
                return failed(u"maxLength"_qs, QStringLiteral("MaxLength %1 but typing made %2 characters: %3")
                                                   .arg(max).arg(characters(raw)).arg(escaped(raw)));
        }

        if (m_textSet && sameControl) {
            const auto &[name, text] = *m_textSet;
            const bool caption = name == u"Caption";
            if (caption || hasProperty(c, "TextRaw")) {
                const QString back = caption ? c->property("Caption").toString() : raw;
                if (back != text)
                    return failed(u"textBack"_qs, QStringLiteral("%1 set to %2 reads back %3").arg(name, escaped(text), escaped(back)));
            }
        }
        if (m_tooltipSet && sameControl) {
            if (m_control->ExtenderToolTipText() != *m_tooltipSet)
                return failed(u"tooltip"_qs, QStringLiteral("TooltipSet(%1) left the extender's tip %2")
                                                 .arg(escaped(*m_tooltipSet), escaped(m_control->ExtenderToolTipText())));
            for (const char16_t *name : {u"Text1(0)", u"Text1(1)", u"Combo1", u"Check1", u"Picture1"})
                if (const Child *field = childNamed(name); field && field->ToolTipText() != *m_tooltipSet)
                    return failed(u"tooltip"_qs, QStringLiteral("TooltipSet(%1) left %2's tip %3")
                                                     .arg(escaped(*m_tooltipSet), field->widget()->objectName(), escaped(field->ToolTipText())));
        }
        if (m_options.extraCheck)
            if (const QString message = m_options.extraCheck(c); !message.isEmpty())
                return failed(u"extra"_qs, message);

        if (hasProperty(c, "ListCount")) {
            const int n = c->property("ListCount").toInt();
            if (n < 0 || n > 32767)
                return failed(u"listCount"_qs, QStringLiteral("ListCount %1").arg(n));
        }

        const LibrarySettings &colours = librarySettings();
        for (const char16_t *name : {u"Text1(0)", u"Text1(1)", u"Combo1"}) {
            const Child *field = childNamed(name);
            if (!field || !field->widget()->isVisible())
                continue;
            const quint32 back = field->BackColor();
            if (!m_control->focusInside() && (back == colours.FieldBackFocus || back == colours.FieldBackFocusLocked))
                return failed(u"colour"_qs, QStringLiteral("%1 shows the focus colour %2 without the focus")
                                                .arg(field->widget()->objectName()).arg(back, 0, 16));
        }

        for (const RecordingServices::Box &box : m_services->boxes)
            if (box.style != 64 || !box.title.startsWith(u"Invalid "_qs) || box.prompt.isEmpty())
                return failed(u"message"_qs, QStringLiteral("message box style %1 title %2 text %3")
                                                 .arg(box.style).arg(escaped(box.title), escaped(box.prompt)));
        m_services->boxes.clear();

        if (e.kind == Event::Resize || e.name == u"CaptionWidth") {
            const double h = m_control->Height();
            const QString heightRule = m_class == u"KelText" ? u"at least"_qs : u"exactly"_qs;
            if (layoutsFields() && (heightRule == u"exactly" ? h != 300 : h < 300))
                return failed(u"layout"_qs, QStringLiteral("height %1 twips, not %2 300").arg(h).arg(heightRule));
            if (hasProperty(c, "CaptionWidth") && c->property("CaptionWidth").toDouble() > m_control->Width() + 1)
                return failed(u"layout"_qs, QStringLiteral("caption %1 twips in a control %2 wide")
                                                .arg(c->property("CaptionWidth").toDouble()).arg(m_control->Width()));
        }
        return true;
    }

    // Characters, not UTF-16 units: a limit counts a character outside the basic plane once.
    static qsizetype characters(const QString &text) { return text.toUcs4().size(); }

    static bool isTyping(const Event &e)
    {
        return e.kind == Event::Key || e.kind == Event::Type || e.kind == Event::Paste || e.kind == Event::RightClick;
    }

    // Per-class knowledge the meta-object cannot give.
    bool clampsOnExit() const
    {
        if (m_class == u"KelDate") { // a pinned day may lie out of range again; a birthday is not pinned
            const int flag = m_control->property("DaysFlag").toInt();
            return flag == 0 || flag == 3;
        }
        return m_class == u"KelNumber" || m_class == u"KelTime";
    }
    // A combo completes what is typed to a whole item, which MaxLength does not cut: the limit
    // is on typing, not on the list.
    bool isListItem(const QString &text) const
    {
        const auto *combo = qobject_cast<const KelCombo *>(m_control);
        return combo && combo->Combo1->items().contains(text);
    }
    // Unlike <>, a Null on one side only is a change: a date cleared or newly entered.
    static bool changedFrom(const Variant &reference, const Variant &value)
    {
        return reference.isNull() ? !value.isNull() : value.isNull() || differs(reference, value);
    }
    bool layoutsFields() const
    {
        static const QStringList fields = {u"KelText"_qs, u"KelNumber"_qs, u"KelCombo"_qs, u"KelDate"_qs, u"KelTime"_qs};
        return fields.contains(m_class);
    }

    QString m_class;
    Options m_options;
    QWidget m_window;
    QWidget m_second;
    QLineEdit *m_other = nullptr;
    UserControl *m_control = nullptr;
    RecordingServices *m_services = nullptr;
    std::optional<std::pair<QString, QString>> m_textSet;
    std::optional<QString> m_tooltipSet;
    bool m_undone = false;
    QString m_bagError;
};

void noteEvent(int index, const Event &e)
{
    const QByteArray what = e.describe().left(400).toUtf8();
    snprintf(g_position, sizeof g_position, "randomuse: seed %llu, class %s, event %d: %s\n",
             static_cast<unsigned long long>(g_seed), g_class.constData(), index, what.constData());
}

extern "C" void onFatalSignal(int sig)
{
    writePosition();
    std::signal(sig, SIG_DFL);
    std::raise(sig);
}

} // namespace

// -------------------------------------------------------------------------------------------------

QString Event::describe() const
{
    if (refocus) {
        Event plain = *this;
        plain.refocus = false;
        return u"into the field, "_qs + plain.describe();
    }
    switch (kind) {
    case Key: return QStringLiteral("key %1 text %2").arg(QKeySequence(key | mods).toString(), escaped(text));
    case Type: return u"type "_qs + escaped(text);
    case Paste: return u"paste "_qs + escaped(text) + (extra ? u" with Shift+Insert"_qs : u" with Ctrl+V"_qs);
    case Click: case RightClick: case DoubleClick: {
        const QString what = kind == Click ? u"click"_qs : kind == RightClick ? u"right click"_qs : u"double click"_qs;
        const QString menu = kind == RightClick ? QStringLiteral(", menu choice %1").arg(extra) : QString();
        return QStringLiteral("%1 %2 at (%3, %4) per mille%5").arg(what, name.isEmpty() ? u"the control"_qs : name).arg(key).arg(mods).arg(menu);
    }
    case FocusField: return QStringLiteral("focus %1 (reason %2)").arg(name.isEmpty() ? u"the control"_qs : name).arg(mods);
    case FocusOther: return u"focus the neighbour field"_qs;
    case SwitchWindow: return extra ? u"activate the second window and the form again"_qs : u"activate the second window"_qs;
    case SwitchBack: return u"activate the form again"_qs;
    case SetProperty: return QStringLiteral("setProperty(\"%1\", %2)").arg(name, ::kel::randomuse::describe(value));
    case Dispatch: {
        static const char *const kinds[] = {"get", "put", "call"};
        return QStringLiteral("dispatch %1 %2%3 (%4)").arg(QString::fromLatin1(kinds[extra & 3]), name,
                                                           (extra & 4) ? u" by id"_qs : QString(), describeArgs(args));
    }
    case Method: return QStringLiteral("%1(%2)").arg(name, describeArgs(args));
    case SaveLoad: return u"save, load into a fresh control, save again"_qs;
    case Reload: return u"save and replace the control by a fresh one loaded from the bag"_qs;
    case Resize:
        if (extra == 0)
            return QStringLiteral("Width = %1 twips").arg(key);
        if (extra == 1)
            return QStringLiteral("Height = %1 twips").arg(key);
        return QStringLiteral("resize to %1 x %2 pixels").arg(key).arg(mods);
    }
    return {};
}

QStringList controlClasses()
{
    registerKelControls8();
    QStringList out;
    for (const QString &name : ClassFactory::classNames())
        if (const typemodel::ClassInfo *cls = typemodel::findClass(name); cls && cls->isControl)
            out << name;
    return out;
}

std::vector<Event> generate(const QString &className, quint64 seed, int count)
{
    const ClassInfo &info = classInfo(className);
    Rng rng(seed);
    std::vector<Event> events;
    events.reserve(size_t(count));
    static const Qt::FocusReason reasons[] = {Qt::TabFocusReason, Qt::BacktabFocusReason, Qt::MouseFocusReason, Qt::OtherFocusReason};
    for (int i = 0; i < count; ++i) {
        Event e;
        const int r = rng.below(100);
        if (r < 22) {
            e.kind = Event::Key;
            if (rng.chance(45)) {
                const KeySpec &k = rng.pick(specialKeys());
                e.key = k.key, e.mods = k.mods, e.text = k.text;
            } else {
                const KeySpec k = keyForCharacter(rng.pick(characters()));
                e.key = k.key, e.mods = k.mods, e.text = k.text;
            }
        } else if (r < 32) {
            e.kind = Event::Type;
            e.text = randomString(rng).left(300);
        } else if (r < 36) {
            e.kind = Event::Paste;
            e.text = randomString(rng);
            e.extra = rng.below(2);
        } else if (r < 47) {
            const int c = rng.below(10);
            e.kind = c < 7 ? Event::Click : c < 9 ? Event::RightClick : Event::DoubleClick;
            e.name = rng.pick(info.children);
            e.key = rng.below(1000);
            e.mods = rng.below(1000);
            e.extra = rng.below(16);
        } else if (r < 53) {
            e.kind = rng.chance(75) ? Event::FocusField : Event::FocusOther;
            e.name = rng.pick(info.focusable);
            e.mods = reasons[rng.below(4)];
        } else if (r < 55) {
            e.kind = rng.chance(60) ? Event::SwitchWindow : Event::SwitchBack;
            e.extra = rng.chance(70);
        } else if (r < 72 && !info.properties.empty()) {
            e.kind = Event::SetProperty;
            const ClassInfo::Prop &p = rng.pick(info.properties);
            e.name = p.name;
            e.value = valueFor(rng, p.type);
            if (e.value.metaType() == QMetaType::fromType<bool>())
                e.value = usuallyUsable(rng, e.name, e.value.toBool());
        } else if (r < 84 && !info.members.empty()) {
            e.kind = Event::Dispatch;
            const typemodel::Member *m = rng.pick(info.members);
            e.name = m->name;
            const bool writable = m->access == typemodel::Access::ReadWrite || m->access == typemodel::Access::ReadWriteByRef;
            const DispatchKind kind = m->access == typemodel::Access::Method ? DispatchKind::Method
                                      : writable && rng.chance(70)          ? DispatchKind::PropertyPut
                                                                            : DispatchKind::PropertyGet;
            e.extra = int(kind) | (rng.chance(50) ? 4 : 0);
            if (kind == DispatchKind::PropertyPut) {
                e.args.push_back(variantFor(rng, m->type));
                if (const bool *b = e.args.back().get<bool>())
                    e.args.back() = usuallyUsable(rng, e.name, *b);
            } else {
                for (const typemodel::Argument &a : m->args)
                    if (!a.optional || rng.chance(70))
                        e.args.push_back(variantFor(rng, a.type));
            }
            if (rng.chance(4))
                e.args.push_back(randomVariant(rng));
        } else if (r < 91 && !info.methods.empty()) {
            e.kind = Event::Method;
            e.name = rng.pick(info.methods);
            if (e.name == u"TooltipSet")
                e.args.push_back(randomString(rng));
            else if (e.name == u"Valid" && rng.chance(70))
                e.args.push_back(rng.chance(80));
        } else if (r < 95) {
            e.kind = rng.chance(80) ? Event::SaveLoad : Event::Reload;
        } else {
            e.kind = Event::Resize;
            e.extra = rng.below(3);
            static const int twips[] = {0, 1, 99, 100, 150, 200, 295, 299, 300, 305, 338, 340, 500, 1500, 4500, 30000, -100};
            e.key = e.extra == 2 ? rng.below(600) : rng.chance(70) ? twips[rng.below(int(std::size(twips)))] : rng.below(6000);
            e.mods = rng.below(60);
        }
        if (e.kind == Event::Key || e.kind == Event::Type || e.kind == Event::Paste)
            e.refocus = rng.chance(50);
        events.push_back(std::move(e));
    }
    return events;
}

Failure run(const QString &className, const std::vector<Event> &events, const Options &options, int from)
{
    g_class = className.toUtf8();
    Session session(className, options);
    for (size_t i = 0; i < events.size(); ++i) {
        const int index = from + int(i);
        noteEvent(index, events[i]);
        const Failure f = session.apply(events[i], index);
        if (f.failed())
            return f;
    }
    snprintf(g_position, sizeof g_position, "randomuse: between runs\n");
    return {};
}

std::vector<Event> shrink(const QString &className, std::vector<Event> events, const Failure &failure,
                          const Options &options, int budgetSeconds)
{
    QElapsedTimer clock;
    clock.start();
    const quint64 seed = g_seed;
    if (failure.index >= 0 && size_t(failure.index) < events.size())
        events.resize(size_t(failure.index) + 1);
    auto stillFails = [&](const std::vector<Event> &candidate) {
        return run(className, candidate, options).check == failure.check;
    };
    // Delta debugging: drop ever smaller chunks while the same check still fails.
    size_t chunks = 2;
    while (events.size() >= 2 && clock.elapsed() < budgetSeconds * 1000) {
        const size_t size = (events.size() + chunks - 1) / chunks;
        bool reduced = false;
        for (size_t start = 0; start < events.size() && clock.elapsed() < budgetSeconds * 1000; start += size) {
            std::vector<Event> candidate(events.begin(), events.begin() + qsizetype(start));
            candidate.insert(candidate.end(), events.begin() + qsizetype(qMin(start + size, events.size())), events.end());
            if (!candidate.empty() && stillFails(candidate)) {
                events = std::move(candidate);
                chunks = qMax<size_t>(chunks - 1, 2);
                reduced = true;
                break;
            }
        }
        if (!reduced) {
            if (chunks >= events.size())
                break;
            chunks = qMin(chunks * 2, events.size());
        }
    }
    g_seed = seed;
    return events;
}

QString report(const QString &className, quint64 seed, const Failure &failure, const std::vector<Event> &shrunk)
{
    QString out = QStringLiteral("%1, seed %2, event %3: %4: %5\nshortest failing list (%6 events):\n")
                      .arg(className).arg(seed).arg(failure.index).arg(failure.check, failure.message).arg(shrunk.size());
    for (size_t i = 0; i < shrunk.size(); ++i)
        out += QStringLiteral("  %1. %2\n").arg(i + 1).arg(shrunk[i].describe());
    return out;
}

void setPosition(quint64 seed, const QString &className)
{
    g_seed = seed;
    g_class = className.toUtf8();
}

void installCrashReporter()
{
#ifdef KEL_HAVE_SANITIZER_CALLBACK
    __sanitizer_set_death_callback(writePosition);
#endif
    for (int sig : {SIGSEGV, SIGABRT, SIGFPE, SIGBUS, SIGILL})
        std::signal(sig, onFatalSignal);
    static const int hang = [] {
        const int seconds = qEnvironmentVariableIntValue("KEL_RANDOMUSE_HANG_SECONDS");
        return seconds > 0 ? seconds : Options().hangSeconds;
    }();
    std::thread([] {
        for (;;) {
            std::this_thread::sleep_for(std::chrono::seconds(1));
            const qint64 since = g_busySince;
            if (since && nowMs() - since > hang * 1000LL) {
                const char hung[] = "randomuse: hang (no progress) at:\n";
                const ssize_t n = ::write(2, hung, sizeof hung - 1);
                Q_UNUSED(n);
                writePosition();
                _exit(3);
            }
        }
    }).detach();
}

} // namespace kel::randomuse
