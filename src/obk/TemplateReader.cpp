#include "obk/TemplateReader.h"

#include <QRegularExpression>

#include <array>
#include <span>

namespace obk
{

namespace
{

/// A "Name" or "Title" enters this word in its element's tag list; the check tells tag lists from
/// lists of names by it.
const QLatin1String kNameMarker("duplicateElementCheck");

/// One tag of an item element.
struct ItemTag {
    const char *tag;
    bool isEntered;  ///< in the element's tag list
    Result<void> (*store)(ObDataItem &item, const QString &text);
};

template <auto Field>
Result<void> keepText(ObDataItem &item, const QString &text)
{
    item.*Field = text;
    return {};
}

template <auto Field>
Result<void> keepNumber(ObDataItem &item, const QString &text)
{
    item.*Field = text.toInt();
    return {};
}

template <auto Field>
Result<void> keepPresence(ObDataItem &item, const QString &)
{
    item.*Field = true;
    return {};
}

Result<void> keepHidden(ObDataItem &item, const QString &text)
{
    item.hidden = text.toInt() != 0;
    return {};
}

Result<void> keepSize(ObDataItem &item, const QString &text)
{
    item.size = text.toUInt();
    return {};
}

Result<void> keepAlign(ObDataItem &item, const QString &text)
{
    item.align = static_cast<std::uint8_t>(text.toUInt() & 0xFF);
    return {};
}

Result<void> keepEntry(ObDataItem &item, const QString &text)
{
    item.entries.append(text);
    return {};
}

Result<void> keepSlotValue(ObDataItem &item, const QString &text)
{
    item.value = text;
    item.slotValueSet = true;
    item.obkSlotValueSet = true;
    return {};
}

Result<void> keepTypeSlot(ObDataItem &item, const QString &text)
{
    const bool isExecution = text.contains(QLatin1String("Execution"));
    if (!isExecution && !text.contains(QLatin1String("Download"))) {
        return refuse(QStringLiteral(" Wrong \"%1\" TypeSlot tag content, please update your xml "
                                     "file with the right one (only \"Execution\" and "
                                     "\"Download\" are allowed).")
                          .arg(item.nameText()));
    }
    item.hasTypeSlot = true;
    item.isExecution = isExecution;
    return {};
}

/// @param isStart  set by "start#", cleared by "size#"
/// @return false when the text begins with neither
bool readSlotText(const QString &text, bool &isStart, std::int32_t &index)
{
    const bool isSize = text.startsWith(QLatin1String("size#"));
    if (!isSize && !text.startsWith(QLatin1String("start#"))) {
        return false;
    }
    isStart = !isSize;
    static const QRegularExpression number(QStringLiteral("#([0-9]+)"));
    index = number.match(text).captured(1).toInt();
    return true;
}

Result<void> keepSlot(ObDataItem &item, const QString &text)
{
    item.hasSlot = true;
    item.slotTexts.append(text);
    if (!readSlotText(text, item.slotIsStart, item.slotIndex)) {
        return refuse(QStringLiteral(" Wrong \" %1 \" Slot tag content, please update your xml "
                                     "file with the right one (only \"start#..\" and \"size#..\" "
                                     "are allowed).")
                          .arg(item.nameText()));
    }
    item.slotOwner = item.name;
    return {};
}

Result<void> keepObkSlot(ObDataItem &item, const QString &text)
{
    item.hasObkSlot = true;
    item.obkSlotTexts.append(text);
    if (!readSlotText(text, item.obkSlotIsStart, item.obkSlotIndex)) {
        return refuse(QStringLiteral(" Wrong \"%1\" OBKSlot tag content, please update your xml "
                                     "file with the right one (only \"start#..\" and \"size#..\" "
                                     "are allowed).")
                          .arg(item.nameText()));
    }
    item.obkSlotOwner = item.name;
    // Only this order is looked at; templates with the other one are in use.
    if (item.hasSlot && item.slotOwner == item.name) {
        return refuse(QStringLiteral(" Slot and OBKSlot tags in the same \"%1\" Data, you can only "
                                     "have Slot or OBKSlot tags by Data.")
                          .arg(item.nameText()));
    }
    return {};
}

/// The type of a parameter is the kind of its row.
Result<void> keepParamType(ObDataItem &item, const QString &text)
{
    for (const ItemKind kind :
         {ItemKind::File, ItemKind::Data, ItemKind::List, ItemKind::Bool, ItemKind::Text}) {
        if (text == tagOf(kind)) {
            item.kind = kind;
            return {};
        }
    }
    return refuse(QStringLiteral("\"%1\" is no Type of the parameter \"%2\" (only File, Data, "
                                 "List, Bool and Text are). Please update your xml file.")
                      .arg(text, item.nameText()));
}

Result<void> keepEnable(ObDataItem &item, const QString &text)
{
    bool isNumber = false;
    item.isLocked = text.toInt(&isNumber) == 0 && isNumber;
    return {};
}

using Item = ObDataItem;
constexpr ItemTag kName = {"Name", true, &keepText<&Item::name>};
constexpr ItemTag kDefault = {"Default", true, &keepText<&Item::defaultText>};
constexpr ItemTag kTooltip = {"Tooltip", true, &keepText<&Item::tooltip>};
constexpr ItemTag kWidth = {"Width", true, &keepNumber<&Item::width>};
constexpr ItemTag kHidden = {"Hidden", true, &keepHidden};
constexpr ItemTag kReserved = {"Reserved", true, &keepPresence<&Item::reserved>};
constexpr ItemTag kDependency = {"Dependency", true, &keepText<&Item::dependency>};
constexpr ItemTag kValue = {"Value", false, &keepText<&Item::value>};
constexpr ItemTag kEnteredValue = {"Value", true, &keepText<&Item::value>};

constexpr ItemTag kFileTags[] = {kName,
                                 {"Size", true, &keepSize},
                                 {"Align", true, &keepAlign},
                                 {"KeyType", true, &keepText<&Item::keyType>},
                                 {"Hash", true, &keepPresence<&Item::hash>},
                                 {"Type", true, &keepText<&Item::type>},
                                 kDefault,
                                 kTooltip,
                                 kHidden,
                                 kValue};
constexpr ItemTag kTextTags[] = {
    kName, {"MinWidth", true, &keepNumber<&Item::minWidth>}, kWidth, kDefault, kTooltip, kValue};
constexpr ItemTag kDataTags[] = {kName,
                                 kWidth,
                                 kDefault,
                                 kReserved,
                                 {"TypeSlot", true, &keepTypeSlot},
                                 kTooltip,
                                 kHidden,
                                 kDependency,
                                 {"Slot", false, &keepSlot},
                                 {"OBKSlot", false, &keepObkSlot},
                                 {"Value", false, &keepSlotValue}};
constexpr ItemTag kPermissionTags[] = {kName, kWidth, kDefault, kEnteredValue, kTooltip, kHidden};
constexpr ItemTag kBoolTags[] = {kName,
                                 kWidth,
                                 kDefault,
                                 {"True", true, &keepText<&Item::trueText>},
                                 {"False", true, &keepText<&Item::falseText>},
                                 kReserved,
                                 kTooltip,
                                 kHidden,
                                 kDependency,
                                 kValue};
constexpr ItemTag kListTags[] = {kName,     kWidth,        kDefault,
                                 kReserved, kEnteredValue, kTooltip,
                                 kHidden,   kDependency,   {"Val", false, &keepEntry}};
constexpr ItemTag kOutputTags[] = {kName, kDefault, kTooltip, kValue};
constexpr ItemTag kOption = {"Option", true, &keepText<&Item::option>};
constexpr ItemTag kParamTags[] = {kName,
                                  {"Type", true, &keepParamType},
                                  kOption,
                                  kDefault,
                                  kTooltip,
                                  kHidden,
                                  {"Enable", true, &keepEnable},
                                  {"Val", false, &keepEntry},
                                  kValue};
constexpr ItemTag kImageOutputTags[] = {kName, kOption, kDefault, kTooltip, kValue};

/// An item element: its tag, what it may hold and where its tag list goes.
struct ElementKind {
    ItemKind kind;
    std::span<const ItemTag> tags;
    QStringList TagLists::*flat;                 ///< one list for all elements of the kind, or
    std::vector<QStringList> TagLists::*single;  ///< one for each
};

const std::array<ElementKind, 7> kElementKinds = {{
    {ItemKind::Text, kTextTags, &TagLists::text, nullptr},
    {ItemKind::Data, kDataTags, nullptr, &TagLists::data},
    {ItemKind::Permission, kPermissionTags, &TagLists::permission, nullptr},
    {ItemKind::Bool, kBoolTags, nullptr, &TagLists::boolean},
    {ItemKind::List, kListTags, nullptr, &TagLists::list},
    {ItemKind::File, kFileTags, nullptr, &TagLists::file},
    {ItemKind::Output, kOutputTags, &TagLists::output, nullptr},
}};

const ElementKind kParam = {ItemKind::Text, kParamTags, nullptr, &TagLists::param};
const ElementKind kImageOutput = {ItemKind::Output, kImageOutputTags, &TagLists::output, nullptr};

/// One of the eight area values of "Info".
struct AreaTag {
    const char *tag;
    std::uint32_t Areas::*field;
    QStringList Template::*names;
    const char *wrong;  ///< how its refusal begins
};

constexpr AreaTag kAreaTags[] = {
    {"FlashStart", &Areas::flashStart, &Template::flashNames, " Wrong FlashStart value."},
    {"FlashSize", &Areas::flashSize, &Template::flashNames, " Wrong FlashSize value."},
    {"FlashSectorSize", &Areas::flashSectorSize, &Template::flashNames,
     " Wrong FlashSectorSize value."},
    {"OBKStart", &Areas::obkStart, &Template::obkNames, " Wrong OBK."},
    {"OBKSize", &Areas::obkSize, &Template::obkNames, " Wrong OBKSize value."},
    {"OBKSectorSize", &Areas::obkSectorSize, &Template::obkNames, " Wrong OBKSectorSize value."},
    {"AuthOBKStart", &Areas::authObkStart, &Template::authObkNames, " Wrong AuthOBKStart value."},
    {"AuthOBKSize", &Areas::authObkSize, &Template::authObkNames, " Wrong AuthOBKSize value."},
};

QString textOf(const QDomNode &node)
{
    return QString::fromStdString(get_txt(node));
}

/// What stands in the file's header must not go another way than it looks without a word.
void warn(Template &model, const QString &text)
{
    model.warning += (model.warning.isEmpty() ? QString() : QStringLiteral("\n")) + text;
}

void readDestination(Template &model, const QString &text)
{
    const QString digits = text.mid(2);
    model.obDestAddressText = text;
    // A value that needs the 32nd bit doesn't fit and becomes 0: that is what readers of such files
    // rely on, but nobody expects it.
    bool isRead = false;
    model.obDestAddress = digits.toInt(&isRead, 16);
    if (!isHex(text)) {
        warn(model,
             QStringLiteral("ObDestAddress \"%1\" isn't hexadecimal behind 0x and is written "
                            "as 0x%2.")
                 .arg(text, QString::number(static_cast<std::uint32_t>(*model.obDestAddress), 16)
                                .toUpper()));
    } else if (!isRead) {
        warn(model, QStringLiteral("ObDestAddress \"%1\" is above 0x7FFFFFFF and is written as 0.")
                        .arg(text));
    }
}

void readEncryption(Template &model, const QString &text)
{
    bool isRead = false;
    model.doEncryption = text.toInt(&isRead);
    if (!isRead) {
        warn(model, QStringLiteral("DoEncryption \"%1\" is no decimal number and is written as 0.")
                        .arg(text));
    }
}

Result<void> readInfoTag(const QString &tag, const QString &text, Template &model)
{
    for (const AreaTag &area : kAreaTags) {
        if (tag != QLatin1String(area.tag)) {
            continue;
        }
        model.tags.info.append(tag);
        (model.*area.names).append(tag);
        if (!isHex(text) && !isDecimal(text)) {
            return refuse(QLatin1String(area.wrong) +
                          QLatin1String(" Only Decimal and Hexadecimal values are authorized."));
        }
        model.areas.*area.field = lowWord(text);
        return {};
    }
    if (tag == QLatin1String("Title")) {
        model.tags.info.append(kNameMarker);
        model.title = text;
        return {};
    }
    if (tag == QLatin1String("ObDestAddress")) {
        readDestination(model, text);
    } else if (tag == QLatin1String("DoEncryption")) {
        readEncryption(model, text);
    } else if (tag == QLatin1String("GlobalAlign")) {
        model.globalAlign = static_cast<std::uint8_t>(text.toUInt() & 0xFF);
    } else {
        return {};
    }
    model.tags.info.append(tag);
    return {};
}

Result<void> readInfo(const QDomNode &node, Template &model)
{
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling()) {
        if (auto read = readInfoTag(child.nodeName(), textOf(child), model); !read) {
            return read;
        }
    }
    return {};
}

const ElementKind *kindOf(const QString &tag)
{
    for (const ElementKind &element : kElementKinds) {
        if (tag == tagOf(element.kind)) {
            return &element;
        }
    }
    return nullptr;
}

Result<void> readItem(const QDomNode &node, const ElementKind &element, ObDataItem &item,
                      TagLists &lists)
{
    item.kind = element.kind;
    QStringList tags;
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling()) {
        const QString name = child.nodeName();
        for (const ItemTag &tag : element.tags) {
            if (name != QLatin1String(tag.tag)) {
                continue;
            }
            if (tag.isEntered) {
                tags.append(tag.tag == kName.tag ? QString(kNameMarker) : name);
            }
            if (auto stored = tag.store(item, textOf(child)); !stored) {
                return stored;
            }
        }
    }
    if (element.flat != nullptr) {
        lists.*element.flat += tags;
    } else {
        (lists.*element.single).push_back(tags);
    }
    return {};
}

