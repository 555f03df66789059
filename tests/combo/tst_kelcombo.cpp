#include "common/windowhook.h"
#include "controls/combo/combolist.h"
#include "controls/combo/kelcombo.h"
#include "kelfixture.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QTest>

using namespace kel;

namespace {

using Form = test::TwoFieldForm<KelCombo>;

// Records the events as letters: X ChangeEx, K Click, C Change; `handled` is what ChangeEx answers.
struct EventLog {
    QString seen;
    bool handled = true;
    explicit EventLog(KelCombo *c)
    {
        QObject::connect(c, &KelCombo::ChangeEx, c, [this](bool &h) { seen += u'X'; h = handled; });
        QObject::connect(c, &KelCombo::Click, c, [this] { seen += u'K'; });
        QObject::connect(c, &KelCombo::Change, c, [this] { seen += u'C'; });
    }
};

QWidget *field(KelCombo *c) { return c->Combo1->widget(); }

// Pastes "zz" through the field's own context menu.
void menuPaste(KelCombo *c)
{
    QGuiApplication::clipboard()->setText(u"zz"_qs);
    QContextMenuEvent menuEvent(QContextMenuEvent::Mouse, QPoint(5, 5), field(c)->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(field(c), &menuEvent);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menu);
    for (QAction *a : menu->actions())
        if (a->text().contains(u"Paste"_qs))
            a->trigger();
    menu->close();
}

// Opens the list with F4 and closes it with Escape.
void openAndClose(KelCombo *c)
{
    QTest::keyClick(field(c), Qt::Key_F4);
    QAbstractItemView *view = c->Combo1->comboBox()->view();
    QTRY_VERIFY(view->isVisible());
    QTest::keyClick(view, Qt::Key_Escape);
    QTRY_VERIFY(!view->isVisible());
}

// Types `keys`: letters as they are (a character outside the basic plane in one key), '<'
// Backspace, '#' Delete, '>' Enter, '$' End, '*' Ctrl+A, '^' a menu paste, '!' the list opened
// and closed, '=' the host's TextOriginal "Zed".
void type(KelCombo *c, const QString &keys)
{
    for (qsizetype i = 0; i < keys.size(); ++i) {
        switch (keys[i].unicode()) {
        case u'<': QTest::keyClick(field(c), Qt::Key_Backspace); break;
        case u'#': QTest::keyClick(field(c), Qt::Key_Delete); break;
        case u'>': QTest::keyClick(field(c), Qt::Key_Return); break;
        case u'$': QTest::keyClick(field(c), Qt::Key_End); break;
        case u'*': QTest::keyClick(field(c), Qt::Key_A, Qt::ControlModifier); break;
        case u'^': menuPaste(c); break;
        case u'!': openAndClose(c); break;
        case u'=': c->setTextOriginal(u"Zed"_qs); break;
        default:
            if (keys[i].isHighSurrogate()) {
                QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, keys.mid(i, 2));
                QApplication::sendEvent(c->Combo1->comboBox()->lineEdit(), &press);
                ++i;
            } else {
                QTest::keyClicks(field(c), QString(keys[i]));
            }
        }
    }
}

// The form's first combo with `list`, the limit as given and the focus.
KelCombo *focused(Form &f, const QString &list, bool limit, Qt::FocusReason reason = Qt::TabFocusReason)
{
    KelCombo *c = f.first;
    c->setList(list);
    c->setLimitToList(limit);
    field(c)->setFocus(reason);
    return c;
}

// `c` after a save into a bag matching names as given and a load into a new combo.
template<class Check>
void reloaded(KelCombo *c, PropertyBag::NameMatch match, Check check)
{
    MemoryPropertyBag bag(match);
    c->WriteProperties(bag);
    KelCombo loaded;
    loaded.ReadProperties(bag);
    check(loaded);
}

struct TypeCase { bool limit, handled; const char16_t *keys, *text; int selStart, selLength; const char16_t *events, *original; };
struct LeaveCase { bool limit, mandatory; const char16_t *original, *typed, *text; };
struct PickCase { int row; bool handled; const char16_t *events, *original; };
struct ValidCase { bool locked, mandatory; const char16_t *text; bool valid; };
struct LimitCase { bool limit; int maxLength; const char16_t *text, *keys, *after, *events; int caret; };

} // namespace

