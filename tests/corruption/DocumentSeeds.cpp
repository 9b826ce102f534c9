// XML: the templates that ship, and descriptions of devices.
#include "corruption/Harness.h"

#include "certif/PermissionNames.h"
#include "device/DomParser.h"
#include "obk/Generation.h"
#include "obk/ImageCommand.h"
#include "obk/TemplateChecks.h"
#include "obk/TemplateText.h"
#include "support/ScratchFolder.h"

#include <QDir>

#include <algorithm>
#include <cctype>
#include <stdexcept>

namespace corruption
{

namespace
{

using View = std::span<const std::uint8_t>;

std::string plain(const std::optional<QString> &text)
{
    return text ? "'" + text->toStdString() + "'" : "none";
}

std::string itemsOf(const obk::Template &model)
{
    Content content;
    content.add(model.title.toStdString()).add(model.globalAlign).add(model.hashFile ? 1 : 0);
    content.add(model.areas.flashStart).add(model.areas.flashSize).add(model.areas.obkStart);
    content.add(static_cast<std::uint64_t>(model.obDestAddress.value_or(-1)));
    for (const ObDataItem &item : model.items) {
        content.add(obk::tagOf(item.kind).toStdString()).add(plain(item.name));
        content.add(plain(item.defaultText)).add(plain(item.value)).add(plain(item.tooltip));
        content.add(static_cast<std::uint64_t>(item.width)).add(item.size).add(item.align);
        content.add(plain(item.dependency)).add(plain(item.type)).add(plain(item.option));
        content.add(item.entries.join(';').toStdString());
    }
    return content.done();
}

/// With what would be generated from it, where no key is asked for.
std::optional<std::string> readTemplate(View file)
{
    const auto model = obk::readTemplate(
        QByteArray(reinterpret_cast<const char *>(file.data()), static_cast<int>(file.size())));
    if (!model) {
        return std::nullopt;
    }
    Content content;
    content.add(itemsOf(*model));
    const QString path = QStringLiteral("/nowhere/t.xml");
    if (!model->tags.globalParam.isEmpty()) {
        if (!obk::checkImageDuplicates(model->tags) || !obk::checkImageMandatory(model->tags) ||
            !obk::checkImageItems(model->items)) {
            return std::nullopt;
        }
        const auto arguments = obk::imageArguments(*model, path, {});
        return content.add(arguments ? arguments->join('\n').toStdString() : "").done();
    }
    if (!obk::checkDuplicates(model->tags) || !obk::checkMandatory(model->tags) ||
        !obk::checkTemplate(*model) || !obk::checkRows(*model)) {
        return std::nullopt;
    }
    const obk::KeyTools none = {[](const QString &) { return obk::refuse({}); },
                                [](const QStringList &) { return obk::refuse({}); }};
    // It would tell about keys that are not there.
    if (std::ranges::count(model->items, obk::ItemKind::File, &ObDataItem::kind) != 0) {
        return content.done();
    }
    const auto product = obk::generate({*model, path, {}, true}, none);
    return product ? content.add(View(product->bytes)).done() : content.done();
}

std::optional<std::string> readDevice(View file)
{
    try {
        DomParser parser(storedFile(file).toStdString());
        const std::unique_ptr<Device> device(
            parser.CheckDataState() == DomParser::Good ? parser.GetDevice(0x7A1) : nullptr);
        if (!device) {
            return std::nullopt;
        }
        Content content;
        for (const StoragePeriph &periph : device->storagePeriphs) {
            content.add(periph.configurations.size());
            for (const StorageConfig &config : periph.configurations) {
                for (const StorageBank &bank : config.banks) {
                    content.add(bank.sectors.size());
                }
            }
        }
        return content.add(device->configPeriphs.size()).done();
    } catch (const std::logic_error &) {
        return std::nullopt;  // a number that is none, or too many records
    }
}

std::optional<std::string> readFamily(View file)
{
    static const ScratchFolder folder;
    folder.file("a.xml", {reinterpret_cast<const char *>(file.data()), file.size()});
    QStringList problems;
    const auto families = certif::readFamilies(
        folder.path({}), DATA_FOLDER "/Template/PrototypeGenCertif.xsd", problems);
    if (families.empty()) {
        return std::nullopt;
    }
    Content content;
    content.add((families[0].name + families[0].socClass).toStdString());
    for (const certif::Permission &bit : families[0].bits) {
        content.add((bit.name + '\n' + bit.toolTip).toStdString());
    }
    return content.done();
}

/// Angle brackets hold the document together; inside of them and between stand names and values.
/// A document that is cut has lost its end tag.
Seed xmlSeed(const std::string &name, const std::string &text,
             std::optional<std::string> (*read)(View))
{
    Seed seed{name, {text.begin(), text.end()}, read};
    for (std::size_t at = 0; at < text.size();) {
        if (text.compare(at, 4, "<!--") == 0) {
            const std::size_t end = text.find("-->", at) + 3;
            seed.fields.push_back({at, end - at, "comment", kAny});
            at = end;
            continue;
        }
        if (text[at] == '<' || text[at] == '>') {
            // Without its first bracket an element that is empty is a text.
            const std::size_t close = text.find('>', at);
            const bool isEmpty = text[at] == '<' && close != at && text[close - 1] == '/';
            seed.fields.push_back({at, 1, "bracket", isEmpty ? kAny : unsigned{kRefused}});
            ++at;
            continue;
        }
        const std::size_t end = std::min(text.find_first_of("<>", at), text.size());
        const std::string part = text.substr(at, end - at);
        const bool isNumber = text[at - 1] == '>' && part.size() < 10 &&
                              part.find_first_not_of("0123456789") == std::string::npos;
        seed.fields.push_back({at, end - at, isNumber ? "number" : "words", kAny,
                               isNumber ? Form::Decimal : Form::Raw});
        at = end;
    }
    const std::size_t last = text.find_last_of('>');
    seed.prefix = [last](std::size_t size) {
        return static_cast<unsigned>(size <= last ? kRefused : kSame);
    };
    return seed;
}

std::string deviceAround(const std::string &inside)
{
    return "<?xml version=\"1.0\"?><Root><Device><DeviceID>0x7A1</DeviceID>" + inside +
           "</Device></Root>";
}

}  // namespace

std::vector<Seed> documentSeeds()
{
    std::vector<Seed> seeds;
    const QDir templates(DATA_FOLDER "/templates");
    for (const QString &name : templates.entryList({"*.xml"}, QDir::Files, QDir::Name)) {
        seeds.push_back(xmlSeed(name.toStdString(),
                                ScratchFolder::contents(templates.filePath(name)), readTemplate));
    }
    seeds.push_back(xmlSeed(
        "bits of a certificate",
        ScratchFolder::contents(DATA_FOLDER "/SPB_CertifGen_Data_Base/VDR32U59.xml"), readFamily));
    seeds.push_back(xmlSeed(
        "device with option bytes",
        deviceAround("<Vendor>v</Vendor><peripherals><Peripheral><name>Option Bytes</name>"
                     "<type>Configuration</type><Configuration config='1'><Bank><Parameters "
                     "name='B' size='4' address='0x50'/><Category><Name>Access</Name><Field>"
                     "<Parameters name='R' size='4' address='0x50'/><AssignedBits><Bit "
                     "config='0,1' reference='C'><Name>F</Name><BitOffset>0xE</BitOffset>"
                     "<BitWidth>4</BitWidth><Access>RW</Access><Values ByBit='false'><Val "
                     "value='1'>on</Val></Values><Equation multiplier='0x80' offset='0x8000000'/>"
                     "</Bit></AssignedBits></Field></Category></Bank></Configuration></Peripheral>"
                     "</peripherals>"),
        readDevice));
    seeds.push_back(xmlSeed(
        "device with flash",
        deviceAround("<peripherals><Peripheral><name>Embedded Flash</name><type>Storage</type>"
                     "<erasedvalue>0xFF</erasedvalue><Configuration config='0,1'><Parameters "
                     "size='8'/><Allignement>4</Allignement><Bank name='B1'><Field><Parameters "
                     "name='Sector0' size='0x800' occurence='0x80'/></Field></Bank>"
                     "</Configuration></Peripheral></peripherals>"),
        readDevice));
    return seeds;
}

}  // namespace corruption
