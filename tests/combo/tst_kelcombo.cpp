#include "common/windowhook.h"
#include "controls/combo/combolist.h"
#include "controls/combo/kelcombo.h"
#include "kelfixture.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QImage>
#include <QSignalSpy>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTest>

using namespace kel;

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

static QWidget *field(KelCombo *c) { return c->Combo1->widget(); }

// Types `keys`: letters as they are, '<' Backspace, '#' Delete.
static void type(KelCombo *c, const QString &keys)
{
    for (const QChar k : keys) {
        if (k == u'<')
            QTest::keyClick(field(c), Qt::Key_Backspace);
        else if (k == u'#')
            QTest::keyClick(field(c), Qt::Key_Delete);
        else
            QTest::keyClicks(field(c), QString(k));
    }
}

// The form's first combo with `list`, the limit as given and the focus.
static KelCombo *focused(Form &f, const QString &list, bool limit, Qt::FocusReason reason = Qt::TabFocusReason)
{
    KelCombo *c = f.first;
    c->setList(list);
    c->setLimitToList(limit);
    field(c)->setFocus(reason);
    return c;
}

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
        QTest::newRow("one") << u"a"_qs << QStringList{u"a"_qs};
        QTest::newRow("trailing comma") << u"a,"_qs << QStringList{u"a"_qs, QString()};
        QTest::newRow("lone comma") << u","_qs << QStringList{QString(), QString()};
        QTest::newRow("quoted comma") << u"\"x,y\",z"_qs << QStringList{u"x,y"_qs, u"z"_qs};
        QTest::newRow("doubled quotes") << u"\"say \"\"hi\"\"\""_qs << QStringList{u"say \"hi\""_qs};
        QTest::newRow("leading quote only") << u"\"ab,c"_qs << QStringList{u"ab,c"_qs};
        QTest::newRow("trailing quote only") << u"ab\",c\""_qs << QStringList{u"ab\",c"_qs};
        QTest::newRow("unbalanced") << u"\"a,b,c"_qs << QStringList{u"a,b,c"_qs};
        QTest::newRow("blanks kept") << u"a, b ,"_qs << QStringList{u"a"_qs, u" b "_qs, QString()};
        QTest::newRow("unicode") << u"Ärger,日本,😀"_qs << QStringList{u"Ärger"_qs, u"日本"_qs, u"😀"_qs};
    }
    void listParser()
    {
        QFETCH(QString, list);
        QFETCH(QStringList, items);
        KelCombo c;
        c.setList(list);
        QCOMPARE(c.Combo1->items(), items);
        // What List gives back loads the same items again.
        const QString back = c.List();
        c.setList(back);
        QCOMPARE(c.Combo1->items(), items);
    }

    // List is whatever the host's list-append builds, even one that does not simply append.
    void listThroughHostAppend()
    {
        struct Prepending : KelRuntime8 {
            QString ListAppend(const QString &list, const QString &item) override
            {
                return list.isEmpty() ? item : item + u';' + list;
            }
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
        QCOMPARE(c.ListItem(ComboMaxItems), QString::number(ComboMaxItems - 1));
        // Exactly the cap of comma-ended items: the remainder after the last comma is dropped too.
        c.setList(many.mid(0, ComboMaxItems).join(u',') + u",last"_qs);
        QCOMPARE(c.ListCount(), ComboMaxItems);
        c.ListFromArray(many);
        QCOMPARE(c.ListCount(), ComboMaxItems);
        QCOMPARE(c.ListItem(1), u"0"_qs);
    }

    // The index answers what a scan of the list in order would, for every kind of prefix.
    void findStringAgreesWithScan()
    {
        const QStringList alphabet{u"a"_qs, u"A"_qs, u"b"_qs, u"ä"_qs, u"Ä"_qs, u"ß"_qs, u"😀"_qs, u" "_qs, u"Σ"_qs, u"σ"_qs};
        quint32 seed = 5;
        auto next = [&seed] { return (seed = seed * 1103515245u + 12345u) >> 16; };
        QStringList items;
        for (int i = 0; i < 3000; ++i) {
            QString s;
            for (int n = int(next() % 8); n > 0; --n)
                s += alphabet[next() % alphabet.size()];
            items << s;
        }
        PrefixIndex index;
        index.build(items);
        for (int i = 0; i < 2000; ++i) {
            const QString &from = items[next() % items.size()];
            QString prefix = from.left(qsizetype(next() % (from.size() + 2)));
            if (i % 3 == 0)
                prefix = prefix.toUpper();
            if (i % 7 == 0)
                prefix += alphabet[next() % alphabet.size()];
            int expected = -1;
            for (int k = 0; k < items.size() && expected < 0; ++k)
                if (items[k].startsWith(prefix, Qt::CaseInsensitive))
                    expected = k;
            QCOMPARE(index.find(prefix), expected);
        }
        QCOMPARE(PrefixIndex().find(u"a"), -1);
    }

    void typing_data()
    {
        QTest::addColumn<bool>("limit");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("selStart");
        QTest::addColumn<int>("selLength");
        QTest::addColumn<QString>("events");
        QTest::newRow("completes") << true << u"ap"_qs << u"Apple"_qs << 2 << 3 << u"XC"_qs;
        QTest::newRow("refused") << true << u"apx"_qs << u"Apple"_qs << 2 << 3 << u"XC"_qs;
        QTest::newRow("refused first") << true << u"z"_qs << QString() << 0 << 0 << QString();
        QTest::newRow("second item") << true << u"apr"_qs << u"Apricot"_qs << 3 << 4 << u"XCXC"_qs;
        QTest::newRow("free text") << false << u"zz"_qs << u"zz"_qs << 2 << 0 << u"XCXC"_qs;
        QTest::newRow("own spelling") << false << u"APP"_qs << u"Apple"_qs << 3 << 2 << u"XCXCXC"_qs;
        QTest::newRow("backspace off") << false << u"apr<"_qs << u"Apple"_qs << 2 << 3 << u"XCXCXCXC"_qs;
        // The Delete that follows the removed completion leaves no item: the field empties.
        QTest::newRow("delete on") << true << u"ap#"_qs << QString() << 0 << 0 << u"XCXC"_qs;
    }
    void typing()
    {
        QFETCH(bool, limit);
        QFETCH(QString, keys);
        QFETCH(QString, text);
        QFETCH(int, selStart);
        QFETCH(int, selLength);
        QFETCH(QString, events);
        Form f;
        QVERIFY(f.ready());
        KelCombo *c = focused(f, u"Apple,Apricot,banana"_qs, limit, Qt::MouseFocusReason);
        EventLog log(c);
        type(c, keys);
        QCOMPARE(c->Combo1->Text(), text);
        QCOMPARE(c->Combo1->SelStart(), selStart);
        QCOMPARE(c->Combo1->SelLength(), selLength);
        QCOMPARE(log.seen, events);
    }

    void vetoKeepsReference()
    {
        Form f;
        QVERIFY(f.ready());
        KelCombo *c = f.first;
        c->setList(u"Apple,Apricot"_qs);
        field(c)->setFocus(Qt::MouseFocusReason);
        EventLog log(c);
        log.handled = false;
        type(c, u"a"_qs);
        QCOMPARE(log.seen, u"X"_qs);
        QCOMPARE(c->TextOriginal(), QString());
        QVERIFY(c->Changed());
        // The next change is measured against the old reference again.
        type(c, u"p"_qs);
        QCOMPARE(log.seen, u"XX"_qs);
    }

    void pickFromList_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("handled");
        QTest::addColumn<QString>("events");
        QTest::addColumn<QString>("original");
        QTest::newRow("other item") << 1 << true << u"XKC"_qs << u"Pear"_qs;
        QTest::newRow("vetoed") << 1 << false << u"X"_qs << u"Apple"_qs;
        QTest::newRow("same item") << 0 << true << QString() << u"Apple"_qs;
    }
    void pickFromList()
    {
        QFETCH(int, row);
        QFETCH(bool, handled);
        QFETCH(QString, events);
        QFETCH(QString, original);
        Form f;
        QVERIFY(f.ready());
        KelCombo *c = f.first;
        c->setList(u"Apple,Pear"_qs);
        c->setLimitToList(false);
        c->setText(u"Apple"_qs);
        field(c)->setFocus(Qt::MouseFocusReason);
        EventLog log(c);
        log.handled = handled;
        QTest::keyClick(field(c), Qt::Key_Down); // the extended interface opens the list
        QAbstractItemView *view = c->Combo1->comboBox()->view();
        QTRY_VERIFY(view->isVisible());
        const QRect r = view->visualRect(view->model()->index(row, 0));
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, r.center());
        QTRY_VERIFY(!view->isVisible());
        QCOMPARE(log.seen, events);
        QCOMPARE(c->Combo1->Text(), c->Combo1->List(row));
        QCOMPARE(c->TextOriginal(), original);
    }

    void leavingSettles_data()
    {
        QTest::addColumn<bool>("limit");
        QTest::addColumn<bool>("mandatory");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("text");
        QTest::newRow("free text kept") << false << true << u"zz"_qs << u"zz"_qs;
        QTest::newRow("emptied optional") << false << false << QString() << QString();
        QTest::newRow("emptied mandatory") << false << true << QString() << u"Pear"_qs;
        QTest::newRow("completed") << true << true << u"ap"_qs << u"Apple"_qs;
        QTest::newRow("item spelling") << false << true << u"pear"_qs << u"Pear"_qs;
    }
    void leavingSettles()
    {
        QFETCH(bool, limit);
        QFETCH(bool, mandatory);
        QFETCH(QString, typed);
        QFETCH(QString, text);
        Form f;
        QVERIFY(f.ready());
        KelCombo *c = f.first;
        c->setList(u"Apple,Pear"_qs);
        c->setLimitToList(limit);
        c->setMandatory(mandatory);
        c->setText(u"Pear"_qs);
        c->setSelectOnFocus(true);
        field(f.second)->setFocus(Qt::MouseFocusReason);
        field(c)->setFocus(Qt::TabFocusReason);
        QCOMPARE(c->Combo1->SelLength(), 4);
        type(c, u"#"_qs);
        type(c, typed);
        field(f.second)->setFocus(Qt::TabFocusReason);
        QCOMPARE(c->Combo1->Text(), text);
    }

    // An empty mandatory field takes the reference text back on leaving, but only as far as
    // the limit lets a text stand: a saved form must load to the same text.
    void hostOriginalOnLeaving_data()
    {
        QTest::addColumn<bool>("limit");
        QTest::addColumn<QString>("original");
        QTest::addColumn<QString>("text");
        QTest::newRow("free") << false << u"zz"_qs << u"zz"_qs;
        QTest::newRow("no item") << true << u"zz"_qs << QString();
        QTest::newRow("item") << true << u"Pear"_qs << u"Pear"_qs;
    }
    void hostOriginalOnLeaving()
    {
        QFETCH(bool, limit);
        QFETCH(QString, original);
        QFETCH(QString, text);
        Form f;
        QVERIFY(f.ready());
        KelCombo *c = focused(f, u"Apple,Pear"_qs, limit);
        c->setTextOriginal(original);
        QTest::keyClick(field(c), Qt::Key_Left);
        field(f.second)->setFocus(Qt::TabFocusReason);
        QCOMPARE(c->Text(), text);
        KelCombo loaded;
        MemoryPropertyBag bag;
        c->WriteProperties(bag);
        loaded.ReadProperties(bag);
        QCOMPARE(loaded.Text(), text);
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
        QGuiApplication::clipboard()->setText(u"zz"_qs);
        QContextMenuEvent menuEvent(QContextMenuEvent::Mouse, QPoint(5, 5), field(c)->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(field(c), &menuEvent);
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        for (QAction *a : menu->actions())
            if (a->text().contains(u"Paste"_qs))
                a->trigger();
        menu->close();
        QCOMPARE(c->Text(), text);
        QCOMPARE(c->TextOriginal(), limit ? text : u"Apple"_qs);
    }

    void freeTextWhileLimitOffIsEmptiedOnceOn()
    {
        KelCombo c;
        c.setList(u"Apple"_qs);
        c.setLimitToList(false);
        c.setText(u"zz"_qs);
        QCOMPARE(c.Text(), u"zz"_qs);
        c.setLimitToList(true);
        QCOMPARE(c.Text(), QString());
        c.setText(u"Nope"_qs);
        QCOMPARE(c.Text(), QString());
        QCOMPARE(c.TextOriginal(), QString());
    }

    void maxLengthLimitsTypingOnly()
    {
        Form f;
        QVERIFY(f.ready());
        KelCombo *c = f.first;
        c->setLimitToList(false);
        c->setMaxLength(3);
        c->setMaxLength(-1); // ignored
        field(c)->setFocus(Qt::MouseFocusReason);
        type(c, u"abcd"_qs);
        QCOMPARE(c->Text(), u"abc"_qs);
        QCOMPARE(c->MaxLength(), qint16(3));
        c->setText(u"abcdef"_qs);
        QCOMPARE(c->Text(), u"abcdef"_qs);
    }

    void enterMovesOn()
    {
        Form f;
        QVERIFY(f.ready());
        f.first->setList(u"Apple"_qs);
        field(f.first)->setFocus(Qt::MouseFocusReason);
        QTest::keyClick(field(f.first), Qt::Key_Return);
        QCOMPARE(QApplication::focusWidget(), field(f.second));
    }

    void indexesAndTags()
    {
        KelCombo c;
        c.setList(u"a,b,B"_qs);
        c.setListTag(u"t1,\"t,2\",t3"_qs);
        c.setListIndex(2);
        QCOMPARE(c.Text(), u"b"_qs);
        QCOMPARE(c.TextOriginal(), u"b"_qs);
        QCOMPARE(c.ListItem(), u"a"_qs); // the item before the selected one
        QCOMPARE(c.ListTagItem(), u"t,2"_qs);
        QCOMPARE(c.ListTagItem(3), u"t3"_qs);
        QCOMPARE(c.ListTagItem(4), QString());
        c.setText(u"B"_qs);
        QCOMPARE(c.ListIndex(), qint16(3));
        c.setListIndex(0);
        c.setListIndex(4);
        QCOMPARE(c.Text(), u"B"_qs);
        c.setLimitToList(false);
        QCOMPARE(c.ListIndex(), qint16(-1));
        c.setListTag(u"only"_qs);
        QCOMPARE(c.ListTagItem(2), QString());
    }

    void dropDownWidth_data()
    {
        QTest::addColumn<int>("twips");
        QTest::addColumn<int>("stored");
        QTest::addColumn<int>("pixels");
        QTest::newRow("3000") << 3000 << 3000 << 200;
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
    }

    void persistence_data()
    {
        QTest::addColumn<bool>("ignoreCase");
        QTest::addColumn<int>("width");
        QTest::newRow("bag ignoring case") << true << 3000;
        QTest::newRow("exact bag") << false << 0;
    }
    void persistence()
    {
        QFETCH(bool, ignoreCase);
        QFETCH(int, width);
        KelCombo a;
        a.setList(u"x,\"y,z\""_qs);
        a.setListTag(u"1,2"_qs);
        a.setLimitToList(false);
        a.setText(u"free"_qs);
        a.setMaxLength(12);
        a.setDropDownWidth(3000);
        MemoryPropertyBag bag(ignoreCase ? PropertyBag::NameMatch::IgnoreCase : PropertyBag::NameMatch::Exact);
        a.WriteProperties(bag);
        QVERIFY(bag.contains(u"DropDownWidth"_qs));
        KelCombo b;
        b.ReadProperties(bag);
        QCOMPARE(b.DropDownWidth(), width);
        QCOMPARE(b.Combo1->items(), a.Combo1->items());
        QCOMPARE(b.Text(), u"free"_qs);
        QCOMPARE(b.ListTagItem(2), u"2"_qs);
        QCOMPARE(b.MaxLength(), qint16(12));
    }

    // A host that sets Text before List (a .ui file's order) gets the same control.
    void setterOrder()
    {
        KelCombo a;
        a.setText(u"Pear"_qs);
        a.setList(u"Apple,Pear"_qs);
        QCOMPARE(a.Text(), u"Pear"_qs);
        QCOMPARE(a.ListIndex(), qint16(2));
        KelCombo b;
        b.setProperty("Text", u"free"_qs);
        b.setProperty("LimitToList", false);
        QCOMPARE(b.property("Text").toString(), u"free"_qs);
    }

    void valid_data()
    {
        QTest::addColumn<bool>("locked");
        QTest::addColumn<bool>("mandatory");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("valid");
        QTest::newRow("blanks") << false << true << u"  "_qs << false;
        QTest::newRow("blanks locked") << true << true << u"  "_qs << true;
        QTest::newRow("empty optional") << false << false << QString() << true;
        QTest::newRow("text") << false << true << u" a "_qs << true;
    }
    void valid()
    {
        QFETCH(bool, locked);
        QFETCH(bool, mandatory);
        QFETCH(QString, text);
        QFETCH(bool, valid);
        KelCombo c;
        c.setLimitToList(false);
        c.setLocked(locked);
        c.setMandatory(mandatory);
        c.setText(text);
        QCOMPARE(c.Valid(), valid);
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
        QVERIFY(w->property("KelControlsProc").isValid());
        const QImage img = w->grab().toImage();
        const QPalette pal = w->palette();
        const int h = img.height(), right = img.width() - 2, mid = h / 2;
        auto at = [&](int x, int y) { return img.pixel(x, y); };
        auto role = [&](QPalette::ColorRole r) { return pal.color(r).rgb(); };
        QCOMPARE(at(0, mid), role(QPalette::Dark));
        QCOMPARE(at(img.width() - 1, mid), role(QPalette::Light));
        QCOMPARE(at(1, mid), role(QPalette::Shadow));
        QCOMPARE(at(mid, h - 2), role(QPalette::Light)); // bottom one pixel short
        const int strip = right - librarySettings().ButtonWidthPixels;
        QCOMPARE(at(strip, mid), role(QPalette::Midlight));
        QCOMPARE(at(right - 1, mid), role(QPalette::Shadow));
    }
};

QTEST_MAIN(TestKelCombo)
#include "tst_kelcombo.moc"
