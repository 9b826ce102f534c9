#include "obk/Choices.h"

#include "obk/NumberText.h"

#include <algorithm>

namespace obk
{

namespace
{

QString withoutBlanks(QString text)
{
    const auto blanks =
        std::remove_if(text.begin(), text.end(), [](QChar c) { return c.isSpace(); });
    text.chop(static_cast<int>(text.end() - blanks));
    return text;
}

QString selectorKey(const QString &name)
{
    return withoutBlanks(name).toCaseFolded();
}

int findEntry(const ObDataItem &item, const QString &text)
{
    for (int at = 0; at < item.entries.size(); ++at) {
        if (listEntry(item.entries[at]).value.compare(text, Qt::CaseInsensitive) == 0) {
            return at;
        }
    }
    const QString number = listNumber(text);
    for (int at = 0; at < item.entries.size(); ++at) {
        if (listNumber(listEntry(item.entries[at]).value).compare(number, Qt::CaseInsensitive) ==
            0) {
            return at;
        }
    }
    return -1;
}

}  // namespace

ListEntry listEntry(const QString &val)
{
    const int comma = val.indexOf(QLatin1Char(','));
    if (comma < 0) {
        return {val, val};
    }
    const QString value = val.left(comma);
    return {value, value + QLatin1String(" | ") + val.mid(comma + 1)};
}

int currentEntry(const ObDataItem &item)
{
    return findEntry(item, item.text());
}

QString listNumber(const QString &text)
{
    return withoutBlanks(text.section(QLatin1Char('|'), 0, 0));
}

QString storedListText(const ObDataItem &item, const QString &text)
{
    const QString number = listNumber(text);
    return findEntry(item, number) == findEntry(item, text) ? number : text;
}

std::optional<bool> isChecked(const ObDataItem &item)
{
    const QString text = item.text();
    for (const bool checked : {true, false}) {
        if (text.compare(boolText(item, checked), Qt::CaseInsensitive) == 0) {
            return checked;
        }
    }
    return std::nullopt;
}

QString boolText(const ObDataItem &item, bool checked)
{
    return (checked ? item.trueText : item.falseText).value_or(QString());
}

QString permissionText(std::uint32_t word)
{
    return QLatin1String("0x") +
           QStringLiteral("%1").arg(word & kPermissionMask, 8, 16, QLatin1Char('0')).toUpper();
}

Condition condition(const QString &dependency)
{
    const QString text = withoutBlanks(dependency);
    return {text.section(QLatin1Char(','), 0, 0), text.section(QLatin1Char(','), 1, 1)};
}

Selectors selectorsOf(const std::vector<ObDataItem> &items)
{
    Selectors selectors;
    for (const ObDataItem &item : items) {
        QString value;
        if (item.kind == ItemKind::List) {
            const int entry = currentEntry(item);
            value = listNumber(entry < 0 ? item.text() : listEntry(item.entries[entry]).value);
        } else if (item.kind == ItemKind::Bool) {
            const auto checked = isChecked(item);
            value = withoutBlanks(checked ? boolText(item, *checked) : item.text());
        } else {
            continue;
        }
        Selector &selector = selectors[selectorKey(item.nameText())];
        selector.name = selector.values.isEmpty() ? item.nameText() : selector.name;
        selector.values.append(value);
    }
    return selectors;
}

const Selector *findSelector(const Condition &wanted, const Selectors &selectors)
{
    const auto found = selectors.constFind(selectorKey(wanted.selector));
    return found == selectors.constEnd() ? nullptr : &*found;
}

bool isSwitchedOn(const Condition &wanted, const Selectors &selectors)
{
    const Selector *const selector = findSelector(wanted, selectors);
    return selector == nullptr ||
           std::all_of(selector->values.begin(), selector->values.end(),
                       [&wanted](const QString &value) { return value == wanted.value; });
}

void applyDependencies(std::vector<ObDataItem> &items, const Selectors &selectors)
{
    for (ObDataItem &item : items) {
        if (item.kind == ItemKind::Data && item.dependency) {
            item.hasTypeSlot = isSwitchedOn(condition(*item.dependency), selectors);
        }
    }
}

}  // namespace obk
