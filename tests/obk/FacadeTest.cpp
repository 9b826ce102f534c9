// The template's names for what other files do: each hands on what it was given, in its order, and
// reports.
#include "ObkFixture.h"

#include "obk/TemplateChecks.h"

#include <QCoreApplication>

namespace
{

class Facade : public ObkFixture
{
protected:
    bool openShipped(const char *name)
    {
        return obkey.openTemplate(QCoreApplication::applicationDirPath() + "/Template/OBkey/" +
                                  name);
    }
    /// What a check says: nothing where it is content.
    QString verdict(bool isGood)
    {
        const QString text = complaint();
        EXPECT_EQ(isGood, text.isEmpty());
        return text;
    }
};

TEST_F(Facade, ReadsTextsAndElements)
{
    QDomDocument document;
    ASSERT_TRUE(document.setContent(QString("<Data><Name>A</Name><Width>4</Width>"
                                            "<Default>0x5</Default></Data>")));
    const QDomNode element = document.documentElement();
    EXPECT_EQ(Obkey::get_txt(element.firstChild()), "A");
    ObDataItem item;
    EXPECT_TRUE(obkey.GetItem(item, element));
    EXPECT_EQ(item.nameText(), "A");
    ASSERT_TRUE(document.setContent(QString("<Param><Name>P</Name><Value>1</Value></Param>")));
    EXPECT_TRUE(obkey.GetItemMcuBoot(item, document.documentElement()));
    EXPECT_EQ(item.nameText(), "P");
    EXPECT_TRUE(Obkey::isHex("0xaF") && !Obkey::isHex("aF"));
    EXPECT_TRUE(Obkey::isDecimal("10") && !Obkey::isDecimal("0x10"));
    EXPECT_EQ(Obkey::convDecToHex("16"), "0x10");
    unsigned char sum[32];
    Obkey::HashFunction(reinterpret_cast<const unsigned char *>("abc"), 3, sum);
    EXPECT_EQ(sum[0], 0xBA);
}

TEST_F(Facade, ChecksAndReportsOnce)
{
    EXPECT_TRUE(Obkey::widthValid(8) && !Obkey::widthValid(9));
    EXPECT_TRUE(Obkey::widthValidText(5, 9, 4) && !Obkey::widthValidText(5, 4, 9));
    EXPECT_EQ(verdict(obkey.uniqueName({"a", "b"})), "");
    EXPECT_NE(verdict(obkey.uniqueName({"a", "a"})), "");
    EXPECT_EQ(verdict(obkey.totalValueCheck("0xFF", "Name", 1)), "");
    EXPECT_NE(verdict(obkey.totalValueCheck("0x100", "Name", 1)), "");
    EXPECT_EQ(verdict(obkey.totalValueCheckText("12345", 9, 4)), "");
    EXPECT_NE(verdict(obkey.totalValueCheckText("12345", 4, 1)), "");
    ASSERT_TRUE(openShipped("memory-layout.xml"));
    said();
    EXPECT_EQ(verdict(obkey.uniqueNameTabs(&obkey)), "");
    EXPECT_EQ(verdict(obkey.validWidthAndDefaultVal(&obkey)), "");
    const QStringList all = {"FlashStart", "FlashSize",     "FlashSectorSize", "OBKStart",
                             "OBKSize",    "OBKSectorSize", "AuthOBKStart",    "AuthOBKSize"};
    EXPECT_TRUE(Obkey::flashExist(all) && Obkey::obkExist(all) && Obkey::authObkExist(all));
    EXPECT_FALSE(Obkey::flashExist({}) || Obkey::obkExist({}) || Obkey::authObkExist({}));
}

TEST_F(Facade, CollectsSlotsAndPlacesThem)
{
    const auto names = [](const std::vector<Slot> &listed) {
        QStringList list;
        for (const Slot &slot : listed) {
            list << slot.name;
        }
        return list;
    };
    ASSERT_TRUE(openShipped("memory-layout.xml"));
    said();
    std::vector<Slot> all, execution, download;
    obkey.fillDependencyVectorSlot(0, all, execution, download);
    EXPECT_EQ(names(all), names(obkey.flashSlots.all));
    EXPECT_EQ(names(execution), names(obkey.flashSlots.execution));
    EXPECT_EQ(names(download), names(obkey.flashSlots.download));
    std::vector<Slot> one, none, more;
    for (std::size_t item = 0; item < obkey.model.items.size() && one.empty(); ++item) {
        if (obkey.model.items[item].hasSlot) {
            obkey.fillingSlotVector(item, one, none, more);
        }
    }
    ASSERT_EQ(one.size(), 1U);
    EXPECT_EQ(one[0].name, all.at(0).name);
    Obkey::sortVector(all);
    const auto intervals = Obkey::fillVectorInterval(all);
    ASSERT_EQ(intervals.size(), all.size());
    EXPECT_LE(intervals.front().start, intervals.back().start);
    EXPECT_EQ(verdict(obkey.checkSectorAndFlashBelong(intervals, all)), "");
    std::vector<Slot> outside = {{"out", 9, QString("0x1"), QString("0x1")}};
    EXPECT_NE(verdict(obkey.checkSectorAndFlashBelong(Obkey::fillVectorInterval(outside), outside)),
              "");
    EXPECT_NE(verdict(obkey.checkOverlapFlashSlot(outside)), "");
    std::vector<Slot> twice = {all[0], all[0]};
    EXPECT_NE(verdict(obkey.overlapFlashSlotFunction(Obkey::fillVectorInterval(twice), twice)), "");
    EXPECT_NE(verdict(obkey.checkOverlapFlashSlot(twice)), "");

    ASSERT_TRUE(openShipped("key-area-layout.xml"));
    said();
    std::vector<Slot> keys;
    obkey.fillDependencyVectorObkSlot(0, keys);
    EXPECT_EQ(names(keys), names(obkey.obkSlots));
    EXPECT_EQ(verdict(obkey.checkOverlapObkSlot(keys)), "");
    std::vector<Slot> first;
    obkey.fillingObkSlotVector(0, first);
    ASSERT_EQ(first.size(), 1U);
    keys.push_back(first[0]);
    EXPECT_NE(verdict(obkey.checkOverlapObkSlot(keys)), "");
}

}  // namespace
