#pragma once
#include "preparation/Preparation.h"

#include <cstdint>
#include <list>
#include <string>
#include <utility>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

/// `count` bytes, byte i being (start + step * i) modulo 256.
Bytes ramp(unsigned start, unsigned step, std::size_t count);

/// A call of `Preparation::SFIPreparation` with records of its own. Starts with a key, a nonce and
/// four option bytes; a test adds what it is about.
class SfiRequestBuilder
{
public:
    SfiRequestBuilder();
    // The lists hold addresses of the records inside; a move keeps them, a copy would not.
    SfiRequestBuilder(SfiRequestBuilder &&) = default;

    SfiRequestBuilder &firmware(std::uint32_t address, Bytes bytes);
    SfiRequestBuilder &external(std::uint32_t address, Bytes bytes);
    SfiRequestBuilder &obk(std::uint32_t address, std::uint32_t word3, Bytes payload);
    SfiRequestBuilder &smi(Bytes file);
    SfiRequestBuilder &module(std::uint32_t address, Bytes module, Bytes licence = {},
                              const std::string &identifier = "");
    SfiRequestBuilder &ssfiArea(Bytes header, Bytes data);

    /// Builds the image; messages go to `messages`.
    QByteArray build();

    struct Message {
        int level;
        std::wstring text;
        bool operator==(const Message &other) const = default;
    };
    std::vector<Message> messages;
    /// The text of the only message, or a word that says there wasn't exactly one.
    [[nodiscard]] std::wstring onlyMessage() const;

    QByteArray key;
    QByteArray nonce;
    FileData firmwareFile;
    FileData externalFile;
    FileData optionBytes;
    FileData keyArea;  ///< handed over when it has a segment
    FileSFI ssfi;      ///< handed over when it has an area
    FileMCSV modules;  ///< handed over when it has a module
    QList<FileOBK *> obkFiles;
    QList<FileData *> smiFiles;
    QVector<ExtBinInfo> regions;
    bool combined = false;
    bool hash = false;
    unsigned char imageVersion = 1;
    unsigned int ramSize = 0;
    unsigned int token = 0;
    unsigned int profile = 0xFF;

    /// Keeps bytes alive and gives a segment over them.
    SegmentData segment(std::uint32_t address, Bytes bytes);

private:
    std::list<Bytes> m_bytes;
    std::list<FileOBK> m_obks;
    std::list<FileData> m_smis;
};

/// A module image as a file: head, `plainSize` bytes of data, padding.
Bytes smiFile(std::uint32_t loadAddress, std::uint32_t plainSize);

std::vector<std::uint8_t> bytesOf(const QByteArray &image);
