// Any property bag loaded into a field leaves it working: saving and loading again is stable.
#include "controls/check/kelcheck.h"
#include "controls/combo/kelcombo.h"
#include "controls/datetime/keldate.h"
#include "controls/datetime/keltime.h"
#include "controls/number/kelnumber.h"
#include "controls/progress/kelprogressbar.h"
#include "controls/text/keltext.h"
#include "platform/services.h"
#include "reuse.h"

#include <QDate>
#include <QDebug>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <type_traits>

static const char *const names[] = {"Caption", "CaptionWidth", "Enabled", "InsertMode", "Locked", "Mandatory",
                                    "MaxLength", "MultiLine", "PasswordChar", "SelectOnFocus", "Text", "caption", "Junk",
                                    "Decimals", "FontBold", "GroupDigits", "MaxValue", "MinValue", "UpDown",
                                    "UpDownChange", "Value", "value", "DaysFlag", "Format",
                                    "DropDownWidth", "DropdownWidth", "LimitToList", "List", "ListTag",
                                    "Min", "Max", "ShowTime"};

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    kel::fuzz::startApplication(argc, argv);
    return 0;
}

static QString listed(const kel::MemoryPropertyBag &bag)
{
    QString out;
    QDebug d(&out); // escapes what a terminal would swallow
    for (const auto &[name, value] : bag.entries())
        d << "\n   " << name << value.debugString();
    return out;
}

// The bag is read by one control and its saved form by another: two per class.
template<class Control>
static void roundTrip(kel::MemoryPropertyBag &bag)
{
    static kel::fuzz::Reused<Control> first, second;
    Control &a = first.fresh();
    a.ReadProperties(bag);
    kel::MemoryPropertyBag saved;
    a.WriteProperties(saved);
    Control &b = second.fresh();
    b.ReadProperties(saved);
    kel::MemoryPropertyBag again;
    b.WriteProperties(again);
    if constexpr (std::is_same_v<Control, kel::KelDate>) {
        // Only a value equal to today saves as "Now": today with a time of day saves as today's
        // digits, which load as today, which saves as "Now" (the default, so nothing is written).
        const kel::Variant now = QStringLiteral("Now");
        const kel::Variant value = again.value(QStringLiteral("Value"));
        if (saved.value(QStringLiteral("Value")) == kel::Variant(kel::services().Today().toString(QStringLiteral("ddMMyyyy")))
            && (value.isEmpty() || value == now)) {
            saved.remove(QStringLiteral("Value"));
            again.remove(QStringLiteral("Value"));
        }
    }
    if (!(again.entries() == saved.entries())) {
        std::fprintf(stderr, "%s: saved, loaded and saved again differs\n  first:%s\n  again:%s\n",
                     Control::staticMetaObject.className(), qPrintable(listed(saved)), qPrintable(listed(again)));
        std::abort();
    }
    if constexpr (requires { b.Valid(); })
        (void)b.Valid();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    kel::MemoryPropertyBag bag;
    size_t i = 0;
    while (i + 2 <= size) {
        const char *name = names[data[i] % std::size(names)];
        const int kind = data[i + 1] % 6;
        const size_t len = i + 2 < size ? data[i + 2] % 40 : 0;
        i += 3;
        const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data + qMin(i, size)), qsizetype(qMin(len, size - qMin(i, size))));
        i += len;
        kel::Variant v;
        switch (kind) {
        case 0: v = text; break;
        case 1: v = bool(len & 1); break;
        case 2: v = qint16(len * 997 - 20000); break;
        case 3: v = double(len) * -1e5; break;
        case 4: v = kel::Null; break;
        default: break;
        }
        bag.set(QString::fromLatin1(name), v);
    }
    switch (size > 0 ? data[0] & 7 : 0) {
    case 1: roundTrip<kel::KelNumber>(bag); break;
    case 2: roundTrip<kel::KelDate>(bag); break;
    case 3: roundTrip<kel::KelTime>(bag); break;
    case 4: roundTrip<kel::KelCombo>(bag); break;
    case 5: roundTrip<kel::KelCheck>(bag); break;
    case 6: roundTrip<kel::KelProgressBar>(bag); break;
    default: roundTrip<kel::KelText>(bag); break;
    }
    return 0;
}
