// Built with nothing but pkg-config's flags.
#include <KelControls8/kelcontrols8.h>

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    std::unique_ptr<QObject> text(kel::createObject(QStringLiteral("KelText")));
    return qobject_cast<kel::KelText *>(text.get()) ? 0 : 1;
}
