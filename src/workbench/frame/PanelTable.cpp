#include "workbench/frame/PanelTable.h"

#include <QString>

#include <algorithm>

namespace workbench
{

namespace
{

constexpr const char *kSfiTabs[] = {"sfi", "sfix", "ob", "smi", "hsm"};
constexpr const char *kSspTabs[] = {"ssp", "hsm"};
constexpr const char *kWbTabs[] = {"sign"};
constexpr const char *kH5Tabs[] = {"obk", "img", "lic", "da", "sfi", "sfix", "hsm", "ob"};

constexpr Panel kPanels[] = {
    {"sfi", "sfiIcon", ":/sfiIcon.png",
     QT_TRANSLATE_NOOP("CentralWidget", "Secure Firmware Install"), 69, DeviceBoxes::Free,
     HsmDevices::Microcontrollers, kSfiTabs},
    {"ssp", "sspIcon", ":/sspIcon.png", QT_TRANSLATE_NOOP("CentralWidget", "MPU SSP"), 69,
     DeviceBoxes::Unchanged, HsmDevices::Microprocessors, kSspTabs},
    {"wb", "wbIcon", ":/wbIcon.png", QT_TRANSLATE_NOOP("CentralWidget", "WB Sign"), 70,
     DeviceBoxes::Unchanged, HsmDevices::Unchanged, kWbTabs},
    {"h5", "h5Icon", ":/h5Icon.png", QT_TRANSLATE_NOOP("CentralWidget", "H5 Secure Firmware"), 70,
     DeviceBoxes::LockedH5, HsmDevices::Microcontrollers, kH5Tabs},
};

}  // namespace

std::span<const Panel> panels()
{
    return kPanels;
}

const Panel *findPanel(const QString &name)
{
    const auto *hit = std::ranges::find_if(kPanels, [&name](const Panel &panel) {
        return name.compare(QLatin1String(panel.name), Qt::CaseInsensitive) == 0;
    });
    return hit == std::end(kPanels) ? nullptr : hit;
}

}  // namespace workbench
