#pragma once
#include "obk/NumberText.h"
#include "obk/Template.h"

namespace obk
{

// Each check stops at its first failure and gives the sentence for the user.

/// No entry twice, compared exactly. Whether `entries` is a tag list or a list of names, and so the
/// sentence, goes by the marker that stands for a name in tag lists.
/// @param tag  element that a tag list belongs to
Result<void> uniqueName(const QStringList &entries, const QString &tag);

/// No tag twice in an element; "Info" and "Output" exist.
Result<void> checkDuplicates(const TagLists &lists);

/// All tags are there without which an element has no meaning.
Result<void> checkMandatory(const TagLists &lists);

/// The same two of an image template: "GlobalParam", each "Param" and "Output".
Result<void> checkImageDuplicates(const TagLists &lists);
Result<void> checkImageMandatory(const TagLists &lists);

/// Names are unique among the Data, the Permission, the File and the Text items, each kind for
/// itself.
Result<void> checkNames(const std::vector<ObDataItem> &items);

/// The "Default" of each Data item fits its width.
Result<void> checkDefaults(const std::vector<ObDataItem> &items);

/// Names, defaults and slots: all that is checked before a form is built.
Result<void> checkTemplate(const Template &model);

/// What a row of the form starts with: the value of a Permission fits, the value of a Bool or a
/// List is one of its own. Rows come in the order of the items; hidden items have none.
Result<void> checkRows(const Template &model);

/// One parameter of an image template with a value: a number is decimal or hexadecimal or empty, a
/// Bool is 1 or 0, the value of a List is one of its own.
Result<void> checkParam(const ObDataItem &item, const QString &text);

/// Names and values of an image template.
Result<void> checkImageItems(const std::vector<ObDataItem> &items);

}  // namespace obk
