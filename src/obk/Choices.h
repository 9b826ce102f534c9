#pragma once
#include "obk/ObDataItem.h"

#include <QHash>

#include <optional>
#include <vector>

namespace obk
{

/// Bytes that a Permission always writes; its width may add zero bytes behind them.
constexpr std::int32_t kPermissionBytes = 4;

/// Bits of a permission word that the file can hold: 8 to 11 and those above 15 have no place in
/// it.
constexpr std::uint32_t kPermissionMask = 0xF0FF;

/// One entry of a List.
struct ListEntry {
    QString value;  ///< the number as the template writes it
    QString shown;  ///< what the user picks: the value, or value, " | " and label
};

/// Cuts a "Val" at its first comma.
ListEntry listEntry(const QString &val);

/// The entry that "Value" or otherwise "Default" names: by the same text in either case, otherwise
/// by the same number text (see `listNumber`). -1 for none.
int currentEntry(const ObDataItem &item);

/// The number in a List's text: what stands before a "|", without blanks.
QString listNumber(const QString &text);

/// What the template keeps of a List's text, so that the same entry is found again: the number, or
/// the text as it is where the number would lead to another entry.
QString storedListText(const ObDataItem &item, const QString &text);

/// Whether a Bool's "Value" or otherwise "Default" is its "True" (in either case), its "False", or
/// neither (absent).
std::optional<bool> isChecked(const ObDataItem &item);

/// The text that a Bool writes.
QString boolText(const ObDataItem &item, bool checked);

/// A permission word without the bits that the file can't hold, as the template keeps it: "0x0000"
/// and four upper-case digits.
QString permissionText(std::uint32_t word);

/// The Bool and List items of one name, which switch fields.
struct Selector {
    QString name;        ///< as the first of them has it
    QStringList values;  ///< what they say now: a List's number, a Bool's "True" or "False"
};

/// Selectors by their names without blanks and without regard to case.
using Selectors = QHash<QString, Selector>;

/// What a "Dependency" asks for: a selector's name and a value, without blanks.
struct Condition {
    QString selector;
    QString value;
};
Condition condition(const QString &dependency);

/// All Bool and List items with the values that they have in the template.
Selectors selectorsOf(const std::vector<ObDataItem> &items);

/// The selector that a condition means; null for none.
const Selector *findSelector(const Condition &wanted, const Selectors &selectors);

/// False when a selector of that name has another value than the dependency asks for. A field
/// without such a selector is on.
bool isSwitchedOn(const Condition &wanted, const Selectors &selectors);

/// Sets `hasTypeSlot` of each Data item with a "Dependency" by what the selectors say: a field that
/// is switched off takes no part in the slot lists.
void applyDependencies(std::vector<ObDataItem> &items, const Selectors &selectors);

}  // namespace obk
