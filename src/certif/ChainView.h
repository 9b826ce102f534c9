#pragma once
#include "certif/Description.h"
#include "certif/Examination.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace certif
{

/// One certificate as a table shows it.
struct ChainRow {
    Certificate certificate;
    Step step;
    QString keyIdentifier;   ///< SHA-256 of the subject's public key, 64 digits; empty: no key yet
    bool isPlanned = false;  ///< not made yet
};

/// A chain, root first, and what is wrong with it. A device takes it when nothing is.
struct ChainView {
    std::vector<ChainRow> rows;
    QStringList faults;  ///< sentences, each behind the certificate that it is about
    QString note;        ///< what is left to do; no fault
};

ChainView viewOf(const Chain &chain);

/// What the form tells, and the files that it names.
struct Plan {
    DescriptionValues values;
    QString upperCertificate;  ///< path; without meaning for a root
};

/// The chain that a request would make, without making it. Reads the keys and the upper
/// certificate; what can't be read is a fault, what isn't named yet is none.
ChainView preview(const Plan &plan);

/// Whether so little is filled in that there is nothing to show.
bool isBlank(const Plan &plan);

}  // namespace certif
