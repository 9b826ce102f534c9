#pragma once
#include "obk/NumberText.h"
#include "obk/Template.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace obk
{

/// The words of "Command" can stand in front of the parameters, each Bool has an option, and no
/// pass phrase would go onto the command line.
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

/// Whether a parameter is a pass phrase: a Text whose option ends in "pass-fd". The command only
/// names standard input, and such a value is kept nowhere.
bool isSecretOption(const ObDataItem &item);

/// The pass phrase among the values, which the image tool reads from standard input; empty for
/// none.
QByteArray imagePassPhrase(const Template &model,
                           const std::vector<std::optional<QString>> &values);

/// A command line that a shell reads as these words. The value of an option that takes a pass
/// phrase itself is shown as "***".
QString shellText(const QString &program, const QStringList &arguments);

}  // namespace obk
