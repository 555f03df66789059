#include "controls/progress/kelprogressbar.h"
#include "forms/units.h"
#include "kelfixture.h"

#include <QAccessible>
#include <QAccessibleValueInterface>
#include <QRegularExpression>
#include <QTest>

using namespace kel;

namespace {

RecordingServices *clock_ = nullptr;

// Counts the paints that reach the picture box's widget.
struct PaintCounter : QObject {
    int paints = 0;
    bool eventFilter(QObject *, QEvent *e) override
    {
        paints += e->type() == QEvent::Paint;
        return false;
    }
};

// A shown bar whose drawing area is `inner` pixels wide.
struct BarForm {
    QWidget window;
    KelProgressBar *bar = new KelProgressBar(&window);
    PaintCounter counter;
    explicit BarForm(int inner = 300)
    {
        bar->setGeometry(0, 0, inner + 2, 24); // the picture box's border takes a pixel each side
        window.resize(inner + 10, 30);
        window.show();
        bar->Picture1->widget()->installEventFilter(&counter);
    }
    bool ready() { return QTest::qWaitForWindowExposed(&window); }
    QColor colour(quint32 c) { return toQColor(c, bar->Picture1->widget()->palette()); }
    // Width of the filled bar as shown on screen, measured along the top row.
    int shownBarWidth()
    {
        const QImage s = bar->Picture1->widget()->grab().toImage();
        int w = 0;
        while (w + 1 < s.width() - 1 && s.pixelColor(w + 1, 1) == colour(0x8000000D))
            ++w;
        return w;
    }
};

struct ShownCase { int min, max, value, readBack; float start, now; const char16_t *text; };

} // namespace

Q_DECLARE_METATYPE(ShownCase)

