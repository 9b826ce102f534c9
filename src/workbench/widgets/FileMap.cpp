#include "workbench/widgets/FileMap.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace workbench
{

namespace
{

void addFile(MapContents &contents, const FileData &record, int group, bool isSelected)
{
    // A module image's one block stands at address 0, which says nothing of where it goes.
    if (record.type == file_type::kSmi) {
        return;
    }
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
    contents.blockWord = QCoreApplication::translate("MemoryMap", "segment");
    contents.emphasised = selected;
    for (int at = 0; at < records.size(); ++at) {
        const FileData &record = *records.at(at);
        contents.groups.push_back({QFileInfo(paths.at(at)).fileName(), std::nullopt});
        contents.mergesGroups = contents.mergesGroups || record.type != file_type::kObk;
        addFile(contents, record, at, at == selected);
    }
    return contents;
}

MapContents mapOfFile(const QString &path, const FileData &record)
{
    MapContents contents;
    contents.blockWord = QCoreApplication::translate("MemoryMap", "segment");
    contents.groups.push_back({QFileInfo(path).fileName(), std::nullopt});
    addFile(contents, record, 0, true);
    return contents;
}

}  // namespace workbench
