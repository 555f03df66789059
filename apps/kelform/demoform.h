#pragma once
#include <QWidget>

namespace kel::demo {

// Places one control at the next row of the demo form and returns it.
template<class C>
C *place(QWidget *form, int &y, const QString &name, int widthTwips = 4200)
{
    auto *c = new C(form);
    c->setObjectName(name);
    c->move(12, y);
    c->setWidth(widthTwips);
    c->setHeight(300);
    y += c->height() + 8;
    return c;
}

void addTextFields(QWidget *form, int &y);
void addNumberFields(QWidget *form, int &y);
void addDateFields(QWidget *form, int &y);
void addComboFields(QWidget *form, int &y);
void addCheckFields(QWidget *form, int &y);

} // namespace kel::demo
