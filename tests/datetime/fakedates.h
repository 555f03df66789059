#pragma once
// A run-time object whose date and time parsing is small and predictable, so that the fields'
// own rules are tested apart from the real parser: day, month and year in the format's order
// (or the eight digits ddmmyyyy, or "Now"); times as h[:n[:s]] with an optional am/pm.
#include "kelfixture.h"
#include "platform/dayserial.h"

#include <QRegularExpression>

namespace kel::test {

class FakeDates : public KelRuntimeDates
{
public:
    using KelRuntimeDates::KelRuntimeDates;
    Variant ParseDate(const QString &text, const QString &format, const Variant &defaultDate, bool) override
    {
        const QString t = text.trimmed();
        if (t.compare(u"now"_qs, Qt::CaseInsensitive) == 0)
            return defaultDate;
        QStringList groups = t.split(QRegularExpression(u"\\D+"_qs), Qt::SkipEmptyParts);
        if (groups.size() == 1 && groups[0].size() == 8 && t.size() == 8)
            groups = {t.left(2), t.mid(2, 2), t.mid(4)};
        if (groups.size() != 3)
            return Null;
        const QString f = format.toLower();
        std::vector<std::pair<qsizetype, char>> order = {{f.indexOf(u'd'), 'd'}, {f.indexOf(u'm'), 'm'}, {f.indexOf(u'y'), 'y'}};
        std::sort(order.begin(), order.end());
        int d = 0, m = 0, y = 0;
        for (int i = 0; i < 3; ++i)
            (order[i].second == 'd' ? d : order[i].second == 'm' ? m : y) = groups[i].toInt();
        const QDate date(y < 100 ? 2000 + y : y, m, d);
        if (!date.isValid())
            return Null;
        return Date{*fromQDate(date)};
    }
    Date LastDayOfMonth(Date date) override { return {kel::LastDayOfMonth(date.serial)}; }
    Variant ParseTime(const QString &text) override
    {
        static const QRegularExpression re(u"^\\s*(\\d{1,2})(?::(\\d{1,2}))?(?::(\\d{1,2}))?\\s*([ap])?m?\\s*$"_qs,
                                           QRegularExpression::CaseInsensitiveOption);
        const QRegularExpressionMatch m = re.match(text);
        if (!m.hasMatch())
            return Null;
        int h = m.captured(1).toInt();
        const QString half = m.captured(4).toLower();
        if (!half.isEmpty() && h == 12)
            h = 0;
        if (half == u"p")
            h += 12;
        const int n = m.captured(2).toInt(), s = m.captured(3).toInt();
        if (h > 23 || n > 59 || s > 59)
            return Null;
        return Date{*TimeSerial(h, n, s)};
    }
};

class FakeRuntime : public KelRuntime8
{
public:
    std::shared_ptr<IRuntimeDates> RuntimeDates() override { return std::make_shared<FakeDates>(locale()); }
};

inline void useFakeDates()
{
    auto rt = std::make_shared<FakeRuntime>();
    rt->setLocale(QLocale(QLocale::English, QLocale::UnitedStates));
    rt->setColourDepth(24);
    adoptRuntime(rt);
}

inline double serial(int y, int m, int d) { return *DateSerial(y, m, d); }
inline double clock(int h, int n, int s = 0) { return *TimeSerial(h, n, s); }

} // namespace kel::test
