// The two readers on their own: what a form's text and its .frx give, and where bad input is
// reported.
#include "frmreader.h"
#include "frxreader.h"

#include <QTest>

using namespace kel::classic;

static const char *const formLF =
    "VERSION 5.00\n"
    "Object = \"{12345678-1234-1234-1234-123456789012}#8.0#0\"; \"kelcontrols8.ocx\"\n"
    "Begin VB.Form frmMain \n"
    "   Caption         =   \"Say \"\"hi\"\" 'there'\"   'a comment\n"
    "   ClientWidth     =   4680\n"
    "   BeginProperty Font \n"
    "      Name            =   \"Tahoma\"\n"
    "      Size            =   8.25\n"
    "   EndProperty\n"
    "   Begin VB.Frame fra \n"
    "      Begin KelControls8.KelText txt \n"
    "         Mandatory       =   0   'False\n"
    "         Tab(0).ControlCount=   2\n"
    "         TabCaption(1)   =   \"Two\"\n"
    "      End\n"
    "   End\n"
    "   Begin VB.Label lbl \n"
    "      Caption         =   $\"frmMain.frx\":0A3C\n"
    "      Text            =   \"frmMain.frx\":0000\n"
    "   End\n"
    "End\n"
    "Attribute VB_Name = \"frmMain\"\n"
    "Option Explicit\n"
    "Private Sub txt_Change()\n"
    "End Sub\n"
    "Public Sub Form_Load()\n"
    "End Sub\n"
    "Private Sub helper_Thing()\n"
    "End Sub\n";

