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

/// How an option takes a pass phrase, if it does.
enum class Phrase { None, Descriptor, File, Argument };

QString optionOf(const ObDataItem &item)
{
    return item.option.value_or(QString()).trimmed();
}

Phrase phraseOf(QString option)
{
    if (!option.startsWith(QLatin1Char('-')) ||
        !option.contains(QLatin1String("pass"), Qt::CaseInsensitive)) {
        return Phrase::None;
    }
    option = option.endsWith(QLatin1Char('=')) ? option.chopped(1) : option;
    return option.endsWith(QLatin1String("pass-fd"))     ? Phrase::Descriptor
           : option.endsWith(QLatin1String("pass-file")) ? Phrase::File
                                                         : Phrase::Argument;
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
    const QString option = optionOf(item);
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
    if (option.endsWith(QLatin1Char('='))) {
        return {option + value};
    }
    // An option may come with its first value: "--custom-tlv 0xa0".
    return option.split(QLatin1Char(' '), Qt::SkipEmptyParts) + QStringList{value};
}

/// A pass phrase would be read by everybody who lists the processes.
Result<void> checkPassPhrase(const ObDataItem &item, bool &isTaken)
{
    const Phrase phrase = phraseOf(optionOf(item));
    const bool isHandedOver = phrase == Phrase::Descriptor && item.kind == ItemKind::Text;
    const bool isFile = phrase == Phrase::File && item.kind == ItemKind::File;
    if (phrase != Phrase::None && !isHandedOver && !isFile) {
        return refuse(QStringLiteral("\"%1\" would show a pass phrase on the command line. It is a "
                                     "Text with the Option --pass-fd, or a File with --pass-file. "
                                     "Please update your xml file.")
                          .arg(item.nameText()));
    }
    if (isHandedOver && isTaken) {
        return refuse(QStringLiteral("\"%1\" is a second pass phrase, and the image tool takes "
                                     "one. Please update your xml file.")
                          .arg(item.nameText()));
    }
    isTaken = isTaken || isHandedOver;
    return {};
}

}  // namespace

Result<void> checkImageCommand(const Template &model)
{
    if (model.command.trimmed().isEmpty()) {
        return refuse(
            QStringLiteral("\"Command\" is empty: it names what the image tool does, such "
                           "as create. Please update your xml file."));
    }
    bool isPhraseTaken = false;
    for (const ObDataItem &item : model.items) {
        if (auto checked = checkPassPhrase(item, isPhraseTaken); !checked) {
            return checked;
        }
        if (item.kind == ItemKind::Bool && optionOf(item).isEmpty()) {
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
        if (isSecretOption(item) && !value.isEmpty()) {
            value = QStringLiteral("0");  // standard input
        }
        const bool isNamed = !optionOf(item).isEmpty();
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
            return item.kind == ItemKind::Output && !optionOf(item).isEmpty();
        });
    if (!isOutputNamed) {
        arguments << output;
    }
    return arguments;
}

bool isSecretOption(const ObDataItem &item)
{
    return item.kind == ItemKind::Text && phraseOf(optionOf(item)) == Phrase::Descriptor;
}

QByteArray imagePassPhrase(const Template &model, const std::vector<std::optional<QString>> &values)
{
    for (std::size_t at = 0; at < model.items.size(); ++at) {
        if (isSecretOption(model.items[at])) {
            return (at < values.size() && values[at] ? *values[at] : model.items[at].text())
                .toUtf8();
        }
    }
    return {};
}

QString shellText(const QString &program, const QStringList &arguments)
{
    QString text = shellWord(program);
    bool isSecret = false;
    for (const QString &argument : arguments) {
        const int equals = argument.indexOf(QLatin1Char('='));
        const bool isJoined = equals > 0 && phraseOf(argument.left(equals)) == Phrase::Argument;
        text += QLatin1Char(' ');
        text += isSecret   ? QStringLiteral("***")
                : isJoined ? argument.left(equals + 1) + QLatin1String("***")
                           : shellWord(argument);
        isSecret = !isSecret && !isJoined && phraseOf(argument) == Phrase::Argument;
    }
    return text;
}

}  // namespace obk
