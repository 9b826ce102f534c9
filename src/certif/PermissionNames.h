#pragma once
#include "certif/Certificate.h"
#include "files/base/Result.h"
#include "xml/Schema.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <array>
#include <vector>

namespace certif
{

/// What one bit of the mask means on a family of devices; an empty name: nothing that is known.
struct Permission {
    QString name;
    QString toolTip;
};

/// The bits of one device family.
struct Family {
    QString name;
    QString socClass;  ///< as a certificate for it tells it, "0x" and hexadecimal digits
    std::array<Permission, kMaskBits> bits;
};

/// Reads one document.
/// @param schema  that it must obey. @return BadValue with line and fault, or the parser's refusal
files::Result<Family> readFamily(const QByteArray &document, const xml::Schema &schema);

/// Reads the XML files of a folder, in the order of their names.
/// @param schema    path of the .xsd file that each must obey
/// @param problems  receives a sentence for each file that was left out, and for the schema
/// @return the families that could be read
std::vector<Family> readFamilies(const QString &folder, const QString &schema,
                                 QStringList &problems);

}  // namespace certif
