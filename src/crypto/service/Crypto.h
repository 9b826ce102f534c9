#pragma once
#include <QString>

#include <cstdint>

struct evp_cipher_st;
struct evp_pkey_st;

/// The cipher of an encrypted private-key PEM file. Any other value is refused where it is used.
enum CIHERTYPE : int {
    CIHERTYPE_AES_128_CBC = 0,
    CIHERTYPE_AES_256_CBC = 1,
};

/// One byte for a key or nonce, from the operating system's generator through OpenSSL's private
/// pool. @return 0 to 255; -1 when the random source failed
int randomByte();

/// Keys, digests, signatures and random key files, with every algorithm fixed.
///
/// Operations report through DisplayMng, never throw and never open a dialog; the caller decides
/// what the user sees. Unless told otherwise they return 1, or -1 after one message at level 5.
/// Paths are in the locale's 8-bit form, paths and passwords end with a NUL. A buffer handed out
/// through an `unsigned char **` belongs to the caller, who returns it with Buffer_Cleanup; keys
/// handed out belong to the caller too, and what the pointer held before is not released.
///
/// Files are written whole or not at all, and readable by their owner only until they are
/// complete. docs/security.md lists what a caller has to look out for. GUI thread only.
///
/// The order of the virtual operations and of the fields is fixed, and so is the want of a virtual
/// destructor: others call through the table by position. Never delete one through its base.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
class Crypto
{
public:
    /// Makes libcrypto's strings, ciphers and digests known and loads its configuration.
    Crypto();
    ~Crypto();  // NOLINT(performance-trivially-destructible): looked up by name, see its definition
    Crypto(const Crypto &) = default;
    Crypto &operator=(const Crypto &) = default;

    /// The raw form of a public key, for classes whose keys have one.
    /// @return here always 0, with "Not supported operation"
    virtual int GetPubKeyBin(evp_pkey_st *key, unsigned char **out, unsigned long *outLen);

    /// Makes an RSA pair of 4096 bits and checks it.
    /// @param key  must point to null
    /// @return 1; 0 without a message when the generator can't be set up; -1 when the check finds a
    ///         fault or leaves one in OpenSSL's queue (the key is then handed out all the same)
    virtual int KeyGen(evp_pkey_st **key);

    /// Signs a SHA-256 digest with RSA, PKCS#1 v1.5, and verifies the signature at once.
    /// @param hash     the digest, `hashLen` bytes (32), not the message
    /// @param sig      receives the signature, `sigLen` bytes (the size of the key's modulus)
    /// @param verbose  reports the steps too (levels 1 and 2)
    /// @return 1, also when the verification itself couldn't be done; 0 with "FAIL" when it says no
    ///         (`sig` is set all the same); -1 when there is no signature
    virtual int sign(unsigned char *hash, unsigned long hashLen, unsigned char **sig,
                     unsigned long *sigLen, evp_pkey_st *key, bool verbose);

    /// Makes a pair through KeyGen and writes three files: encrypted private PEM, public PEM, and
    /// the hash of the public key. The hash file's failure doesn't count (an RSA key never has
    /// one). Files written before a failure stay.
    int GenerateKeys(unsigned char *prvPath, unsigned char *pubPath, unsigned char *hashPath,
                     unsigned char *password, CIHERTYPE cipherType);

    /// Reads an encrypted private key, hashes `dataLen` bytes and signs the digest through `sign`.
    /// The key's private parameters go to standard output, see ReadEncPrvKey.
    int GenerateSignature(unsigned char *data, unsigned long dataLen, unsigned char *prvPath,
                          unsigned char *password, unsigned char **sig, unsigned long *sigLen,
                          bool verbose, char *spare);

    /// SHA-256 of `dataLen` bytes. @param out  at least 32 bytes of the caller's; `outLen` gets 32
    int CalculateDigest(unsigned char *data, unsigned long dataLen, unsigned char *out,
                        unsigned long *outLen);

    /// SHA-256 of what GetPubKeyBin gives. @param out  at least 32 bytes of the caller's
    int GetHashPubKey(evp_pkey_st *key, unsigned char *out, unsigned long *outLen);

    /// Writes the 32 bytes of GetHashPubKey; the file is readable by all (0444), an old read-only
    /// one is replaced.
    int SaveHashPubKey(evp_pkey_st *key, unsigned char *path);

