#pragma once
#include "obk/NumberText.h"
#include "obk/Template.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace obk
{

/// Where one item element keeps its name and value in the template's bytes.
struct ItemPlace {
    int nameEnd = 0;  ///< behind the end tag of "Name"; without one, behind the item's start tag
    int next = 0;     ///< the tag that follows there
    int valueStart = -1;  ///< of the last "Value" element, tags included; -1 when there is none
    int valueEnd = -1;
};

/// The places of all items, in the order of the file. The text has been read by a parser already
/// and is UTF-8; of a text that isn't well formed the places mean nothing, but lie inside it.
std::vector<ItemPlace> findItems(const QByteArray &text);

/// Puts one value into the template's bytes: over the "Value" element, or as a new one behind the
/// "Name". Places behind it are no longer right afterwards, so go from the last item to the first.
void saveOBKeyProcess(const ItemPlace &place, const QString &value, QByteArray &text);

/// Reads the items of a template from its bytes.
Result<Template> readTemplate(const QByteArray &text);

/// The template's bytes with new values; all else stays byte for byte.
/// @param items   the items that the values belong to; the file must still hold the same ones
/// @param values  by item; an absent one leaves its element alone
/// @return a sentence of why the file is better left alone: it no longer holds these items, or
///         would read in another way afterwards
Result<QByteArray> withValues(const QByteArray &text, const std::vector<ObDataItem> &items,
                              const std::vector<std::optional<QString>> &values);

}  // namespace obk
