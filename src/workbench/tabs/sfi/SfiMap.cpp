#include "workbench/tabs/sfi/SfiMap.h"

#include "files/containers/SfiFormat.h"

#include <QCoreApplication>

#include <map>
#include <string_view>

namespace workbench
{

MapContents mapOfImage(const FileSFI &image,
                       const std::function<std::optional<RowColours>(std::uint8_t)> &coloursOf)
{
    MapContents contents;
    contents.blockWord = QCoreApplication::translate("MemoryMap", "area");
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
