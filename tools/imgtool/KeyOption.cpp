#include "KeyOption.h"

#include "files/base/KeyFile.h"

#include <QFile>

namespace imgtool
{

using files::ErrorCode;
using files::fail;

console::Option textOption(const char *name, char letter, std::shared_ptr<std::string> target)
{
    return {name, true,
            [target = std::move(target)](const char *value) {
                *target = value;
                return files::Result<void>();
            },
            letter};
}

console::Option keyOption(std::shared_ptr<std::string> path)
{
    return textOption("key", 'k', std::move(path));
}

files::Result<void>
checkAll(const console::Arguments &arguments,
         const std::vector<std::pair<const char *, std::shared_ptr<std::string>>> &needed)
{
    if (!arguments.empty()) {
        return fail(ErrorCode::BadValue, "'" + arguments[0] + "' is no option");
    }
    for (const auto &[option, value] : needed) {
        if (value->empty()) {
            return fail(ErrorCode::BadValue, std::string(option) + " is missing");
        }
    }
    return {};
}

namespace
{

/// Hands a key file's text to a reader. @return a sentence with the file's name
template <typename Key>
files::Result<Key> readKeyOf(const std::string &path, files::Result<Key> (*read)(crypto::ByteView))
{
    const auto pem = files::readKeyFile(QFile::decodeName(path.c_str()), 0);
    if (!pem) {
        return fail(pem.error().code, path + ": " + pem.error().text);
    }
    auto key = read(pem->span());
    if (!key) {
        return fail(key.error().code, path + ": " + key.error().text);
    }
    return key;
}

}  // namespace

files::Result<crypto::KeyPair> readKey(const std::string &path)
{
    return readKeyOf(path, &crypto::KeyPair::readPrivate);
}

files::Result<crypto::PublicKey> readPublicKey(const std::string &path)
{
    return readKeyOf(path, &crypto::PublicKey::read);
}

}  // namespace imgtool
