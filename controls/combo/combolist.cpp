#include "controls/combo/combolist.h"

namespace kel {

static QString cleanItem(QStringView item)
{
    if (item.startsWith(u'"'))
        item = item.mid(1);
    if (item.endsWith(u'"'))
        item.chop(1);
    QString out = item.toString();
    if (out.contains(QLatin1String("\"\"")))
        out.replace(QLatin1String("\"\""), QLatin1String("\""));
    return out;
}

QStringList parseComboList(QStringView list)
{
    QStringList items;
    if (list.isEmpty())
        return items;
    items.reserve(qMin<qsizetype>(list.count(u',') + 1, ComboMaxItems));
    bool quoted = false;
    qsizetype start = 0;
    for (qsizetype i = 0; i < list.size(); ++i) {
        const QChar c = list[i];
        if (c == u'"') {
            quoted = !quoted;
        } else if (c == u',' && !quoted) {
            items.append(cleanItem(list.mid(start, i - start)));
            start = i + 1;
            // The cap ends the list at once: the rest, last item included, is dropped.
            if (items.size() >= ComboMaxItems)
                return items;
        }
    }
    items.append(cleanItem(list.mid(start)));
    return items;
}

} // namespace kel
