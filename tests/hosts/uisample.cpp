#include "uisample.h"

#include "library/typemodel.h"

#include <QBuffer>
#include <QHash>
#include <QUiLoader>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace kel::test {

QStringList controlClasses()
{
    registerKelControls8();
    QStringList names;
    for (const QString &name : ClassFactory::classNames())
        if (const auto *cls = typemodel::findClass(name); cls && cls->isControl)
            names << name;
    return names;
}

QString sampleObjectName(const QString &className)
{
    return className.at(0).toLower() + className.mid(1);
}

// Values that exercise order: Decimals rounds Value, MinValue and MaxValue bracket it, DaysFlag
// pins the day, List holds Text, the bar's range lies below its default one. UpDownChange needs
// every digit a double carries. "Class.Name" rows are for where the generic value is invalid for
// the class, or its type stores another.
static const QHash<QString, Variant> &values()
{
    static const QHash<QString, Variant> values = {
        {u"Caption"_s, u"Sample caption"_s}, {u"CaptionWidth"_s, qint16(1200)}, {u"Decimals"_s, qint16(3)},
        {u"MaxLength"_s, qint16(40)},        {u"MaxValue"_s, 500.1234},            {u"MinValue"_s, -50.0},
        {u"PasswordChar"_s, u"*"_s},         {u"Text"_s, u"Sample text"_s},     {u"UpDownChange"_s, 2.345678901},
        {u"Value"_s, 123.4567},
        {u"KelDate.DaysFlag"_s, qint16(2)},   {u"KelDate.Format"_s, u"mm/dd/yyyy"_s},
        {u"KelDate.MaxValue"_s, Date{47848}}, {u"KelDate.MinValue"_s, Date{32874}}, // 31/12/2030, 01/01/1990
        {u"KelDate.Value"_s, u"15032013"_s},
        {u"KelTime.Format"_s, u"hh:nn:ss"_s}, {u"KelTime.MaxValue"_s, Date{0.75}},
        {u"KelTime.MinValue"_s, Date{0.25}},  {u"KelTime.Value"_s, Date{0.5625}},
        {u"KelCombo.List"_s, u"Apples,Pears,\"Plums, red\""_s}, {u"KelCombo.ListTag"_s, u"A,P,R"_s},
        {u"KelCombo.Text"_s, u"Pears"_s},
        // Below the default maximum, so that a Max that went to Min would be seen.
        {u"KelProgressBar.Max"_s, qint32(50)}, {u"KelProgressBar.Min"_s, qint32(10)},
        // A combo's Enabled reads back its own enabled state, which its put leaves on: a disabled
        // combo cannot be saved by what it reads, so the sample keeps it enabled.
        {u"KelCombo.Enabled"_s, true},
    };
    return values;
}

std::vector<PersistedProperty> sampleValues(const QString &className)
{
    std::vector<PersistedProperty> out;
    for (const PersistedProperty &p : persistedProperties(className)) {
        const Variant &d = p.value;
        if (const auto own = values().constFind(className + u'.' + p.name); own != values().cend()) {
            out.push_back({p.name, *own, p.property});
            continue;
        }
        Variant v = values().value(p.name);
        if (v.type() != d.type() || !differs(v, d)) {
            switch (d.type()) {
            case Variant::Type::Boolean: v = !d.toBool(); break;
            case Variant::Type::Integer: v = qint16(d.toInt16() + 3); break;
            case Variant::Type::Long: v = qint32(d.toInt32() + 3); break;
            case Variant::Type::Double: v = d.toDouble() + 1.5; break;
            case Variant::Type::Date: v = Date{d.toDate().serial + 1}; break;
            default: v = u"Sample "_s + p.name; break;
            }
        }
        out.push_back({p.name, v, p.property});
    }
    return out;
}

QString sampleUi(UiOrder order)
{
    QString widgets, customWidgets;
    int y = 8;
    for (const QString &className : controlClasses()) {
        std::unique_ptr<QObject> probe(createObject(className));
        const QMetaObject *mo = probe->metaObject();
        const std::vector<PersistedProperty> props = sampleValues(className);
        // Designer saves what each property reads once the values are set.
        MemoryPropertyBag bag;
        for (const PersistedProperty &p : props)
            bag.set(p.name, p.value);
        qobject_cast<UserControl *>(probe.get())->ReadProperties(bag);
        const auto sheetIndex = [mo](const PersistedProperty *p) { return mo->indexOfProperty(p->property.toUtf8().constData()); };
        // Sorted by address: moving the entries themselves trips GCC 12's -Wmaybe-uninitialized at -O3.
        std::vector<const PersistedProperty *> sorted;
        for (const PersistedProperty &p : props)
            sorted.push_back(&p);
        std::stable_sort(sorted.begin(), sorted.end(), [&](const PersistedProperty *a, const PersistedProperty *b) {
            switch (order) {
            case UiOrder::PropertySheet: return sheetIndex(a) < sheetIndex(b);
            case UiOrder::Reversed: return sheetIndex(a) > sheetIndex(b);
            case UiOrder::Alphabetical: return a->property < b->property;
            }
            return false;
        });
        QString properties;
        QXmlStreamWriter xml(&properties);
        for (const PersistedProperty *p : sorted)
            if (const QVariant v = plainValue(probe->property(p->property.toUtf8().constData())); v.isValid())
                writeUiProperty(xml, p->property, v);
        // One arg() call: a value's own "%1" stays as it is.
        widgets += uR"(<widget class="kel::%1" name="%2"><property name="geometry"><rect><x>8</x><y>%3</y>)"
                   uR"(<width>320</width><height>40</height></rect></property>%4</widget>)"_s
                       .arg(className, sampleObjectName(className), QString::number(y), properties);
        customWidgets += uR"(<customwidget><class>kel::%1</class><extends>QWidget</extends>)"
                         uR"(<header location="global">KelControls8/kelcontrols8.h</header></customwidget>)"_s.arg(className);
        y += 48;
    }
    return uR"(<?xml version="1.0" encoding="UTF-8"?><ui version="4.0"><class>KelForm</class>)"
           uR"(<widget class="QWidget" name="KelForm">%1</widget><customwidgets>%2</customwidgets></ui>)"_s
               .arg(widgets, customWidgets);
}

std::unique_ptr<QWidget> loadUi(const QString &ui, QString *error)
{
    QByteArray xml = ui.toUtf8();
    QBuffer buffer(&xml);
    QUiLoader loader;
    loader.clearPluginPaths();
    loader.addPluginPath(QStringLiteral(KEL_PLUGIN_DIR));
    std::unique_ptr<QWidget> form(loader.load(&buffer));
    *error = loader.errorString();
    return form;
}

} // namespace kel::test
