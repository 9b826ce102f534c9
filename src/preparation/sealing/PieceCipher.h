#pragma once
#include "preparation/sealing/ImageKeys.h"

namespace preparation
{

/// Seals the pieces of one package: each has an IV from its number, bytes that are authenticated
/// only, and a tag.
class PieceSealer
{
public:
    explicit PieceSealer(const ImageKeys &keys)
        : m_keys(keys), m_cipher(AreaCipher::Direction::Seal, keys.imageKey())
    {
    }

    /// @param out  receives `plain.size()` encrypted bytes
    files::Result<Tag> seal(std::uint32_t index, ByteView associated, ByteView plain,
                            std::uint8_t *out)
    {
        m_cipher.begin(m_keys.areaIv(index), associated);
        m_cipher.update(plain, out);
        return m_cipher.finishSealing();
    }

private:
    const ImageKeys &m_keys;
    AreaCipher m_cipher;
};

/// Opens the pieces of one package.
class PieceOpener
{
public:
    explicit PieceOpener(const ImageKeys &keys)
        : m_keys(keys), m_cipher(AreaCipher::Direction::Open, keys.imageKey())
    {
    }

    /// @param out  receives the plain bytes, to be used only when the piece is authentic
    /// @return whether the piece is authentic
    files::Result<bool> open(std::uint32_t index, ByteView associated, ByteView sealed,
                             ByteView tag, std::uint8_t *out)
    {
        m_cipher.begin(m_keys.areaIv(index), associated);
        m_cipher.update(sealed, out);
        return m_cipher.finishOpening(tag);
    }

private:
    const ImageKeys &m_keys;
    AreaCipher m_cipher;
};

/// Refuses a key or nonce of another size.
/// @param what  names the file's use in the refusal: "encryption key"
files::Result<void> checkInputSize(ByteView bytes, std::size_t expected, const char *what);

/// The refusal of a builder whose finished package differs from what went in.
tl::unexpected<files::Error> differsFromInput(const char *what);

}  // namespace preparation
