#pragma once
#include "obk/KeyInput.h"
#include "obk/Template.h"

#include <optional>
#include <vector>

namespace obk
{

/// What a generation works on.
struct GenerationRequest {
    const Template &model;
    QString templatePath;  ///< absolute; relative paths count from its folder
    /// The text of each item's field, by item: of a Bool its "True" or "False" text, of a List an
    /// entry's value, of a Permission any number. Absent: the template's own value is used.
    std::vector<std::optional<QString>> fields;
    bool hasForm = false;  ///< the slots are checked again, and the output's name stands as it is
};

/// The password file that debug authentication reads.
struct PasswordFile {
    QString path;
    SecretBuffer bytes;
};

/// What a generation makes, before anything is written.
struct Product {
    SecretBuffer bytes;             ///< the whole .obk file
    std::uint32_t payloadSize = 0;  ///< bytes behind the header
    bool isSecret = false;          ///< holds what may be a key or a password in clear
    QString outputPath;
    std::optional<PasswordFile> password;
    std::vector<std::optional<QString>> values;  ///< what the template is to keep, by item
};

/// Makes an .obk file of a template and the values of its fields. Writes nothing.
///
/// Layout, numbers little-endian: destination, payload size, encryption option, 4 bytes each (left
/// out for a headerless template), then the payload: the items' bytes and zeros up to a multiple of
/// "GlobalAlign"; for a "DA" template the SHA-256 of Text, File, Bool and List bytes, the Data and
/// Permission bytes and 28 zero bytes. With "Hash" the SHA-256 of all that goes in front.
/// @return the sentence for the user at the first field that doesn't pass, and when the output or
///         the password file would replace a file that is read here
Result<Product> generate(const GenerationRequest &request, const KeyTools &tools);

/// The rule of one field, as the generation applies it to the field's text; for live checks. Files
/// aren't looked at.
Result<void> checkField(const ObDataItem &item, const QString &text);

/// 00 00 00 80, the length modulo 256, three zero bytes, the password as UTF-8.
SecretBuffer passwordFileBytes(const QString &password);

}  // namespace obk
