#include "obk/KeyInput.h"

#include "crypto/service/StandardOutput.h"
#include "files/base/KeyFile.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <charconv>
#include <string_view>

namespace obk
{

namespace
{

/// DER in front of the 64 bytes of a P-256 public key, the byte 04 included.
constexpr std::size_t kDerPrefix = 27;

void tell(const char *fault, const QString &path)
{
    crypto::printText(fault);
    crypto::printText(path.toUtf8().constData());
    crypto::printText("\n");
}

/// One entry of the printed array: one or two hexadecimal digits.
bool appendEntry(std::string_view digits, SecretBuffer &bytes)
{
    std::uint8_t byte = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
    if (digits.size() > 2 || read.ec != std::errc() || read.ptr != digits.data() + digits.size()) {
        return false;
    }
    bytes.push_back(byte);
    return true;
}

/// What stands behind the last row: the brace, and a length that must be right if it is there.
bool isArrayEnd(std::string_view text, std::size_t count)
{
    static const QRegularExpression form(
        QStringLiteral("^\\n\\};?[ \\t]*\\n?(?:[^\\n]*=[ \\t]*(\\d+)[ \\t]*;\\s*)?$"));
    const auto match = form.match(QString::fromUtf8(text.data(), static_cast<int>(text.size())));
    return match.hasMatch() &&
           (match.captured(1).isEmpty() || match.captured(1).toULongLong() == count);
}

/// The line that tells which half of a key a PEM file holds.
QByteArray decidingLine(const files::SecretBytes &pem)
{
    const QByteArray text = QByteArray::fromRawData(reinterpret_cast<const char *>(pem.data()),
                                                    static_cast<int>(pem.size()));
    for (int at = 0; at < text.size();) {
        const int end = text.indexOf('\n', at);
        const int size = (end < 0 ? text.size() : end) - at;
        const QByteArray line = QByteArray::fromRawData(text.constData() + at, size);
        if (line.startsWith("-----BEGIN") && !line.contains("EC PARAMETERS")) {
            return QByteArray(line.constData(), line.size());
        }
        at += size + 1;
    }
    return {};
}

Result<SecretBuffer> readPublicKey(const QString &path, const KeyTools &tools)
{
    auto der = tools.publicKeyDer(path);
    if (!der || der->empty()) {
        return refuse(QStringLiteral("Fail Public Key Generation \n"));
    }
    return der;
}

Result<FileBytes> readPrivateKey(const ObDataItem &item, const QString &path, bool daLayout,
                                 const KeyTools &tools)
{
    const QString type = item.type.value_or(QString());
    const bool isPublic = type.compare(QLatin1String("Public"), Qt::CaseInsensitive) == 0;
    const bool isRaw = type.compare(QLatin1String("Private_Raw"), Qt::CaseInsensitive) == 0;
    QStringList arguments = {isPublic ? QStringLiteral("getpub") : QStringLiteral("getpriv")};
    if (!isPublic) {
        arguments << QStringLiteral("--minimal");
    }
    if (isRaw) {
        arguments << QStringLiteral("--raw");
    }
    arguments << QStringLiteral("-k") << path;

    FileBytes read;
    read.isSecret = !isPublic;
    auto printed = tools.runImageTool(arguments);
    auto bytes = printed ? parseArray(*printed) : Result<SecretBuffer>(refuse({}));
    if (printed) {
        files::wipe(*printed);
    }
    const std::size_t skipped = daLayout ? kDerPrefix : 0;
    if (!bytes || bytes->size() <= skipped) {
        return refuse(isPublic ? QStringLiteral("Fail Public Key Generation \n")
                               : QStringLiteral("Fail Private Key Generation \n"));
    }
    if (daLayout) {
        read.bytes.assign(bytes->begin() + kDerPrefix, bytes->end());
    } else {
        read.bytes = item.hash ? sha256(*bytes) : std::move(*bytes);
    }
    return read;
}

Result<FileBytes> readPem(const ObDataItem &item, const QString &path,
                          const files::SecretBytes &pem, bool daLayout, const KeyTools &tools)
{
    const QByteArray line = decidingLine(pem);
    if (line.contains("PUBLIC")) {
        auto der = readPublicKey(path, tools);
        if (!der) {
            return tl::unexpected<files::Error>(std::move(der).error());
        }
        return FileBytes{item.hash ? sha256(*der) : std::move(*der), false};
    }
    if (line.contains("PRIVATE")) {
        return readPrivateKey(item, path, daLayout, tools);
    }
    return refuse(QStringLiteral("Wrong Input Key File  \n"));
}

}  // namespace

QString completePath(const QString &path, const QString &baseFolder)
{
    QString complete = path;
    complete.replace(QLatin1Char('\\'), QLatin1Char('/'));
    static const QRegularExpression drive(QStringLiteral("^[A-Z]:/"));
    if (complete.startsWith(QLatin1Char('/')) || drive.match(complete.left(3)).hasMatch()) {
        return complete;
    }
    return baseFolder + QLatin1Char('/') + complete;
}

Result<SecretBuffer> parseArray(const QByteArray &printed)
{
    // Views all along: what is copied of a private key would have to be wiped.
    const std::string_view text(printed.constData(), static_cast<std::size_t>(printed.size()));
    constexpr auto npos = std::string_view::npos;
    const std::size_t firstLine = text.find('\n');
    const std::size_t head = firstLine == npos ? npos : text.find('\n', firstLine + 1);
    const std::size_t end = head == npos ? npos : text.find(",\n}", head);
    constexpr std::string_view kRowStart = "    0x";
    if (end == npos || text.substr(head + 1, kRowStart.size()) != kRowStart) {
        return refuse({});
    }
    SecretBuffer bytes;
    std::size_t at = head + 1 + kRowStart.size();
    for (;;) {
        const std::size_t comma = text.find(',', at);
        if (!appendEntry(text.substr(at, comma - at), bytes)) {
            return refuse({});
        }
        if (comma == end) {
            break;
        }
        const auto gap = [&](std::string_view form) {
            return text.substr(comma, form.size()) == form ? form.size() : 0;
        };
        const std::size_t width = std::max(gap(", 0x"), gap(",\n    0x"));
        if (width == 0) {
            return refuse({});
        }
        at = comma + width;
    }
    if (!isArrayEnd(text.substr(end + 1), bytes.size())) {
        return refuse({});
    }
    return bytes;
}

Result<FileBytes> readFileItem(const ObDataItem &item, const QString &path, bool daLayout,
                               const KeyTools &tools)
{
    if (!QFile::exists(path)) {
        tell("file does not exist: ", path);
        return refuse(QStringLiteral("Wrong Path %1 for %2 \n").arg(path, item.nameText()));
    }
    const auto content = files::readKeyFile(path, 0);
    if (!content) {
        const auto code = content.error().code;
        const bool isOpen =
            code == files::ErrorCode::ReadFailed || code == files::ErrorCode::TooLarge ||
            code == files::ErrorCode::NoMemory || code == files::ErrorCode::WrongSize;
        tell(isOpen ? "Error while reading Input File" : "Unable to open the file: ",
             isOpen ? QString() : path);
        return refuse(isOpen ? QStringLiteral("Cannot Read Input File \n")
                             : QStringLiteral("Cannot Open Input File \n"));
    }
    if (content->size() == 0) {
        tell("File is empty: ", path);
        return refuse(QStringLiteral("Empty Input %1 Key File \n").arg(item.nameText()));
    }
    if (QFileInfo(path).suffix().compare(QLatin1String("pem"), Qt::CaseInsensitive) == 0) {
        return readPem(item, path, *content, daLayout, tools);
    }
    FileBytes read;
    read.isSecret = true;
    read.bytes.assign(content->span().begin(), content->span().end());
    return read;
}

SecretBuffer sha256(const SecretBuffer &bytes)
{
    const QByteArray digest = QCryptographicHash::hash(
        QByteArray::fromRawData(reinterpret_cast<const char *>(bytes.data()),
                                static_cast<int>(bytes.size())),
        QCryptographicHash::Sha256);
    return {digest.begin(), digest.end()};
}

}  // namespace obk
