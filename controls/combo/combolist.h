#pragma once
// The combo's item list string: comma-separated, double quotes keep commas inside an item.
#include "../../platform/kelexport.h"

#include <QStringList>

namespace kel {

/// Most items a combo holds; anything past them is dropped without notice.
constexpr int ComboMaxItems = 32767;

/// The items of a list string. A comma outside double quotes separates; each item loses one
/// leading and one trailing double quote and has doubled quotes halved; blanks are kept. An
/// empty string has no items, a trailing comma gives an empty last item.
KEL_EXPORT QStringList parseComboList(QStringView list);

} // namespace kel
