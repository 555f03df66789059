#pragma once
// What a user sees of one widget or action of a form, as text, for comparing two builds of it.
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QWidget>

namespace kel::test {

// A widget's state as a user sees it, for comparing two builds of one form.
inline QString state(const QObject *o)
{
    QString out = QString::fromLatin1(o->metaObject()->className());
    if (const auto *w = qobject_cast<const QWidget *>(o)) {
        const QRect g = w->geometry();
        out += QStringLiteral(" %1,%2 %3x%4 hidden=%5 enabled=%6 font=%7/%8/%9 tip=%10")
                   .arg(g.x()).arg(g.y()).arg(g.width()).arg(g.height()).arg(w->isHidden()).arg(w->isEnabled())
                   .arg(w->font().family()).arg(w->font().pointSize()).arg(w->font().bold()).arg(w->toolTip());
        out += QStringLiteral(" colours=%1/%2/%3").arg(w->palette().color(QPalette::Window).name(), w->palette().color(QPalette::WindowText).name(),
                                                       w->palette().color(QPalette::Base).name());
        if (const auto *box = qobject_cast<const QComboBox *>(w))
            for (int i = 0; i < box->count(); ++i)
                out += QStringLiteral(" item=") + box->itemText(i);
        if (const auto *list = qobject_cast<const QListWidget *>(w))
            for (int i = 0; i < list->count(); ++i)
                out += QStringLiteral(" item=") + list->item(i)->text();
    }
    for (const char *name : {"text", "title", "plainText", "windowTitle", "checked", "checkable", "currentText", "currentIndex", "maxLength",
                             "echoMode", "readOnly", "shortcut", "orientation", "minimum", "maximum", "value", "default", "Cancel",
                             "Tag", "Index", "ItemData", "scaledContents", "styleSheet", "frameShape", "alignment", "wordWrap"}) {
        const QVariant v = o->property(name);
        if (v.isValid())
            out += QStringLiteral(" %1=%2").arg(QLatin1String(name), v.metaType().id() == QMetaType::QStringList ? v.toStringList().join(u',') : v.toString());
    }
    if (const auto *l = qobject_cast<const QLabel *>(o); l && !l->pixmap().isNull())
        out += QStringLiteral(" pixmap=%1x%2").arg(l->pixmap().width()).arg(l->pixmap().height());
    return out;
}

// The window itself or its descendant of that name.
inline const QObject *named(const QWidget *window, const QString &name)
{
    return window->objectName() == name ? window : window->findChild<QObject *>(name);
}

// The fragments of `expected` ("; " between) that state() of `name` in `window` lacks.
inline QString lacking(const QWidget *window, const QString &name, const QString &expected)
{
    const QObject *o = named(window, name);
    if (!o)
        return name + QStringLiteral(": none");
    const QString s = state(o);
    QStringList lacks;
    for (const QString &fragment : expected.split(QStringLiteral("; ")))
        if (!s.contains(fragment))
            lacks << fragment;
    return lacks.isEmpty() ? QString() : s + QStringLiteral("\n  lacks: ") + lacks.join(QStringLiteral("; "));
}

} // namespace kel::test
