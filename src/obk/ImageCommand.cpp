#include "obk/ImageCommand.h"

#include "obk/Choices.h"
#include "obk/KeyInput.h"
#include "obk/TemplateChecks.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace obk
{

namespace
{

bool namesPassPhrase(const QString &option)
{
    return option.startsWith(QLatin1Char('-')) &&
           option.contains(QLatin1String("pass"), Qt::CaseInsensitive);
}

QString shellWord(const QString &word)
{
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z0-9_@%+=:,./-]+$"));
    if (plain.match(word).hasMatch()) {
        return word;
    }
    QString quoted = word;
    quoted.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + quoted + QLatin1Char('\'');
}

/// A parameter's words.
/// @param value  what is shown; of a Bool 1 or 0
QStringList wordsOf(const ObDataItem &item, const QString &value)
{
    const QString option = item.option.value_or(QString()).trimmed();
    if (item.kind == ItemKind::Bool) {
        return value == item.trueText ? option.split(QLatin1Char(' '), Qt::SkipEmptyParts)
                                      : QStringList();
    }
    if (value.isEmpty()) {
        return {};
    }
    if (option.isEmpty()) {
        return {value};
    }
    return option.endsWith(QLatin1Char('=')) ? QStringList{option + value}
                                             : QStringList{option, value};
}

}  // namespace

Result<void> checkImageCommand(const Template &model)
{
    if (model.command.trimmed().isEmpty()) {
        return refuse(
            QStringLiteral("\"Command\" is empty: it names what the image tool does, such "
                           "as create. Please update your xml file."));
    }
    for (const ObDataItem &item : model.items) {
        const QString option = item.option.value_or(QString()).trimmed();
        if (item.kind == ItemKind::Bool && option.isEmpty()) {
            return refuse(
                QStringLiteral("\"%1\" is a Bool without an Option, so it could never say "
                               "anything. Please update your xml file.")
                    .arg(item.nameText()));
        }
    }
    return {};
}

Result<QStringList> imageArguments(const Template &model, const QString &templatePath,
                                   const std::vector<std::optional<QString>> &values)
{
    const QString folder = QFileInfo(templatePath).path();
    QStringList arguments = model.command.simplified().split(QLatin1Char(' '));
    QStringList last;
    QString output;
    for (std::size_t at = 0; at < model.items.size(); ++at) {
        const ObDataItem &item = model.items[at];
        QString value = at < values.size() && values[at] ? *values[at] : item.text();
        if (auto checked = checkParam(item, value); !checked) {
            return tl::unexpected<files::Error>(checked.error());
        }
        const bool isPath = item.kind == ItemKind::File || item.kind == ItemKind::Output;
        if (isPath && !value.isEmpty()) {
            // "./" is how templates write it; in the middle of a path it only takes room.
            value =
                completePath(value.startsWith(QLatin1String("./")) ? value.mid(2) : value, folder);
        }
        if (item.kind == ItemKind::Output) {
            output = value;
        }
        const bool isNamed = !item.option.value_or(QString()).trimmed().isEmpty();
        if (item.kind == ItemKind::Output && !isNamed) {
            continue;
        }
        (isNamed ? arguments : last) += wordsOf(item, value);
    }
    if (output.isEmpty()) {
        return refuse(QStringLiteral("The output file has no name."));
    }
    arguments += last;
    const bool isOutputNamed =
        std::any_of(model.items.begin(), model.items.end(), [](const ObDataItem &item) {
            return item.kind == ItemKind::Output &&
                   !item.option.value_or(QString()).trimmed().isEmpty();
        });
    if (!isOutputNamed) {
        arguments << output;
    }
    return arguments;
}

bool isSecretOption(const ObDataItem &item)
{
    return namesPassPhrase(item.option.value_or(QString()).trimmed());
}

QString shellText(const QString &program, const QStringList &arguments)
{
    QString text = shellWord(program);
    bool isSecret = false;
    for (const QString &argument : arguments) {
        const int equals = argument.indexOf(QLatin1Char('='));
        const bool isJoined = equals > 0 && namesPassPhrase(argument.left(equals));
        text += QLatin1Char(' ');
        text += isSecret   ? QStringLiteral("***")
                : isJoined ? argument.left(equals + 1) + QLatin1String("***")
                           : shellWord(argument);
        isSecret = !isSecret && !isJoined && namesPassPhrase(argument);
    }
    return text;
}

}  // namespace obk
