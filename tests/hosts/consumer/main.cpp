// Uses the installed library the three ways a host can; exits non-zero on the first difference.
#include <KelControls8/kelcontrols8.h>

#include "platform/variant.h" // the application's own
#include "ui_orderform.h"

#include <QApplication>
#include <QFile>
#include <QUiLoader>
#include <cstdio>

static int failures = 0;

// The same two values, however the form was made.
static void checkForm(QWidget *form, const char *how)
{
    auto *customer = form ? form->findChild<kel::KelText *>(QStringLiteral("customer")) : nullptr;
    auto *amount = form ? form->findChild<kel::KelNumber *>(QStringLiteral("amount")) : nullptr;
    if (!customer || customer->Text() != QStringLiteral("Smith & Sons") || !amount || amount->Value().toDouble() != 1234.5
        || amount->Decimals() != 2) {
        std::fprintf(stderr, "consumer: %s\n", how);
        ++failures;
    }
}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);

    // C++ code and a property bag.
    QWidget coded;
    auto *customer = new kel::KelText(&coded);
    customer->setObjectName(QStringLiteral("customer"));
    kel::MemoryPropertyBag bag;
    bag.set(QStringLiteral("Text"), QStringLiteral("Smith & Sons"));
    customer->ReadProperties(bag);
    auto *amount = qobject_cast<kel::KelNumber *>(kel::createObject(QStringLiteral("KelNumber"), &coded));
    amount->setObjectName(QStringLiteral("amount"));
    amount->setDecimals(2);
    amount->setValue(1234.5);
    checkForm(&coded, "C++");

    // uic.
    QWidget compiled;
    Ui::OrderForm ui;
    ui.setupUi(&compiled);
    checkForm(&compiled, "uic");

    // QUiLoader with the installed Designer plugin.
    QUiLoader loader;
    loader.addPluginPath(QStringLiteral(KEL_DESIGNER_PLUGIN_DIR));
    QFile source(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString());
    std::unique_ptr<QWidget> loaded(source.open(QIODevice::ReadOnly) ? loader.load(&source) : nullptr);
    checkForm(loaded.get(), "QUiLoader");
    if (app::Variant().answer != 42)
        ++failures;
    std::printf("consumer: %s\n", failures ? "FAILED" : "ok");
    return failures ? 1 : 0;
}
