#include "obk/Slots.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace obk
{

namespace
{

QString hexText(std::uint32_t value)
{
    return QLatin1String("0x") + QString::number(value, 16);
}

/// "FooOffset" and "Foooffset" declare the start of slot "Foo".
QString slotName(QString name)
{
    const QLatin1String lower("offset");
    return name.remove(name.contains(lower) ? lower : QLatin1String("Offset"));
}

/// The number behind the first "#" that has one; 0 for none.
std::int32_t slotId(const QString &text)
{
    const auto isDigit = [&text](int at) {
        return at < text.size() && text[at] >= QLatin1Char('0') && text[at] <= QLatin1Char('9');
    };
    int start = text.indexOf(QLatin1Char('#'));
    while (start >= 0 && !isDigit(start + 1)) {
        start = text.indexOf(QLatin1Char('#'), start + 1);
    }
    int end = start + 1;
    while (start >= 0 && isDigit(end)) {
        ++end;
    }
    return start < 0 ? 0 : text.mid(start + 1, end - start - 1).toInt();
}

/// The numbers of slots that an item names, each once.
std::set<std::int32_t> slotIds(const QStringList &texts)
{
    std::set<std::int32_t> ids;
    for (const QString &text : texts) {
        ids.insert(slotId(text));
    }
    return ids;
}

void setSizes(std::vector<Slot> &declared, const std::set<std::int32_t> &ids, const QString &size)
{
    for (Slot &slot : declared) {
        if (ids.count(slot.id) != 0) {
            slot.size = size;
        }
    }
}

/// Both tests of a slot's item in the memory table: what is reserved isn't shown, and what a
/// selector has switched off neither.
bool isShown(const ObDataItem &item, bool isStart)
{
    return !item.reserved && (!isStart || !item.dependency || item.hasTypeSlot);
}

void dropUnsized(std::vector<Slot> &declared)
{
    sortSlots(declared);
    declared.erase(std::remove_if(declared.begin(), declared.end(),
                                  [](const Slot &slot) { return !slot.size; }),
                   declared.end());
}

std::uint32_t startOf(const Slot &slot)
{
    return lowWord(slot.start.value_or(QString()));
}

/// An area from `start` on; both ends belong to it.
struct Bounds {
    std::uint32_t start;
    std::uint32_t end;

    [[nodiscard]] bool holds(std::uint32_t address) const
    {
        return address >= start && address <= end;
    }
    [[nodiscard]] bool holds(const Interval &interval) const
    {
        return holds(interval.start) && holds(interval.end);
    }
};

Result<void> noSector(const char *tag)
{
    return refuse(QStringLiteral("%1 is 0, so no slot can be aligned to it. Please update your "
                                 "xml file.")
                      .arg(QLatin1String(tag)));
}

Result<void> checkInAuthArea(const std::vector<Interval> &intervals,
                             const std::vector<Slot> &declared, const Areas &areas)
{
    const Bounds obk{areas.obkStart, areas.obkStart + areas.obkSize};
    const Bounds allowed{areas.authObkStart, areas.authObkStart + areas.authObkSize};
    if (!obk.holds(allowed.start) || !obk.holds(allowed.end)) {
        return refuse(QStringLiteral("AuthOBK is not in the OBK!"));
    }
    for (std::size_t i = 0; i < intervals.size(); ++i) {
        if (!allowed.holds(intervals[i])) {
            return refuse(QStringLiteral("The OBKSlot : \"%1\" is not in the OBkeys allowed area.")
                              .arg(declared[i].name));
        }
        if (areas.obkSectorSize == 0) {
            return noSector("OBKSectorSize");
        }
        if (intervals[i].start % areas.obkSectorSize != 0 ||
            intervals[i].end % areas.obkSectorSize != 0) {
            return refuse(
                QStringLiteral("The OBKSlot : \"%1\" does not respect the alignment constraint.")
                    .arg(declared[i].name));
        }
    }
    return {};
}

Result<void> checkInObkArea(const std::vector<Interval> &intervals,
                            const std::vector<Slot> &declared, const Areas &areas)
{
    const Bounds allowed{areas.obkStart, areas.obkStart + areas.obkSize};
    for (std::size_t i = 0; i < intervals.size(); ++i) {
        if (!allowed.holds(intervals[i])) {
            return refuse(
                QStringLiteral("The \"%1\" OBKSlot is not in the OBK.").arg(declared[i].name));
        }
        if (areas.obkSectorSize == 0) {
            return noSector("OBKSectorSize");
        }
        // One aligned end is enough here, unlike in an authenticated area.
        if (intervals[i].start % areas.obkSectorSize != 0 &&
            intervals[i].end % areas.obkSectorSize != 0) {
            return refuse(QStringLiteral("The ObkSlot : \"%1\" does not respect the alignment "
                                         "constraint. Please update your xml file with the right "
                                         "values.")
                              .arg(declared[i].name));
        }
    }
    return {};
}

Result<void> checkComplete(const std::vector<Slot> &declared)
{
    for (const Slot &slot : declared) {
        if (!slot.start) {
            return refuse(QStringLiteral("\" %1 \" address is missing.").arg(slot.name));
        }
        if (!slot.size) {
            return refuse(QStringLiteral("\" %1 \" size is missing.").arg(slot.name));
        }
        if (*slot.size == QLatin1String("0x0")) {
            return refuse(QStringLiteral(" Wrong \" %1 \" size value, size cannot be equal to 0.")
                              .arg(slot.name));
        }
    }
    return {};
}

Result<void> checkSizes(const std::vector<Slot> &declared)
{
    for (const Slot &slot : declared) {
        if (slot.size == QLatin1String("0x0")) {
            return refuse(QStringLiteral(" Wrong \"%1\" size value, size cannot be equal to 0.")
                              .arg(slot.name));
        }
    }
    return {};
}

Result<void> checkFlash(std::vector<Slot> &declared, const Areas &areas)
{
    sortSlots(declared);
    return checkInFlash(intervalsOf(declared), declared, areas);
}

bool namesAny(const QStringList &texts, const std::set<std::int32_t> &ids)
{
    return std::any_of(texts.begin(), texts.end(),
                       [&ids](const QString &text) { return ids.count(slotId(text)) != 0; });
}

std::vector<Slot> withIds(const std::vector<Slot> &declared, const std::set<std::int32_t> &ids)
{
    std::vector<Slot> chosen;
    std::copy_if(declared.begin(), declared.end(), std::back_inserter(chosen),
                 [&ids](const Slot &slot) { return ids.count(slot.id) != 0; });
    return chosen;
}

/// No overlap of neighbours one of which has such a number. @param declared  sorted
Result<void> checkOverlapWith(const std::set<std::int32_t> &ids, const std::vector<Slot> &declared)
{
    for (std::size_t i = 1; i < declared.size(); ++i) {
        const std::vector<Slot> both = {declared[i - 1], declared[i]};
        if (withIds(both, ids).empty()) {
            continue;
        }
        if (auto apart = checkOverlap(intervalsOf(both), both); !apart) {
            return apart;
        }
    }
    return {};
}

}  // namespace

void addFlashSlot(const ObDataItem &item, const QString &value, std::uint32_t flashStart,
                  FlashSlots &declared)
{
    if (!item.slotIsStart) {
        const auto ids = slotIds(item.slotTexts);
        for (auto *list : {&declared.all, &declared.execution, &declared.download}) {
            setSizes(*list, ids, hexText(lowWord(value)));
        }
        return;
    }
    for (const QString &text : item.slotTexts) {
        const Slot slot{
            slotName(item.nameText()), slotId(text), hexText(lowWord(value) + flashStart), {}};
        declared.all.push_back(slot);
        if (item.hasTypeSlot) {
            (item.isExecution ? declared.execution : declared.download).push_back(slot);
        }
    }
}

void addObkSlot(const ObDataItem &item, const QString &value, std::uint32_t obkStart,
                std::vector<Slot> &declared)
{
    if (!item.obkSlotIsStart) {
        setSizes(declared, slotIds(item.obkSlotTexts), hexText(lowWord(value)));
        return;
    }
    for (const QString &text : item.obkSlotTexts) {
        declared.push_back(
            {slotName(item.nameText()), slotId(text), hexText(lowWord(value) + obkStart), {}});
    }
}

void shownFlashSlots(const Template &model, std::size_t first, FlashSlots &declared)
{
    if (!model.hasFlashArea()) {
        return;
    }
    for (std::size_t i = first; i < model.items.size(); ++i) {
        const ObDataItem &item = model.items[i];
        if (item.hasSlot && isShown(item, item.slotIsStart)) {
            addFlashSlot(item, item.text(), model.areas.flashStart, declared);
        }
    }
    dropUnsized(declared.all);
}

void shownObkSlots(const Template &model, std::size_t first, std::vector<Slot> &declared)
{
    if (!model.hasObkArea()) {
        return;
    }
    for (std::size_t i = first; i < model.items.size(); ++i) {
        const ObDataItem &item = model.items[i];
        if (item.hasObkSlot && isShown(item, item.obkSlotIsStart)) {
            addObkSlot(item, item.text(), model.areas.obkStart, declared);
        }
    }
    dropUnsized(declared);
}

void sortSlots(std::vector<Slot> &declared)
{
    std::stable_sort(declared.begin(), declared.end(),
                     [](const Slot &a, const Slot &b) { return startOf(a) < startOf(b); });
}

std::vector<Interval> intervalsOf(const std::vector<Slot> &declared)
{
    std::vector<Interval> intervals;
    for (const Slot &slot : declared) {
        const std::uint32_t start = startOf(slot);
        intervals.push_back({start, start + lowWord(slot.size.value_or(QString()))});
    }
    return intervals;
}

Result<void> checkInFlash(const std::vector<Interval> &intervals, const std::vector<Slot> &declared,
                          const Areas &areas)
{
    const Bounds flash{areas.flashStart, areas.flashStart + areas.flashSize};
    for (std::size_t i = 0; i < intervals.size(); ++i) {
        if (!flash.holds(intervals[i])) {
            return refuse(
                QStringLiteral("The \"%1\" Slot is not in the Flash.").arg(declared[i].name));
        }
        if (areas.flashSectorSize == 0) {
            return noSector("FlashSectorSize");
        }
        if (intervals[i].start % areas.flashSectorSize != 0 ||
            intervals[i].end % areas.flashSectorSize != 0) {
            return refuse(
                QStringLiteral("The Slot : \"%1\" does not respect the alignment constraint.")
                    .arg(declared[i].name));
        }
    }
    return {};
}

Result<void> checkOverlap(const std::vector<Interval> &intervals, const std::vector<Slot> &declared)
{
    for (std::size_t i = 1; i < intervals.size(); ++i) {
        if (intervals[i - 1].end > intervals[i].start) {
            return refuse(QStringLiteral("Overlap between : \"%1\" and \"%2\".")
                              .arg(declared[i - 1].name, declared[i].name));
        }
    }
    return {};
}

Result<void> checkObkSlots(std::vector<Slot> &declared, const Template &model)
{
    sortSlots(declared);
    const auto intervals = intervalsOf(declared);
    auto inside = model.hasAuthObkArea() ? checkInAuthArea(intervals, declared, model.areas)
                                         : checkInObkArea(intervals, declared, model.areas);
    return inside ? checkOverlap(intervals, declared) : inside;
}

Result<void> checkDeclaredSlots(const Template &model)
{
    FlashSlots flash;
    std::vector<Slot> obk;
    for (const ObDataItem &item : model.items) {
        if (model.hasFlashArea()) {
            addFlashSlot(item, item.text(), model.areas.flashStart, flash);
        }
        if (model.hasObkArea()) {
            addObkSlot(item, item.text(), model.areas.obkStart, obk);
        }
    }
    return checkComplete(flash.all)
        .and_then([&] { return checkComplete(obk); })
        .and_then([&] { return checkFlash(flash.all, model.areas); })
        .and_then([&] { return obk.empty() ? Result<void>() : checkObkSlots(obk, model); });
}

Result<void> checkUsedSlots(std::vector<Slot> &flash, std::vector<Slot> &obk, const Template &model)
{
    return checkSizes(flash)
        .and_then([&] { return checkFlash(flash, model.areas); })
        .and_then([&] { return checkSizes(obk); })
        .and_then([&] { return obk.empty() ? Result<void>() : checkObkSlots(obk, model); });
}

bool sharesSlot(const ObDataItem &one, const ObDataItem &other)
{
    return namesAny(other.slotTexts, slotIds(one.slotTexts)) ||
           namesAny(other.obkSlotTexts, slotIds(one.obkSlotTexts));
}

Result<void> checkSlotsOf(std::size_t item, const std::vector<std::optional<QString>> &fields,
                          const Template &model)
{
    FlashSlots flash;
    std::vector<Slot> obk;
    const auto flashIds = slotIds(model.items[item].slotTexts);
    const auto obkIds = slotIds(model.items[item].obkSlotTexts);
    for (std::size_t at = 0; at < model.items.size(); ++at) {
        const ObDataItem &each = model.items[at];
        if (!each.hasSlot && !each.hasObkSlot) {
            continue;
        }
        const QString text = fields[at].value_or(each.text());
        const bool isShared =
            namesAny(each.slotTexts, flashIds) || namesAny(each.obkSlotTexts, obkIds);
        if (isShared && !checkNumber(text, each.nameText(), each.width)) {
            return {};
        }
        // Of flash slots no overlap is asked, so no other ones are needed.
        if (isShared && model.hasFlashArea()) {
            addFlashSlot(each, text, model.areas.flashStart, flash);
        }
        if (model.hasObkArea()) {
            addObkSlot(each, text, model.areas.obkStart, obk);
        }
    }
    auto ownFlash = withIds(flash.all, flashIds);
    auto ownObk = withIds(obk, obkIds);
    sortSlots(obk);
    return checkUsedSlots(ownFlash, ownObk, model).and_then([&] {
        return checkOverlapWith(obkIds, obk);
    });
}

}  // namespace obk
