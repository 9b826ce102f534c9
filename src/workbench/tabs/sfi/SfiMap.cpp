#include "workbench/tabs/sfi/SfiMap.h"

#include "files/containers/SfiFormat.h"

#include <QFileInfo>

#include <map>
#include <string_view>

namespace workbench
{

namespace
{

void addFile(MapContents &contents, const FileData &record, int group, bool isSelected)
{
    int number = 0;
    const auto add = [&](std::uint32_t address, std::uint32_t size) {
        const int row = isSelected ? number : -1;
        contents.blocks.push_back({address, size, group, ++number, row});
    };
    if (record.type == file_type::kObk) {
        const auto &file = static_cast<const FileOBK &>(record);
        add(file.obkAddress, file.obkSize);
        return;
    }
    for (const SegmentData &segment : record.segments) {
        add(segment.address, segment.size);
    }
}

}  // namespace

MapContents mapOfFiles(const QStringList &paths, const QList<FileData *> &records, int selected)
{
    MapContents contents;
    contents.blockWord = QStringLiteral("segment");
    contents.emphasised = selected;
    for (int at = 0; at < records.size(); ++at) {
        const FileData &record = *records.at(at);
        contents.groups.push_back({QFileInfo(paths.at(at)).fileName(), std::nullopt});
        contents.mergesGroups = contents.mergesGroups || record.type != file_type::kObk;
        // A module image's one block stands at address 0, which says nothing of where it goes.
        if (record.type != file_type::kSmi) {
            addFile(contents, record, at, at == selected);
        }
    }
    return contents;
}

MapContents mapOfImage(const FileSFI &image,
                       const std::function<std::optional<RowColours>(std::uint8_t)> &coloursOf)
{
    MapContents contents;
    contents.blockWord = QStringLiteral("area");
    std::map<std::string_view, int> groups;
    for (const SegmentSFI &area : image.areas) {
        const char *label = files::areaLabel(area.areaType);
        const auto [hit, isNew] = groups.emplace(label, static_cast<int>(contents.groups.size()));
        if (isNew) {
            const auto colours = coloursOf(area.areaType);
            contents.groups.push_back(
                {QString::fromLatin1(label),
                 colours ? std::optional(colours->background) : std::nullopt});
        }
        const int row = static_cast<int>(contents.blocks.size());
        contents.blocks.push_back({area.address, area.size, hit->second, row + 1, row});
    }
    return contents;
}

}  // namespace workbench
