#include "preparation/SfiRequestBuilder.h"

#include "files/base/LittleEndian.h"

namespace
{

std::vector<SfiRequestBuilder::Message> *sink = nullptr;

void record(int level, const wchar_t *text)
{
    sink->push_back({level, text});
}

QByteArray asArray(const Bytes &bytes)
{
    return {reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size())};
}

}  // namespace

Bytes ramp(unsigned start, unsigned step, std::size_t count)
{
    Bytes bytes(count);
    for (auto &byte : bytes) {
        byte = static_cast<std::uint8_t>(start);
        start += step;
    }
    return bytes;
}

SfiRequestBuilder::SfiRequestBuilder() : key(asArray(ramp(0x10, 1, 16))), nonce(12, '\x5A')
{
    optionBytes.type = file_type::kCsv;
    optionBytes.segmentCount = 1;
    optionBytes.segments = {segment(0, {1, 2, 3, 4})};
    keyArea.type = file_type::kCsv;
    ssfi.type = file_type::kSsfi;
    modules.type = file_type::kMcsv;
}

SegmentData SfiRequestBuilder::segment(std::uint32_t address, Bytes bytes)
{
    Bytes &kept = m_bytes.emplace_back(std::move(bytes));
    SegmentData segment;
    segment.address = address;
    segment.size = static_cast<std::uint32_t>(kept.size());
    segment.data = kept.data();
    return segment;
}

SfiRequestBuilder &SfiRequestBuilder::firmware(std::uint32_t address, Bytes bytes)
{
    firmwareFile.segments.push_back(segment(address, std::move(bytes)));
    ++firmwareFile.segmentCount;
    return *this;
}

SfiRequestBuilder &SfiRequestBuilder::external(std::uint32_t address, Bytes bytes)
{
    externalFile.segments.push_back(segment(address, std::move(bytes)));
    ++externalFile.segmentCount;
    return *this;
}

SfiRequestBuilder &SfiRequestBuilder::obk(std::uint32_t address, std::uint32_t word3, Bytes payload)
{
    FileOBK &file = m_obks.emplace_back();
    file.type = file_type::kObk;
    file.obkAddress = address;
    file.obkSize = static_cast<std::uint32_t>(payload.size());
    file.obkWord3 = word3;
    file.segmentCount = 1;
    file.segments = {segment(0, std::move(payload))};
    obkFiles.append(&file);
    return *this;
}

SfiRequestBuilder &SfiRequestBuilder::smi(Bytes file)
{
    FileData &record = m_smis.emplace_back();
    record.type = file_type::kSmi;
    record.segmentCount = 1;
    record.segments = {segment(0, std::move(file))};
    smiFiles.append(&record);
    return *this;
}

SfiRequestBuilder &SfiRequestBuilder::module(std::uint32_t address, Bytes module, Bytes licence,
                                             const std::string &identifier)
{
    const SegmentData code = segment(address, std::move(module));
    const SegmentData text = segment(0, std::move(licence));
    const SegmentData name = segment(0, Bytes(identifier.begin(), identifier.end()));
    SegmentDataMCSV entry;
    entry.licenceIsFile = text.size != 0 ? 1 : 0;
    entry.address = address;
    entry.moduleSize = code.size;
    entry.licenceSize = text.size;
    entry.hsmFwIdSize = name.size;
    entry.licence = text.data;
    entry.hsmFwId = name.data;
    entry.module = code.data;
    modules.modules.push_back(entry);
    ++modules.moduleCount;
    return *this;
}

SfiRequestBuilder &SfiRequestBuilder::ssfiArea(Bytes header, Bytes data)
{
    const SegmentData head = segment(0, std::move(header));
    const SegmentData body = segment(0, std::move(data));
    SegmentSFI area;
    area.areaHeader = head.data;
    area.areaHeaderSize = head.size;
    area.data = body.data;
    area.size = body.size;
    ssfi.areas.push_back(area);
    ++ssfi.segmentCount;
    return *this;
}

QByteArray SfiRequestBuilder::build()
{
    messages.clear();
    sink = &messages;
    Preparation preparation;
    preparation.setDisplayCallback(&record);
    return preparation.SFIPreparation(
        &firmwareFile, combined, obkFiles, &optionBytes, key, nonce, imageVersion, hash, smiFiles,
        ramSize, token, ssfi.areas.empty() ? nullptr : &ssfi,
        modules.modules.empty() ? nullptr : &modules, profile, &externalFile,
        keyArea.segments.empty() ? nullptr : &keyArea, regions);
}

std::wstring SfiRequestBuilder::onlyMessage() const
{
    return messages.size() == 1 ? messages[0].text : L"not one message";
}

Bytes smiFile(std::uint32_t loadAddress, std::uint32_t plainSize)
{
    Bytes file = {'S', 'M', 'I', 'M', 'A', 'G', 'I', 'C'};
    files::appendU16le(file, 1);
    files::appendU16le(file, 0);
    files::appendU32le(file, loadAddress);
    files::appendU32le(file, plainSize);
    file.resize(96);
    const Bytes data = ramp(0xC0, 1, plainSize);
    file.insert(file.end(), data.begin(), data.end());
    file.resize((file.size() + 31) / 32 * 32);
    return file;
}

std::vector<std::uint8_t> bytesOf(const QByteArray &image)
{
    return {image.begin(), image.end()};
}
