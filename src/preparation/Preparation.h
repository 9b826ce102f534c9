#pragma once
#include "files/base/Records.h"

#include <QByteArray>
#include <QList>
#include <QVector>

/// Builds protected images. Reports only through the display callback, throws nothing, alters no
/// argument.
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

private:
    DisplayCallback m_display = nullptr;
};
