#include "files/base/SafeWriter.h"
#include "obk/ImageCommand.h"
#include "obk/Obkey.h"
#include "obk/Reporting.h"
#include "obk/TemplateText.h"
#include "xml/Bounds.h"

#include <QFile>

using files::SafeWriter;
using files::Secrecy;
using obk::tell;
using report::Level;

namespace
{

/// The known text of a failed write, and the reason on a line of its own.
void tellFailed(const QString &known, const files::Error &error)
{
    tell(Level::Error, known + (known.endsWith('\n') ? QString() : QStringLiteral("\n")) +
                           QString::fromStdString(error.text));
}

/// Writes all and commits.
files::Result<void> finish(SafeWriter &writer, std::span<const std::uint8_t> bytes)
{
    return writer.write(bytes).and_then([&writer] { return writer.commit(); });
}

/// Commits the password file and tells about it.
bool finishPassword(const obk::PasswordFile &password, SafeWriter &writer)
{
    if (const auto written = finish(writer, password.bytes); !written) {
        tellFailed(QStringLiteral("Error while writing in file : %1 file").arg(password.path),
                   written.error());
        return false;
    }
    tell(Level::Information,
         QStringLiteral("Password file Generated successfully : %1 \nPassword file will be "
                        "used for Debug authentication")
             .arg(password.path));
    return true;
}

/// A template that holds a password is for its owner's eyes only.
files::Result<void> writeTemplate(const QString &path, const QByteArray &text, bool isSecret)
{
    constexpr auto kOthers = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                             QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    const auto mode = QFile::permissions(path) & ~kOthers;
    auto written = files::writeWhole(path,
                                     {reinterpret_cast<const std::uint8_t *>(text.constData()),
                                      static_cast<std::size_t>(text.size())},
                                     isSecret ? Secrecy::SecretUnlessLocked : Secrecy::Public);
    if (written && isSecret) {
        QFile::setPermissions(path, mode);
    }
    return written;
}

}  // namespace

std::optional<obk::Product> Obkey::generate(std::vector<std::optional<QString>> fields,
                                            bool hasForm, const obk::KeyTools &tools,
                                            const std::function<void()> &whenDone)
{
    if (model.globalAlign == 0) {
        model.globalAlign = 1;
    }
    auto product = isLoaded
                       ? obk::generate({model, templatePath, std::move(fields), hasForm}, tools)
                       : obk::refuse(QStringLiteral("Upload a valid input XML File"));
    if (whenDone) {
        whenDone();
    }
    if (!obk::isGood(product)) {
        return std::nullopt;
    }
    return std::move(*product);
}

bool Obkey::writeProduct(const obk::Product &product)
{
    // Both files are opened first, so that one that can't be made leaves nothing of the other.
    std::optional<SafeWriter> password;
    if (product.password) {
        auto opened = SafeWriter::open(product.password->path, Secrecy::SecretUnlessLocked);
        if (!opened) {
            tellFailed(QStringLiteral("Failed to create Password file\nThe %1 already Opened \n")
                           .arg(product.password->path),
                       opened.error());
            return false;
        }
        password = std::move(*opened);
    }
    auto output = SafeWriter::open(
        product.outputPath, product.isSecret ? Secrecy::SecretUnlessLocked : Secrecy::Public);
    if (!output) {
        tellFailed(QStringLiteral("Fail OBkey Generation The %1 already Opened \n")
                       .arg(product.outputPath),
                   output.error());
        return false;
    }
    if (password && !finishPassword(*product.password, *password)) {
        return false;
    }
    if (const auto written = finish(*output, product.bytes); !written) {
        tellFailed(QStringLiteral(" OBkey Generation Failed %1 is already opened or save error \n")
                       .arg(product.outputPath),
                   written.error());
        return false;
    }
    for (std::size_t at = 0; at < model.items.size(); ++at) {
        ObDataItem &item = model.items[at];
        item.value = product.values[at];
        item.slotValueSet = item.slotValueSet || item.kind == obk::ItemKind::Data;
    }
    return true;
}

void Obkey::saveOBKeyConf(Obkey *obkey)
{
    const QString path = obkey->templatePath;
    const auto text = xml::readBounded(path);
    if (!text) {
        return;
    }
    const auto &items = obkey->model.items;
    std::vector<std::optional<QString>> values;
    bool hasPassword = false;
    for (const ObDataItem &item : items) {
        values.push_back(item.value);
        hasPassword = hasPassword || item.kind == obk::ItemKind::Text;
    }
    const auto changed = obk::withValues(*text, items, values);
    if (!changed) {
        tell(Level::Error,
             QStringLiteral("The values were not saved in the template \"%1\": ").arg(path) +
                 QString::fromStdString(changed.error().text));
        return;
    }
    const auto written = writeTemplate(path, *changed, hasPassword);
    if (!written) {
        const bool isOpened = written.error().code != files::ErrorCode::CannotOpen;
        tellFailed((isOpened ? QStringLiteral(" OBKey XML Generation Failed %1 \n")
                             : QStringLiteral("Fail OBkey XML Generation The File %1 is already "
                                              "Opened \n"))
                       .arg(path),
                   written.error());
    }
}

bool Obkey::saveImageValues(const std::vector<std::optional<QString>> &values)
{
    const auto refuse = [this](const std::string &why) {
        tell(
            Level::Error,
            QStringLiteral("The values were not saved in the template \"%1\": ").arg(templatePath) +
                QString::fromStdString(why));
        return false;
    };
    const auto text = xml::readBounded(templatePath);
    if (!text) {
        return refuse(text.error().text);
    }
    std::vector<std::optional<QString>> kept = values;
    kept.resize(model.items.size());
    for (std::size_t at = 0; at < kept.size(); ++at) {
        if (obk::isSecretOption(model.items[at])) {
            kept[at].reset();
        }
    }
    const auto changed = obk::withValues(*text, model.items, kept);
    if (!changed) {
        return refuse(changed.error().text);
    }
    if (const auto written = writeTemplate(templatePath, *changed, false); !written) {
        return refuse(written.error().text);
    }
    for (std::size_t at = 0; at < kept.size(); ++at) {
        model.items[at].value = kept[at] ? kept[at] : model.items[at].value;
    }
    return true;
}
