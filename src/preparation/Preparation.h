#pragma once
#include "files/base/Records.h"
#include "preparation/sign/SignedImage.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVector>

#include <string>

/// Builds protected packages. Every builder opens its own result again and compares it with its
/// input; a failure gives an empty result after one report at level 5. Reports only through the
/// display callback, throws nothing, alters no argument.
class Preparation
{
public:
    using DisplayCallback = void (*)(int level, const wchar_t *text);

    /// Where messages go; without one they go nowhere.
    void setDisplayCallback(DisplayCallback callback) { m_display = callback; }

    /// Builds one secure firmware install image (`docs/formats.md` tells its bytes).
    /// @param firmware      the image for internal flash; null and an empty one mean the same
    /// @param combined      SMI files are used only when this is true
    /// @param obkFiles      provisioning files, areas `O`
    /// @param optionBytes   record of type 6, area `C`
    /// @param key           16 bytes
    /// @param nonce         12 bytes
    /// @param imageVersion  goes into every area
    /// @param hash          format version 2, with a check block in every area header
    /// @param smiFiles      secure module images, areas `M`
    /// @param ramSize       bytes of RAM that the installer has; 0 for no cutting
    /// @param tokenAddress  address of the continuation token; 0 for none
    /// @param ssfi          area `S`, or null
    /// @param modules       areas `M` and `m`, or null
    /// @param profile       0xFF or 0x484
    /// @param externalFirmware  image for external memory, areas `E`, or null
    /// @param keyArea       record of type 6, area `K`, or null
    /// @param externalInfos region and key of each external firmware
    /// @return the whole image; empty after a refusal, which has been reported
    QByteArray SFIPreparation(FileData *firmware, bool combined, QList<FileOBK *> obkFiles,
                              FileData *optionBytes, const QByteArray &key, const QByteArray &nonce,
                              unsigned char imageVersion, bool hash,
                              const QList<FileData *> &smiFiles, unsigned int ramSize,
                              unsigned int tokenAddress, FileSFI *ssfi, FileMCSV *modules,
                              unsigned int profile, FileData *externalFirmware, FileData *keyArea,
                              QVector<ExtBinInfo> externalInfos);

    /// Builds the secure module images of one section, and with them the results below, which are
    /// reset first.
    /// @param elfPath          the ELF file, read again for the clear ELF
    /// @param elf              its record
    /// @param section          the section's bytes
    /// @param hash             adds a check block
    /// @param length           bytes of the section
    /// @param name             of the section
    /// @param key              16 bytes
    /// @param nonce            12 bytes
    /// @param securityVersion  16 bytes
    /// @return the files, of which there is one; empty after a refusal, which has been reported
    QList<QByteArray> SMIPreparation(const std::string &elfPath, FileELF *elf,
                                     unsigned char *section, bool hash, unsigned int length,
                                     const std::string &name, const QByteArray &key,
                                     const QByteArray &nonce, const QByteArray &securityVersion);

    unsigned int smiAddress = 0;   ///< load address of the module
    QByteArray clearElf;           ///< the ELF file without the module
    bool misalignedStart = false;  ///< the section doesn't start on a Flash word, 256 bits
    bool singleWord = false;       ///< it lies in one Flash word; two are the least to be protected
    bool misalignedEnd = false;    ///< it doesn't end on a Flash word
    bool nextInLastWord = false;   ///< the next section starts in its last Flash word

    /// Builds one secure update.
    /// @param firmware      of one segment
    /// @param key           16 bytes
    /// @param nonce         12 bytes
    /// @param imageVersion  at most 255
    /// @return the header's 64 bytes, then the body; empty after a refusal
    QByteArray SFUPreparation(FileData *firmware, const QByteArray &key, const QByteArray &nonce,
                              unsigned short imageVersion);

    /// Joins the passwords that open and close a device for failure analysis, each "0x" and
    /// hexadecimal digits below 0x8000.
    /// @param out  bits 0 to 14 the unlock value, 16 to 30 the relock value; untouched on failure
    /// @return false after a report
    bool rmaPasswordAdjustment(QString unlock, QString relock, unsigned int *out);

    /// Builds one provisioning image.
    /// @param payload  152 bytes
    /// @param key      16 bytes
    /// @param nonce    16 bytes
    /// @param oemKey   path of the maker's key or key table hash, local 8-bit text with a NUL
    /// @param length   of the payload
    /// @return 232 bytes; empty after a refusal
    QByteArray SSPPayloadPreparation(const QByteArray &payload, const QByteArray &key,
                                     const QByteArray &nonce, unsigned char *oemKey,
                                     unsigned int length);

    /// Gives a signed image its private key, which must be on P-256 or brainpoolP256t1. The
    /// signature itself is made by `createSignedImage`, as it covers the file's size.
    /// @param keyPath  PEM file, local 8-bit text with a NUL
    /// @param image    with all setters called
    /// @param raw      must be true: r and s as numbers, as the trailer holds them
    /// @param phrase   NUL at its end; null for a key without one
    /// @return false after a report that says what the key is
    bool signECDSA(unsigned char *keyPath, SignedImage **image, bool raw, char *phrase);

private:
    template <typename Build>
    bool run(Build build) const;

    DisplayCallback m_display = nullptr;
};
