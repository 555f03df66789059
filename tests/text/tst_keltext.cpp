#include "controls/text/keltext.h"
#include "kelfixture.h"

#include <QClipboard>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>

using namespace kel;

using Form = test::TwoFieldForm<KelText>;

// Types characters that have no key of their own, as an input method's key events bring them.
static void typeChars(QWidget *w, const QString &text)
{
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(w, &press);
        QKeyEvent release(QEvent::KeyRelease, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(w, &release);
    }
}

struct TypingCase { bool multi, insert; QString text; int caret; QString expected; };
Q_DECLARE_METATYPE(TypingCase)

static QWidget *box(KelText *t, int i) { return t->findChild<QWidget *>(i ? QStringLiteral("Text1(1)") : QStringLiteral("Text1(0)")); }

class TestKelText : public QObject
{
    Q_OBJECT
    std::unique_ptr<Form> f;
    KelText *t = nullptr; // the first field of a shown form

private slots:
    void initTestCase()
    {
        test::recordServices();
        test::useRuntime();
    }
    void init()
    {
        f = std::make_unique<Form>();
        t = f->first;
        QVERIFY(f->ready());
    }
    void cleanup() { f.reset(); }

    void textTrimsTrailingBreakPairs_data()
    {
        QTest::addColumn<QString>("raw");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("changes");
        const auto row = [](const char *name, const char16_t *raw, const char16_t *text, int changes) {
            QTest::newRow(name) << QString::fromUtf16(raw) << QString::fromUtf16(text) << changes;
        };
        row("two pairs", u"a\r\n\r\n", u"a", 2);  row("only pairs", u"\r\n", u"", 1);  row("space kept", u"a \r\n", u"a ", 1);
        row("lone lf kept", u"a\n", u"a\n", 0);  row("lone cr kept", u"a\r", u"a\r", 0);  row("inner pair kept", u"a\r\nb", u"a\r\nb", 0);
        row("pair after a lone cr", u"a\r\r\n", u"a\r", 1);
        QTest::newRow("a thousand pairs") << u"a"_qs + u"\r\n"_qs.repeated(1000) << u"a"_qs << 1000;
    }
    void textTrimsTrailingBreakPairs()
    {
        QFETCH(QString, raw);
        QFETCH(QString, text);
        QFETCH(int, changes);
        t->setMultiLine(true);
        t->setText(raw);
        QCOMPARE(t->TextRaw(), raw);
        QSignalSpy change(t, &KelText::Change);
        QCOMPARE(t->Text(), text);
        QCOMPARE(t->TextRaw(), text);
        QCOMPARE(change.count(), changes);
    }

    // A Change handler sees the text one pair shorter each time; one that sets the text meanwhile
    // has the last word, and the pairs of its text go too.
    void textTrimsPairByPairForHandlers()
    {
        t->setMultiLine(true);
        t->setText(u"a\r\n\r\n\r\n"_qs);
        QStringList seen;
        connect(t, &KelText::Change, this, [&] {
            seen << t->TextRaw();
            if (seen.size() == 2)
                t->setText(u"b\r\n"_qs);
        });
        QStringList notified;
        connect(t, &KelText::TextChanged, this, [&] { notified << t->TextRaw(); });
        QCOMPARE(t->Text(), u"b"_qs);
        QCOMPARE(seen, (QStringList{u"a\r\n\r\n"_qs, u"a\r\n"_qs, u"b\r\n"_qs, u"b"_qs}));
        // A trim is news once, when it is over; the handler's own text at once.
        QCOMPARE(notified, (QStringList{u"b\r\n"_qs, u"b"_qs}));
        t->setText(u"b"_qs); // what the last Change showed
        t->setText(u"a\r\n\r\n"_qs); // seen during the trim, but not last
        QCOMPARE(notified.size(), 3);
    }

