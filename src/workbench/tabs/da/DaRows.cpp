#include "workbench/tabs/da/DaRows.h"

#include "certif/Description.h"
#include "workbench/forms/PackageForm.h"

#include <QCoreApplication>

#include <algorithm>

namespace workbench
{

namespace
{

constexpr unsigned kShortBits = 16;
constexpr unsigned kClassBits = 32;
constexpr unsigned kIdentifierBits = 128;

QString tr(const char *text)
{
    return QCoreApplication::translate("CertifGenDA", text);
}

FormRow choiceRow(QLatin1String name, const char *label, const char *toolTip,
                  const QStringList &choices)
{
    FormRow row;
    row.name = name;
    row.kind = RowKind::Choice;
    row.label = tr(label);
    row.toolTip = tr(toolTip);
    row.choices = choices;
    return row;
}

FormRow numberRow(QLatin1String name, const char *label, const char *toolTip, unsigned bits)
{
    FormRow row;
    row.name = name;
    row.label = tr(label);
    row.toolTip = tr(toolTip);
    row.hint = tr("0: any device");
    row.check = [bits](const QString &text) {
        return certif::numberFault(certif::numberText(text), bits);
    };
    return row;
}

QList<FormRow> choiceRows(const std::vector<certif::Family> &families)
{
    QStringList names{tr("Any (bits by number)")};
    for (const certif::Family &family : families) {
        names << family.name;
    }
    QStringList roles;
    for (const certif::RoleWords &words : certif::kRoles) {
        roles << QLatin1String(words.role);
    }
    QStringList usages;
    for (const char *usage : certif::kUsages) {
        usages << QLatin1String(usage);
    }
    QStringList lifecycles;
    for (const certif::LifecycleWords &words : certif::kLifecycles) {
        lifecycles << QLatin1String(words.text);
    }
    QList<FormRow> rows{
        choiceRow(da_row::kFamily, QT_TR_NOOP("Device famil&y"),
                  QT_TR_NOOP("Names the rights below and proposes the SoC class"), names),
        choiceRow(da_row::kRole, QT_TR_NOOP("&Role"),
                  QT_TR_NOOP("Place of the certificate in its chain"), roles),
        choiceRow(da_row::kUsage, QT_TR_NOOP("&Usage"), QT_TR_NOOP("What the certificate is for"),
                  usages),
        choiceRow(da_row::kLifecycle, QT_TR_NOOP("&Lifecycle"),
                  QT_TR_NOOP("State of the device in which the certificate counts; UNKNOWN is any"),
                  lifecycles << QStringLiteral("OTHER")),
        numberRow(da_row::kLifecycleNumber, QT_TR_NOOP("Lifecycle nu&mber"),
                  QT_TR_NOOP(
                      "Number of a lifecycle without a word, decimal or 0x and hexadecimal digits"),
                  kShortBits),
    };
    rows[2].besideThePrevious = true;
    rows[4].besideThePrevious = true;
    rows[4].hint = tr("0x…");
    rows[4].disabledWhy = tr("Choose OTHER to type a number");
    return rows;
}

QList<FormRow> deviceRows()
{
    FormRow identifier = numberRow(
        da_row::kIdentifier, QT_TR_NOOP("SoC ide&ntifier"),
        QT_TR_NOOP(
            "The one device that takes the certificate: up to 32 hexadecimal digits; 0 is any"),
        kIdentifierBits);
    identifier.hint = tr("0: any device; up to 32 hexadecimal digits");
    identifier.check = [](const QString &text) {
        const QString number = certif::identifierText(text);
        return certif::numberFault(number, kIdentifierBits).isEmpty()
                   ? QString()
                   : tr("This is no hexadecimal number of up to 32 digits");
    };
    QList<FormRow> rows{
        numberRow(
            da_row::kConstraint, QT_TR_NOOP("OEM &constraint"),
            QT_TR_NOOP(
                "16 bits that the device's maker has set, decimal or 0x and hexadecimal digits; "
                "0 is any"),
            kShortBits),
        numberRow(
            da_row::kClass, QT_TR_NOOP("SoC cl&ass"),
            QT_TR_NOOP("Kind of device that takes the certificate: 32 bits, decimal or 0x and "
                       "hexadecimal digits; 0 is any"),
            kClassBits),
        identifier,
    };
    rows[1].besideThePrevious = true;
    return rows;
}

QList<FormRow> fileRows()
{
    const QString pem = tr("PEM files (*.pem)");
    const certif::RoleWords &root = certif::kRoles.front();
    FormRow issuer = inputRow("issuer", issuerLabel(root), {}, pem,
                              tr("The private key that signs.\nP-256, .pem"));
    FormRow subject = inputRow("subject", subjectLabel(root), {}, pem,
                               tr("The key that the certificate is for.\nP-256, .pem"));
    FormRow upper = inputRow("upper", tr("Upper cer&tificate"), tr("upper certificate"), {},
                             tr("The chain that the certificate is joined to.\nRoot first, .b64"));
    FormRow output = outputRow("output", tr("&Write certificate to"), tr("certificate path"), {},
                               tr("Path without an extension: .cert, .b64 and, below the root, "
                                  "_chain.b64 are added"));
    output.hint = tr("Path without an extension");
    output.check = [](const QString &text) {
        const bool hasEnding = text.endsWith(QLatin1String(".cert"), Qt::CaseInsensitive) ||
                               text.endsWith(QLatin1String(".b64"), Qt::CaseInsensitive);
        return text.endsWith('/') ? tr("The name of the file is missing")
               : hasEnding        ? tr("The extension is added by the program")
                                  : QString();
    };
    FormRow replaces;
    replaces.name = da_row::kReplaces;
    replaces.kind = RowKind::Note;
    return {issuer, subject, upper, output, replaces};
}

// Told to the translators only: what `withMnemonic` makes of the words of the roles.
[[maybe_unused]] constexpr const char *kKeyLabels[] = {
    QT_TR_NOOP("Root Private &Key"),
    QT_TR_NOOP("Root Pu&blic Key  "),
    QT_TR_NOOP("Issuer Private &Key          "),
    QT_TR_NOOP("Intermediate Pu&blic Key"),
    QT_TR_NOOP("Issuer Private &Key"),
    QT_TR_NOOP("Leaf Pu&blic Key      "),
};

QString withMnemonic(const char *label, const char *letter)
{
    QByteArray text(label);
    return tr(text.insert(text.indexOf(letter), '&').constData());
}

}  // namespace

QList<FormRow> daRows(const std::vector<certif::Family> &families,
                      const std::function<QWidget *(QWidget *)> &makePermissions)
{
    FormRow permissions;
    permissions.name = da_row::kPermissions;
    permissions.kind = RowKind::Block;
    permissions.label = tr("&Permissions");
    permissions.make = makePermissions;
    return choiceRows(families) + deviceRows() + QList<FormRow>{permissions} + fileRows();
}

int otherLifecycle()
{
    return static_cast<int>(certif::kLifecycles.size());
}

const certif::RoleWords &wordsOf(const QString &role)
{
    const auto *const hit =
        std::ranges::find_if(certif::kRoles, [&role](const certif::RoleWords &words) {
            return role == QLatin1String(words.role);
        });
    return hit == certif::kRoles.end() ? certif::kRoles.back() : *hit;
}

QString issuerLabel(const certif::RoleWords &words)
{
    return withMnemonic(words.issuerLabel, "Key");
}

QString subjectLabel(const certif::RoleWords &words)
{
    return withMnemonic(words.subjectLabel, "blic");
}

std::vector<PermissionBit> permissionBits(const certif::Family *family)
{
    std::vector<PermissionBit> bits(certif::kMaskBits);
    for (std::size_t bit = 0; bit < bits.size(); ++bit) {
        bits[bit].name = tr("Bit %1").arg(bit);
        if (family != nullptr && !family->bits[bit].name.isEmpty()) {
            bits[bit].name += QStringLiteral(", ") + family->bits[bit].name;
            bits[bit].toolTip = family->bits[bit].toolTip;
            bits[bit].isNotable = true;
        }
    }
    return bits;
}

}  // namespace workbench
