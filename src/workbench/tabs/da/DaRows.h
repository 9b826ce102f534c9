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
inline const QLatin1String kFamily("family");
inline const QLatin1String kRole("role");
inline const QLatin1String kUsage("usage");
inline const QLatin1String kLifecycle("lifecycle");
inline const QLatin1String kLifecycleNumber("lifecycleNumber");
inline const QLatin1String kConstraint("constraint");
inline const QLatin1String kClass("class");
inline const QLatin1String kIdentifier("identifier");
inline const QLatin1String kPermissions("permissions");
inline const QLatin1String kIssuer("issuer");
inline const QLatin1String kSubject("subject");
inline const QLatin1String kUpper("upper");
inline const QLatin1String kOutput("output");
inline const QLatin1String kReplaces("replaces");
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