class TestKelProgressBar : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        clock_ = test::recordServices();
        test::useRuntime();
    }
    void init() { clock_->timer = 1000.0f; }

    // Value, text and bar of a 100-pixel bar (as wide as the percentage shown), with the clock
    // read at `start` by Start and at `now` by setValue.
    void shown_data()
    {
        QTest::addColumn<ShownCase>("c");
        // min 0 and max 0 keep the defaults 1..100 of a new control
        QTest::newRow("new control") << ShownCase{0, 0, 50, 50, 1000, 1000, u"50%"};
        QTest::newRow("below min") << ShownCase{1, 100, -7, 1, 1000, 1000, u"0%"};
        QTest::newRow("above max") << ShownCase{1, 100, 1000, 100, 1000, 1000, u"100%"};
        QTest::newRow("half rounds down to even") << ShownCase{1, 8, 1, 1, 1000, 1000, u"12%"};
        QTest::newRow("half rounds up to even") << ShownCase{1, 8, 3, 3, 1000, 1000, u"38%"};
        QTest::newRow("max below min") << ShownCase{50, 10, 10, 10, 1000, 1000, u"100%"};
        QTest::newRow("whole 32 bits") << ShownCase{INT_MIN, INT_MAX, 0, 0, 1000, 1000, u"50%"};
        QTest::newRow("ten seconds") << ShownCase{1, 100, 25, 25, 1000, 1010, u"25%"};
        QTest::newRow("90.9 seconds") << ShownCase{1, 100, 50, 50, 1000, 1090.9f, u"50% (91 seconds remaining)"};
        QTest::newRow("91 seconds") << ShownCase{1, 100, 50, 50, 1000, 1091, u"50% (2 minutes remaining)"};
        QTest::newRow("grouped minutes") << ShownCase{1, 100000, 1, 1, 1000, 1100, u"0% (166,665 minutes remaining)"};
        QTest::newRow("under a second") << ShownCase{1, 100, 100, 100, 1000, 1030, u"100%"};
        QTest::newRow("across midnight") << ShownCase{1, 100, 25, 25, 86395, 30, u"25%"};
        QTest::newRow("value 0") << ShownCase{-10, 89, 0, 0, 1000, 1030, u"11%"};
        QTest::newRow("divisor is the value") << ShownCase{101, 200, 125, 125, 1000, 1100, u"25%"};
    }
    void shown()
    {
        QFETCH(ShownCase, c);
        const QString text = QString::fromUtf16(c.text);
        BarForm f(100);
        QVERIFY(f.ready());
        if (c.min || c.max) {
            f.bar->setMin(c.min);
            f.bar->setMax(c.max);
        }
        // A new range takes the value with it before anything is drawn.
        QVERIFY(f.bar->Min() <= f.bar->Value() && f.bar->Value() <= f.bar->Max());
        clock_->timer = c.start;
        f.bar->Start();
        clock_->timer = c.now;
        f.bar->setValue(c.value);
        QCOMPARE(f.bar->Value(), c.readBack);
        QCOMPARE(f.bar->Text(), text);
        QCOMPARE(f.shownBarWidth(), text.section(u'%', 0, 0).toInt());
    }

    void drawsOnlyWhenTheBarMovesOrTheTimeIsDue()
    {
        BarForm f(300);
        QVERIFY(f.ready());
        f.bar->setShowTime(false);
        f.bar->setMax(100000);
        f.counter.paints = 0;
        for (int v = 1; v <= 100000; ++v)
            f.bar->setValue(v);
        QCOMPARE(f.counter.paints, 301); // widths 0 to 300, once each
        QCOMPARE(f.shownBarWidth(), 300);

        f.bar->setShowTime(true);
        f.bar->setMax(1000);
        f.bar->Start();
        f.bar->setValue(100);
        f.counter.paints = 0;
        for (float now : {1009.0f, 1010.5f, 1040.0f, 1070.5f, 1071.0f}) {
            clock_->timer = now;
            f.bar->setValue(100);
        }
        // Due at 1010.5 (Start + 10) with minutes, so due again a minute on, at 1071.
        QCOMPARE(f.counter.paints, 2);
        QCOMPARE(f.bar->Text(), u"10% (11 minutes remaining)"_qs);
    }

    void readableOnScreenAndBySpeech()
    {
        BarForm f(200);
        QVERIFY(f.ready());
        f.bar->setShowTime(false);
        // First and last pixel columns that differ from the ground.
        auto ink = [&](quint32 ground) {
            const QImage shot = f.bar->Picture1->Image();
            int first = -1, last = -1;
            for (int x = 0; x < shot.width(); ++x)
                for (int y = 0; y < shot.height(); ++y)
                    if (shot.pixelColor(x, y) != f.colour(ground)) {
                        last = x;
                        first = first < 0 ? x : first;
                    }
            return std::pair(first, last);
        };
        f.bar->setValue(0); // below Min: an empty bar, "0%" alone and centred
        const auto [left, right] = ink(0x80000005);
        QVERIFY2(left > 0 && qAbs(left - (200 - 1 - right)) <= 2, qPrintable(QStringLiteral("%1..%2").arg(left).arg(right)));
        f.bar->setValue(100); // the text stays readable on the full bar
        const auto [coveredLeft, coveredRight] = ink(0x8000000D);
        QVERIFY(coveredLeft > 0 && coveredRight < 199);

        f.bar->setValue(42);
        QAccessibleInterface *a = QAccessible::queryAccessibleInterface(f.bar);
        QVERIFY(a && a->valueInterface());
        QCOMPARE(a->role(), QAccessible::ProgressBar);
        QCOMPARE(a->text(QAccessible::Value), u"42%"_qs);
        QVERIFY(!a->text(QAccessible::Name).isEmpty());
        QCOMPARE(a->valueInterface()->currentValue().toInt(), 42);
    }

    void realClockIsTheLocalTimeOfDay()
    {
        const double local = QTime(0, 0).msecsTo(QTime::currentTime()) / 1000.0;
        const double ours = secondsSinceMidnight();
        if (local < 5 || local > 86395)
            QSKIP("too close to midnight");
        QVERIFY2(qAbs(ours - local) < 0.5, qPrintable(QStringLiteral("%1 against %2").arg(ours).arg(local)));
    }

    // A bar squeezed to nothing by its form draws nowhere and comes back whole.
    void shrunkToNothingAndBack()
    {
        QTest::failOnWarning(QRegularExpression(u"QPainter"_qs));
        BarForm f;
        QVERIFY(f.ready());
        f.bar->setValue(50);
        f.bar->resize(0, 0);
        f.bar->setValue(60);
        f.bar->resize(302, 24);
        f.bar->setValue(100);
        QCOMPARE(f.shownBarWidth(), 300);
    }

    // A saved form holds only what differs from a new control.
    void savesOnlyChanges()
    {
        KelProgressBar fresh, changed;
        changed.setShowTime(false);
        MemoryPropertyBag none, some;
        fresh.WriteProperties(none);
        changed.WriteProperties(some);
        QCOMPARE(none.entries().size(), 0);
        QCOMPARE(some.entries(), (QList<QPair<QString, Variant>>{{u"ShowTime"_qs, false}}));
    }
};

QTEST_MAIN(TestKelProgressBar)
#include "tst_kelprogressbar.moc"
