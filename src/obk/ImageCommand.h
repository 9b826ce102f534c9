#pragma once
#include "obk/NumberText.h"
#include "obk/Template.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace obk
{

/// The words of "Command" can stand in front of the parameters: there are some, and none is an
/// option that a parameter stands for, too.
Result<void> checkImageCommand(const Template &model);

/// Arguments of the image tool for a template's values: the words of "Command", each parameter in
/// the template's order as its option and value, then files and texts without an option, and the
/// output at the end. An empty value leaves the parameter out; a Bool is its option alone when it
/// is 1. Paths are completed from the template's folder.
/// @param values  by item; absent: the template's own
/// @return the sentence for the user for a value that its parameter doesn't take, and for an empty
///         output
Result<QStringList> imageArguments(const Template &model, const QString &templatePath,
                                   const std::vector<std::optional<QString>> &values);

/// Whether a parameter's option takes a pass phrase: its name has "pass" in it. Such a value is
/// kept nowhere.
bool isSecretOption(const ObDataItem &item);

/// A command line that a shell reads as these words. The value of an option that takes a pass
/// phrase is shown as "***".
QString shellText(const QString &program, const QStringList &arguments);

}  // namespace obk
