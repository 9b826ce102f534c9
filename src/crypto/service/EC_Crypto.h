#pragma once
#include "crypto/service/Crypto.h"

/// Keys and raw signatures on two 256-bit curves: 415 (P-256, prime256v1) and 928
/// (brainpoolP256t1), OpenSSL's numbers.
///
/// A raw public key is X and Y, 32 bytes each, highest byte first; a raw signature r and s alike.
/// Reports, buffers, paths and results are as in Crypto, where nothing else is told.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
class EC_Crypto : public Crypto
{
public:
    EC_Crypto();
    /// Takes any curve, without a check and a message.
    EC_Crypto(int curve);

    /// @return 1; or -1 for a curve that isn't supported (it is stored all the same)
    int SetCurveNID(int curve);

    /// Makes a pair on the chosen curve. @return 1; 0 without a message when that isn't possible
    int KeyGen(evp_pkey_st **key) override;

    /// The raw public key, 64 bytes, cut out of its SubjectPublicKeyInfo by a fixed length: 28
    /// bytes for brainpoolP256t1, 27 for any other choice.
    /// @param out  the buffer is as large as the uncut form
    int GetPubKeyBin(evp_pkey_st *key, unsigned char **out, unsigned long *outLen) override;
    /// The same of a public PEM file.
    int GetPubKeyBin(unsigned char *path, unsigned char **out, unsigned long *outLen);

    /// The whole SubjectPublicKeyInfo (DER, RFC 5480) of a public PEM file.
    /// @return 1; or 0 after a message
    int GetPubKeyBinDer(unsigned char *path, unsigned char **out, unsigned long *outLen);

    /// Makes a pair and writes three files: encrypted private PEM, public PEM, and the SHA-256 of
    /// the raw public key. Files written before a failure stay.
    int GenerateKeys(unsigned char *prvPath, unsigned char *pubPath, unsigned char *hashPath,
                     unsigned char *password, CIHERTYPE cipherType);

    using Crypto::sign;
    /// Signs a digest with ECDSA and gives the raw signature, 64 bytes; verifies it at once.
    /// @param sig  set as soon as there is a signature, also when -1 follows (the key's numbers are
    ///             longer than 32 bytes; it then holds DER and a part of the raw form)
    /// @return what the verification says: 1, or 0 when it says no; -1 without a signature
    int sign(unsigned char *hash, unsigned long hashLen, unsigned char **sig, unsigned long *sigLen,
             evp_pkey_st *key);

    /// Copies `length` bytes in reverse order.
    void bn_Copy(unsigned char *destination, const unsigned char *source, unsigned int length);

    int curveNID = 0;  ///< OpenSSL's number of the curve
};
#pragma GCC diagnostic pop

/// Counter-mode SHA-256 over what ECDH agreed on: block i is SHA-256(input, i), i from 1, four
/// bytes, highest first. All whole blocks but the last part go to the front of `output`, one over
/// the other; the rest stands behind them at its own offset. For 32 bytes this is one block.
/// @param outLen  bytes wanted in `output`
/// @return `output`, or null when a digest failed
void *KeyDerivationFunction(const void *input, std::size_t inputLen, void *output,
                            std::size_t *outLen);
