#include "obk/TemplateChecks.h"

#include "obk/Choices.h"
#include "obk/Slots.h"

#include <QDebug>
#include <QHash>

namespace obk
{

namespace
{

Result<void> missing(const char *element, const char *tag)
{
    return refuse(QStringLiteral("XML document is invalid : Mandatory Tag under %1 is missing "
                                 ":\"%2\", please update your xml file.")
                      .arg(QLatin1String(element), QLatin1String(tag)));
}

Result<void> checkTags(const QStringList &tags, const char *element,
                       std::initializer_list<const char *> wanted)
{
    for (const char *const tag : wanted) {
        if (!tags.contains(QLatin1String(tag))) {
            return missing(element, tag);
        }
    }
    return {};
}

Result<void> checkEach(const std::vector<QStringList> &elements, const char *element,
                       std::initializer_list<const char *> wanted)
{
    for (const QStringList &tags : elements) {
        if (auto checked = checkTags(tags, element, wanted); !checked) {
            return checked;
        }
    }
    return {};
}

Result<void> uniqueInEach(const std::vector<QStringList> &elements, const char *element)
{
    for (const QStringList &tags : elements) {
        if (auto checked = uniqueName(tags, QLatin1String(element)); !checked) {
            return checked;
        }
    }
    return {};
}

/// The output exists, and no tag of it twice.
Result<void> uniqueOutput(const TagLists &lists)
{
    return lists.output.isEmpty() ? missing("Output", "Default")
                                  : uniqueName(lists.output, QStringLiteral("Output"));
}

Result<void> checkRow(const ObDataItem &item)
{
    switch (item.kind) {
    case ItemKind::Permission:
        if (!item.hidden) {
            if (auto checked = checkNumber(item.text(), item.nameText(), item.width); !checked) {
                return checked;
            }
        }
        if (item.width < kPermissionBytes) {
            return refuse(QStringLiteral("\"%1\" has a Width of %2, but a Permission takes %3 "
                                         "bytes. Please update your xml file.")
                              .arg(item.nameText(), QString::number(item.width),
                                   QString::number(kPermissionBytes)));
        }
        return {};
    case ItemKind::Bool:
        if (!item.hidden && !isChecked(item)) {
            return refuse(QStringLiteral("Fail OBkey open Wrong Default Boolean value \n"));
        }
        return {};
    case ItemKind::List:
        if (!item.hidden && currentEntry(item) < 0) {
            return refuse(QStringLiteral("Fail OBkey open Wrong Default List value \n"));
        }
        return {};
    default:
        return {};
    }
}

}  // namespace

Result<void> uniqueName(const QStringList &entries, const QString &tag)
{
    QHash<QString, int> seen;
    for (const QString &entry : entries) {
        ++seen[entry];
    }
    for (const QString &entry : entries) {
        if (seen.value(entry) < 2) {
            continue;
        }
        qDebug() << "duplicate name problem in " << entry;
        if (entries.contains(QLatin1String("duplicateElementCheck"))) {
            return refuse(QStringLiteral(
                              "XML document is invalid! \"%1\" Element is duplicated under %2 tag.")
                              .arg(entry, tag));
        }
        return refuse(QStringLiteral(" Duplicate name of : \"%1\", all names should be unique. "
                                     "Please update your xml file.")
                          .arg(entry));
    }
    return {};
}

Result<void> checkDuplicates(const TagLists &lists)
{
    if (lists.info.isEmpty()) {
        return missing("Info", "GlobalAlign");
    }
    return uniqueName(lists.info, QStringLiteral("Info"))
        .and_then([&] { return uniqueName(lists.text, QStringLiteral("Text")); })
        .and_then([&] { return uniqueInEach(lists.list, "List"); })
        .and_then([&] { return uniqueInEach(lists.boolean, "Bool"); })
        .and_then([&] { return uniqueInEach(lists.data, "Data"); })
        .and_then([&] { return uniqueInEach(lists.file, "File"); })
        .and_then([&] { return uniqueName(lists.permission, QStringLiteral("Permission")); })
        .and_then([&] { return uniqueOutput(lists); });
}

Result<void> checkMandatory(const TagLists &lists)
{
    return checkTags(lists.info, "Info", {"GlobalAlign"})
        .and_then([&] {
            return lists.text.isEmpty()
                       ? Result<void>()
                       : checkTags(lists.text, "Text", {"Width", "MinWidth", "Default"});
        })
        .and_then([&] {
            return checkEach(lists.data, "Data", {"Width", "Default"});
        })
        .and_then([&] {
            return checkEach(lists.list, "List", {"Width", "Default"});
        })
        .and_then([&] {
            return checkEach(lists.boolean, "Bool", {"Width", "Default", "True", "False"});
        })
        .and_then([&] {
            return checkEach(lists.file, "File", {"Align", "KeyType", "Default"});
        })
        .and_then([&] {
            return lists.permission.isEmpty()
                       ? Result<void>()
                       : checkTags(lists.permission, "Permission", {"Width", "Default"});
        })
        .and_then([&] { return checkTags(lists.output, "Output", {"Default"}); });
}

Result<void> checkImageDuplicates(const TagLists &lists)
{
    if (lists.globalParam.isEmpty()) {
        return refuse(QStringLiteral("XML document is invalid : Mandatory Tags under GlobalParam "
                                     "are missing, please update your xml file."));
    }
    return uniqueName(lists.globalParam, QStringLiteral("GlobalParam"))
        .and_then([&] { return uniqueInEach(lists.param, "Param"); })
        .and_then([&] { return uniqueOutput(lists); });
}

Result<void> checkImageMandatory(const TagLists &lists)
{
    return checkTags(lists.globalParam, "GlobalParam", {"Title", "Command"})
        .and_then([&] {
            return checkEach(lists.param, "Param", {"Type", "Default"});
        })
        .and_then([&] { return checkTags(lists.output, "Output", {"Default"}); });
}

Result<void> checkNames(const std::vector<ObDataItem> &items)
{
    for (const ItemKind kind :
         {ItemKind::Data, ItemKind::Permission, ItemKind::File, ItemKind::Text}) {
        QStringList names;
        for (const ObDataItem &item : items) {
            if (item.kind == kind && item.name) {
                names.append(*item.name);
            }
        }
        if (auto checked = uniqueName(names, tagOf(kind)); !checked) {
            return checked;
        }
    }
    return {};
}

Result<void> checkDefaults(const std::vector<ObDataItem> &items)
{
    for (const ObDataItem &item : items) {
        if (item.kind != ItemKind::Data) {
            continue;
        }
        if (auto checked =
                checkNumber(item.defaultText.value_or(QString()), item.nameText(), item.width);
            !checked) {
            return checked;
        }
    }
    return {};
}

Result<void> checkTemplate(const Template &model)
{
    return checkNames(model.items)
        .and_then([&] { return checkDefaults(model.items); })
        .and_then([&] { return checkDeclaredSlots(model); });
}

Result<void> checkRows(const Template &model)
{
    for (const ObDataItem &item : model.items) {
        if (auto checked = checkRow(item); !checked) {
            return checked;
        }
    }
    return {};
}

Result<void> checkParam(const ObDataItem &item, const QString &text)
{
    ObDataItem asked = item;
    asked.value = text;
    const char *wanted = nullptr;
    if (item.kind == ItemKind::Data && !isHex(text) && !isDecimal(text)) {
        wanted = "a number, decimal or hexadecimal behind 0x";
    } else if (item.kind == ItemKind::Bool && !isChecked(asked)) {
        wanted = "1 or 0";
    } else if (item.kind == ItemKind::List && currentEntry(asked) < 0) {
        wanted = "one of its list";
    }
    return wanted == nullptr
               ? Result<void>()
               : refuse(QStringLiteral("\"%1\" is no value for \"%2\", which takes %3.")
                            .arg(text, item.nameText(), QLatin1String(wanted)));
}

Result<void> checkImageItems(const std::vector<ObDataItem> &items)
{
    QStringList names;
    for (const ObDataItem &item : items) {
        if (item.kind != ItemKind::Output && item.name) {
            names.append(*item.name);
        }
    }
    if (auto checked = uniqueName(names, QString()); !checked) {
        return checked;
    }
    for (const ObDataItem &item : items) {
        if (auto checked = checkParam(item, item.text()); !checked) {
            return checked;
        }
    }
    return {};
}

}  // namespace obk
