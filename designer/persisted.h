#pragma once
// The design-time properties of a control as the control itself knows them: the names it reads
// from a property bag when a saved form is loaded, with their defaults, in its reading order.
// Learnt by loading a throwaway instance from a bag that records what is asked of it.
#include "controls/kelcontrols8.h"
#include "forms/usercontrol.h"
#include "platform/propertybag.h"

#include <QDateTime>
#include <QMetaEnum>
#include <QMetaProperty>
#include <QVariant>
#include <QXmlStreamWriter>
#include <algorithm>
#include <memory>
#include <vector>

namespace kel {

struct PersistedProperty {
    QString name;
    Variant value;   // the default it is read with (or, in tests, a sample value)
    QString property; // the Q_PROPERTY it sets: bag names may differ from it in case only
};

class RecordingPropertyBag : public PropertyBag
{
public:
    Variant ReadProperty(const QString &name, const Variant &defaultValue) override
    {
        // A control may look at a name before its turn (to see whether it is stored at all).
        if (std::none_of(read.begin(), read.end(), [&](const PersistedProperty &p) { return p.name == name; }))
            read.push_back({name, defaultValue, name});
        return defaultValue;
    }
    void WriteProperty(const QString &, const Variant &, const Variant &) override {}

    std::vector<PersistedProperty> read;
};

inline std::vector<PersistedProperty> persistedProperties(const QString &className)
{
    std::unique_ptr<QObject> object(createObject(className));
    auto *control = qobject_cast<UserControl *>(object.get());
    if (!control)
        return {};
    RecordingPropertyBag bag;
    control->ReadProperties(bag);
    // The control's own property of that name, before Qt's ("Enabled", not "enabled").
    const QMetaObject *mo = control->metaObject();
    for (PersistedProperty &p : bag.read) {
        p.property = p.name;
        for (int i = mo->propertyCount() - 1; i >= 0; --i) {
            const QString name = QString::fromLatin1(mo->property(i).name());
            if (name.compare(p.name, Qt::CaseInsensitive) == 0) {
                p.property = name;
                break;
            }
        }
    }
    return std::move(bag.read);
}

// A value as .ui files, QUiLoader and uic code carry it: bool, int, double, QString, QDate, QTime,
// QDateTime, an enumeration, or an invalid QVariant for Empty and Null (which a .ui cannot hold).
inline QVariant plainValue(const QVariant &q)
{
    if (q.metaType() == QMetaType::fromType<std::nullptr_t>())
        return {};
    if (q.metaType() == QMetaType::fromType<qint16>())
        return q.toInt();
    return q;
}

inline QVariant plainValue(const Variant &v) { return plainValue(toQVariant(v)); }

// <property name="..."> with a value of plainValue() in Designer's own notation.
inline void writeUiProperty(QXmlStreamWriter &xml, const QString &name, const QVariant &value)
{
    using namespace Qt::StringLiterals;
    const auto dateParts = [&](QDate d) {
        xml.writeTextElement(u"year"_s, QString::number(d.year()));
        xml.writeTextElement(u"month"_s, QString::number(d.month()));
        xml.writeTextElement(u"day"_s, QString::number(d.day()));
    };
    const auto timeParts = [&](QTime t) {
        xml.writeTextElement(u"hour"_s, QString::number(t.hour()));
        xml.writeTextElement(u"minute"_s, QString::number(t.minute()));
        xml.writeTextElement(u"second"_s, QString::number(t.second()));
    };
    xml.writeStartElement(u"property"_s);
    xml.writeAttribute(u"name"_s, name);
    switch (value.metaType().id()) {
    case QMetaType::Bool: xml.writeTextElement(u"bool"_s, value.toBool() ? u"true"_s : u"false"_s); break;
    case QMetaType::Int: xml.writeTextElement(u"number"_s, QString::number(value.toInt())); break;
    case QMetaType::Double: xml.writeTextElement(u"double"_s, QString::number(value.toDouble(), 'g', 17)); break;
    case QMetaType::QDate:
        xml.writeStartElement(u"date"_s);
        dateParts(value.toDate());
        xml.writeEndElement();
        break;
    case QMetaType::QDateTime:
        xml.writeStartElement(u"datetime"_s);
        timeParts(value.toDateTime().time());
        dateParts(value.toDateTime().date());
        xml.writeEndElement();
        break;
    case QMetaType::QTime:
        xml.writeStartElement(u"time"_s);
        timeParts(value.toTime());
        xml.writeEndElement();
        break;
    default:
        if (const QMetaObject *scope = value.metaType().metaObject();
            scope && value.metaType().flags().testFlag(QMetaType::IsEnumeration)) {
            // Qualified by its class, as uic needs it.
            QByteArray enumName = value.metaType().name();
            enumName = enumName.mid(enumName.lastIndexOf(':') + 1);
            const QMetaEnum e = scope->enumerator(scope->indexOfEnumerator(enumName.constData()));
            xml.writeTextElement(u"enum"_s, QLatin1StringView(scope->className()) + u"::"_s
                                                 + QLatin1StringView(e.valueToKey(value.toInt())));
            break;
        }
        xml.writeTextElement(u"string"_s, value.toString());
        break;
    }
    xml.writeEndElement();
}

} // namespace kel
