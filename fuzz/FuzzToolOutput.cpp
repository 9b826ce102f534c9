// What external tools print, as the program takes it: the arrays of the image tool.
#include "FuzzSupport.h"

#include "obk/KeyInput.h"
#include "tools/imgtool/CArray.h"

#include <algorithm>

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    std::vector<std::vector<std::uint8_t>> seeds;
    for (const std::size_t size : {1U, 8U, 17U, 64U}) {
        const std::vector<std::uint8_t> bytes(size, 0xA5);
        const std::string text = imgtool::cArray("enc_priv_key", "a key", bytes);
        seeds.emplace_back(text.begin(), text.end());
    }
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray printed(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const auto bytes = obk::parseArray(printed);
    if (bytes) {
        // Four characters and a comma for each byte, and never a byte from nowhere.
        require(!bytes->empty() && bytes->size() * 5 <= size);
    }
    // What our own tool prints is always taken, and gives the same bytes.
    if (size > 0) {
        const std::string text = imgtool::cArray("array", "bytes", {data, size});
        const auto back = obk::parseArray(QByteArray::fromStdString(text));
        require(back && std::ranges::equal(*back, std::span(data, size)));
    }
    return 0;
}