Q_DECLARE_METATYPE(TypeCase)
Q_DECLARE_METATYPE(LeaveCase)
Q_DECLARE_METATYPE(PickCase)
Q_DECLARE_METATYPE(ValidCase)
Q_DECLARE_METATYPE(LimitCase)

class TestKelCombo : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        test::recordServices();
        test::useRuntime();
        librarySettings().ButtonWidthPixels = 16;
    }

    void listParser_data()
    {
        QTest::addColumn<QString>("list");
        QTest::addColumn<QStringList>("items");
        QTest::newRow("empty") << QString() << QStringList{};
        QTest::newRow("blanks and a trailing comma") << u"a, b ,"_qs << QStringList{u"a"_qs, u" b "_qs, QString()};
        QTest::newRow("quoted comma") << u"\"x,😀\",z"_qs << QStringList{u"x,😀"_qs, u"z"_qs};
        QTest::newRow("doubled quotes") << u"\"say \"\"hi\"\"\""_qs << QStringList{u"say \"hi\""_qs};
        QTest::newRow("leading quote only") << u"\"ab,c"_qs << QStringList{u"ab,c"_qs};
        QTest::newRow("trailing quote only") << u"ab\",c\""_qs << QStringList{u"ab\",c"_qs};
    }
    void listParser()
    {
        QFETCH(QString, list);
        QFETCH(QStringList, items);
        KelCombo c;
        c.setList(list);
        QCOMPARE(c.Combo1->items(), items);
    }

    // List is whatever the host's list-append builds, even one that does not simply append.
    void listThroughHostAppend()
    {
        struct Prepending : KelRuntime8 {
            QString ListAppend(QString list, const QString &item) override { return list.isEmpty() ? item : item + u';' + list; }
        };
        adoptRuntime(std::make_shared<Prepending>());
        KelCombo c;
        c.setList(u"a,b,c"_qs);
        const QString list = c.List();
        test::useRuntime();
        QCOMPARE(list, u"c;b;a"_qs);
    }

    void listCap()
    {
        KelCombo c;
        QStringList many;
        for (int i = 0; i < ComboMaxItems + 5; ++i)
            many << QString::number(i);
        c.setList(many.join(u','));
        QCOMPARE(c.ListCount(), ComboMaxItems);
        // Exactly the cap of comma-ended items: the remainder after the last comma is dropped too.
        c.setList(many.mid(0, ComboMaxItems).join(u',') + u",last"_qs);
        QCOMPARE(c.ListCount(), ComboMaxItems);
        c.ListFromArray(many);
        QCOMPARE(c.ListCount(), ComboMaxItems);
    }

    // The index answers what a scan of the list in order would, for every kind of prefix.
    void findStringAgreesWithScan()
    {
        const QStringList alphabet{u"a"_qs, u"A"_qs, u"b"_qs, u"ä"_qs, u"Ä"_qs, u"ß"_qs, u"😀"_qs, u" "_qs, u"Σ"_qs, u"σ"_qs};
        quint32 seed = 5;
        auto next = [&seed](qsizetype n) { return qsizetype((seed = seed * 1103515245u + 12345u) >> 16) % n; };
        QStringList items(3000);
        for (QString &s : items)
            for (qsizetype n = next(8); n > 0; --n)
                s += alphabet[next(alphabet.size())];
        PrefixIndex index;
        index.build(items);
        for (int i = 0; i < 2000; ++i) {
            const QString &from = items[next(items.size())];
            QString prefix = from.left(next(from.size() + 2));
            if (i % 3 == 0)
                prefix = prefix.toUpper();
            if (i % 7 == 0)
                prefix += alphabet[next(alphabet.size())];
            const auto hit = std::find_if(items.cbegin(), items.cend(), [&](const QString &s) { return s.startsWith(prefix, Qt::CaseInsensitive); });
            QCOMPARE(index.find(prefix), hit == items.cend() ? -1 : int(hit - items.cbegin()));
        }
        QCOMPARE(PrefixIndex().find(u"a"), -1);
    }

    // A vetoed ChangeEx keeps the reference, so the next change is measured against it again.
    void typing_data()
    {
        QTest::addColumn<TypeCase>("c");
        QTest::newRow("refused") << TypeCase{true, true, u"apx", u"Apple", 2, 3, u"XC", u"Apple"};
        QTest::newRow("refused first") << TypeCase{true, true, u"z", u"", 0, 0, u"", u""};
        QTest::newRow("second item") << TypeCase{true, true, u"apr", u"Apricot", 3, 4, u"XCXC", u"Apricot"};
        QTest::newRow("vetoed") << TypeCase{true, false, u"ap", u"Apple", 2, 3, u"XX", u""};
        QTest::newRow("free text") << TypeCase{false, true, u"zz", u"zz", 2, 0, u"XCXC", u""};
        QTest::newRow("own spelling") << TypeCase{false, true, u"APP", u"Apple", 3, 2, u"XCXCXC", u""};
        QTest::newRow("backspace off") << TypeCase{false, true, u"apr<", u"Apple", 2, 3, u"XCXCXCXC", u""};
        // The Delete that follows the removed completion leaves no item: the field empties.
        QTest::newRow("delete on") << TypeCase{true, true, u"ap#", u"", 0, 0, u"XCXC", u""};
        // No item begins with an empty text: emptying the field is refused like any other key.
        QTest::newRow("emptied on") << TypeCase{true, true, u"ap*<", u"Apple", 0, 5, u"XC", u"Apple"};
        // A refusal shows the reference as it is, also one the host put that is no item.
        QTest::newRow("host reference refused back") << TypeCase{true, true, u"ap=x", u"Zed", 2, 1, u"XC", u"Zed"};
        // Closing the list is no entry into the field: the edit stays measured against the old text.
        QTest::newRow("list opened and closed") << TypeCase{false, true, u"zz!", u"zz", 2, 0, u"XCXC", u""};
    }
    void typing()
    {
        QFETCH(TypeCase, c);
        Form f;
        QVERIFY(f.ready());
        KelCombo *combo = focused(f, u"Apple,Apricot,banana"_qs, c.limit, Qt::MouseFocusReason);
        EventLog log(combo);
        log.handled = c.handled;
        type(combo, QString::fromUtf16(c.keys));
        QCOMPARE(combo->Combo1->Text(), QString::fromUtf16(c.text));
        QCOMPARE(combo->Combo1->SelStart(), c.selStart);
        QCOMPARE(combo->Combo1->SelLength(), c.selLength);
        QCOMPARE(log.seen, QString::fromUtf16(c.events));
        QCOMPARE(combo->TextOriginal(), QString::fromUtf16(c.original));
    }

    void pickFromList_data()
    {
        QTest::addColumn<PickCase>("p");
        QTest::newRow("other item") << PickCase{1, true, u"XKC", u"Pear"};
        QTest::newRow("vetoed") << PickCase{1, false, u"X", u"Apple"};
        QTest::newRow("same item") << PickCase{0, true, u"", u"Apple"};
    }
    void pickFromList()
    {
        QFETCH(PickCase, p);
        Form f;
        QVERIFY(f.ready());
        KelCombo *c = focused(f, u"Apple,Pear"_qs, false, Qt::MouseFocusReason);
        c->setText(u"Apple"_qs);
        EventLog log(c);
        log.handled = p.handled;
        QTest::keyClick(field(c), Qt::Key_Down); // the extended interface opens the list
        QAbstractItemView *view = c->Combo1->comboBox()->view();
        QTRY_VERIFY(view->isVisible());
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(view->model()->index(p.row, 0)).center());
        QTRY_VERIFY(!view->isVisible());
        QCOMPARE(log.seen, QString::fromUtf16(p.events));
        QCOMPARE(c->Combo1->Text(), c->Combo1->List(p.row));
        QCOMPARE(c->TextOriginal(), QString::fromUtf16(p.original));
    }

    // Enter moves on; MaxLength (4) limits typing. An emptied mandatory field takes the reference
    // text back, but only as far as the limit lets a text stand (a host may have put one that is
    // no item): a saved form must load to the same text.
    void leavingSettles_data()
    {
        QTest::addColumn<LeaveCase>("c");
        QTest::newRow("free text kept") << LeaveCase{false, true, nullptr, u"zzzzz", u"zzzz"};
        QTest::newRow("emptied optional") << LeaveCase{false, false, nullptr, u"", u""};
        QTest::newRow("emptied mandatory") << LeaveCase{false, true, nullptr, u"", u"Pear"};
        QTest::newRow("completed") << LeaveCase{true, true, nullptr, u"ap", u"Apple"};
        QTest::newRow("item spelling") << LeaveCase{false, true, nullptr, u"pear", u"Pear"};
        QTest::newRow("host reference, free") << LeaveCase{false, true, u"zz", u"", u"zz"};
        QTest::newRow("host reference, no item") << LeaveCase{true, true, u"zz", u"", u""};
    }
    void leavingSettles()
    {
        QFETCH(LeaveCase, c);
        Form f;
        QVERIFY(f.ready());
        KelCombo *combo = f.first;
        combo->setList(u"Apple,Pear"_qs);
        combo->setLimitToList(c.limit);
        combo->setMandatory(c.mandatory);
        combo->setText(u"Pear"_qs);
        combo->setSelectOnFocus(true);
        combo->setMaxLength(4);
        field(f.second)->setFocus(Qt::MouseFocusReason);
        field(combo)->setFocus(Qt::TabFocusReason);
        QCOMPARE(combo->Combo1->SelLength(), 4);
        type(combo, u"#"_qs);
        if (c.original)
            combo->setTextOriginal(QString::fromUtf16(c.original));
        type(combo, QString::fromUtf16(c.typed) + u'>');
        QCOMPARE(QApplication::focusWidget(), field(f.second));
        QCOMPARE(combo->Text(), QString::fromUtf16(c.text));
        reloaded(combo, PropertyBag::NameMatch::Exact, [&](KelCombo &b) { QCOMPARE(b.Text(), combo->Text()); });
    }

    // A paste from the field's own menu is no keystroke: it is judged against the item it
    // leaves, not the one the field showed before.
    void menuPaste_data()
    {
        QTest::addColumn<bool>("limit");
        QTest::addColumn<QString>("text");
        QTest::newRow("limited") << true << QString();
        QTest::newRow("free") << false << u"Applezz"_qs;
    }
    void menuPaste()
    {
        QFETCH(bool, limit);
        QFETCH(QString, text);
        Form f;
        QVERIFY(f.ready());
        KelCombo *c = focused(f, u"Apple"_qs, limit);
        c->setText(u"Apple"_qs);
        type(c, u"^"_qs);
        QCOMPARE(c->Text(), text);
        QCOMPARE(c->TextOriginal(), limit ? text : u"Apple"_qs);
    }

    // The limit counts characters and never splits one; it measures against the field's text as
    // it is now, also after the list opened and closed or a text set by code longer than the limit.
    void typingLimit_data()
    {
        QTest::addColumn<LimitCase>("c");
        QTest::newRow("one character outside the basic plane") << LimitCase{false, 1, u"", u"😀😀", u"😀", u"XC", 2};
        QTest::newRow("after the list, limited") << LimitCase{true, 1, u"0.5", u"!$<e", u"0.5", u"", 2};
        QTest::newRow("longer text from code") << LimitCase{false, 5, u"1e+308", u"!$Z", u"1e+308", u"", 6};
        // The completion is set inside the keystroke's own change: the limit measures against it.
        QTest::newRow("typed over a completion") << LimitCase{true, 1, u"0.5", u"*0.5", u"0.5", u"", 3};
    }
    void typingLimit()
    {
        QFETCH(LimitCase, c);
        Form f;
        QVERIFY(f.ready());
        KelCombo *combo = focused(f, u"0.5"_qs, c.limit, Qt::MouseFocusReason);
        combo->setMaxLength(qint16(c.maxLength));
        combo->setText(QString::fromUtf16(c.text));
        EventLog log(combo);
        type(combo, QString::fromUtf16(c.keys));
        QCOMPARE(combo->Combo1->Text(), QString::fromUtf16(c.after));
        QCOMPARE(log.seen, QString::fromUtf16(c.events));
        QCOMPARE(combo->Combo1->SelStart(), c.caret);
    }

    // Code that moves the focus away while the list is open leaves the field as the user does:
    // its exit runs, and the next entry takes a new reference.
    void focusMovedWithListOpen()
    {
        Form f;
        QVERIFY(f.ready());
        KelCombo *c = focused(f, u"Apple"_qs, false);
        c->setText(u"Apple"_qs);
        type(c, u"$xy"_qs);
        QVERIFY(c->Changed());
        QTest::keyClick(field(c), Qt::Key_F4);
        QTRY_VERIFY(c->Combo1->DroppedDown());
        field(f.second)->setFocus(Qt::OtherFocusReason);
        QTRY_VERIFY(!c->Combo1->DroppedDown());
        QCOMPARE(c->Combo1->BackColor(), librarySettings().FieldBackNormal);
        field(c)->setFocus(Qt::MouseFocusReason);
        QCOMPARE(c->TextOriginal(), u"Applexy"_qs);
        QVERIFY(!c->Changed());
    }

    // Text before List (a .ui file's order, while the control loads) gives the same control; at
    // run time a text refused under the limit is forgotten.
    void listIndexAndLimit()
    {
        KelCombo c;
        c.setText(u"B"_qs);
        c.setList(u"a,b,B"_qs);
        QCOMPARE(c.ListIndex(), qint16(3));
        c.setListTag(u"t1,\"t,2\",t3"_qs);
        c.setListIndex(2);
        QCOMPARE(c.TextOriginal(), u"b"_qs);
        QCOMPARE(c.ListItem(), u"a"_qs); // the item before the selected one
        QCOMPARE(c.ListTagItem(), u"t,2"_qs);
        QCOMPARE(c.ListTagItem(4), QString());
        c.setListIndex(0);
        c.setListIndex(4);
        QCOMPARE(c.Text(), u"b"_qs);
        c.setText(u"free"_qs);
        QCOMPARE(c.Text(), QString());
        c.setMaxLength(2); // limits typing only
        QVERIFY(c.setProperty("LimitToList", false));
        QCOMPARE(c.property("Text").toString(), u"free"_qs);
        QCOMPARE(c.ListIndex(), qint16(-1));
        c.setLimitToList(true);
        QCOMPARE(c.Text(), QString());

        QCoreApplication::processEvents(); // the load is over
        c.setText(u"Zed"_qs);
        c.setLimitToList(false);
        QCOMPARE(c.Text(), QString());
        c.setLimitToList(true);
        c.setList(QString());
        c.setText(u"Beta"_qs);
        c.setList(u"Alpha,Beta"_qs);
        QCOMPARE(c.Text(), QString());
        QCOMPARE(c.TextOriginal(), QString());
    }

    // Enabled reaches the caption and the box only, and the colour follows the lock and the
    // control's own state; a new control shows its name as its caption.
    void enabledAndNewCaption_data()
    {
        QTest::addColumn<QString>("puts");
        QTest::addColumn<bool>("fieldEnabled");
        QTest::addColumn<bool>("locked");
        QTest::newRow("disabled") << u"E"_qs << false << false;
        QTest::newRow("disabled, locked and unlocked") << u"ELl"_qs << false << false;
        QTest::newRow("locked") << u"L"_qs << true << true;
        QTest::newRow("disabled and enabled") << u"Ee"_qs << true << false;
    }
    void enabledAndNewCaption()
    {
        QFETCH(QString, puts);
        QFETCH(bool, fieldEnabled);
        QFETCH(bool, locked);
        QWidget form;
        KelCombo *c = new KelCombo(&form);
        c->setObjectName(u"cboCustomer"_qs);
        c->InitProperties();
        QCOMPARE(c->Caption(), u"cboCustomer"_qs);
        for (const QChar p : puts)
            p == u'E' || p == u'e' ? c->setProperty("Enabled", p == u'e') : c->setProperty("Locked", p == u'L');
        QVERIFY(c->isEnabled());
        QCOMPARE(c->Combo1->widget()->isEnabled(), fieldEnabled);
        QCOMPARE(c->Label1->widget()->isEnabled(), fieldEnabled);
        QCOMPARE(c->Combo1->BackColor(), locked ? librarySettings().FieldBackLocked : librarySettings().FieldBackNormal);
    }

    // DropDownWidth is written under one name and read under another spelling: only a bag that
    // ignores case gives it back.
    void dropDownWidth_data()
    {
        QTest::addColumn<int>("twips");
        QTest::addColumn<int>("stored");
        QTest::addColumn<int>("pixels");
        QTest::newRow("3007") << 3007 << 3007 << 200;
        QTest::newRow("3008") << 3008 << 3008 << 201;
        QTest::newRow("zero") << 0 << 0 << -1;
        QTest::newRow("too wide") << 9000 << 0 << -1;
        QTest::newRow("field width") << -2 << 0 << -1;
    }
    void dropDownWidth()
    {
        QFETCH(int, twips);
        QFETCH(int, stored);
        QFETCH(int, pixels);
        KelCombo c;
        c.setWidth(4500);
        const double field = c.Combo1->Width();
        c.setDropDownWidth(twips == -2 ? qint32(field) : twips);
        QCOMPARE(c.DropDownWidth(), stored);
        QCOMPARE(c.Combo1->DroppedWidth(), pixels >= 0 ? pixels : int(std::nearbyint(field / 15)));
        reloaded(&c, PropertyBag::NameMatch::IgnoreCase, [&](KelCombo &b) { QCOMPARE(b.DropDownWidth(), stored); });
        reloaded(&c, PropertyBag::NameMatch::Exact, [&](KelCombo &b) { QCOMPARE(b.DropDownWidth(), 0); });
    }

    void valid_data()
    {
        QTest::addColumn<ValidCase>("v");
        QTest::newRow("blanks") << ValidCase{false, true, u"  ", false};
        QTest::newRow("blanks locked") << ValidCase{true, true, u"  ", true};
        QTest::newRow("empty optional") << ValidCase{false, false, u"", true};
        QTest::newRow("text") << ValidCase{false, true, u" a ", true};
    }
    void valid()
    {
        QFETCH(ValidCase, v);
        KelCombo c;
        c.setLimitToList(false);
        c.setLocked(v.locked);
        c.setMandatory(v.mandatory);
        c.setText(QString::fromUtf16(v.text));
        QCOMPARE(c.Valid(), v.valid);
    }

    void border()
    {
        KelCombo c;
        c.resize(200, 20);
        QWidget *w = field(&c);
        QVERIFY(isSubclassed(w));
        const auto children = w->children().size();
        SubclassWindow(w);
        QCOMPARE(w->children().size(), children); // one hook
        const QImage img = w->grab().toImage();
        const QPalette pal = w->palette();
        const int h = img.height(), right = img.width() - 2, mid = h / 2;
        auto at = [&](int x, int y) { return img.pixel(x, y); };
        auto role = [&](QPalette::ColorRole r) { return pal.color(r).rgb(); };
        QCOMPARE(at(0, mid), role(QPalette::Dark));
        QCOMPARE(at(img.width() - 1, mid), role(QPalette::Light));
        QCOMPARE(at(1, mid), role(QPalette::Shadow));
        QCOMPARE(at(mid, h - 2), role(QPalette::Light)); // bottom one pixel short
        QCOMPARE(at(right - librarySettings().ButtonWidthPixels, mid), role(QPalette::Midlight));
        QCOMPARE(at(right - 1, mid), role(QPalette::Shadow));
    }
};

QTEST_MAIN(TestKelCombo)
#include "tst_kelcombo.moc"
