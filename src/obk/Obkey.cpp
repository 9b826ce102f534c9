#include "obk/Obkey.h"

#include "obk/Choices.h"
#include "obk/Reporting.h"
#include "obk/TemplateChecks.h"
#include "obk/TemplateReader.h"

#include <QCryptographicHash>

#include <cstring>

using obk::isGood;

std::string Obkey::get_txt(const QDomNode &node)
{
    return obk::get_txt(node);
}

bool Obkey::isHex(const QString &text)
{
    return obk::isHex(text);
}

bool Obkey::isDecimal(const QString &text)
{
    return obk::isDecimal(text);
}

QString Obkey::convDecToHex(const QString &text)
{
    return obk::convDecToHex(text);
}

bool Obkey::GetItem(ObDataItem &item, const QDomNode &node)
{
    return isGood(obk::readElement(node, item, model));
}

bool Obkey::duplicateElementCheck()
{
    return isGood(obk::checkDuplicates(model.tags));
}

bool Obkey::mandatoryElementCheck()
{
    return isGood(obk::checkMandatory(model.tags));
}

bool Obkey::duplicateElementCheckImg()
{
    return isGood(obk::checkImageDuplicates(model.tags));
}

bool Obkey::mandatoryElementCheckImg()
{
    return isGood(obk::checkImageMandatory(model.tags));
}

bool Obkey::xmlCheck(Obkey *obkey)
{
    return isGood(obk::checkTemplate(obkey->model));
}

bool Obkey::uniqueName(const QStringList &entries, const QString &tag)
{
    return isGood(obk::uniqueName(entries, tag));
}

bool Obkey::uniqueNameTabs(Obkey *obkey)
{
    return isGood(obk::checkNames(obkey->model.items));
}

bool Obkey::widthValid(unsigned width)
{
    return obk::widthValid(width);
}

bool Obkey::widthValidText(unsigned length, unsigned maximum, unsigned minimum)
{
    return obk::widthValidText(length, maximum, minimum);
}

bool Obkey::totalValueCheck(const QString &value, const QString &name, int width)
{
    return isGood(obk::checkNumber(value, name, width));
}

bool Obkey::totalValueCheckText(const QString &text, int maximum, int minimum)
{
    return isGood(obk::checkPassword(text, maximum, minimum));
}

bool Obkey::validWidthAndDefaultVal(Obkey *obkey)
{
    return isGood(obk::checkDefaults(obkey->model.items));
}

bool Obkey::flashExist(const QStringList &names)
{
    return obk::flashExist(names);
}

bool Obkey::obkExist(const QStringList &names)
{
    return obk::obkExist(names);
}

bool Obkey::authObkExist(const QStringList &names)
{
    return obk::authObkExist(names);
}

void Obkey::fillingSlotVector(std::size_t item, std::vector<Slot> &all,
                              std::vector<Slot> &execution, std::vector<Slot> &download)
{
    obk::FlashSlots lists{std::move(all), std::move(execution), std::move(download)};
    obk::addFlashSlot(model.items.at(item), model.items[item].text(), model.areas.flashStart,
                      lists);
    all = std::move(lists.all);
    execution = std::move(lists.execution);
    download = std::move(lists.download);
}

void Obkey::fillingObkSlotVector(std::size_t item, std::vector<Slot> &declared)
{
    obk::addObkSlot(model.items.at(item), model.items[item].text(), model.areas.obkStart, declared);
}

void Obkey::fillDependencyVectorSlot(std::size_t first, std::vector<Slot> &all,
                                     std::vector<Slot> &execution, std::vector<Slot> &download)
{
    obk::FlashSlots lists{std::move(all), std::move(execution), std::move(download)};
    obk::shownFlashSlots(model, first, lists);
    all = std::move(lists.all);
    execution = std::move(lists.execution);
    download = std::move(lists.download);
}

void Obkey::fillDependencyVectorObkSlot(std::size_t first, std::vector<Slot> &declared)
{
    obk::shownObkSlots(model, first, declared);
}

void Obkey::refreshShownSlots()
{
    flashSlots = {};
    obkSlots.clear();
    obk::shownFlashSlots(model, 0, flashSlots);
    obk::shownObkSlots(model, 0, obkSlots);
}

void Obkey::sortVector(std::vector<Slot> &declared)
{
    obk::sortSlots(declared);
}

std::vector<Interval> Obkey::fillVectorInterval(const std::vector<Slot> &declared)
{
    return obk::intervalsOf(declared);
}

bool Obkey::checkSectorAndFlashBelong(const std::vector<Interval> &intervals,
                                      const std::vector<Slot> &declared)
{
    return isGood(obk::checkInFlash(intervals, declared, model.areas));
}

bool Obkey::overlapFlashSlotFunction(const std::vector<Interval> &intervals,
                                     const std::vector<Slot> &declared)
{
    return isGood(obk::checkOverlap(intervals, declared));
}

bool Obkey::checkOverlapFlashSlot(std::vector<Slot> &declared)
{
    obk::sortSlots(declared);
    const auto intervals = obk::intervalsOf(declared);
    return checkSectorAndFlashBelong(intervals, declared) &&
           overlapFlashSlotFunction(intervals, declared);
}

bool Obkey::checkOverlapObkSlot(std::vector<Slot> &declared)
{
    return isGood(obk::checkObkSlots(declared, model));
}

void Obkey::HashFunction(const unsigned char *data, std::size_t size, unsigned char *out)
{
    const QByteArray digest = QCryptographicHash::hash(
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<int>(size)),
        QCryptographicHash::Sha256);
    std::memcpy(out, digest.constData(), static_cast<std::size_t>(digest.size()));
}
