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
        .and_then([&] {
            return lists.output.isEmpty() ? missing("Output", "Default")
                                          : uniqueName(lists.output, QStringLiteral("Output"));
        });
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

}  // namespace obk
