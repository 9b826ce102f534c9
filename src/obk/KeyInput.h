#pragma once
#include "obk/NumberText.h"
#include "obk/ObDataItem.h"
#include "obk/SecretBuffer.h"

#include <QByteArray>
#include <QStringList>

#include <functional>

namespace obk
{

/// What generation asks of others, so that it can be tested without keys and processes.
struct KeyTools {
    /// The SubjectPublicKeyInfo (DER) of a public PEM file; a refusal when it holds no such key.
    std::function<Result<SecretBuffer>(const QString &path)> publicKeyDer;
    /// Runs the image tool to its end. @return all that it printed, both channels; a refusal when
    ///         it didn't start, crashed, was cancelled or ended with another status than 0
    std::function<Result<QByteArray>(const QStringList &arguments)> runImageTool;
};

/// A path of a template: "\" becomes "/", and what isn't absolute counts from the template's
/// folder, also what begins with "./" or "../". "C:/" with any capital letter is absolute.
QString completePath(const QString &path, const QString &baseFolder);

/// The bytes of the C array that the image tool prints: two lines, rows of entries such as 0x30
/// behind four blanks, a comma at each row's end, the closing brace on a line of its own, then the
/// length.
/// @return a refusal without text when the whole isn't of this form
Result<SecretBuffer> parseArray(const QByteArray &printed);

/// Whether the bytes of a File are secret: what isn't a public key or a digest may be a key.
struct FileBytes {
    SecretBuffer bytes;
    bool isSecret = false;
};

/// Reads the file or key of a File item; `path` is complete.
/// @return what the field writes; or the sentence for the user. Faults of the file are told on
///         standard output, too
Result<FileBytes> readFileItem(const ObDataItem &item, const QString &path, bool daLayout,
                               const KeyTools &tools);

/// SHA-256, 32 bytes.
SecretBuffer sha256(const SecretBuffer &bytes);

}  // namespace obk
