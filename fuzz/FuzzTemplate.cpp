// Opens any bytes as a template of either kind, generates from it and puts its values back.
#include "FuzzSupport.h"

#include "obk/Generation.h"
#include "obk/ImageCommand.h"
#include "obk/Slots.h"
#include "obk/TemplateChecks.h"
#include "obk/TemplateText.h"

namespace
{

std::vector<std::uint8_t> around(std::string_view body)
{
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Root><Obdata><Info>"
                       "<GlobalAlign>4</GlobalAlign><FlashStart>0x1000</FlashStart><FlashSize>4096"
                       "</FlashSize><FlashSectorSize>16</FlashSectorSize><OBKStart>0</OBKStart>"
                       "<OBKSize>64</OBKSize><OBKSectorSize>8</OBKSectorSize></Info>";
    text.append(body);
    text.append("<Output><Name>O</Name><Default>o.bin</Default></Output></Obdata></Root>\n");
    return {text.begin(), text.end()};
}

std::vector<std::uint8_t> image(std::string_view body)
{
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Root><McubootFormat>"
                       "<GlobalParam><Title>T</Title><Command>create</Command></GlobalParam>";
    text.append(body);
    text.append("<Output><Name>O</Name><Default>o.bin</Default></Output></McubootFormat></Root>\n");
    return {text.begin(), text.end()};
}

/// Bytes of the generation, with stand-ins for files: no key is ever read here.
std::optional<obk::Product> generated(const obk::Template &model)
{
    const obk::KeyTools none = {[](const QString &) { return obk::refuse({}); },
                                [](const QStringList &) { return obk::refuse({}); }};
    auto product = obk::generate({model, QStringLiteral("/nowhere/t.xml"), {}, true}, none);
    return product ? std::optional(std::move(*product)) : std::nullopt;
}

/// An image template: its arguments stay the same when its values are put back.
void openImage(const QByteArray &text, const obk::Template &model)
{
    if (!obk::checkImageDuplicates(model.tags) || !obk::checkImageMandatory(model.tags) ||
        !obk::checkImageItems(model.items) || !obk::checkImageCommand(model)) {
        return;
    }
    require(obk::findItems(text).size() == model.items.size());
    const QString path = QStringLiteral("/nowhere/t.xml");
    const auto arguments = obk::imageArguments(model, path, {});
    std::vector<std::optional<QString>> values;
    for (const ObDataItem &item : model.items) {
        values.emplace_back(item.text());
    }
    const auto changed = obk::withValues(text, model.items, values);
    if (!arguments || !changed) {
        return;
    }
    require(!obk::shellText(path, *arguments).isEmpty());
    const auto again = obk::readTemplate(*changed);
    require(again.has_value());
    const auto second = obk::imageArguments(*again, path, {});
    require(second && *second == *arguments);
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    return {around("<Hash/><Data><Name>Aoffset</Name><Value>0</Value><Width>4</Width><Default>0"
                   "</Default><Slot>start#1</Slot><TypeSlot>Execution</TypeSlot></Data>"
                   "<Data><Name>Asize</Name><Width>4</Width><Default>16</Default><Slot>size#1"
                   "</Slot></Data>"),
            around("<DA/><Text><Name>P</Name><Width>8</Width><MinWidth>1</MinWidth><Default>a&lt;"
                   "</Default></Text><Permission><Name>R</Name><Width>8</Width><Default>0x77"
                   "</Default></Permission>"),
            around("<List><Name>L</Name><Width>1</Width><Default>1</Default><Val>1</Val><Val>2,b"
                   "</Val></List><Bool><Name>B</Name><Width>1</Width><Default>0</Default><True>1"
                   "</True><False>0</False></Bool><Data><Name>D</Name><Width>2</Width><Default>1"
                   "</Default><Dependency>L,1</Dependency><OBKSlot>start#1</OBKSlot></Data>"),
            image("<Param><Name>A</Name><Type>Data</Type><Option>-a=</Option><Default>1</Default>"
                  "</Param><Param><Name>B</Name><Type>List</Type><Default>x</Default><Val>x,y</Val>"
                  "<Enable>0</Enable></Param><Param><Name>C</Name><Value>1</Value><Type>Bool</Type>"
                  "<Option>--c</Option><Default>0</Default></Param>")};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const auto places = obk::findItems(text);
    auto model = obk::readTemplate(text);
    if (model && !model->tags.globalParam.isEmpty()) {
        openImage(text, *model);
        return 0;
    }
    if (!model || !obk::checkDuplicates(model->tags) || !obk::checkMandatory(model->tags) ||
        !obk::checkTemplate(*model) || !obk::checkRows(*model)) {
        return 0;
    }
    // No document type can move the elements, so scan and parser see the same items.
    require(places.size() == model->items.size());
    const auto product = generated(*model);
    if (!product) {
        return 0;
    }
    const auto changed = obk::withValues(text, model->items, product->values);
    if (changed) {
        // What was kept makes the same bytes again.
        const auto again = obk::readTemplate(*changed);
        require(again.has_value());
        const auto second = generated(*again);
        require(second && second->bytes == product->bytes);
    }
    return 0;
}
