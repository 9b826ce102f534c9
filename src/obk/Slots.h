#pragma once
#include "obk/NumberText.h"
#include "obk/Template.h"

#include <vector>

namespace obk
{

/// Flash slots: all, and those with a type.
struct FlashSlots {
    std::vector<Slot> all;
    std::vector<Slot> execution;
    std::vector<Slot> download;
};

/// Takes what a Data item declares through its "Slot" texts: a start makes a slot, a size goes to
/// the slots of its number that are there already. An item without "Slot" changes nothing.
/// @param value  the item's number; the start is counted from `flashStart`, modulo 2^32
void addFlashSlot(const ObDataItem &item, const QString &value, std::uint32_t flashStart,
                  FlashSlots &declared);

/// The same for "OBKSlot" texts.
void addObkSlot(const ObDataItem &item, const QString &value, std::uint32_t obkStart,
                std::vector<Slot> &declared);

/// The slots that the memory table shows, from the items' own values: those of reserved fields and
/// those without a size are left out. Sorted by address.
/// @param first  index of the first item that is looked at
void shownFlashSlots(const Template &model, std::size_t first, FlashSlots &declared);
void shownObkSlots(const Template &model, std::size_t first, std::vector<Slot> &declared);

/// By start address; slots with the same one keep their order.
void sortSlots(std::vector<Slot> &declared);

/// The addresses of each slot; a missing start or size counts as 0.
std::vector<Interval> intervalsOf(const std::vector<Slot> &declared);

// Checks; each stops at its first failure and gives the sentence for the user.

/// Each interval lies in the flash area, both ends included, and on its sectors.
Result<void> checkInFlash(const std::vector<Interval> &intervals, const std::vector<Slot> &declared,
                          const Areas &areas);

/// No neighbours overlap; touching is allowed.
Result<void> checkOverlap(const std::vector<Interval> &intervals,
                          const std::vector<Slot> &declared);

/// Sorts, then: inside the OBK area or the authenticated part of it, on sectors, no overlap.
Result<void> checkObkSlots(std::vector<Slot> &declared, const Template &model);

/// All that a template declares, before a form is built.
Result<void> checkDeclaredSlots(const Template &model);

/// What a generation declares: sizes, places, and for OBK slots the overlap.
Result<void> checkUsedSlots(std::vector<Slot> &flash, std::vector<Slot> &obk,
                            const Template &model);

/// Whether two Data items declare parts of one slot.
bool sharesSlot(const ObDataItem &one, const ObDataItem &other);

/// What a generation will say of the slots that one Data item declares; for live checks. As long as
/// a number of such a slot is no number, nothing.
/// @param fields  texts of the form, by item; absent: the template's own value
Result<void> checkSlotsOf(std::size_t item, const std::vector<std::optional<QString>> &fields,
                          const Template &model);

}  // namespace obk