    // Whatever a host sets comes back exactly, unchanged and not Changed; typing and copying
    // next to it keep it too.
    void multiLineKeepsAnyText_data()
    {
        QTest::addColumn<QString>("text");
        const auto s = [](std::initializer_list<char16_t> units) { return QString(reinterpret_cast<const QChar *>(units.begin()), qsizetype(units.size())); };
        QTest::newRow("stand-ins and separators") << s({u'a', 0xFDEA, u'b', 0xFDEB, 0xFDEC, 0x2029, 0x2028, u'c', 0x2029});
        QTest::newRow("frame markers") << s({0xFDD0, u'x', 0xFDD1});
        QTest::newRow("nul and lone surrogates") << s({0, u'a', 0xD800, u'b', 0xDC00});
        QTest::newRow("lone breaks") << u"\r\r\n\n\r\n\rx\n"_qs;
        QTest::newRow("stand-in after a lone break") << s({u'\r', 0xFDEA, u'\n', 0xFDEA});
        QString every;
        for (int u = 0; u <= 0xFFFF; ++u) { // one a line keeps surrogates lone
            every += QChar(char16_t(u));
            every += u"\r\n";
        }
        QTest::newRow("every code unit") << every;
    }
    void multiLineKeepsAnyText()
    {
        QFETCH(QString, text);
        t->setMultiLine(true);
        t->setText(text);
        QCOMPARE(t->TextRaw(), text);
        QVERIFY(!t->Changed());
        TextBox *b = t->Text1(1);
        b->setSelStart(0);
        b->setSelLength(int(text.size()));
        QCOMPARE(b->SelText(), text);
        box(t, 1)->setFocus(Qt::MouseFocusReason);
        b->setSelStart(int(text.size()));
        typeChars(box(t, 1), QString(u"x"_qs + QChar(0xFDEA)));
        QCOMPARE(t->TextRaw(), text + u"x"_qs + QChar(0xFDEA));
        b->setSelStart(0);
        b->setSelLength(int(text.size()));
        QTest::keyClick(box(t, 1), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), text);
        b->setSelText(text); // replaced by itself
        QCOMPARE(t->TextRaw(), text + u"x"_qs + QChar(0xFDEA));
    }

    // A paragraph separator typed, composed or pasted is a line break, two characters long.
    void maxLengthCountsBreaksAsTwo_data()
    {
        QTest::addColumn<int>("max");
        QTest::addColumn<QStringList>("howInputExpected");
        const QString ps(QChar(0x2029)), xy = u"x"_qs + ps + u"y"_qs;
        QTest::newRow("typed, no room") << 1 << QStringList{u"type"_qs, ps, QString()};
        QTest::newRow("typed, room") << 2 << QStringList{u"type"_qs, ps, u"\r\n"_qs};
        QTest::newRow("composed, cut before the break") << 2 << QStringList{u"compose"_qs, xy, u"x"_qs};
        QTest::newRow("pasted, cut before the break") << 2 << QStringList{u"paste"_qs, xy, u"x"_qs};
        QTest::newRow("pasted, break fits") << 3 << QStringList{u"paste"_qs, xy, u"x\r\n"_qs};
        QTest::newRow("pasted frame marker") << 2 << QStringList{u"paste"_qs, QChar(0xFDD0) + u"y"_qs, u"\r\n"_qs};
    }
    void maxLengthCountsBreaksAsTwo()
    {
        QFETCH(int, max);
        QFETCH(QStringList, howInputExpected);
        const QString &how = howInputExpected[0], &input = howInputExpected[1];
        t->setMultiLine(true);
        t->setMaxLength(qint16(max));
        QWidget *w = box(t, 1);
        w->setFocus(Qt::MouseFocusReason);
        if (how == u"type") {
            typeChars(w, input);
        } else if (how == u"compose") {
            QInputMethodEvent e(QString(), {});
            e.setCommitString(input);
            QApplication::sendEvent(w, &e);
        } else {
            QApplication::clipboard()->setText(input);
            QTest::keyClick(w, Qt::Key_V, Qt::ControlModifier);
        }
        QCOMPARE(t->TextRaw(), howInputExpected[2]);
    }

    void valid_data()
    {
        QTest::addColumn<QString>("flags"); // M multi-line, L locked, O optional
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("valid");
        const auto row = [](const char *name, const char *flags, const char16_t *text, bool valid) {
            QTest::newRow(name) << QString::fromLatin1(flags) << QString::fromUtf16(text) << valid;
        };
        row("empty", "", u"", false);  row("empty locked", "L", u"", true);  row("empty optional", "O", u"", true);
        row("spaces", "", u"   ", false);  row("single keeps breaks", "", u"\r\n", true);
        row("multi blanks and breaks", "M", u" \r\n \n\r", false);  row("multi text", "M", u"x\r\n ", true);
    }
    void valid()
    {
        QFETCH(QString, flags);
        QFETCH(QString, text);
        QFETCH(bool, valid);
        t->setMultiLine(flags.contains(u'M'));
        t->setLocked(flags.contains(u'L'));
        t->setMandatory(!flags.contains(u'O'));
        t->setText(text);
        QCOMPARE(t->Valid(), valid);
    }

    // The multi-line box, however late it is first used, carries the text and what was set on the
    // field; switching back trims and takes the text as the new original.
    void multiLineSwitch()
    {
        t->setText(u"abc"_qs);
        t->setLocked(true);
        t->setMaxLength(3);
        t->setPasswordChar(u"*!"_qs); // one character is kept
        t->setEnabled(false);
        t->TooltipSet(u"tip"_qs);
        t->setMultiLine(true);
        TextBox *b = t->Text1(1);
        QVERIFY(b->Locked());
        QCOMPARE(b->MaxLength(), 3);
        QCOMPARE(t->PasswordChar(), u"*"_qs);
        QCOMPARE(b->PasswordChar(), u"*"_qs);
        QCOMPARE(qobject_cast<QLineEdit *>(box(t, 0))->echoMode(), QLineEdit::Password);
        QVERIFY(!b->Enabled());
        QCOMPARE(b->ToolTipText(), u"tip"_qs);
        QCOMPARE(b->BackColor(), librarySettings().FieldBackLocked);
        QCOMPARE(b->widget()->font(), box(t, 0)->font());
        QVERIFY(!box(t, 0)->isVisibleTo(t));
        QVERIFY(box(t, 1)->isVisibleTo(t));
        QCOMPARE(t->TextRaw(), u"abc"_qs);
        b->setText(u"abc\r\nline 2\r\n\r\n"_qs);
        QVERIFY(t->Changed());
        t->setMultiLine(false);
        QCOMPARE(t->Text(), u"abc\r\nline 2"_qs);
        QCOMPARE(t->TextOriginal(), u"abc\r\nline 2"_qs);
        QVERIFY(!t->Changed());
        t->setPasswordChar(QString());
        QCOMPARE(qobject_cast<QLineEdit *>(box(t, 0))->echoMode(), QLineEdit::Normal);
    }

    void overwriteTyping_data()
    {
        QTest::addColumn<TypingCase>("c");
        const auto row = [](const char *name, bool multi, bool insert, const char16_t *text, int caret, const char16_t *expected) {
            QTest::newRow(name) << TypingCase{multi, insert, QString::fromUtf16(text), caret, QString::fromUtf16(expected)};
        };
        row("overwrites", false, false, u"abc", 1, u"axc");  row("appends at end", false, false, u"abc", 3, u"abcx");
        row("inserts", false, true, u"abc", 1, u"axbc");
        row("caret inside a pair", true, false, u"ab\r\ncd", 3, u"abx\r\ncd");
        row("multi keeps break", true, false, u"ab\r\ncd", 2, u"abx\r\ncd");
        row("multi keeps lone cr", true, false, u"a\rb", 1, u"ax\rb");  row("whole surrogate pair", false, false, u"a🙂b", 1, u"axb");
    }
    void overwriteTyping()
    {
        QFETCH(TypingCase, c);
        t->setMultiLine(c.multi);
        t->setInsertMode(c.insert);
        t->setText(c.text);
        QWidget *w = box(t, c.multi);
        w->setFocus(Qt::MouseFocusReason);
        t->Text1(c.multi)->setSelStart(c.caret);
        QTest::keyClicks(w, u"x"_qs);
        QCOMPARE(t->TextRaw(), c.expected);
    }

    // MaxLength cuts typing, never code; code and keys both raise Change, a refused key does not, a
    // click raises Click.
    void maxLengthChangeAndClick()
    {
        QSignalSpy change(t, &KelText::Change);
        QSignalSpy click(t, &KelText::Click);
        t->setMaxLength(3);
        t->setMaxLength(-1);
        QCOMPARE(t->MaxLength(), qint16(3));
        t->setText(u"abcdef"_qs);
        QCOMPARE(t->TextRaw(), u"abcdef"_qs);
        t->setText(u"a"_qs);
        QCOMPARE(change.count(), 2);
        QTest::mouseClick(box(t, 0), Qt::LeftButton, {}, QPoint(5, 5));
        QCOMPARE(click.count(), 1);
        t->Text1(0)->setSelStart(1);
        QTest::keyClicks(box(t, 0), u"bx"_qs);
        QCOMPARE(change.count(), 4);
        QTest::keyClicks(box(t, 0), u"yz"_qs);
        QCOMPARE(t->TextRaw(), u"abx"_qs);
        QCOMPARE(change.count(), 4); // a refused key changes nothing
    }

    void loadReportsThroughSetters()
    {
        MemoryPropertyBag bag;
        bag.set(u"Text"_qs, u"hello"_qs);
        QSignalSpy changed(t, &UserControl::PropertyChanged);
        t->ReadProperties(bag);
        QCOMPARE(t->Text(), u"hello"_qs);
        QCOMPARE(t->TextOriginal(), u"hello"_qs);
        QStringList names;
        for (const auto &args : changed)
            names << args.at(0).toString();
        // Caption is equal to its default, so it reports nothing; Text reports nothing.
        QCOMPARE(names, (QStringList{u"CaptionWidth"_qs, u"Enabled"_qs, u"InsertMode"_qs, u"Locked"_qs,
                                     u"Mandatory"_qs, u"MaxLength"_qs, u"MultiLine"_qs, u"PasswordChar"_qs,
                                     u"SelectOnFocus"_qs}));
        // A new control's values are all defaults: saving it stores nothing.
        KelText fresh;
        fresh.InitProperties();
        fresh.setCaptionWidth(0);
        MemoryPropertyBag empty;
        fresh.WriteProperties(empty);
        QCOMPARE(empty.entries().size(), 0);
    }

    void insertAndEnterKeys()
    {
        QSignalSpy changed(t, &UserControl::PropertyChanged);
        QApplication::clipboard()->setText(u"clip"_qs);
        box(t, 0)->setFocus(Qt::MouseFocusReason);
        QTest::keyClick(box(t, 0), Qt::Key_Return); // single line: Enter moves on
        QCOMPARE(QApplication::focusWidget(), box(f->second, 0));
        box(t, 0)->setFocus(Qt::MouseFocusReason);
        QTest::keyClick(box(t, 0), Qt::Key_Insert, Qt::ShiftModifier);
        QCOMPARE(t->TextRaw(), u"clip"_qs);
        QVERIFY(!t->InsertMode()); // every Insert key-down toggles, Shift+Insert still pastes
        t->Text1(0)->setLocked(true);
        QTest::keyClick(box(t, 0), Qt::Key_Insert); // locked or not, silently
        QVERIFY(t->InsertMode());
        QCOMPARE(changed.count(), 0);
        t->Text1(0)->setLocked(false);
        t->setMultiLine(true);
        QCOMPARE(QApplication::focusWidget(), box(t, 1)); // the switch keeps the focus here
        t->Text1(1)->setSelStart(4);
        QTest::keyClick(box(t, 1), Qt::Key_Return, Qt::ShiftModifier);
        QTest::keyClick(box(t, 1), Qt::Key_Return);
        QTest::keyClicks(box(t, 1), u"c"_qs);
        QCOMPARE(t->TextRaw(), u"clip\r\n\r\nc"_qs);
        QCOMPARE(QApplication::focusWidget(), box(t, 1));
    }

    void deletingAFocusedControl()
    {
        box(t, 0)->setFocus(Qt::MouseFocusReason);
        delete t;
        box(f->second, 0)->setFocus(Qt::MouseFocusReason);
        f->second->deleteLater();
        QTest::qWait(1);
        QVERIFY(f->window.findChildren<KelText *>().isEmpty());
    }
};

QTEST_MAIN(TestKelText)
#include "tst_keltext.moc"
