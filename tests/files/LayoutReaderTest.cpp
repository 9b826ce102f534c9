#include "files/DummyHeader.h"
#include "files/OpenFixture.h"

namespace
{

class Tsv : public OpenFixture
{
};

TEST_F(Tsv, RowsAndFilteredTextAreRead)
{
    const auto layout =
        openAs<FileTSV>("a.tsv", "#Opt\tId\tName\tType\tIP\tOffset\tBinary\n"
                                 "-\t0x01\tfsbl1\t\tBinary\tnone\t0x0\tfsbl.bin with words\r\n"
                                 "P\t1g\tb\xC3\xB6\tFileSystem\tmmc0\tboot1\timage\xC3\xA9.ext4");
    ASSERT_TRUE(layout);
    EXPECT_TRUE(log.all().empty());
    ASSERT_EQ(layout->partitions.size(), 2U);
    const partition &first = layout->partitions[0];
    EXPECT_STREQ(first.opt, "-");
    EXPECT_EQ(first.id, 1U);
    EXPECT_STREQ(first.partitionType, "Binary");
    EXPECT_STREQ(first.binary, L"fsbl.bin");
    EXPECT_STREQ(layout->partitions[1].binary, L"image\u00e9.ext4");
    EXPECT_STREQ(layout->partitions[1].offset, "boot1");
    const std::string text = "-\t0x01\tfsbl1\tBinary\tnone\t0x0\n"
                             "P\t1g\tb\xC3\xB6\tFileSystem\tmmc0\tboot1\n";
    ASSERT_EQ(layout->textSize, 256 + text.size());
    EXPECT_EQ(std::string(layout->text + 256), text);
    unsigned sum = 0;
    for (const char c : text) {
        sum += static_cast<unsigned char>(c);
    }
    const QByteArray head(layout->text, 256);
    EXPECT_EQ(head, createDummyHeader(256, sum, static_cast<unsigned>(text.size())));
    EXPECT_EQ(head.left(4), "VDR2");
    EXPECT_EQ(head.mid(0x44, 12).toHex(),
              QByteArray::fromStdString({static_cast<char>(sum & 0xFF), static_cast<char>(sum >> 8),
                                         0, 0, 0, 0, 1, 0, static_cast<char>(text.size()), 0, 0, 0})
                  .toHex());
    EXPECT_EQ(head.mid(0x50).toHex(),
              QByteArray(0x14, '\0').toHex() + "01000000" + QByteArray(256 - 0x68, '\0').toHex());
}

TEST_F(Tsv, RefusalsAreWordForWord)
{
    const std::string row = "P\t1\tn\tt\ti\t0\tb";
    const std::string longest = "P\t1\tn\tt\ti\t0\t" + std::string(1023 - 12 - 1, 'b') + "\n";
    const QString count = " not conform: it may miss some columns or fields";
    const QString offset = " is not conform. Wrong Offset value : ";
    const struct {
        std::string text;
        QString message;  ///< empty: read
    } cases[] = {
        {row, ""},
        {"#\n", count},
        {"\n", count},
        {row + "\n\n", count},
        {row + "\tmore\n", count},
        {"P\t1\tn\t\tt\ti\tb\n", count},
        {"\tP\t1\tn\tt\ti\t0\n", ""},  // an empty first column can be written
        {"P\t1\tn\tt\ti\t0xZZ\tb\n", offset + "0xZZ"},
        {"P\t1\tn\tt\ti\t0x\tb\n", offset + "0x"},
        {"P\t1\tn\tt\ti\t0XZZ\tb\n", ""},
        {"P\t1\tn\tt\ti\t0x1FFFFFFFF\tb\n", ""},
        {longest, ""},
        {"P" + longest, count},  // its line feed comes as a line of its own
        {std::string("P\0\t1\tn\tt\ti\t0\tb", 15), count},
    };
    for (const auto &[text, message] : cases) {
        EXPECT_EQ(openAs<FileTSV>("a.tsv", text) != nullptr, message.isEmpty()) << text;
        const Messages expected = {{5, "Error: TSV file " + folder.path("a.tsv") + message}};
        EXPECT_EQ(log.take(), message.isEmpty() ? Messages() : expected) << text;
    }
}

}  // namespace
