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

std::vector<Selector> selectorsOf(const std::vector<ObDataItem> &items)
{
    std::vector<Selector> selectors;
    for (const ObDataItem &item : items) {
        if (item.kind == ItemKind::List) {
            const int entry = currentEntry(item);
            selectors.push_back(
                {item.nameText(),
                 listNumber(entry < 0 ? item.text() : listEntry(item.entries[entry]).value)});
        } else if (item.kind == ItemKind::Bool) {
            const auto checked = isChecked(item);
            selectors.push_back(
                {item.nameText(), checked ? boolText(item, *checked) : item.text()});
        }
    }
    return selectors;
}

bool isNamed(const QString &selector, const QString &name)
{
    return withoutBlanks(name).compare(selector, Qt::CaseInsensitive) == 0;
}

bool isSwitchedOn(const Condition &wanted, const std::vector<Selector> &selectors)
{
    return std::none_of(selectors.begin(), selectors.end(), [&wanted](const Selector &selector) {
        return isNamed(wanted.selector, selector.name) &&
               withoutBlanks(selector.value) != wanted.value;
    });
}

void applyDependencies(std::vector<ObDataItem> &items, const std::vector<Selector> &selectors)
{
    for (ObDataItem &item : items) {
        if (item.kind == ItemKind::Data && item.dependency) {
            item.hasTypeSlot = isSwitchedOn(condition(*item.dependency), selectors);
        }
    }
}

}  // namespace obk
