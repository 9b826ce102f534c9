#include "files/OpenFixture.h"
#include "files/containers/SmiReader.h"
#include "support/ScratchFolder.h"

#include "support/ImageBytes.h"
#include <QFile>

namespace
{

class Smu : public OpenFixture
{
protected:
    /// Head and body of 5 bytes; blocks follow.
    static ImageBytes image(std::uint16_t protectedSize, std::uint32_t flags = 0)
    {
        ImageBytes bytes;
        bytes.u32le(0x96F3B83D).u32le(0x08100000).u16le(40).u16le(protectedSize).u32le(5);
        bytes.u32le(flags).u8(1).u8(2).u16le(0x0304).u32le(0x05060708);
        return bytes.fill(40 - 28, 0xFF).text("image");
    }
    static ImageBytes &value(ImageBytes &bytes, std::uint16_t type, std::string_view text)
    {
        return bytes.u16le(type).u16le(static_cast<std::uint32_t>(text.size())).text(text);
    }

    /// "SHA256=abc " for each value of both lists, a bar between them.
    std::string outline(const ImageBytes &bytes)
    {
        record = openAs<FileSMU>("a.smu", bytes.done());
        std::string text;
        for (const auto *list : {&record->protectedTlvs, &record->tlvs}) {
            for (const TLV &entry : *list) {
                text += std::string(entry.name) + "=" +
                        std::string(reinterpret_cast<char *>(entry.value), entry.length) + " ";
            }
            text += list == &record->protectedTlvs ? "| " : "";
        }
        return text;
    }

    files::RecordOwner<FileSMU> record;
};

TEST_F(Smu, HeadBlocksAndNamesAreRead)
{
    ImageBytes bytes = image(4 + 7 + 6, 0x40000000);
    bytes.u16le(0x6908).u16le(4 + 7 + 6);
    value(bytes, 0x50, "abc");
    value(bytes, 0xA0, "mi");
    bytes.u16le(0x6907).u16le(4 + 5 + 4 + 6);
    value(bytes, 0x7777, "x");  // the name slot still holds the protected block's last name
    value(bytes, 0x3A0, "");
    value(bytes, 0x10, "yz");
    EXPECT_EQ(outline(bytes), "SEC_CNT=abc MODULE_INFO=mi | MODULE_INFO=x AUTH_TAG= SHA256=yz ");
    EXPECT_TRUE(log.all().empty());
    EXPECT_EQ(record->type, file_type::kSmu);
    EXPECT_EQ(record->loadAddress, 0x08100000U);
    EXPECT_EQ(record->imageSize, 5U);
    EXPECT_EQ(record->versionMinor, 2);
    EXPECT_EQ(record->versionRevision, 0x0304);
    EXPECT_EQ(record->versionBuild, 0x05060708U);
    EXPECT_EQ(record->moduleFlag, 1);
    ASSERT_EQ(record->segmentCount, 1U);
    EXPECT_EQ(
        std::vector(record->segments[0].data, record->segments[0].data + record->segments[0].size),
        bytes.done());
}

TEST_F(Smu, FirstBlockIsReadAsProtectedWhateverItIs)
{
    ImageBytes bytes = image(0);
    bytes.u16le(0x6907).u16le(4 + 5);
    value(bytes, 0x9999, "p");
    EXPECT_EQ(outline(bytes), "MODULE_INFO=p | ");
    EXPECT_TRUE(log.all().empty());
    bytes.forge(10, 9, 2);
    EXPECT_EQ(outline(bytes), "MODULE_INFO=p | ");
    EXPECT_EQ(log.all(),
              (Messages{{5, "Error: WARNING TLV protected not present even though ptlvs !=0 ."}}));
}

TEST_F(Smu, LyingSizesEndTheWalk)
{
    // The block ends inside a value; the next info pair stands behind that value.
    ImageBytes inside = image(7);
    inside.u16le(0x6908).u16le(4 + 3);
    value(inside, 0x10, "whole").u16le(0x6907).u16le(4 + 5);
    value(inside, 0x01, "k");
    EXPECT_EQ(outline(inside), "SHA256=whole | KEYHASH=k ");
    // The file ends inside a value, inside a value's head, and before the blocks.
    ImageBytes cut = image(0);
    cut.u16le(0x6907).u16le(0xFFFF);
    value(cut, 0x10, "a").u16le(0x22).u16le(0xFFFF).text("short");
    EXPECT_EQ(outline(cut), "SHA256=a | ");
    EXPECT_EQ(outline(cut.cutTo(45 + 4 + 5 + 3)), "SHA256=a | ");
    EXPECT_EQ(outline(image(0).forge(12, 0xFFFFFFFF)), "| ");
    EXPECT_EQ(outline(ImageBytes().text("tiny.")), "| ");
    EXPECT_EQ(record->loadAddress, 0U);
    EXPECT_TRUE(log.all().empty());
}

/// A file that loses its last byte between the question for its size and the reading.
class ShrinkingFile : public QFile
{
public:
    using QFile::QFile;
    [[nodiscard]] qint64 size() const override { return QFile::size() + 1; }
};

TEST(Smi, AFileThatIsCutMeanwhileIsToldInItsOwnWords)
{
    const ScratchFolder folder;
    ShrinkingFile file(folder.file("a.smi", "SMIMAGIC and more"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    const auto read = files::readSmi(file);
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error().text, "Error while reading SMI data segment");
}

}  // namespace
