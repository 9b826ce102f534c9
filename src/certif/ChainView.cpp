#include "certif/ChainView.h"

#include "certif/FaultText.h"
#include "certif/Keys.h"
#include "certif/Words.h"

#include <algorithm>

namespace certif
{

namespace
{

QString identifierOf(const crypto::EcKey &key)
{
    const auto identifier = key.identifier();
    return identifier
               ? QString::fromLatin1(QByteArray(reinterpret_cast<const char *>(identifier->data()),
                                                static_cast<int>(identifier->size()))
                                         .toHex())
               : QString();
}

ChainRow rowOf(const Certificate &certificate, const Step &step)
{
    const auto key = crypto::EcKey::fromPoint(crypto::Curve::P256, certificate.subjectKey);
    return {certificate, step, key ? identifierOf(*key) : QString(), false};
}

/// The faults of all rows, each with the place where it is.
QStringList faultsOf(const std::vector<ChainRow> &rows)
{
    QStringList all;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        for (const std::string &fault : rows[i].step.faults) {
            all << QStringLiteral("%1 %2: %3")
                       .arg(i + 1)
                       .arg(QString::fromStdString(roleName(rows[i].certificate.role)),
                            QString::fromStdString(fault));
        }
    }
    return all;
}

/// A chain without a fault is still no use to a device while its leaf is missing.
QString noteOn(const ChainView &view)
{
    const bool isOpen = view.faults.isEmpty() && !view.rows.empty() &&
                        view.rows.back().certificate.role != Role::Leaf;
    return isOpen ? QStringLiteral("A device takes this chain only with a leaf at its end.")
                  : QString();
}

QString sentence(const files::Error &error)
{
    return QString::fromStdString(error.text);
}

/// What is above the planned certificate; none for a root.
Chain upperOf(const Plan &plan, QStringList &faults)
{
    if (plan.values.role == QLatin1String(kRoles.front().role) || plan.upperCertificate.isEmpty()) {
        return {};
    }
    auto upper = readChainFile(plan.upperCertificate);
    if (!upper) {
        faults << QString::fromStdString(faultText(plan.upperCertificate, upper.error()));
        return {};
    }
    return std::move(*upper);
}

/// Whose signature the planned certificate will have. The private key goes again at once.
Issuer issuerOf(const Plan &plan, const Chain &upper, const Certificate &planned,
                QStringList &faults)
{
    if (plan.values.issuerKey.isEmpty()) {
        return Issuer::Unknown;
    }
    const auto key = readIssuerKey(plan.values.issuerKey);
    if (!key) {
        faults << sentence(key.error());
        return Issuer::Unknown;
    }
    const PublicPoint &above = upper.empty() ? planned.subjectKey : upper.back().subjectKey;
    if (above == PublicPoint{} || (upper.empty() && planned.role != Role::Root)) {
        return Issuer::Unknown;
    }
    return std::ranges::equal(key->publicPoint(), above) ? Issuer::Matches : Issuer::Differs;
}

}  // namespace

ChainView viewOf(const Chain &chain)
{
    ChainView view;
    const auto steps = examine(chain);
    for (std::size_t i = 0; i < chain.size(); ++i) {
        view.rows.push_back(rowOf(chain[i], steps[i]));
    }
    view.faults = faultsOf(view.rows);
    view.note = noteOn(view);
    return view;
}

ChainView preview(const Plan &plan)
{
    QStringList faults;
    const Chain upper = upperOf(plan, faults);
    ChainView view = viewOf(upper);
    auto planned = fieldsOf(plan.values);
    if (!planned) {
        view.faults << faults << sentence(planned.error());
        return view;
    }
    ChainRow row;
    if (!plan.values.subjectKey.isEmpty()) {
        if (const auto key = readSubjectKey(plan.values.subjectKey)) {
            std::ranges::copy(key->publicPoint(), planned->subjectKey.begin());
            row.keyIdentifier = identifierOf(*key);
        } else {
            faults << sentence(key.error());
        }
    }
    row.certificate = *planned;
    row.step = examineNext(upper, *planned, issuerOf(plan, upper, *planned, faults));
    row.isPlanned = true;
    view.rows.push_back(std::move(row));
    view.faults = faults + faultsOf(view.rows);
    view.note = noteOn(view);
    return view;
}

bool isBlank(const Plan &plan)
{
    const DescriptionValues &values = plan.values;
    const bool hasRights = std::ranges::any_of(
        values.mask, [](QChar letter) { return letter != '0' && letter != '_'; });
    return values.issuerKey.isEmpty() && values.subjectKey.isEmpty() &&
           plan.upperCertificate.isEmpty() && !hasRights;
}

}  // namespace certif
