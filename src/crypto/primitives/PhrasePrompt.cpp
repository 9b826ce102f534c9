#include "crypto/primitives/PhrasePrompt.h"

#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/ui.h>

#include <array>
#include <cstring>
#include <unistd.h>

namespace crypto
{

using files::ErrorCode;
using files::fail;

files::Result<files::SecretBytes> askPassPhrase(const std::string &question, bool isTwice)
{
    // Whoever runs the tool from a window has no terminal in front of him, though the window may.
    if (::isatty(STDIN_FILENO) == 0) {
        return fail(ErrorCode::Missing, "a pass phrase is needed, and there is no terminal to ask "
                                        "for it (--pass-file or --pass-fd gives it)");
    }
    constexpr int kLongest = 1024;
    files::SecretBytes room(kLongest + 1);
    char *const text = reinterpret_cast<char *>(room.data());
    const int failed = EVP_read_pw_string_min(text, 1, kLongest, question.c_str(), isTwice ? 1 : 0);
    ERR_clear_error();
    if (failed != 0) {
        return fail(ErrorCode::BadValue, isTwice ? "no pass phrase was given, or two that differ"
                                                 : "no pass phrase was given");
    }
    files::SecretBytes phrase(std::strlen(text));
    std::memcpy(phrase.data(), text, phrase.size());
    return phrase;
}

}  // namespace crypto
