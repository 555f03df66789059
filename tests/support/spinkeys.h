#pragma once
// Spinner field tests (number, date, time): a two-field form and key scripts, where U is Up,
// D Down, I Insert, E Enter, S and s the spinner's upper and lower button, C and V Ctrl+C and
// Ctrl+V; any other character is typed.
#include "common/spinfield.h"
#include "kelfixture.h"
#include "platform/dayserial.h"

#include <QLineEdit>

namespace kel::test {

inline QString str(const char16_t *s) { return QString::fromUtf16(s); }
inline double serial(int y, int m, int d) { return *DateSerial(y, m, d); }
inline double clock(int h, int n, int s = 0) { return *TimeSerial(h, n, s); }

inline QLineEdit *text1(SpinField *f) { return f->findChild<QLineEdit *>(u"Text1"_qs); }
inline void enter(SpinField *f) { text1(f)->setFocus(Qt::TabFocusReason); }

// A form whose second field has the focus; message boxes and the clock are recorded.
template<class Field>
struct FieldForm {
    std::shared_ptr<KelRuntime8> runtime = useRuntime();
    RecordingServices *rec = recordServices();
    TwoFieldForm<Field> form;
    Field *field = form.first, *second = form.second;
    bool ready() { enter(second); return form.ready(); }
};

inline void play(SpinField *f, QStringView script)
{
    QWidget *spinner = f->UpDown1->widget();
    for (QChar c : script) {
        switch (c.unicode()) {
        case u'U': QTest::keyClick(text1(f), Qt::Key_Up); break;
        case u'D': QTest::keyClick(text1(f), Qt::Key_Down); break;
        case u'I': QTest::keyClick(text1(f), Qt::Key_Insert); break;
        case u'E': QTest::keyClick(text1(f), Qt::Key_Return); break;
        case u'C': QTest::keyClick(text1(f), Qt::Key_C, Qt::ControlModifier); break;
        case u'V': QTest::keyClick(text1(f), Qt::Key_V, Qt::ControlModifier); break;
        case u'S': case u's':
            QTest::mouseClick(spinner, Qt::LeftButton, {}, QPoint(spinner->width() / 2, c == u'S' ? 2 : spinner->height() - 2));
            break;
        default: QTest::keyClicks(text1(f), QString(c));
        }
    }
}

} // namespace kel::test
