#pragma once
#include "crypto/primitives/Bytes.h"
#include "files/base/Wipe.h"
#include "tools/console/Program.h"

#include <memory>
#include <optional>

namespace imgtool
{

/// Where the pass phrase of a private key comes from: a file, a descriptor, or else the terminal.
/// Never the command line, which everybody on the machine can read.
class PassPhrase
{
public:
    /// "--pass-file FILE" and "--pass-fd N".
    static std::vector<console::Option> options(const std::shared_ptr<PassPhrase> &target);

    /// @return the first line of file or descriptor, which are read once; or an answer at the
    ///         terminal. BadValue for an empty one
    files::Result<crypto::ByteView> of(const std::string &keyPath);

    /// The same for a key that is made; an answer has to be given twice.
    files::Result<crypto::ByteView> ofNew(const std::string &keyPath);

    /// Whether the command line names a source.
    [[nodiscard]] bool isNamed() const { return !m_file.empty() || m_descriptor; }
    [[nodiscard]] const std::string &file() const { return m_file; }

private:
    files::Result<crypto::ByteView> get(const std::string &keyPath, bool isNew);

    std::string m_file;
    std::optional<int> m_descriptor;
    std::optional<files::SecretBytes> m_phrase;
};

}  // namespace imgtool