void readGlobalParam(const QDomNode &node, Template &model)
{
    QStringList &tags = model.tags.globalParam;
    const std::pair<const char *, QString Template::*> fields[] = {{"Title", &Template::title},
                                                                   {"Command", &Template::command},
                                                                   {"Tooltip", &Template::tooltip}};
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling()) {
        for (const auto &[tag, field] : fields) {
            if (child.nodeName() == QLatin1String(tag)) {
                // The marker stands here once, as the title itself has to be found.
                tags += tags.isEmpty() ? QStringList{kNameMarker, QLatin1String(tag)}
                                       : QStringList{QLatin1String(tag)};
                model.*field = textOf(child);
            }
        }
    }
}

}  // namespace

std::string get_txt(const QDomNode &node)
{
    return node.firstChild().toText().data().toStdString();
}

Result<void> readElement(const QDomNode &node, ObDataItem &item, Template &model)
{
    const QString tag = node.nodeName();
    if (tag == QLatin1String("Info")) {
        return readInfo(node, model);
    }
    const ElementKind *const element = kindOf(tag);
    return element != nullptr ? readItem(node, *element, item, model.tags) : Result<void>();
}

Result<void> readObdata(const QDomNode &obdata, Template &model)
{
    for (QDomNode child = obdata.firstChild(); !child.isNull(); child = child.nextSibling()) {
        const QString tag = child.nodeName();
        if (tag == QLatin1String("Hash")) {
            model.hashFile = true;
        } else if (tag == QLatin1String("DA")) {
            model.daLayout = true;
        } else {
            ObDataItem item;
            if (auto read = readElement(child, item, model); !read) {
                return read;
            }
            if (kindOf(tag) != nullptr) {
                model.items.push_back(std::move(item));
            }
        }
    }
    return {};
}

Result<void> readMcuboot(const QDomNode &format, Template &model)
{
    for (QDomNode child = format.firstChild(); !child.isNull(); child = child.nextSibling()) {
        const QString tag = child.nodeName();
        if (tag == QLatin1String("GlobalParam")) {
            readGlobalParam(child, model);
            continue;
        }
        const bool isParam = tag == QLatin1String("Param");
        if (!isParam && tag != QLatin1String("Output")) {
            continue;
        }
        ObDataItem item;
        item.isParam = true;
        if (auto read = readItem(child, isParam ? kParam : kImageOutput, item, model.tags); !read) {
            return read;
        }
        if (item.kind == ItemKind::Bool) {
            item.trueText = QStringLiteral("1");
            item.falseText = QStringLiteral("0");
        }
        model.items.push_back(std::move(item));
    }
    return {};
}

Result<void> readRoot(const QDomNode &format, Template &model)
{
    if (format.nodeName() == QLatin1String("McubootFormat")) {
        return readMcuboot(format, model);
    }
    return format.nodeName() == QLatin1String("Obdata") ? readObdata(format, model)
                                                        : Result<void>();
}

}  // namespace obk
