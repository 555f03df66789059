// What a .ui loader or a script does: any QVariant of any type into any property of any class,
// through setProperty alone. Every property then reads back as a plain Qt value, and a value
// read back and written again reads back the same.
#include "controls/kelcontrols8.h"
#include "library/classfactory.h"
#include "platform/variant.h"
#include "reuse.h"

#include <QColor>
#include <QDateTime>
#include <QDebug>
#include <QFont>
#include <QRect>
#include <QUrl>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

using kel::fuzz::Reused;
using namespace Qt::StringLiterals;

namespace {

std::vector<std::unique_ptr<Reused<QObject>>> classes;

template<class T>
T take(const uint8_t *p, size_t n)
{
    T v{};
    std::memcpy(&v, p, std::min(sizeof v, n));
    return v;
}

QVariant valueOf(int kind, const uint8_t *p, size_t n)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(p), qsizetype(n));
    switch (kind) {
    case 0: return QVariant();
    case 1: return bool(n && p[0] & 1);
    case 2: return take<int>(p, n);
    case 3: return QVariant::fromValue(take<qint16>(p, n));
    case 4: return take<uint>(p, n);
    case 5: return take<qlonglong>(p, n);
    case 6: return take<double>(p, n);
    case 7: return take<float>(p, n);
    case 8: return text;
    case 9: return QByteArray(reinterpret_cast<const char *>(p), qsizetype(n));
    case 10: return QChar(take<char16_t>(p, n));
    case 11: return QDate::fromJulianDay(take<qint64>(p, n) % 10'000'000);
    case 12: return QTime::fromMSecsSinceStartOfDay(take<int>(p, n));
    case 13: return QDateTime(QDate::fromJulianDay(take<int>(p, n)), QTime::fromMSecsSinceStartOfDay(take<int>(p + std::min<size_t>(n, 4), n - std::min<size_t>(n, 4))));
    case 14: return QVariant::fromValue(nullptr);
    case 15: return text.split(u',');
    case 16: return QVariantList{take<int>(p, n), text};
    case 17: return QColor::fromRgba(take<QRgb>(p, n));
    case 18: return QRect(take<qint8>(p, n), 0, take<qint16>(p + std::min<size_t>(n, 1), n - std::min<size_t>(n, 1)), 5);
    case 19: return QUrl(text);
    case 20: return QVariant::fromValue(kel::Variant(text));
    case 21: return QVariant::fromValue(kel::Date{take<double>(p, n)});
    case 22: return QVariant::fromValue(take<qint8>(p, n));
    case 23: return take<qulonglong>(p, n);
    case 24: return QFont(text, take<qint8>(p, n));
    default: return text.toDouble(); // text as a number a host parsed itself
    }
}
constexpr int kKinds = 26;

// A plain Qt value, or one of the library's that converts to plain ones.
bool isPlain(const QMetaProperty &p, const QVariant &v)
{
    const QMetaType t = v.metaType();
    if (t == QMetaType::fromType<kel::Variant>() || t == QMetaType::fromType<kel::Date>())
        return QMetaType::canConvert(t, QMetaType::fromType<QString>())
                && QMetaType::canConvert(t, QMetaType::fromType<double>());
    return t.id() < QMetaType::User || p.isEnumType() || t == QMetaType::fromType<std::nullptr_t>();
}

// What a value shows: its type, and the library's own types by their kind and contents.
QString describe(const QVariant &v)
{
    if (v.metaType() == QMetaType::fromType<kel::Variant>()) {
        const kel::Variant k = v.value<kel::Variant>();
        return u"Variant(%1, %2)"_s.arg(int(k.type())).arg(k.debugString());
    }
    return QDebug::toString(v);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    kel::fuzz::startApplication(argc, argv);
    kel::registerKelControls8();
    for (const QString &name : kel::ClassFactory::classNames())
        classes.push_back(std::make_unique<Reused<QObject>>([name] { return std::unique_ptr<QObject>(kel::createObject(name)); }));
    return 0;
}

// A date at midnight reads as a QDate, with a time of day as a QDateTime: a time below a
// millisecond, which Qt's types cannot hold, may turn one into the other when written back.
bool sameMoment(const QVariant &a, const QVariant &b)
{
    auto moment = [](const QVariant &v) -> QDateTime {
        switch (v.typeId()) {
        case QMetaType::QDate: return v.toDate().startOfDay();
        case QMetaType::QDateTime: return v.toDateTime();
        case QMetaType::QTime: return QDateTime(QDate(1899, 12, 30), v.toTime());
        default: return {};
        }
    };
    const QDateTime x = moment(a), y = moment(b);
    return x.isValid() && y.isValid() && qAbs(x.msecsTo(y)) <= 1;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 1)
        return 0;
    QObject &object = classes[data[0] % classes.size()]->fresh();
    const std::vector<QMetaProperty> props = kel::fuzz::ownProperties(object.metaObject());
    for (size_t i = 1; i + 3 <= size;) {
        const QMetaProperty &p = props[data[i] % props.size()];
        const int kind = data[i + 1] % kKinds;
        const size_t len = std::min<size_t>(data[i + 2] % 64, size - i - 3);
        const QVariant value = valueOf(kind, data + i + 3, len);
        i += 3 + len;
        p.write(&object, value);
        for (const QMetaProperty &q : props) {
            const QVariant back = q.read(&object);
            if (!isPlain(q, back))
                qFatal("%s.%s <- %s: %s reads back as %s", object.metaObject()->className(), p.name(),
                       qPrintable(QDebug::toString(value)), q.name(), back.typeName());
            (void)back.toString();
            (void)back.toDouble();
            (void)back.toDateTime();
        }
        if (!p.isWritable())
            continue;
        const QVariant first = p.read(&object);
        if (first.typeId() == QMetaType::Double && std::isnan(first.toDouble()))
            qFatal("%s.%s <- %s reads back as NaN", object.metaObject()->className(), p.name(),
                   qPrintable(QDebug::toString(value)));
        p.write(&object, first);
        // Empty is "never assigned": written back, it is assigned, as Null.
        const QVariant again = p.read(&object);
        // An invalid QDate or QTime is how a date no Qt type can hold reads; written, it is Null.
        const bool noDate = (first.typeId() == QMetaType::QDate && !first.toDate().isValid())
                || (first.typeId() == QMetaType::QTime && !first.toTime().isValid())
                || (first.typeId() == QMetaType::QDateTime && !first.toDateTime().isValid());
        const bool assigned = (noDate || describe(first) == describe(kel::toQVariant(kel::Variant())))
                && describe(again) == describe(kel::toQVariant(kel::Variant(kel::Null)));
        if (describe(again) != describe(first) && !assigned && !sameMoment(first, again))
            qFatal("%s.%s <- %s reads %s, written back reads %s", object.metaObject()->className(), p.name(),
                   qPrintable(QDebug::toString(value)), qPrintable(describe(first)), qPrintable(describe(again)));
    }
    return 0;
}