    /// The SubjectPublicKeyInfo of a key, DER, in a new buffer.
    int GetPubKeyDER(evp_pkey_st *key, unsigned char **out, unsigned long *outLen);
    /// The same of a public PEM file.
    int GetPubKeyDER(unsigned char *path, unsigned char **out, unsigned long *outLen);

    /// Reads a public PEM file.
    /// @return 1 whenever the file opens and `key` isn't null, also when the file holds no public
    ///         key: `*key` is then as it was, so set it to null first and look at it afterwards
    int ReadPubKey(unsigned char *path, evp_pkey_st **key);

    /// Reads an unencrypted private PEM file; an encrypted one is refused, never asked about.
    int ReadPrvKey(unsigned char *path, evp_pkey_st **key, char *spare);

    /// Reads an encrypted private PEM file. `*key` becomes null first. On success the private
    /// parameters of an RSA key go to standard output (DisplayRSAKeyParams).
    int ReadEncPrvKey(unsigned char *path, evp_pkey_st **key, unsigned char *password, char *spare);

    /// Cuts the public half out of an unencrypted P-256 private PEM file and leaves the result, 70
    /// bytes of DER that still end with the two head bytes of that half, in `prvKeyBin` and
    /// `prvKeyBinLen`. Goes by fixed offsets, so a key on another curve or without its public half
    /// is refused.
    /// @param key  receives the key that was read; after a success that key is released already
    ///             and the pointer must not be used
    /// @return 1; 0 after a message at level 5
    int GetPrvKeyBin(unsigned char *path, evp_pkey_st **key);

    /// Writes an unencrypted private PEM file, readable by its owner only (0600). A read-only old
    /// file is kept and counts as a failure.
    int SavePrvKey(unsigned char *path, evp_pkey_st *key);

    /// Writes an encrypted private PEM file (PKCS#8), locked afterwards (0400); an old read-only
    /// one is replaced. Without a password or a cipher nothing is written.
    int SaveEncPrvKey(unsigned char *path, evp_pkey_st *key, unsigned char *password,
                      const evp_cipher_st *cipher);

    /// Writes a public PEM file, readable by all (0444); an old read-only one is replaced.
    /// @return 1; -1 when the file can't be created; 0 when it can't be written, and then an old
    ///         file keeps its content but becomes 0444 too
    int SavePubKey(unsigned char *path, evp_pkey_st *key);

    /// Prints p, q, n, e and d of an RSA key on standard output, hexadecimal, highest byte first.
    /// @return 1; -1 with a line on standard output for a key of another kind
    int DisplayRSAKeyParams(evp_pkey_st *key);

    /// Releases a buffer that this class handed out; its content isn't wiped. @return 1; 0 for null
    int Buffer_Cleanup(unsigned char *buffer);

    /// Writes a new file of 16 random bytes, see generateEncryptionandNonce.
    int generateSspKey(const QString &path);
    int generateSspKey(unsigned char *path);

    /// Writes a new file of `size` random bytes (zero or below: an empty file) that only its owner
    /// can read (0600). An old file is replaced, with a warning (level 4).
    /// @return 0; or -1 after one message at level 5, when the random source fails, the file can't
    ///         be created (a read-only old file counts as such) or the bytes can't be written. An
    ///         old file is then as it was, and no new one is left.
    int generateEncryptionandNonce(const QString &path, int size);
    int generateEncryptionandNonce(unsigned char *path, int size);

    /// The shared secret of two P-256 keys: ECDH, then KeyDerivationFunction. Each step that fails
    /// reports at level 5, and the ones behind it are still gone through; there is a secret only
    /// when all have passed.
    /// @param secret     points to the caller's buffer of 32 bytes
    /// @param privateKey `keyLength` bytes, highest first
    /// @param peerKey    an uncompressed point (SEC 1, 2.3.3), 2 * `keyLength` + 1 bytes
    /// @param keyLength  32
    /// @return 32; or 0, and then the buffer is untouched
    int EC_DH(unsigned char **secret, unsigned char *privateKey, unsigned char *peerKey,
              unsigned int keyLength);

    /// Makes two pairs, computes the secret from both sides and compares. @return 1, or 0 when they
    /// differ or a step failed
    int TestEC_DH();

    unsigned char *prvKeyBin = nullptr;  ///< left by GetPrvKeyBin; the caller wipes and releases it
    std::uint64_t prvKeyBinLen = 0;      ///< bytes that count in `prvKeyBin`
};
#pragma GCC diagnostic pop
