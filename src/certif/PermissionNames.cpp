#include "certif/PermissionNames.h"

#include "xml/Document.h"

#include <QDir>

namespace certif
{

namespace
{

constexpr int kMostFamilies = 100;

QString textOf(const QDomElement &parent, const char *name)
{
    return parent.firstChildElement(QLatin1String(name)).text().trimmed();
}

}  // namespace

files::Result<Family> readFamily(const QByteArray &document, const xml::Schema &schema)
{
    if (const auto valid = schema.validate(document); !valid) {
        const xml::Fault &fault = valid.error();
        return files::fail(
            files::ErrorCode::BadValue,
            QStringLiteral("line %1: %2").arg(fault.line).arg(fault.text).toStdString());
    }
    const auto parsed = xml::parse(document);
    if (!parsed) {
        return tl::unexpected(parsed.error());
    }
    const QDomElement format =
        parsed->documentElement().firstChildElement(QStringLiteral("CertifFormat"));
    Family family;
    family.name = textOf(format, "Family");
    family.socClass = textOf(format, "SocClass");
    const QString entry = QStringLiteral("Permission");
    for (QDomElement bit = format.firstChildElement(entry); !bit.isNull();
         bit = bit.nextSiblingElement(entry)) {
        const std::size_t index = textOf(bit, "Bit").toUInt();
        if (index < family.bits.size()) {
            family.bits[index] = {textOf(bit, "Name"), textOf(bit, "Tooltip")};
        }
    }
    return family;
}

std::vector<Family> readFamilies(const QString &folder, const QString &schema,
                                 QStringList &problems)
{
    const auto rules = xml::Schema::load(schema);
    if (!rules) {
        problems << QString::fromStdString(rules.error().text);
        return {};
    }
    std::vector<Family> families;
    const QStringList names = QDir(folder).entryList({QStringLiteral("*.xml")}, QDir::Files);
    for (const QString &name : names.mid(0, kMostFamilies)) {
        auto family = xml::readBounded(folder + '/' + name).and_then([&rules](const auto &bytes) {
            return readFamily(bytes, *rules);
        });
        if (family) {
            families.push_back(std::move(*family));
        } else {
            problems << name + QStringLiteral(": ") + QString::fromStdString(family.error().text);
        }
    }
    return families;
}

}  // namespace certif
