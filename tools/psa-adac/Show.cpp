#include "Commands.h"
#include "Files.h"
#include "certif/Examination.h"
#include "crypto/primitives/EcKey.h"
#include "tools/console/Table.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace adac
{

namespace
{

using certif::Certificate;
using certif::Step;

std::string keyIdentifier(const Certificate &certificate)
{
    const auto key = crypto::EcKey::fromPoint(crypto::Curve::P256, certificate.subjectKey);
    const auto identifier = key ? key->identifier() : tl::unexpected(key.error());
    if (!identifier) {
        return "no point of the curve";
    }
    return QByteArray(reinterpret_cast<const char *>(identifier->data()),
                      static_cast<int>(identifier->size()))
        .toHex()
        .toStdString();
}

const char *issuerWord(certif::Issuer issuer)
{
    switch (issuer) {
    case certif::Issuer::Matches:
        return "matches";
    case certif::Issuer::Differs:
        return "differs";
    case certif::Issuer::Unknown:
        break;
    }
    return "not checked";
}

/// Name and value of each field, in the order of the table.
std::vector<std::pair<const char *, std::string>> fields(const Certificate &certificate,
                                                         const Step &step)
{
    return {
        {"role", certif::roleName(certificate.role)},
        {"usage", certif::usageName(certificate.usage)},
        {"lifecycle", certif::lifecycleName(certificate.lifecycle)},
        {"oemConstraint", std::to_string(certificate.oemConstraint)},
        {"socClass", "0x" + QByteArray::number(certificate.socClass, 16).toStdString()},
        {"socId", certif::hexText(certificate.socId)},
        {"permissions", certif::hexText(certificate.permissions)},
        {"remaining", certif::hexText(step.remaining)},
        {"subjectKey", keyIdentifier(certificate)},
        {"issuer", issuerWord(step.issuer)},
    };
}

void addTable(const certif::Chain &chain, const std::vector<Step> &steps, std::string &out)
{
    for (std::size_t i = 0; i < chain.size(); ++i) {
        std::vector<console::Row> rows{{"certificate", std::to_string(i + 1)}};
        for (const auto &[name, value] : fields(chain[i], steps[i])) {
            rows.push_back({name, value});
        }
        for (const std::string &fault : steps[i].faults) {
            rows.push_back({"fault", fault});
        }
        out += console::alignedTable(rows) + "\n";
    }
}

QJsonArray toJson(const certif::Chain &chain, const std::vector<Step> &steps)
{
    QJsonArray certificates;
    for (std::size_t i = 0; i < chain.size(); ++i) {
        QJsonObject object;
        for (const auto &[name, value] : fields(chain[i], steps[i])) {
            object[QLatin1String(name)] = QString::fromStdString(value);
        }
        QJsonArray faults;
        for (const std::string &fault : steps[i].faults) {
            faults.append(QString::fromStdString(fault));
        }
        object[QStringLiteral("faults")] = faults;
        certificates.append(object);
    }
    return certificates;
}

}  // namespace

files::Result<std::string> show(const Paths &paths, bool json)
{
    std::string text;
    QJsonArray all;
    for (const std::string &path : paths) {
        const auto chain = readChainFile(path);
        if (!chain) {
            return tl::unexpected(chain.error());
        }
        const auto steps = certif::examine(*chain);
        text += path + "\n";
        addTable(*chain, steps, text);
        all.append(QJsonObject{{QStringLiteral("file"), QFile::decodeName(path.c_str())},
                               {QStringLiteral("certificates"), toJson(*chain, steps)}});
    }
    return json ? QJsonDocument(all).toJson(QJsonDocument::Indented).toStdString() : text;
}

}  // namespace adac
