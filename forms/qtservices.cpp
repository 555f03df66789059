#include "forms/qtservices.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

namespace kel {

int QtServices::MsgBox(const QString &prompt, int style, const QString &title)
{
    QMessageBox box(QApplication::activeWindow());
    box.setText(prompt);
    box.setWindowTitle(title.isEmpty() ? QApplication::applicationName() : title);
    switch (style & 0x70) {
    case 16: box.setIcon(QMessageBox::Critical); break;
    case 32: box.setIcon(QMessageBox::Question); break;
    case 48: box.setIcon(QMessageBox::Warning); break;
    case 64: box.setIcon(QMessageBox::Information); break;
    default: break;
    }
    // Classic button sets and their return codes.
    struct B { QMessageBox::StandardButton button; int code; };
    static const std::vector<std::vector<B>> sets = {
        {{QMessageBox::Ok, 1}},
        {{QMessageBox::Ok, 1}, {QMessageBox::Cancel, 2}},
        {{QMessageBox::Abort, 3}, {QMessageBox::Retry, 4}, {QMessageBox::Ignore, 5}},
        {{QMessageBox::Yes, 6}, {QMessageBox::No, 7}, {QMessageBox::Cancel, 2}},
        {{QMessageBox::Yes, 6}, {QMessageBox::No, 7}},
        {{QMessageBox::Retry, 4}, {QMessageBox::Cancel, 2}},
    };
    const auto &set = sets[size_t(style & 7) < sets.size() ? size_t(style & 7) : 0];
    for (const B &b : set)
        box.addButton(b.button);
    // 256 and 512 make the second and third button the default.
    if (const size_t first = size_t(style >> 8) & 3; first < set.size())
        box.setDefaultButton(set[first].button);
    box.exec();
    for (const B &b : set)
        if (box.clickedButton() == box.button(b.button))
            return b.code;
    return set.back().code;
}

void QtServices::Beep() { QApplication::beep(); }
float QtServices::Timer() { return secondsSinceMidnight(); }
QDate QtServices::Today() { return QDate::currentDate(); }
QDateTime QtServices::Now() { return QDateTime::currentDateTime(); }

void installQtServicesIfNone()
{
    if (!hasInstalledServices())
        setServices(std::make_unique<QtServices>());
}

} // namespace kel
