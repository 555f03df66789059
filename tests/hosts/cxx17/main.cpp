#include <KelControls8/KelNumber>

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    kel::KelNumber number;
    number.setProperty("Decimals", 2);
    return number.property("Decimals").toInt() == 2 ? 0 : 1;
}
