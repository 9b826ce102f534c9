#pragma once
#include "obk/ObDataItem.h"

#include <vector>

namespace obk
{

/// The tag lists by which doubled and missing tags are found. Those of Text, Permission and Output
/// run over all elements of the kind, so a template holds at most one of each.
struct TagLists {
    QStringList info;
    QStringList text;
    QStringList permission;
    QStringList output;
    std::vector<QStringList> data;  ///< one list for each element
    std::vector<QStringList> file;
    std::vector<QStringList> list;
    std::vector<QStringList> boolean;
    // Image templates
    QStringList globalParam;
    std::vector<QStringList> param;
};

/// Memory areas of "Info": addresses and bytes, kept modulo 2^32. A value counts only when all of
/// its area's tags are there (`areaNames`).
struct Areas {
    std::uint32_t flashStart = 0;
    std::uint32_t flashSize = 0;
    std::uint32_t flashSectorSize = 0;
    std::uint32_t obkStart = 0;
    std::uint32_t obkSize = 0;
    std::uint32_t obkSectorSize = 0;
    std::uint32_t authObkStart = 0;
    std::uint32_t authObkSize = 0;
};

/// A template as it was read; plain values without any rule.
struct Template {
    QString title;
    std::optional<std::int32_t> obDestAddress;  ///< absent together with `doEncryption`: no header
    QString obDestAddressText;                  ///< as it stands in the file
    std::optional<std::int32_t> doEncryption;
    std::uint8_t globalAlign = 0;  ///< bytes; 0 counts as 1
    Areas areas;
    QStringList flashNames;  ///< area tags seen, for `hasFlashArea` and its like
    QStringList obkNames;
    QStringList authObkNames;
    bool hashFile = false;  ///< "Hash": the payload's SHA-256 goes in front of it
    bool daLayout = false;  ///< "DA": the layout of debug authentication
    std::vector<ObDataItem> items;
    TagLists tags;
    // Image templates
    QString command;  ///< words for the image tool in front of all parameters
    QString tooltip;  ///< what the template is for
    QString warning;  ///< something that was read in another way than it looks; empty when nothing

    /// Neither destination nor encryption: the output is plain payload.
    [[nodiscard]] bool headerless() const { return !obDestAddress && !doEncryption; }
    /// All tags of the area are there.
    [[nodiscard]] bool hasFlashArea() const;
    [[nodiscard]] bool hasObkArea() const;
    [[nodiscard]] bool hasAuthObkArea() const;
};

/// True when a list of tags names all of an area; an empty list names none.
bool flashExist(const QStringList &names);
bool obkExist(const QStringList &names);
bool authObkExist(const QStringList &names);

}  // namespace obk
