#pragma once
#include <QString>

/// One byte for a key or nonce, from the operating system's generator through OpenSSL's private
/// pool. @return 0 to 255; -1 when the random source failed
int randomByte();

/// Keys, digests, signatures and random key files, with every algorithm fixed. Operations log
/// through DisplayMng, never throw and never open a dialog; the caller decides what the user sees.
/// GUI thread only.
class Crypto
{
public:
    /// Makes libcrypto's strings, ciphers and digests known and loads its configuration.
    Crypto();
    ~Crypto();

    /// Writes a new file of 16 random bytes, see generateEncryptionandNonce.
    int generateSspKey(const QString &path);
    int generateSspKey(unsigned char *path);  ///< `path` in the locale's 8-bit form, NUL at its end

    /// Writes a new file of `size` random bytes (zero or below: an empty file) that only its owner
    /// can read (0600), whole or not at all. An old file is replaced, with a warning (level 4).
    /// @return 0; or -1 after one message at level 5, when the random source fails, the file can't
    ///         be created (a read-only old file counts as such) or the bytes can't be written. An
    ///         old file is then as it was, and no new one is left.
    int generateEncryptionandNonce(const QString &path, int size);
    int generateEncryptionandNonce(unsigned char *path, int size);
};
