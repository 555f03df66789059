#include "formbuilder.h"

#include "frxreader.h"

#include "controls/kelcontrols8.h"
#include "designer/persisted.h"
#include "forms/units.h"
#include "forms/usercontrol.h"
#include "platform/propertybag.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGroupBox>
#include <QIcon>
#include <QImage>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSet>
#include <QShortcut>
#include <cmath>
#include <map>

namespace kel::classic {

namespace {

QString tr(const char *text) { return QCoreApplication::translate("kel::classic::FormBuilder", text); }

// Numbers as the designer writes them: decimals with ".", and `&H...&` hexadecimal.
std::optional<double> numberOf(const FrmProperty &p)
{
    if (p.quoted || p.frx || p.isGroup)
        return std::nullopt;
    QStringView v = p.value;
    bool ok = false;
    if (v.startsWith(u"&H", Qt::CaseInsensitive)) {
        v = v.mid(2);
        if (v.endsWith(u'&'))
            v.chop(1);
        const quint32 n = v.toUInt(&ok, 16);
        return ok ? std::optional<double>(double(qint32(n))) : std::nullopt;
    }
    const double d = v.toDouble(&ok);
    return ok ? std::optional<double>(d) : std::nullopt;
}

// What a value gives a property bag: text as a String, whole numbers as a Long, others a Double.
Variant bagValue(const FrmProperty &p, const QString &text)
{
    if (p.quoted || p.frx)
        return text;
    if (const std::optional<double> n = numberOf(p)) {
        if (*n == std::trunc(*n) && std::abs(*n) <= 2147483647.0)
            return qint32(*n);
        return *n;
    }
    return p.value;
}

// The designer's shortcut notation: ^ Ctrl, + Shift, % Alt, {KEY} for named keys.
QKeySequence shortcutOf(const QString &text)
{
    QString mods, key = text;
    while (!key.isEmpty() && QStringView(u"^+%").contains(key.front())) {
        mods += key.front() == u'^' ? QStringLiteral("Ctrl+") : key.front() == u'+' ? QStringLiteral("Shift+") : QStringLiteral("Alt+");
        key.remove(0, 1);
    }
    if (key.startsWith(u'{') && key.endsWith(u'}'))
        key = key.mid(1, key.size() - 2);
    static const QHash<QString, QString> named = {
        {QStringLiteral("DEL"), QStringLiteral("Del")},       {QStringLiteral("DELETE"), QStringLiteral("Del")},
        {QStringLiteral("INSERT"), QStringLiteral("Ins")},    {QStringLiteral("BKSP"), QStringLiteral("Backspace")},
        {QStringLiteral("BACKSPACE"), QStringLiteral("Backspace")}};
    key = named.value(key.toUpper(), key);
    return QKeySequence::fromString(mods + key, QKeySequence::PortableText);
}

// Line coordinates follow the container's scale; everything else is in twips.
struct Scale {
    double x = 1, y = 1;  // twips per unit
};

// Properties of a block that the import looks at, so that what is left can be reported.
class Block
{
public:
    explicit Block(const FrmControl &c) : m_c(c) {}
    const FrmProperty *take(const QString &name)
    {
        const FrmProperty *p = m_c.find(name);
        if (p)
            m_used.insert(p->name.toLower());
        return p;
    }
    std::optional<double> number(const QString &name)
    {
        const FrmProperty *p = take(name);
        return p ? numberOf(*p) : std::nullopt;
    }
    double number(const QString &name, double fallback) { return number(name).value_or(fallback); }
    bool boolean(const QString &name, bool fallback) { return number(name).value_or(fallback ? -1 : 0) != 0; }
    bool used(const FrmProperty &p) const { return m_used.contains(p.name.toLower()); }
    void use(const QString &name) { m_used.insert(name.toLower()); }
    const FrmControl &control() const { return m_c; }

private:
    const FrmControl &m_c;
    QSet<QString> m_used;
};

class Builder
{
public:
    Builder(const FrmForm &form, const QString &dir, const ImportOptions &options, ImportedForm *out, Problem *error)
        : m_form(form), m_dir(dir), m_options(options), m_out(out), m_error(error) {}

    bool build();

private:
    bool fail(const Problem &p) { *m_error = p; return false; }
    const FrxFile *frx(const FrmProperty &p);
    // Reads one record of the .frx the property names; a record cut short is noted, not refused.
    template<class Read> bool fromFrx(const FrmProperty &p, Read read);
    bool text(const FrmProperty &p, QString *out);
    bool list(const FrmProperty &p, QStringList *out);
    bool picture(const FrmControl &c, const FrmProperty &p, QPixmap *out);
    void noteDamage(const Problem &damage) { if (!damage.message.isEmpty()) m_out->report.damaged.append(damage); }

