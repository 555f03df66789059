#include "uiwriter.h"

#include "designer/persisted.h"
#include "forms/usercontrol.h"

#include <QAction>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QIcon>
#include <QKeySequence>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMetaProperty>
#include <QPalette>
#include <QSaveFile>
#include <QSet>
#include <QXmlStreamWriter>

using namespace Qt::StringLiterals;

namespace kel::classic {

namespace {

QString tr(const char *text) { return QCoreApplication::translate("kel::classic::UiWriter", text); }

class Writer
{
public:
    Writer(const ImportedForm &form, const QString &imageDir) : m_form(form), m_imageDir(imageDir), m_xml(&m_doc.xml) {}

    UiDocument write();

private:
    void widget(const QWidget *w, bool top);
    void property(const QObject *o, const QByteArray &name);
    void value(const QVariant &v, const QMetaProperty &meta);
    void ourProperties(const UserControl *c);
    QString image(const QObject *o, const QPixmap &pixmap);
    void numbers(std::initializer_list<std::pair<QString, int>> fields);
    void rect(const QRect &r);
    void color(const QColor &c);
    void actions(const QWidget *w);

    const ImportedForm &m_form;
    QString m_imageDir;
    UiDocument m_doc;
    QXmlStreamWriter m_xml;
    QSet<QString> m_customClasses;
};

void Writer::numbers(std::initializer_list<std::pair<QString, int>> fields)
{
    for (const auto &[name, value] : fields)
        m_xml.writeTextElement(name, QString::number(value));
}

void Writer::rect(const QRect &r)
{
    m_xml.writeStartElement(u"rect"_s);
    numbers({{u"x"_s, r.x()}, {u"y"_s, r.y()}, {u"width"_s, r.width()}, {u"height"_s, r.height()}});
    m_xml.writeEndElement();
}

void Writer::color(const QColor &c)
{
    m_xml.writeStartElement(u"color"_s);
    m_xml.writeAttribute(u"alpha"_s, QString::number(c.alpha()));
    numbers({{u"red"_s, c.red()}, {u"green"_s, c.green()}, {u"blue"_s, c.blue()}});
    m_xml.writeEndElement();
}

QString Writer::image(const QObject *o, const QPixmap &pixmap)
{
    QString path = m_imageDir + u'/' + o->objectName() + u".png"_s;
    for (int n = 2; m_doc.images.contains(path); ++n)
        path = m_imageDir + u'/' + o->objectName() + u'_' + QString::number(n) + u".png"_s;
    m_doc.images.insert(path, pixmap);
    return path;
}

void Writer::value(const QVariant &v, const QMetaProperty &meta)
{
    if (meta.isValid() && meta.isEnumType()) {
        const QMetaEnum e = meta.enumerator();
        const QString scope = QString::fromLatin1(e.scope()) + u"::"_s;
        const int n = v.toInt();
        if (e.isFlag()) {
            QStringList keys = QString::fromLatin1(e.valueToKeys(n)).split(u'|');
            for (QString &k : keys)
                k.prepend(scope);
            m_xml.writeTextElement(u"set"_s, keys.join(u'|'));
        } else {
            m_xml.writeTextElement(u"enum"_s, scope + QString::fromLatin1(e.valueToKey(n)));
        }
        return;
    }
    switch (v.metaType().id()) {
    case QMetaType::QFont: {
        const QFont f = v.value<QFont>();
        m_xml.writeStartElement(u"font"_s);
        m_xml.writeTextElement(u"family"_s, f.family());
        m_xml.writeTextElement(u"pointsize"_s, QString::number(f.pointSize()));
        m_xml.writeTextElement(u"bold"_s, f.bold() ? u"true"_s : u"false"_s);
        m_xml.writeTextElement(u"italic"_s, f.italic() ? u"true"_s : u"false"_s);
        m_xml.writeTextElement(u"underline"_s, f.underline() ? u"true"_s : u"false"_s);
        m_xml.writeTextElement(u"strikeout"_s, f.strikeOut() ? u"true"_s : u"false"_s);
        m_xml.writeEndElement();
        return;
    }
    case QMetaType::QPalette: {
        const QPalette p = v.value<QPalette>();
        m_xml.writeStartElement(u"palette"_s);
        for (const auto &[group, tag] : {std::pair{QPalette::Active, u"active"_s}, std::pair{QPalette::Inactive, u"inactive"_s},
                                         std::pair{QPalette::Disabled, u"disabled"_s}}) {
            m_xml.writeStartElement(tag);
            for (int role = 0; role < QPalette::NColorRoles; ++role) {
                const auto r = QPalette::ColorRole(role);
                if (group == QPalette::Disabled || !p.isBrushSet(group, r))
                    continue;
                m_xml.writeStartElement(u"colorrole"_s);
                m_xml.writeAttribute(u"role"_s, QString::fromLatin1(QMetaEnum::fromType<QPalette::ColorRole>().valueToKey(role)));
                m_xml.writeStartElement(u"brush"_s);
                m_xml.writeAttribute(u"brushstyle"_s, u"SolidPattern"_s);
                color(p.color(group, r));
                m_xml.writeEndElement();
                m_xml.writeEndElement();
            }
            m_xml.writeEndElement();
        }
        m_xml.writeEndElement();
        return;
    }
    case QMetaType::QSize:
        m_xml.writeStartElement(u"size"_s);
        numbers({{u"width"_s, v.toSize().width()}, {u"height"_s, v.toSize().height()}});
        m_xml.writeEndElement();
        return;
    case QMetaType::QKeySequence:
        m_xml.writeTextElement(u"string"_s, v.value<QKeySequence>().toString(QKeySequence::PortableText));
        return;
    case QMetaType::QStringList:
        m_xml.writeStartElement(u"stringlist"_s);
        for (const QString &s : v.toStringList())
            m_xml.writeTextElement(u"string"_s, s);
        m_xml.writeEndElement();
        return;
    case QMetaType::Bool: m_xml.writeTextElement(u"bool"_s, v.toBool() ? u"true"_s : u"false"_s); return;
    case QMetaType::Int: m_xml.writeTextElement(u"number"_s, QString::number(v.toInt())); return;
    case QMetaType::Double: m_xml.writeTextElement(u"double"_s, QString::number(v.toDouble(), 'g', 17)); return;
    default: m_xml.writeTextElement(u"string"_s, v.toString()); return;
    }
}

void Writer::property(const QObject *o, const QByteArray &name)
{
    const QMetaObject *mo = o->metaObject();
    const int index = mo->indexOfProperty(name.constData());
    const QMetaProperty meta = index >= 0 ? mo->property(index) : QMetaProperty();
    const QVariant v = o->property(name.constData());
    const int type = v.metaType().id();
    if (type == QMetaType::QPixmap || type == QMetaType::QIcon) {
        const QPixmap pixmap = type == QMetaType::QPixmap ? v.value<QPixmap>() : [&] {
            const QIcon icon = v.value<QIcon>();
            const QList<QSize> sizes = icon.availableSizes();
            return icon.pixmap(sizes.isEmpty() ? QSize(32, 32) : sizes.first());
        }();
        const QString path = image(o, pixmap);
        m_xml.writeStartElement(u"property"_s);
        m_xml.writeAttribute(u"name"_s, QString::fromLatin1(name));
        if (type == QMetaType::QPixmap) {
            m_xml.writeTextElement(u"pixmap"_s, path);
        } else {
            m_xml.writeStartElement(u"iconset"_s);
            m_xml.writeTextElement(u"normaloff"_s, path);
            m_xml.writeCharacters(path);
            m_xml.writeEndElement();
        }
        m_xml.writeEndElement();
        return;
    }
    m_xml.writeStartElement(u"property"_s);
    m_xml.writeAttribute(u"name"_s, QString::fromLatin1(name));
    if (!meta.isValid())
        m_xml.writeAttribute(u"stdset"_s, u"0"_s);
    value(v, meta);
    m_xml.writeEndElement();
}

// The library's controls: what their own property writing stores, through their Qt properties,
// and whatever differs from a control that only its constructor made (uic makes them so: no
// property reading gives it the bag's defaults).
void Writer::ourProperties(const UserControl *c)
{
    MemoryPropertyBag bag;
    const_cast<UserControl *>(c)->WriteProperties(bag);
    const QString className = QString::fromLatin1(c->metaObject()->className()).section(u"::"_s, -1);
    const std::unique_ptr<QObject> bare(createObject(className));
    for (const PersistedProperty &p : persistedProperties(className)) {
        const QByteArray name = p.property.toLatin1();
        const QVariant value = plainValue(c->property(name.constData()));
        if (bag.contains(p.name) || (value.isValid() && value != plainValue(bare->property(name.constData()))))
            writeUiProperty(m_xml, p.property, value);
    }
}

void Writer::actions(const QWidget *w)
{
    for (const QAction *a : w->actions()) {
        if (a->isSeparator())
            m_xml.writeEmptyElement(u"addaction"_s), m_xml.writeAttribute(u"name"_s, u"separator"_s);
        else if (a->menu())
            m_xml.writeEmptyElement(u"addaction"_s), m_xml.writeAttribute(u"name"_s, a->menu()->objectName());
        else
            m_xml.writeEmptyElement(u"addaction"_s), m_xml.writeAttribute(u"name"_s, a->objectName());
    }
}

void Writer::widget(const QWidget *w, bool top)
{
    QString cls = QString::fromLatin1(w->metaObject()->className());
    const auto *control = qobject_cast<const UserControl *>(w);
    if (control)
        m_customClasses.insert(cls);
    m_xml.writeStartElement(u"widget"_s);
    m_xml.writeAttribute(u"class"_s, cls);
    m_xml.writeAttribute(u"name"_s, w->objectName());
    if (!qobject_cast<const QMenu *>(w) && (!w->parentWidget() || !qobject_cast<const QMainWindow *>(w->parentWidget()) || qobject_cast<const QMenuBar *>(w))) {
        m_xml.writeStartElement(u"property"_s);
        m_xml.writeAttribute(u"name"_s, u"geometry"_s);
        rect(top ? QRect(QPoint(0, 0), w->size()) : w->geometry());
        m_xml.writeEndElement();
    }
    if (control)
        ourProperties(control);
    for (const QByteArray &name : m_form.carried.value(w))
        property(w, name);
    if (const auto *box = qobject_cast<const QComboBox *>(w)) {
        for (int i = 0; i < box->count(); ++i) {
            m_xml.writeStartElement(u"item"_s);
            writeUiProperty(m_xml, u"text"_s, box->itemText(i));
            m_xml.writeEndElement();
        }
    } else if (const auto *list = qobject_cast<const QListWidget *>(w)) {
        for (int i = 0; i < list->count(); ++i) {
            m_xml.writeStartElement(u"item"_s);
            writeUiProperty(m_xml, u"text"_s, list->item(i)->text());
            m_xml.writeEndElement();
        }
    }
    for (const QObject *child : w->children())
        if (const auto *cw = qobject_cast<const QWidget *>(child); cw && m_form.carried.contains(cw))
            widget(cw, false);
    if (qobject_cast<const QMenu *>(w) || qobject_cast<const QMenuBar *>(w))
        actions(w);
    if (top) {
        // Actions belong to the window in a .ui file.
        for (const QAction *a : w->findChildren<QAction *>())
            if (m_form.carried.contains(a)) {
                m_xml.writeStartElement(u"action"_s);
                m_xml.writeAttribute(u"name"_s, a->objectName());
                for (const QByteArray &name : m_form.carried.value(a))
                    property(a, name);
                m_xml.writeEndElement();
            }
    }
    m_xml.writeEndElement();
}

UiDocument Writer::write()
{
    m_xml.setAutoFormatting(true);
    m_xml.setAutoFormattingIndent(1);
    m_xml.writeStartDocument();
    m_xml.writeStartElement(u"ui"_s);
    m_xml.writeAttribute(u"version"_s, u"4.0"_s);
    const QWidget *window = m_form.window.get();
    m_xml.writeTextElement(u"class"_s, window->objectName());
    widget(window, true);
    if (!m_form.tabOrder.isEmpty()) {
        m_xml.writeStartElement(u"tabstops"_s);
        for (const QWidget *w : m_form.tabOrder)
            m_xml.writeTextElement(u"tabstop"_s, w->objectName());
        m_xml.writeEndElement();
    }
    if (!m_customClasses.isEmpty()) {
        m_xml.writeStartElement(u"customwidgets"_s);
        QStringList classes(m_customClasses.begin(), m_customClasses.end());
        classes.sort();
        for (const QString &cls : classes) {
            m_xml.writeStartElement(u"customwidget"_s);
            m_xml.writeTextElement(u"class"_s, cls);
            m_xml.writeTextElement(u"extends"_s, u"QWidget"_s);
            m_xml.writeStartElement(u"header"_s);
            m_xml.writeAttribute(u"location"_s, u"global"_s);
            m_xml.writeCharacters(u"KelControls8/kelcontrols8.h"_s);
            m_xml.writeEndElement();
            m_xml.writeEndElement();
        }
        m_xml.writeEndElement();
    }
    m_xml.writeEndElement();
    m_xml.writeEndDocument();
    // A raw carriage return would reach the reader as a plain line feed (XML normalises line
    // ends); the classic text keeps CR LF pairs, so every CR goes as a character reference.
    m_doc.xml.replace(u'\r', u"&#13;"_s);
    return std::move(m_doc);
}

} // namespace

UiDocument uiDocument(const ImportedForm &form, const QString &imageDir)
{
    return Writer(form, imageDir).write();
}

bool writeUi(const ImportedForm &form, const QString &uiPath, QString *error)
{
    const QFileInfo info(uiPath);
    const QString imageDir = info.completeBaseName() + u"_images"_s;
    const UiDocument doc = uiDocument(form, imageDir);
    // Pictures first, each complete or not at all; the .ui last, so that a form never names a
    // picture that is not there.
    if (!doc.images.isEmpty() && !QDir(info.absolutePath()).mkpath(imageDir)) {
        *error = tr("%1: cannot make the folder %2").arg(uiPath, imageDir);
        return false;
    }
    for (auto it = doc.images.cbegin(); it != doc.images.cend(); ++it) {
        QSaveFile f(QDir(info.absolutePath()).filePath(it.key()));
        if (!f.open(QIODevice::WriteOnly) || !it.value().save(&f, "PNG") || !f.commit()) {
            *error = tr("%1: cannot write %2").arg(uiPath, it.key());
            return false;
        }
    }
    QSaveFile f(uiPath);
    if (!f.open(QIODevice::WriteOnly) || f.write(doc.xml.toUtf8()) < 0 || !f.commit()) {
        *error = tr("%1: %2").arg(uiPath, f.errorString());
        return false;
    }
    return true;
}

} // namespace kel::classic
