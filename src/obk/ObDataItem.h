#pragma once
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace obk
{

/// The elements of a template that make an item.
enum class ItemKind { Text, Data, Permission, Bool, List, File, Output };

/// The element's tag: "Text", "Data" and so on.
QString tagOf(ItemKind kind);

}  // namespace obk

/// One item element of a template, in the order of the file. A text that its element doesn't hold
/// is absent, which is another thing than an empty one. Fields of other kinds keep these values.
struct ObDataItem {
    obk::ItemKind kind = obk::ItemKind::Data;

    // All kinds
    std::optional<QString> name;         ///< "Name"
    std::optional<QString> defaultText;  ///< "Default"; of a File the path that ships
    std::optional<QString> value;        ///< "Value": what was used last
    std::optional<QString> tooltip;      ///< "Tooltip"
    bool hidden = false;                 ///< "Hidden" with a decimal that isn't zero

    // Text, Data, Permission, Bool, List
    std::int32_t width = 0;     ///< bytes; of a Text the longest password, in bytes of UTF-8
    std::int32_t minWidth = 0;  ///< Text: the shortest password, in bytes of UTF-8
    bool reserved = false;      ///< "Reserved" is there: written, never shown

    // Data, Bool, List
    std::optional<QString> dependency;  ///< selector and value that switch the field on

    // Bool
    std::optional<QString> trueText;   ///< number written when checked
    std::optional<QString> falseText;  ///< number written when not

    // List
    QStringList entries;  ///< each "Val": a value, or value, comma, label

    // File
    std::uint32_t size = 0;          ///< "Size": what the template expects, in bytes; shown only
    std::uint8_t align = 0;          ///< the field starts at a multiple of this many bytes; 0 is 1
    bool hash = false;               ///< writes the SHA-256 of the key instead of the key
    std::optional<QString> type;     ///< what is taken from a private key: "Public", "Private_Raw"
    std::optional<QString> keyType;  ///< key types to choose from, cut at ","

    // Parameters of an image template; their "Type" is the kind
    bool isParam = false;
    std::optional<QString> option;  ///< "Option": the argument; absent or empty: the value alone
    bool isLocked = false;          ///< "Enable" with a decimal zero: shown, not to be changed

    // Data: flash slots
    bool hasTypeSlot = false;  ///< "TypeSlot" is there, and the field isn't switched off
    bool isExecution = false;  ///< type "Execution"; else "Download"
    bool hasSlot = false;
    std::int32_t slotIndex = 0;  ///< binds a start to its size; of the "Slot" read last
    bool slotIsStart = false;    ///< declares a start, not a size; of the "Slot" read last
    QStringList slotTexts;       ///< each "Slot"
    bool slotValueSet = false;
    std::optional<QString> slotOwner;  ///< the name as it was when a "Slot" was read

    // Data: OBK slots
    bool hasObkSlot = false;
    std::int32_t obkSlotIndex = 0;
    bool obkSlotIsStart = false;
    QStringList obkSlotTexts;
    bool obkSlotValueSet = false;
    std::optional<QString> obkSlotOwner;

    /// "Value" when present, otherwise "Default", otherwise an empty text.
    [[nodiscard]] QString text() const { return value.value_or(defaultText.value_or(QString())); }
    [[nodiscard]] QString nameText() const { return name.value_or(QString()); }

    bool operator==(const ObDataItem &) const = default;
};

/// A memory region that a template declares.
struct Slot {
    QString name;                  ///< of the Data item, without "offset" or "Offset"
    std::int32_t id = 0;           ///< number behind "#"
    std::optional<QString> start;  ///< absolute address, "0x" and lower-case hexadecimal
    std::optional<QString> size;   ///< bytes, "0x" and lower-case hexadecimal
};

/// Addresses of a slot.
struct Interval {
    std::uint32_t start = 0;
    std::uint32_t end = 0;  ///< first address behind the slot, modulo 2^32
};
