#include "PassPhrase.h"

#include "crypto/primitives/PhrasePrompt.h"
#include "files/base/KeyFile.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace imgtool
{

using crypto::ByteView;
using files::ErrorCode;
using files::fail;
using files::Result;
using files::SecretBytes;

namespace
{

constexpr std::size_t kLongest = 1024;

/// The first line without its end.
Result<SecretBytes> firstLine(ByteView text)
{
    const auto end =
        std::ranges::find_if(text, [](std::uint8_t byte) { return byte == '\n' || byte == '\r'; });
    const auto size = static_cast<std::size_t>(end - text.begin());
    if (size == 0 || size > kLongest) {
        return fail(ErrorCode::BadValue, size == 0 ? "the pass phrase is empty"
                                                   : "the pass phrase is longer than 1024 bytes");
    }
    SecretBytes phrase(size);
    std::copy_n(text.begin(), size, phrase.data());
    return phrase;
}

Result<SecretBytes> readDescriptor(int descriptor)
{
    SecretBytes room(2 * kLongest);
    std::size_t size = 0;
    while (size < room.size()) {
        const ssize_t got = ::read(descriptor, room.data() + size, room.size() - size);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return fail(ErrorCode::CannotOpen, "the pass phrase can't be read from descriptor " +
                                                   std::to_string(descriptor) + ": " +
                                                   std::strerror(errno));
        }
        if (got == 0) {
            break;
        }
        size += static_cast<std::size_t>(got);
    }
    return firstLine(room.span().first(size));
}

Result<SecretBytes> readFile(const std::string &path)
{
    const auto text = files::readKeyFile(QFile::decodeName(path.c_str()), 0);
    auto phrase = text ? firstLine(text->span()) : tl::unexpected(text.error());
    if (!phrase) {
        return fail(phrase.error().code, path + ": " + phrase.error().text);
    }
    return phrase;
}

}  // namespace

std::vector<console::Option> PassPhrase::options(const std::shared_ptr<PassPhrase> &target)
{
    constexpr std::uint32_t kLastDescriptor = 65535;
    return {{"pass-file", true,
             [target](const char *value) {
                 target->m_file = value;
                 return Result<void>();
             }},
            {"pass-fd", true, [target](const char *value) {
                 return console::parseNumber(value, kLastDescriptor).map([&](std::uint32_t number) {
                     target->m_descriptor = static_cast<int>(number);
                 });
             }}};
}

Result<ByteView> PassPhrase::of(const std::string &keyPath)
{
    return get(keyPath, false);
}

Result<ByteView> PassPhrase::ofNew(const std::string &keyPath)
{
    return get(keyPath, true);
}

Result<ByteView> PassPhrase::get(const std::string &keyPath, bool isNew)
{
    if (!m_phrase || !isNamed()) {
        auto phrase = !m_file.empty() ? readFile(m_file)
                      : m_descriptor
                          ? readDescriptor(*m_descriptor)
                          : crypto::askPassPhrase("Pass phrase of " + keyPath + ": ", isNew);
        if (!phrase) {
            return tl::unexpected(phrase.error());
        }
        m_phrase = std::move(*phrase);
    }
    return ByteView(m_phrase->span());
}

}  // namespace imgtool
