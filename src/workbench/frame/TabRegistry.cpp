#include "workbench/frame/TabRegistry.h"

#include "workbench/forms/PlaceholderTab.h"
#include "workbench/tabs/da/DaTabs.h"
#include "workbench/tabs/hsm/HsmTabs.h"
#include "workbench/tabs/img/ImgTabs.h"
#include "workbench/tabs/lic/LicTabs.h"
#include "workbench/tabs/ob/ObTabs.h"
#include "workbench/tabs/obk/ObkTabs.h"
#include "workbench/tabs/sfi/SfiTabs.h"
#include "workbench/tabs/sfu/SfuTabs.h"
#include "workbench/tabs/sign/SignTabs.h"
#include "workbench/tabs/smi/SmiTabs.h"
#include "workbench/tabs/ssp/SspTabs.h"

#include <algorithm>

namespace workbench
{

namespace
{

using Built = TabEntry::Built;

constexpr TabEntry kTabs[] = {
    {{"sfi", QT_TR_NOOP("SFI"), "SFI"}, Built::WithTheForm, makeSfiTab, nullptr},
    {{"smi", QT_TR_NOOP("SMI"), "SMI"}, Built::WithTheForm, makeSmiTab, nullptr},
    {{"sfix", QT_TR_NOOP("SFIx"), "SFIx"}, Built::WithTheForm, makeSfixTab, nullptr},
    {{"ssp", QT_TR_NOOP("SSP"), "SSP"}, Built::WithTheForm, makeSspTab, nullptr},
    {{"sign", QT_TR_NOOP("VDR32WB Sign"), "SIGN"}, Built::WithTheForm, makeSignTab, nullptr},
    {{"sfu", QT_TR_NOOP("SFU")}, Built::WithTheForm, makeSfuTab, nullptr},
    {{"hsm", QT_TR_NOOP("HSM"), "HSM"}, Built::WithTheForm, makeHsmTab, nullptr},
    {{"ob", QT_TR_NOOP("SFI Option Bytes")}, Built::WithTheForm, makeObTab, nullptr},
    {{"lic", QT_TR_NOOP("License Gen"), "LIC"}, Built::WithTheForm, makeLicTab, nullptr},
    {{"da", QT_TR_NOOP("DA CertifGen"), "DA"}, Built::WithTheForm, makeDaTab, nullptr},
    {{"obk", QT_TR_NOOP("OBkey")}, Built::LaterOnce, makeObkTab, nullptr},
    {{"img", QT_TR_NOOP("Image Gen")}, Built::ManyTimes, makeImgTab, nullptr},
};

}  // namespace

std::span<const TabEntry> tabRegistry()
{
    return kTabs;
}

const TabEntry &tabEntry(const QString &key)
{
    return *std::ranges::find_if(
        kTabs, [&key](const TabEntry &entry) { return key == QLatin1String(entry.name.key); });
}

Tab *makeTab(const TabEntry &entry, QWidget *page, FormContext &context)
{
    return entry.make != nullptr
               ? entry.make(entry.name, page, context)
               : new PlaceholderTab(entry.name, page, context, QObject::tr(entry.sentence));
}

}  // namespace workbench
