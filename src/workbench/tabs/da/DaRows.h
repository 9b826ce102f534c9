#pragma once
#include "certif/PermissionNames.h"
#include "certif/Words.h"
#include "workbench/forms/FormRow.h"
#include "workbench/widgets/PermissionTable.h"

#include <vector>

namespace workbench
{

/// Names of the rows of the certificate form.
namespace da_row
{
inline constexpr QLatin1String kFamily("family");
inline constexpr QLatin1String kRole("role");
inline constexpr QLatin1String kUsage("usage");
inline constexpr QLatin1String kLifecycle("lifecycle");
inline constexpr QLatin1String kLifecycleNumber("lifecycleNumber");
inline constexpr QLatin1String kConstraint("constraint");
inline constexpr QLatin1String kClass("class");
inline constexpr QLatin1String kIdentifier("identifier");
inline constexpr QLatin1String kPermissions("permissions");
inline constexpr QLatin1String kIssuer("issuer");
inline constexpr QLatin1String kSubject("subject");
inline constexpr QLatin1String kUpper("upper");
inline constexpr QLatin1String kOutput("output");
inline constexpr QLatin1String kReplaces("replaces");
}  // namespace da_row

/// The rows from the role down to the output.
/// @param makePermissions  makes the table of bits
QList<FormRow> daRows(const std::vector<certif::Family> &families,
                      const std::function<QWidget *(QWidget *)> &makePermissions);

/// The last entry of the lifecycle box, for numbers that have no word.
int otherLifecycle();

/// The words of a role; those of the last for an unknown text.
const certif::RoleWords &wordsOf(const QString &role);

/// A key label of a role with its mnemonic.
QString issuerLabel(const certif::RoleWords &words);
QString subjectLabel(const certif::RoleWords &words);

/// The bits of the table. @param family  null for numbers alone
std::vector<PermissionBit> permissionBits(const certif::Family *family);

}  // namespace workbench
