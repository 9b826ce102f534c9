#include "preparation/sealing/PieceCipher.h"

namespace preparation
{

files::Result<void> checkInputSize(ByteView bytes, std::size_t expected, const char *what)
{
    if (bytes.size() != expected) {
        return files::fail(files::ErrorCode::WrongSize,
                           std::string("The ") + what + " has " + std::to_string(bytes.size()) +
                               " bytes, it must have " + std::to_string(expected));
    }
    return {};
}

tl::unexpected<files::Error> differsFromInput(const char *what)
{
    return files::fail(files::ErrorCode::BadValue,
                       std::string("The finished package was checked and dropped: its ") + what +
                           " differs from what was asked for");
}

}  // namespace preparation
