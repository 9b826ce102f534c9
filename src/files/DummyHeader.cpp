#include "files/DummyHeader.h"

#include "files/firmware/FirmwareWriter.h"

#include <algorithm>

namespace
{

constexpr int kHeaderBytes = 256;

void putU32(QByteArray &header, int at, unsigned int value)
{
    for (int i = 0; i < 4 && at + i < header.size(); ++i) {
        header[at + i] = static_cast<char>(value >> (8 * i) & 0xFF);
    }
}

}  // namespace

QByteArray createDummyHeader(int size, unsigned int checksum, unsigned int length)
{
    QByteArray header(std::max(size, 0), '\0');
    putU32(header, 0x00, 0x32524456);  // "VDR2"
    putU32(header, 0x44, checksum);
    putU32(header, 0x48, 0x00010000);
    putU32(header, 0x4C, length);
    putU32(header, 0x64, 1);
    return header;
}

void createSignedImage(QByteArray &data)
{
    const auto size = static_cast<unsigned int>(data.size());
    auto *const bytes = reinterpret_cast<unsigned char *>(data.data());
    data.prepend(createDummyHeader(kHeaderBytes, checksum(bytes, size), size));
}