    template<class W> W *make(QWidget *parent, const FrmControl &c)
    {
        auto *w = new W(parent);
        w->setObjectName(widgetName(c));
        m_out->carried[w]; // written to the .ui even when it carries nothing but its geometry
        return w;
    }
    void carry(QObject *w, const char *name, const QVariant &value)
    {
        w->setProperty(name, value);
        QList<QByteArray> &list = m_out->carried[w];
        if (!list.contains(name))
            list.append(name);
    }
    bool caption(Block &b, QObject *w, const char *property);
    bool font(Block &b, QWidget *w);
    void colours(Block &b, QWidget *w, QPalette::ColorRole back, QPalette::ColorRole fore, bool fill);
    void hostProperties(Block &b, QWidget *w);
    void reportRest(const Block &b, const QString &who);

    bool children(const FrmControl &c, QWidget *container, const Scale &scale);
    bool control(const FrmControl &c, QWidget *parent, const Scale &scale);
    bool ours(const FrmControl &c, QWidget *parent);
    bool stock(const FrmControl &c, QWidget *parent, const Scale &scale);
    bool menu(const FrmControl &c, QMenuBar *bar, QMenu *parentMenu);

    const FrmForm &m_form;
    QString m_dir;
    ImportOptions m_options;
    ImportedForm *m_out;
    Problem *m_error;
    std::map<QString, FrxFile> m_frx;
    std::multimap<int, QWidget *> m_tabs;
};

const FrxFile *Builder::frx(const FrmProperty &p)
{
    const QString key = p.frx->file.toLower();
    if (auto it = m_frx.find(key); it != m_frx.end())
        return &it->second;
    QFile file(QDir(m_dir).filePath(p.frx->file));
    if (!file.open(QIODevice::ReadOnly)) {
        fail({m_form.file, p.line, -1, tr("cannot open \"%1\": %2").arg(p.frx->file, file.errorString())});
        return nullptr;
    }
    return &m_frx.emplace(key, FrxFile(p.frx->file, file.readAll(), m_options.codePage)).first->second;
}

template<class Read>
bool Builder::fromFrx(const FrmProperty &p, Read read)
{
    const FrxFile *f = frx(p);
    if (!f)
        return false;
    Problem damage;
    const bool ok = read(*f, p.frx->offset, &damage);
    noteDamage(damage);
    return ok;
}

// A string from the line, or from the .frx in either of its two string records.
bool Builder::text(const FrmProperty &p, QString *out)
{
    if (!p.frx) {
        *out = p.value;
        return true;
    }
    return fromFrx(p, [&](const FrxFile &f, quint32 offset, Problem *damage) {
        return p.frx->dollar ? f.readLongString(offset, out, m_error, damage) : f.readShortString(offset, out, m_error, damage);
    });
}

bool Builder::list(const FrmProperty &p, QStringList *out)
{
    if (!p.frx) {
        *out = p.value.split(u'\n');
        return true;
    }
    return fromFrx(p, [&](const FrxFile &f, quint32 offset, Problem *damage) { return f.readList(offset, out, m_error, damage); });
}

bool Builder::picture(const FrmControl &c, const FrmProperty &p, QPixmap *out)
{
    if (!p.frx) {
        m_out->report.notCarried.append({p.line, tr("%1.%2: a picture not in the .frx").arg(c.name, p.name)});
        return true;
    }
    QByteArray bytes;
    if (!fromFrx(p, [&](const FrxFile &f, quint32 offset, Problem *damage) { return f.readPicture(offset, &bytes, m_error, damage); }))
        return false;
    if (bytes.isEmpty())
        return true;
    const QImage image = QImage::fromData(bytes);
    if (image.isNull()) {
        m_out->report.notCarried.append({p.line, tr("%1.%2: a picture in a format this system cannot read").arg(c.name, p.name)});
        return true;
    }
    *out = QPixmap::fromImage(image);
    return true;
}

bool Builder::caption(Block &b, QObject *w, const char *property)
{
    if (const FrmProperty *p = b.take(QStringLiteral("Caption"))) {
        QString t;
        if (!text(*p, &t))
            return false;
        carry(w, property, t);
    }
    return true;
}

bool Builder::font(Block &b, QWidget *w)
{
    const FrmProperty *f = b.take(QStringLiteral("Font"));
    if (!f)
        return true;
    QFont font;
    if (f->frx) {
        if (!fromFrx(*f, [&](const FrxFile &file, quint32 offset, Problem *damage) { return file.readFont(offset, &font, m_error, damage); }))
            return false;
    } else {
        auto get = [&](const char *name) { return f->find(QString::fromLatin1(name)); };
        if (const FrmProperty *n = get("Name"))
            font.setFamily(n->value);
        const auto num = [&](const char *name, double d) { const FrmProperty *p = get(name); return p ? numberOf(*p).value_or(d) : d; };
        // .ui files keep whole points; both ways of running a form round the same.
        font.setPointSize(std::max(1, int(std::lround(num("Size", 8.25)))));
        font.setBold(num("Weight", 400) >= 600);
        font.setItalic(num("Italic", 0) != 0);
        font.setUnderline(num("Underline", 0) != 0);
        font.setStrikeOut(num("Strikethrough", 0) != 0);
    }
    carry(w, "font", font);
    return true;
}

void Builder::colours(Block &b, QWidget *w, QPalette::ColorRole back, QPalette::ColorRole fore, bool fill)
{
    const std::optional<double> bc = b.number(QStringLiteral("BackColor"));
    const std::optional<double> fc = b.number(QStringLiteral("ForeColor"));
    if (!bc && !fc)
        return;
    QPalette pal = w->palette();
    const QPalette base = w->parentWidget() ? w->parentWidget()->palette() : pal;
    for (QPalette::ColorGroup g : {QPalette::Active, QPalette::Inactive}) {
        if (bc)
            pal.setColor(g, back, toQColor(quint32(qint32(*bc)), base));
        if (fc)
            pal.setColor(g, fore, toQColor(quint32(qint32(*fc)), base));
    }
    carry(w, "palette", pal);
    if (bc && fill)
        carry(w, "autoFillBackground", true);
}

// What the container owns: place, size, tab order, tool tip, tag, visibility.
void Builder::hostProperties(Block &b, QWidget *w)
{
    const int x = twipsToPixelsX(b.number(QStringLiteral("Left"), 0));
    const int y = twipsToPixelsY(b.number(QStringLiteral("Top"), 0));
    if (auto *control = qobject_cast<UserControl *>(w)) {
        control->move(x, y);
        if (const auto width = b.number(QStringLiteral("Width")))
            control->setWidth(*width);
        if (const auto height = b.number(QStringLiteral("Height")))
            control->setHeight(*height);
    } else {
        w->setGeometry(x, y, twipsToPixelsX(b.number(QStringLiteral("Width"), 0)), twipsToPixelsY(b.number(QStringLiteral("Height"), 0)));
    }
    if (const FrmProperty *p = b.take(QStringLiteral("ToolTipText"))) {
        QString tip;
        if (text(*p, &tip))
            carry(w, "toolTip", tip);
    }
    if (const FrmProperty *p = b.take(QStringLiteral("Tag"))) {
        QString tag;
        if (text(*p, &tag))
            carry(w, "Tag", tag);
    }
    if (const auto index = b.number(QStringLiteral("Index")))
        carry(w, "Index", int(*index));
    if (!b.boolean(QStringLiteral("Visible"), true))
        carry(w, "visible", false);
    // The library's controls keep Enabled in their own property bag.
    if (!qobject_cast<UserControl *>(w) && !b.boolean(QStringLiteral("Enabled"), true))
        carry(w, "enabled", false);
    const bool tabStop = b.boolean(QStringLiteral("TabStop"), true);
    // The library's controls take the focus in a child widget, their focus proxy; Qt leaves a
    // widget that takes no focus out of the tab order.
    const QWidget *focus = w->focusProxy() ? w->focusProxy() : w;
    if (const auto tab = b.number(QStringLiteral("TabIndex")); tab && tabStop && (focus->focusPolicy() & Qt::TabFocus))
        m_tabs.emplace(int(*tab), w);
    if (!tabStop && w->focusPolicy() & Qt::TabFocus)
        carry(w, "focusPolicy", QVariant::fromValue(Qt::ClickFocus));
}

void Builder::reportRest(const Block &b, const QString &who)
{
    for (const FrmProperty &p : b.control().properties)
        if (!b.used(p))
            m_out->report.notCarried.append({p.line, QStringLiteral("%1.%2").arg(who, p.name)});
}

// The library's controls: made by the class factory; the block's properties go to their own
// reading through a property bag, as the classic container did.
bool Builder::ours(const FrmControl &c, QWidget *parent)
{
    QString error;
    QObject *made = createObject(c.className, parent, &error);
    auto *control = qobject_cast<UserControl *>(made);
    if (!control) {
        delete made;
        return fail({m_form.file, c.line, -1, tr("%1 is not a control").arg(c.qualifiedClass())});
    }
    control->setObjectName(widgetName(c));
    m_out->carried[control];
    Block b(c);
    hostProperties(b, control);
    QSet<QString> persisted;
    for (const PersistedProperty &p : persistedProperties(c.className))
        persisted.insert(p.name.toLower());
    MemoryPropertyBag bag(MemoryPropertyBag::NameMatch::IgnoreCase);
    for (const FrmProperty &p : c.properties) {
        if (b.used(p) || !persisted.contains(p.name.toLower()))
            continue;
        QString value = p.value;
        if (p.frx && !text(p, &value))
            return false;
        bag.set(p.name, bagValue(p, value));
        b.use(p.name);
    }
    control->ReadProperties(bag);
    reportRest(b, c.name);
    ++m_out->report.converted;
    return true;
}

bool Builder::stock(const FrmControl &c, QWidget *parent, const Scale &scale)
{
    Block b(c);
    const QString &cls = c.className;
    QWidget *w = nullptr;
    std::optional<QRect> lineRect; // a line has end points, not Left/Top/Width/Height
    auto alignment = [&](Qt::Alignment vertical) {
        const int a = int(b.number(QStringLiteral("Alignment"), 0));
        return (a == 1 ? Qt::AlignRight : a == 2 ? Qt::AlignHCenter : Qt::AlignLeft) | vertical;
    };
    if (cls == u"Label") {
        auto *l = make<QLabel>(parent, c);
        w = l;
        if (!caption(b, l, "text"))
            return false;
        carry(l, "alignment", QVariant::fromValue(alignment(Qt::AlignTop)));
        // Classic labels break long captions at word boundaries within their width.
        carry(l, "wordWrap", true);
        if (!b.boolean(QStringLiteral("UseMnemonic"), true))
            carry(l, "textFormat", QVariant::fromValue(Qt::PlainText));
        if (b.number(QStringLiteral("BorderStyle"), 0) == 1)
            carry(l, "frameShape", QVariant::fromValue(QFrame::Box));
        const bool opaque = b.number(QStringLiteral("BackStyle"), 1) != 0;
        colours(b, l, QPalette::Window, QPalette::WindowText, opaque);
        b.use(QStringLiteral("AutoSize"));
        b.use(QStringLiteral("WordWrap"));
    } else if (cls == u"CommandButton") {
        auto *btn = make<QPushButton>(parent, c);
        w = btn;
        if (!caption(b, btn, "text"))
            return false;
        if (b.boolean(QStringLiteral("Default"), false))
            carry(btn, "default", true);
        if (b.boolean(QStringLiteral("Cancel"), false))
            carry(btn, "Cancel", true);
        if (const FrmProperty *p = b.take(QStringLiteral("Picture")); p && b.number(QStringLiteral("Style"), 0) == 1) {
            QPixmap pix;
            if (!picture(c, *p, &pix))
                return false;
            if (!pix.isNull()) {
                carry(btn, "icon", QIcon(pix));
                carry(btn, "iconSize", pix.size());
            }
        }
        colours(b, btn, QPalette::Button, QPalette::ButtonText, false);
    } else if (cls == u"TextBox") {
        QString value;
        if (const FrmProperty *p = b.take(QStringLiteral("Text")); p && !text(*p, &value))
            return false;
        const bool locked = b.boolean(QStringLiteral("Locked"), false);
        if (b.boolean(QStringLiteral("MultiLine"), false)) {
            auto *t = make<QPlainTextEdit>(parent, c);
            w = t;
            value.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
            carry(t, "plainText", value);
            const int bars = int(b.number(QStringLiteral("ScrollBars"), 0));
            carry(t, "horizontalScrollBarPolicy", QVariant::fromValue(bars & 1 ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff));
            carry(t, "verticalScrollBarPolicy", QVariant::fromValue(bars & 2 ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff));
            if (!(bars & 1))
                carry(t, "lineWrapMode", QVariant::fromValue(QPlainTextEdit::WidgetWidth));
            else
                carry(t, "lineWrapMode", QVariant::fromValue(QPlainTextEdit::NoWrap));
            if (locked)
                carry(t, "readOnly", true);
        } else {
            auto *t = make<QLineEdit>(parent, c);
            w = t;
            carry(t, "text", value);
            if (const auto max = b.number(QStringLiteral("MaxLength")); max && *max > 0)
                carry(t, "maxLength", int(*max));
            if (const FrmProperty *p = b.take(QStringLiteral("PasswordChar")); p && !p->value.isEmpty())
                carry(t, "echoMode", QVariant::fromValue(QLineEdit::Password));
            if (locked)
                carry(t, "readOnly", true);
            carry(t, "alignment", QVariant::fromValue(alignment(Qt::AlignVCenter)));
        }
        if (b.number(QStringLiteral("BorderStyle"), 1) == 0)
            carry(w, "frameShape", QVariant::fromValue(QFrame::NoFrame));
        colours(b, w, QPalette::Base, QPalette::Text, false);
    } else if (cls == u"CheckBox" || cls == u"OptionButton") {
        QAbstractButton *btn;
        if (cls == u"CheckBox") {
            auto *box = make<QCheckBox>(parent, c);
            const int v = int(b.number(QStringLiteral("Value"), 0));
            if (v == 2) {
                carry(box, "tristate", true);
                box->setCheckState(Qt::PartiallyChecked);
            } else if (v == 1) {
                carry(box, "checked", true);
            }
            btn = box;
        } else {
            btn = make<QRadioButton>(parent, c);
            if (b.boolean(QStringLiteral("Value"), false))
                carry(btn, "checked", true);
        }
        w = btn;
        if (!caption(b, btn, "text"))
            return false;
        if (b.number(QStringLiteral("Alignment"), 0) == 1)
            carry(btn, "layoutDirection", QVariant::fromValue(Qt::RightToLeft));
        colours(b, btn, QPalette::Window, QPalette::WindowText, true);
    } else if (cls == u"ComboBox" || cls == u"ListBox") {
        QStringList items, data;
        if (const FrmProperty *p = b.take(QStringLiteral("List")); p && !list(*p, &items))
            return false;
        if (const FrmProperty *p = b.take(QStringLiteral("ItemData")); p && !list(*p, &data))
            return false;
        if (cls == u"ComboBox") {
            auto *box = make<QComboBox>(parent, c);
            w = box;
            box->addItems(items);
            const int style = int(b.number(QStringLiteral("Style"), 0));
            if (style != 2)
                carry(box, "editable", true);
            QString value;
            if (const FrmProperty *p = b.take(QStringLiteral("Text")); p && !text(*p, &value))
                return false;
            // The index, not the text: Designer's loaders set it after the items.
            const int index = style == 2 ? -1 : int(items.indexOf(value));
            carry(box, "currentIndex", index);
            if (index < 0 && !value.isEmpty())
                carry(box, "currentText", value);
        } else {
            auto *box = make<QListWidget>(parent, c);
            w = box;
            box->addItems(items);
        }
        if (!data.isEmpty())
            carry(w, "ItemData", data);
        colours(b, w, QPalette::Base, QPalette::Text, false);
    } else if (cls == u"Frame") {
        auto *g = make<QGroupBox>(parent, c);
        w = g;
        if (!caption(b, g, "title"))
            return false;
        if (b.number(QStringLiteral("BorderStyle"), 1) == 0)
            carry(g, "flat", true);
        colours(b, g, QPalette::Window, QPalette::WindowText, true);
    } else if (cls == u"PictureBox" || cls == u"Image") {
        // A picture box is a container: a frame, its picture a label at the back.
        QFrame *frame = cls == u"Image" ? make<QLabel>(parent, c) : make<QFrame>(parent, c);
        w = frame;
        QLabel *pictureLabel = qobject_cast<QLabel *>(frame);
        if (const FrmProperty *p = b.take(QStringLiteral("Picture"))) {
            QPixmap pix;
            if (!picture(c, *p, &pix))
                return false;
            if (!pix.isNull()) {
                if (!pictureLabel) {
                    pictureLabel = new QLabel(frame);
                    pictureLabel->setObjectName(frame->objectName() + QStringLiteral("_picture"));
                    pictureLabel->setGeometry(0, 0, pix.width(), pix.height());
                    m_out->carried[pictureLabel];
                }
                carry(pictureLabel, "pixmap", pix);
                carry(pictureLabel, "alignment", QVariant::fromValue(Qt::AlignLeft | Qt::AlignTop));
                if (cls == u"Image" && b.boolean(QStringLiteral("Stretch"), false))
                    carry(pictureLabel, "scaledContents", true);
            }
        }
        const int border = int(b.number(QStringLiteral("BorderStyle"), cls == u"Image" ? 0 : 1));
        if (border == 1) {
            carry(frame, "frameShape", QVariant::fromValue(QFrame::Panel));
            carry(frame, "frameShadow", QVariant::fromValue(QFrame::Sunken));
        }
        colours(b, frame, QPalette::Window, QPalette::WindowText, cls == u"PictureBox");
        b.use(QStringLiteral("AutoSize"));
        b.use(QStringLiteral("ScaleMode"));
        b.use(QStringLiteral("ScaleWidth"));
        b.use(QStringLiteral("ScaleHeight"));
        b.use(QStringLiteral("ScaleLeft"));
        b.use(QStringLiteral("ScaleTop"));
    } else if (cls == u"HScrollBar" || cls == u"VScrollBar") {
        auto *s = make<QScrollBar>(parent, c);
        w = s;
        carry(s, "orientation", QVariant::fromValue(cls == u"HScrollBar" ? Qt::Horizontal : Qt::Vertical));
        const int lo = int(b.number(QStringLiteral("Min"), 0)), hi = int(b.number(QStringLiteral("Max"), 32767));
        carry(s, "minimum", std::min(lo, hi));
        carry(s, "maximum", std::max(lo, hi));
        carry(s, "invertedAppearance", lo > hi);
        carry(s, "value", int(b.number(QStringLiteral("Value"), lo)));
        carry(s, "singleStep", int(b.number(QStringLiteral("SmallChange"), 1)));
        carry(s, "pageStep", int(b.number(QStringLiteral("LargeChange"), 1)));
    } else if (cls == u"Line") {
        auto *f = make<QFrame>(parent, c);
        w = f;
        const double x1 = b.number(QStringLiteral("X1"), 0) * scale.x, x2 = b.number(QStringLiteral("X2"), 0) * scale.x;
        const double y1 = b.number(QStringLiteral("Y1"), 0) * scale.y, y2 = b.number(QStringLiteral("Y2"), 0) * scale.y;
        const int width = std::max(1, int(b.number(QStringLiteral("BorderWidth"), 1)));
        const bool horizontal = std::abs(y2 - y1) <= std::abs(x2 - x1);
        if (twipsToPixelsY(y1) != twipsToPixelsY(y2) && twipsToPixelsX(x1) != twipsToPixelsX(x2))
            m_out->report.notCarried.append({c.line, tr("%1: a slanting line, shown straight").arg(c.name)});
        const int px = twipsToPixelsX(std::min(x1, x2)), py = twipsToPixelsY(std::min(y1, y2));
        // A thick line grows below (right of) its points first, so that an etched pair a pixel
        // apart (grey over white) stays two lines.
        if (horizontal)
            f->setGeometry(px, py - (width - 1) / 2, std::max(1, twipsToPixelsX(std::abs(x2 - x1))), width);
        else
            f->setGeometry(px - (width - 1) / 2, py, width, std::max(1, twipsToPixelsY(std::abs(y2 - y1))));
        QPalette pal = f->palette();
        pal.setColor(QPalette::Window, toQColor(quint32(qint32(b.number(QStringLiteral("BorderColor"), double(qint32(0x80000008))))), pal));
        carry(f, "palette", pal);
        carry(f, "autoFillBackground", true);
        b.use(QStringLiteral("BorderStyle"));
        lineRect = f->geometry();
    } else if (cls == u"Shape") {
        auto *f = make<QFrame>(parent, c);
        w = f;
        const int shape = int(b.number(QStringLiteral("Shape"), 0));
        const QPalette pal = f->palette();
        const QColor border = toQColor(quint32(qint32(b.number(QStringLiteral("BorderColor"), double(qint32(0x80000008))))), pal);
        const int width = std::max(1, int(b.number(QStringLiteral("BorderWidth"), 1)));
        QString fill = QStringLiteral("transparent");
        if (b.number(QStringLiteral("FillStyle"), 1) == 0)
            fill = toQColor(quint32(qint32(b.number(QStringLiteral("FillColor"), 0))), pal).name();
        else if (b.number(QStringLiteral("BackStyle"), 0) == 1)
            fill = toQColor(quint32(qint32(b.number(QStringLiteral("BackColor"), double(qint32(0x80000005))))), pal).name();
        const int w0 = twipsToPixelsX(b.number(QStringLiteral("Width"), 0)), h0 = twipsToPixelsY(b.number(QStringLiteral("Height"), 0));
        const int radius = shape == 2 || shape == 3 ? std::min(w0, h0) / 2 : shape >= 4 ? std::min(w0, h0) / 6 : 0;
        carry(f, "styleSheet", QStringLiteral("QFrame#%1 { border: %2px solid %3; border-radius: %4px; background: %5; }")
                                   .arg(f->objectName()).arg(width).arg(border.name()).arg(radius).arg(fill));
        if (shape == 1 || shape == 3 || shape == 5)
            m_out->report.notCarried.append({c.line, tr("%1: a square or circle drawn in its whole rectangle").arg(c.name)});
    }
    if (!w)
        return false;
    hostProperties(b, w);
    if (lineRect)
        w->setGeometry(*lineRect);
    if (!font(b, w))
        return false;
    b.use(QStringLiteral("Appearance"));
    reportRest(b, c.name);
    ++m_out->report.converted;
    if ((cls == u"Frame" || cls == u"PictureBox") && !children(c, w, Scale{}))
        return false;
    return true;
}

bool Builder::control(const FrmControl &c, QWidget *parent, const Scale &scale)
{
    static const QStringList stockClasses = {
        QStringLiteral("Label"),      QStringLiteral("CommandButton"), QStringLiteral("TextBox"),   QStringLiteral("CheckBox"),
        QStringLiteral("OptionButton"), QStringLiteral("ComboBox"),    QStringLiteral("ListBox"),   QStringLiteral("Frame"),
        QStringLiteral("PictureBox"), QStringLiteral("Image"),         QStringLiteral("HScrollBar"), QStringLiteral("VScrollBar"),
        QStringLiteral("Line"),       QStringLiteral("Shape")};
    if (c.library.compare(u"KelControls8", Qt::CaseInsensitive) == 0)
        return ours(c, parent);
    if (c.library == u"VB" && c.className == u"Timer") {
        Block b(c);
        m_out->report.timers.append({c.line, tr("%1 (Interval %2)").arg(widgetName(c)).arg(b.number(QStringLiteral("Interval"), 0))});
        return true;
    }
    if (c.library == u"VB" && c.className == u"Menu")
        return true; // the form puts menus in its menu bar
    if (c.library == u"VB" && stockClasses.contains(c.className))
        return stock(c, parent, scale);

    auto *l = make<QLabel>(parent, c);
    Block b(c);
    hostProperties(b, l);
    carry(l, "text", QStringLiteral("%1\n%2").arg(c.qualifiedClass(), c.name));
    carry(l, "alignment", QVariant::fromValue(Qt::AlignCenter));
    carry(l, "frameShape", QVariant::fromValue(QFrame::Box));
    carry(l, "wordWrap", true);
    m_out->report.placeholders.append({c.line, QStringLiteral("%1 %2").arg(c.qualifiedClass(), widgetName(c))});
    return true;
}

bool Builder::children(const FrmControl &c, QWidget *container, const Scale &scale)
{
    Block b(c);
    Scale own = scale;
    // A container's own scale, for the lines on it.
    const int mode = int(b.number(QStringLiteral("ScaleMode"), 1));
    static const double perUnit[] = {0, 1, 20, 15, 120, 1440, 56.6929, 566.929};
    if (mode >= 1 && mode <= 7) {
        own = {mode == 3 ? twipsPerPixelX() : perUnit[mode], mode == 3 ? twipsPerPixelY() : mode == 4 ? 240.0 : perUnit[mode]};
    } else if (mode == 0) {
        const double sw = b.number(QStringLiteral("ScaleWidth"), 0), sh = b.number(QStringLiteral("ScaleHeight"), 0);
        const double w = c.className == u"Form" ? b.number(QStringLiteral("ClientWidth"), 0) : b.number(QStringLiteral("Width"), 0);
        const double h = c.className == u"Form" ? b.number(QStringLiteral("ClientHeight"), 0) : b.number(QStringLiteral("Height"), 0);
        if (sw != 0 && sh != 0)
            own = {w / sw, h / sh};
    }
    // Made in tab order, so that the focus chain follows TabIndex: the library's controls take
    // no focus themselves, and Qt's setTabOrder (Designer's tab stops too) passes them over.
    // Controls without a TabIndex (lines, shapes, images) go first, beneath the others, where
    // the classic form draws them.
    QList<const FrmControl *> ordered;
    for (const FrmControl &child : c.children)
        ordered.append(&child);
    const auto tabIndex = [](const FrmControl *k) {
        const FrmProperty *p = k->find(QStringLiteral("TabIndex"));
        return p ? numberOf(*p).value_or(-1) : -1;
    };
    std::stable_sort(ordered.begin(), ordered.end(), [&](const FrmControl *a, const FrmControl *b) { return tabIndex(a) < tabIndex(b); });
    for (const FrmControl *child : ordered)
        if (!control(*child, container, own))
            return false;
    return true;
}

bool Builder::menu(const FrmControl &c, QMenuBar *bar, QMenu *parentMenu)
{
    Block b(c);
    QString title;
    if (const FrmProperty *p = b.take(QStringLiteral("Caption")); p && !text(*p, &title))
        return false;
    QWidget *owner = bar ? static_cast<QWidget *>(bar) : parentMenu;
    QAction *action = nullptr;
    const bool hasItems = std::any_of(c.children.begin(), c.children.end(), [](const FrmControl &m) { return m.className == u"Menu"; });
    if (hasItems) {
        auto *m = new QMenu(owner);
        m->setObjectName(widgetName(c));
        carry(m, "title", title);
        action = m->menuAction();
        if (bar)
            bar->addMenu(m);
        else
            parentMenu->addMenu(m);
        for (const FrmControl &item : c.children)
            if (!menu(item, nullptr, m))
                return false;
        m_out->carried[m];
    } else if (title == u"-") {
        if (!parentMenu) {
            m_out->report.notCarried.append({c.line, tr("%1: a separator in the menu bar").arg(c.name)});
            return true;
        }
        action = parentMenu->addSeparator();
    } else {
        action = new QAction(owner->window());
        action->setObjectName(widgetName(c));
        carry(action, "text", title);
        if (const FrmProperty *p = b.take(QStringLiteral("Shortcut")))
            carry(action, "shortcut", shortcutOf(p->value));
        if (b.boolean(QStringLiteral("Checked"), false)) {
            carry(action, "checkable", true);
            carry(action, "checked", true);
        }
        if (!b.boolean(QStringLiteral("Enabled"), true))
            carry(action, "enabled", false);
        if (!b.boolean(QStringLiteral("Visible"), true))
            carry(action, "visible", false);
        (bar ? static_cast<QWidget *>(bar) : parentMenu)->addAction(action);
    }
    if (hasItems && (!b.boolean(QStringLiteral("Enabled"), true) || !b.boolean(QStringLiteral("Visible"), true)))
        m_out->report.notCarried.append({c.line, tr("%1: a whole menu disabled or hidden").arg(c.name)});
    b.use(QStringLiteral("Index"));
    b.use(QStringLiteral("Checked"));
    reportRest(b, c.name);
    ++m_out->report.converted;
    return true;
}

bool Builder::build()
{
    registerKelControls8();
    const FrmControl &root = m_form.root;
    if (root.className != u"Form" || root.library != u"VB")
        return fail({m_form.file, root.line, -1, tr("%1 is not a form").arg(root.qualifiedClass())});
    const bool hasMenus = std::any_of(root.children.begin(), root.children.end(), [](const FrmControl &m) { return m.className == u"Menu"; });
    QWidget *window = nullptr;
    QWidget *client = nullptr;
    if (hasMenus) {
        auto *main = new QMainWindow;
        window = main;
        client = new QWidget(main);
        client->setObjectName(QStringLiteral("centralwidget"));
        main->setCentralWidget(client);
    } else {
        window = client = new QWidget;
    }
    m_out->window.reset(window);
    window->setObjectName(root.name);
    m_out->carried[window];
    m_out->carried[client];
    Block b(root);
    if (!caption(b, window, "windowTitle"))
        return false;
    if (!font(b, window))
        return false;
    colours(b, client, QPalette::Window, QPalette::WindowText, true);
    if (const FrmProperty *p = b.take(QStringLiteral("Icon"))) {
        QPixmap pix;
        if (!picture(root, *p, &pix))
            return false;
        if (!pix.isNull())
            carry(window, "windowIcon", QIcon(pix));
    }
    if (const FrmProperty *p = b.take(QStringLiteral("Picture"))) {
        QPixmap pix;
        if (!picture(root, *p, &pix))
            return false;
        if (!pix.isNull()) {
            auto *l = new QLabel(client);
            l->setObjectName(root.name + QStringLiteral("_picture"));
            l->setGeometry(0, 0, pix.width(), pix.height());
            carry(l, "pixmap", pix);
        }
    }
    for (const char *n : {"ClientLeft", "ClientTop", "LinkTopic", "ScaleMode", "ScaleWidth", "ScaleHeight", "ScaleLeft", "ScaleTop", "Appearance"})
        b.use(QString::fromLatin1(n));
    if (!children(root, client, Scale{}))
        return false;
    if (hasMenus) {
        auto *main = static_cast<QMainWindow *>(window);
        QMenuBar *bar = main->menuBar();
        bar->setObjectName(QStringLiteral("menubar"));
        m_out->carried[bar];
        for (const FrmControl &c : root.children)
            if (c.className == u"Menu" && !menu(c, bar, nullptr))
                return false;
    }
    const int w = twipsToPixelsX(b.number(QStringLiteral("ClientWidth"), 4680));
    const int h = twipsToPixelsY(b.number(QStringLiteral("ClientHeight"), 3195));
    window->resize(w, h + (hasMenus ? static_cast<QMainWindow *>(window)->menuBar()->sizeHint().height() : 0));
    reportRest(b, root.name);

    for (auto it = m_tabs.begin(); it != m_tabs.end(); ++it)
        m_out->tabOrder.append(it->second);
    for (qsizetype i = 1; i < m_out->tabOrder.size(); ++i)
        QWidget::setTabOrder(m_out->tabOrder[i - 1], m_out->tabOrder[i]);
    // Escape clicks the cancel button, as on the classic form.
    for (QPushButton *button : window->findChildren<QPushButton *>())
        if (button->property("Cancel").toBool())
            QObject::connect(new QShortcut(QKeySequence(Qt::Key_Escape), window), &QShortcut::activated, button, &QPushButton::click);
    m_out->report.events = m_form.events;
    std::sort(m_out->report.notCarried.begin(), m_out->report.notCarried.end(), [](const auto &a, const auto &b) { return a.line < b.line; });
    return true;
}

} // namespace

QString widgetName(const FrmControl &control)
{
    const FrmProperty *index = control.find(QStringLiteral("Index"));
    return index ? QStringLiteral("%1_%2").arg(control.name, index->value) : control.name;
}

QString ImportReport::text() const
{
    QString out = tr("%1: controls converted: %2, placeholders: %3, timers: %4\n")
                      .arg(file).arg(converted).arg(placeholders.size()).arg(timers.size());
    auto section = [&](const QString &title, const QList<Item> &items) {
        if (items.isEmpty())
            return;
        out += title + u'\n';
        for (const Item &i : items)
            out += tr("  line %1: %2\n").arg(i.line).arg(i.text);
    };
    section(tr("Placeholders for controls of other libraries:"), placeholders);
    section(tr("Timers (listed, not shown):"), timers);
    section(tr("Properties not carried:"), notCarried);
    if (!damaged.isEmpty()) {
        out += tr("Damaged .frx records (what the file holds is used):") + u'\n';
        for (const Problem &p : damaged)
            out += QStringLiteral("  ") + p.text() + u'\n';
    }
    if (!events.isEmpty()) {
        out += tr("Event procedures that need a new home:") + u'\n';
        for (const EventProcedure &e : events)
            out += tr("  line %1: %2\n").arg(e.line).arg(e.name);
    }
    return out;
}

bool importForm(const QString &frmPath, const ImportOptions &options, ImportedForm *out, Problem *error)
{
    *out = ImportedForm{};
    QFile file(frmPath);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = {frmPath, 0, -1, file.errorString()};
        return false;
    }
    FrmForm form;
    if (!readFrm(file.readAll(), frmPath, options.codePage, &form, error))
        return false;
    out->report.file = frmPath;
    Builder builder(form, QFileInfo(frmPath).absolutePath(), options, out, error);
    if (!builder.build()) {
        *out = ImportedForm{};
        return false;
    }
    return true;
}

} // namespace kel::classic