class TstFrmReader : public QObject
{
    Q_OBJECT
private slots:
    void structure_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("LF") << QByteArray(formLF);
        QTest::newRow("CRLF") << QByteArray(formLF).replace("\n", "\r\n");
    }

    void structure()
    {
        QFETCH(QByteArray, text);
        FrmForm form;
        Problem error;
        QVERIFY2(readFrm(text, QStringLiteral("f.frm"), QStringLiteral("windows-1252"), &form, &error), qPrintable(error.text()));
        QCOMPARE(form.version, QStringLiteral("5.00"));
        QCOMPARE(form.objects.size(), 1);
        QCOMPARE(form.root.qualifiedClass(), QStringLiteral("VB.Form"));
        QCOMPARE(form.root.find(QStringLiteral("caption"))->value, QStringLiteral("Say \"hi\" 'there'"));
        const FrmProperty *font = form.root.find(QStringLiteral("Font"));
        QVERIFY(font && font->isGroup);
        QCOMPARE(font->find(QStringLiteral("Size"))->value, QStringLiteral("8.25"));
        QCOMPARE(form.root.children.size(), 2);
        const FrmControl &txt = form.root.children[0].children[0];
        QCOMPARE(txt.qualifiedClass(), QStringLiteral("KelControls8.KelText"));
        QCOMPARE(txt.find(QStringLiteral("Mandatory"))->value, QStringLiteral("0"));
        QCOMPARE(txt.find(QStringLiteral("Tab(0).ControlCount"))->value, QStringLiteral("2"));
        QCOMPARE(txt.find(QStringLiteral("TabCaption(1)"))->line, 14);
        const FrmControl &lbl = form.root.children[1];
        QVERIFY(lbl.find(QStringLiteral("Caption"))->frx->dollar);
        QCOMPARE(lbl.find(QStringLiteral("Caption"))->frx->offset, 0xA3Cu);
        QCOMPARE(lbl.find(QStringLiteral("Text"))->frx->file, QStringLiteral("frmMain.frx"));
        QVERIFY(!lbl.find(QStringLiteral("Text"))->frx->dollar);
        QCOMPARE(form.attributes, QStringList{QStringLiteral("VB_Name = \"frmMain\"")});
        QCOMPARE(form.events.size(), 2); // helper_Thing names no control
        QCOMPARE(form.events[0].name, QStringLiteral("txt_Change"));
        QCOMPARE(form.events[0].line, 24);
    }

    void badText_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("codePage");
        QTest::addColumn<int>("line");
        QTest::addColumn<QString>("message");
        const QByteArray head = "VERSION 5.00\r\nBegin VB.Form f\r\n";
        QTest::newRow("no header") << QByteArray("Begin VB.Form f\nEnd\n") << "windows-1252" << 1 << "no VERSION";
        QTest::newRow("unclosed block") << head + "   Begin VB.Label l\r\n   End\r\n" << "windows-1252" << 5 << "\"f\" opened at line 2 is not closed";
        QTest::newRow("unclosed group") << head + "   BeginProperty Font\r\n   Name = \"x\"\r\nEnd\r\n" << "windows-1252" << 5 << "group opened at line 3";
        QTest::newRow("malformed line") << head + "   Caption is \"x\"\r\nEnd\r\n" << "windows-1252" << 3 << "malformed line";
        QTest::newRow("unclosed string") << head + "   Caption = \"x\r\nEnd\r\n" << "windows-1252" << 3 << "unclosed string";
        QTest::newRow("short offset") << head + "   Caption = \"f.frx\":A3\r\nEnd\r\n" << "windows-1252" << 3 << "bad .frx offset";
        QTest::newRow("no value") << head + "   Caption = 'nothing\r\nEnd\r\n" << "windows-1252" << 3 << "no value";
        QTest::newRow("undefined 1252 byte") << head + "   Caption = \"a\x81\"\r\nEnd\r\n" << "windows-1252" << 3 << "not valid in windows-1252";
        QTest::newRow("broken GBK pair") << head + "   Caption = \"\xC4\xE3\xBA\"\r\nEnd\r\n" << "GBK" << 3 << "not valid in GBK";
        QTest::newRow("unknown encoding") << head + "End\r\n" << "no-such-codepage" << 0 << "unknown encoding";
        QTest::newRow("End too many") << head + "End\r\nEnd\r\n" << "windows-1252" << 0 << QString(); // code after the form is free text
    }

    void badText()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, codePage);
        QFETCH(int, line);
        QFETCH(QString, message);
        FrmForm form;
        Problem error;
        const bool ok = readFrm(text, QStringLiteral("bad.frm"), codePage, &form, &error);
        QCOMPARE(ok, message.isEmpty());
        if (ok)
            return;
        QCOMPARE(error.file, QStringLiteral("bad.frm"));
        QCOMPARE(error.line, line);
        QVERIFY2(error.message.contains(message), qPrintable(error.message));
    }

    void frxRecords_data()
    {
        QTest::addColumn<QByteArray>("frx");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("codePage");
        QTest::addColumn<QString>("expected");   // items joined by "|"; "!" + message for an error
        QTest::addColumn<QString>("damage");
        QTest::newRow("long string") << QByteArray("\x05\0\0\0a\r\nbc", 9) << "long" << "windows-1252" << "a\r\nbc" << "";
        QTest::newRow("short string") << QByteArray("\x03" "d\xE9j", 4) << "short" << "windows-1252" << "d\u00e9j" << "";
        QTest::newRow("short string, 16-bit length") << QByteArray("\xFF\x01\x01", 3) + QByteArray(257, 'x') << "short" << "windows-1252" << QString(257, u'x') << "";
        QTest::newRow("double-byte") << QByteArray("\x04\xCB\xCE\xCC\xE5", 5) << "short" << "GBK" << "\u5b8b\u4f53" << "";
        QTest::newRow("list") << QByteArray("\x02\0\x02\0\x01\0a\x02\0bc", 11) << "list" << "windows-1252" << "a|bc" << "";
        QTest::newRow("empty list") << QByteArray("\0\0", 2) << "list" << "windows-1252" << "" << "";
        QTest::newRow("list of one-byte items") << QByteArray("\x02\0\x03\0\x01\0" "0\x01\0" "7", 10) << "list" << "windows-1252" << "0|7" << "";
        QTest::newRow("cut short") << QByteArray("\x09\0\0\0abc", 7) << "long" << "windows-1252" << "abc" << "record declares 9 bytes, the file holds 3";
        QTest::newRow("list cut short") << QByteArray("\x02\0\x02\0\x02\0ab\x02\0c", 11) << "list" << "windows-1252" << "ab|c" << "record declares 2 bytes, the file holds 1";
        QTest::newRow("past the end") << QByteArray("\x01", 1) << "long@5" << "windows-1252" << "!offset past the end" << "";
        QTest::newRow("header cut off") << QByteArray("\x01\0", 2) << "long" << "windows-1252" << "!cut off in its header" << "";
        QTest::newRow("not a picture") << QByteArray("\x08\0\0\0xx\0\0\0\0\0\0", 12) << "picture" << "windows-1252" << "!not a picture" << "";
        QTest::newRow("empty picture") << QByteArray("\x08\0\0\0lt\0\0\0\0\0\0", 12) << "picture" << "windows-1252" << "" << "";
        QTest::newRow("picture sizes") << QByteArray("\x08\0\0\0lt\0\0\x09\0\0\0", 12) << "picture" << "windows-1252" << "!sizes disagree" << "";
    }

    void frxRecords()
    {
        QFETCH(QByteArray, frx);
        QFETCH(QString, kind);
        QFETCH(QString, codePage);
        QFETCH(QString, expected);
        QFETCH(QString, damage);
        const FrxFile file(QStringLiteral("t.frx"), frx, codePage);
        const quint32 offset = kind.contains(u'@') ? kind.section(u'@', 1).toUInt() : 0;
        kind = kind.section(u'@', 0, 0);
        Problem error, damaged;
        QString text;
        QStringList items;
        QByteArray picture;
        bool ok = false;
        if (kind == u"long")
            ok = file.readLongString(offset, &text, &error, &damaged);
        else if (kind == u"short")
            ok = file.readShortString(offset, &text, &error, &damaged);
        else if (kind == u"list")
            ok = file.readList(offset, &items, &error, &damaged), text = items.join(u'|');
        else
            ok = file.readPicture(offset, &picture, &error, &damaged), text = QString::fromLatin1(picture);
        QCOMPARE(ok, !expected.startsWith(u'!'));
        if (!ok) {
            QVERIFY2(error.message.contains(expected.mid(1)), qPrintable(error.message));
            QVERIFY(error.text().startsWith(QStringLiteral("t.frx: offset 0x%1:").arg(offset, 0, 16)));
            return;
        }
        QCOMPARE(text, expected);
        QCOMPARE(damaged.message, damage);
    }
};

QTEST_GUILESS_MAIN(TstFrmReader)
#include "tst_frmreader.moc"
