#include "preparation/licence/ChipKey.h"

namespace preparation
{

files::Result<crypto::EcKey> readChipKey(crypto::ByteView file)
{
    constexpr std::size_t kPointBytes = 2 * crypto::kScalarBytes;
    auto key = file.size() == kPointBytes ? crypto::EcKey::fromPoint(crypto::Curve::P256, file)
                                          : crypto::EcKey::readPublic(file);
    if (key && key->curve() != crypto::Curve::P256) {
        return files::fail(files::ErrorCode::BadValue, std::string("it holds a key on the curve ") +
                                                           crypto::curveName(key->curve()) +
                                                           "; chips have keys on prime256v1");
    }
    return key;
}

}  // namespace preparation
