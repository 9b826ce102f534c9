#include "certif/Opening.h"

#include <algorithm>

namespace certif
{

namespace
{

using files::ErrorCode;
using files::fail;

}  // namespace

files::Result<Chain> openFinished(const QString &path)
{
    const std::string name = path.toStdString();
    const auto content = readText(path);
    if (!content) {
        const files::Error &error = content.error();
        if (error.code == ErrorCode::TooLarge) {
            return fail(error.code, name + " is no certificate: " + error.text);
        }
        return fail(error.code,
                    error.code == ErrorCode::NotFound
                        ? "File does not exist: " + name
                        : "Failed to open certificate\nThe " + name + " already Opened \n");
    }
    if (content->trimmed().isEmpty()) {
        return fail(ErrorCode::Missing, name + " is empty !");
    }
    auto chain = readChain(*content);
    if (!chain) {
        return fail(chain.error().code, name + " is no certificate: " + chain.error().text);
    }
    return chain;
}

files::Result<Chain> openUpper(const QString &path)
{
    auto upper = openFinished(path);
    if (!upper) {
        return upper;
    }
    const auto holds = [&upper](Role role) {
        return std::ranges::any_of(*upper, [role](const Certificate &c) { return c.role == role; });
    };
    if (holds(Role::Leaf)) {
        return fail(ErrorCode::Refused,
                    "\nYou can't chain a LEAF certificate\n Try another one \n");
    }
    if (!holds(Role::Root)) {
        return fail(ErrorCode::Refused,
                    "\nYou can't chain a certificate without any root\n Try another one \n");
    }
    return upper;
}

}  // namespace certif
