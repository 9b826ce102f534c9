#include "app/OtherPackage.h"

#include "files/base/FileReader.h"
#include "preparation/listing/PackageKinds.h"

#include <QFile>
#include <QStringList>

namespace app
{

namespace
{

using files::Result;
using preparation::PackageKind;
using preparation::PackageReport;

constexpr std::uint64_t kLargest = std::uint64_t{1} << 30;
constexpr int kShown = 64;  ///< characters of a long value

Result<files::ByteBuffer> readFile(const QString &path)
{
    QFile file;
    if (auto opened = files::openForReading(file, path); !opened) {
        return tl::unexpected(opened.error());
    }
    return files::readAll(file, kLargest);
}

Result<PackageReport> reportOf(const QString &path)
{
    const auto bytes = readFile(path);
    if (!bytes) {
        return tl::unexpected(bytes.error());
    }
    const auto kind = preparation::kindOf(bytes->span());
    if (!kind) {
        return tl::unexpected(kind.error());
    }
    files::ByteBuffer body;
    if (*kind == PackageKind::Sfu) {
        const auto beside = preparation::bodyBeside(path);
        auto read =
            beside ? readFile(*beside) : Result<files::ByteBuffer>(tl::unexpected(beside.error()));
        if (!read) {
            return files::fail(read.error().code,
                               "the body of this SFU header: " + read.error().text);
        }
        body = std::move(*read);
    }
    return preparation::openPackage(*kind, bytes->span(), body.span(), {});
}

}  // namespace

QString describePackage(const QString &path)
{
    const auto report = reportOf(path);
    if (!report) {
        return QStringLiteral("It is no known package: ") +
               QString::fromStdString(report.error().text);
    }
    QStringList lines{QStringLiteral("Kind: ") + QString::fromStdString(report->kind())};
    for (const preparation::TextRow &field : report->fields()) {
        const QString value = QString::fromStdString(field.back());
        lines << QString::fromStdString(field.front()) + QStringLiteral(": ") +
                     (value.size() > kShown ? value.left(kShown) + QStringLiteral("...") : value);
    }
    return lines.join('\n');
}

}  // namespace app
