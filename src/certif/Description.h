#pragma once
#include "certif/Certificate.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace certif
{

/// What the form tells about one certificate, all texts as typed.
struct DescriptionValues {
    QString name;        ///< output path without an extension; the tool writes beside it
    QString issuerKey;   ///< path, PEM
    QString subjectKey;  ///< path, PEM
    QString role;        ///< a word of kRoles; another is written as a leaf
    QString usage;       ///< "STANDARD" or any other
    QString lifecycle;   ///< a text of kLifecycles, or a number
    QString oemConstraint;
    QString socClass;
    QString socId;
    QString mask;  ///< digits as maskText gives them
};

/// The permission buttons as hexadecimal digits, lower case, the first button the lowest bit; every
/// eight digits are one group, groups are joined by "_".
QString maskText(const std::vector<bool> &buttons);

/// The buttons that `maskText` gives such a text for; empty for any other text.
std::vector<bool> maskBits(const QString &mask);

/// The text of the description: one "key: value" line for each field, UTF-8, in fixed order.
/// @return Refused when a value holds a line end, which would begin a line of its own
files::Result<QByteArray> describe(const DescriptionValues &values);

/// What the number fields of the form stand for: an empty one for 0, that of the identifier for a
/// hexadecimal number with or without "0x" in front. All else is as typed.
QString numberText(const QString &typed);
QString identifierText(const QString &typed);

/// The number of a lifecycle without a word; -1 for a word, and for what is no number of 16 bits.
int lifecycleNumber(const QString &text);

/// What is wrong with a number of so many bits, as a sentence; empty when nothing is.
QString numberFault(const QString &text, unsigned bits);

/// The fields of the certificate that a description would give, subject key and signature still
/// empty. @return BadValue that names the field and its text
files::Result<Certificate> fieldsOf(const DescriptionValues &values);

/// What the certificate tool takes out of a description.
struct Request {
    QString name;
    QString issuerKey;
    QString subjectKey;
    Certificate certificate;  ///< subject key and signature are still empty
};

/// Reads a description: each line once, in any order; numbers decimal or 0x, "_" between the groups
/// of the mask; empty lines and lines that begin with '#' are passed over.
/// @return BadValue with the line's number for an unknown, doubled or missing line and a number
///         that doesn't fit its field
files::Result<Request> parseDescription(const QByteArray &text);

}  // namespace certif
