#include "files/base/FileReader.h"
#include "files/base/KeyFile.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace
{

using files::ErrorCode;

TEST(FileReader, OpensRegularFilesOnlyAndNeverBlocks)
{
    const ScratchFolder folder;
    const QString fifo = folder.path("fifo");
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    const struct {
        QString path;
        ErrorCode expected;
    } rows[] = {
        {fifo, ErrorCode::NotRegular},
        {"/dev/zero", ErrorCode::NotRegular},
        {folder.path(""), ErrorCode::NotRegular},
        {folder.path("none"), ErrorCode::NotFound},
        {folder.file("file", "x") + "/below", ErrorCode::NotFound},
        {folder.path("file") + QChar(0) + "tail", ErrorCode::NotFound},
        {"", ErrorCode::NotFound},
    };
    for (const auto &row : rows) {
        QFile file;
        const auto opened = files::openForReading(file, row.path);
        ASSERT_FALSE(opened) << row.path.toStdString();
        EXPECT_EQ(opened.error().code, row.expected) << row.path.toStdString();
        EXPECT_FALSE(file.isOpen());
    }
}

TEST(FileReader, ReadsFromTheStartAndKeepsTheName)
{
    const ScratchFolder folder;
    QFile file;
    ASSERT_TRUE(files::openForReading(file, folder.file("é.bin", "0123456789")));
    EXPECT_EQ(file.fileName(), folder.path("é.bin"));
    ASSERT_TRUE(file.seek(4));
    const auto all = files::readAll(file);
    ASSERT_TRUE(all);
    EXPECT_EQ(std::string(all->span().begin(), all->span().end()), "0123456789");
    EXPECT_TRUE(files::readAll(file, 10));
    const auto limited = files::readAll(file, 9);
    ASSERT_FALSE(limited);
    EXPECT_EQ(limited.error().code, ErrorCode::TooLarge);
}

TEST(FileReader, AFileThatIsCutMeanwhileIsAFault)
{
    const ScratchFolder folder;
    const QString path = folder.file("a.bin", "0123456789");
    QFile file;
    ASSERT_TRUE(files::openForReading(file, path));
    ASSERT_TRUE(QFile::resize(path, 3));
    std::array<std::uint8_t, 4> four = {};
    const auto read = files::readExactly(file, four);
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error().code, ErrorCode::ReadFailed);
    EXPECT_EQ(read.error().text, "a.bin ends after 3 of 4 bytes");
}

TEST(KeyFile, TakesTheExpectedSizeOnly)
{
    const ScratchFolder folder;
    const QString path = folder.file("key.bin", "0123456789abcdef");
    const auto key = files::readKeyFile(path, 16);
    ASSERT_TRUE(key);
    EXPECT_EQ(std::string(key->span().begin(), key->span().end()), "0123456789abcdef");
    EXPECT_TRUE(files::readKeyFile(path, 0));
    const auto wrong = files::readKeyFile(path, 12);
    ASSERT_FALSE(wrong);
    EXPECT_EQ(wrong.error().code, ErrorCode::WrongSize);
    EXPECT_EQ(wrong.error().text, "the file holds 16 bytes, expected are 12");
}

TEST(KeyFile, TakesSixteenMebibytesAtMost)
{
    constexpr qint64 kMost = 16 << 20;
    const ScratchFolder folder;
    QFile sparse(folder.file("key.bin", "x"));
    ASSERT_TRUE(sparse.resize(kMost));
    EXPECT_TRUE(files::readKeyFile(sparse.fileName(), 0));
    ASSERT_TRUE(sparse.resize(kMost + 1));
    for (const std::uint64_t expected : {std::uint64_t{0}, std::uint64_t{kMost + 1}}) {
        const auto key = files::readKeyFile(sparse.fileName(), expected);
        ASSERT_FALSE(key);
        EXPECT_EQ(key.error().code, ErrorCode::WrongSize);
    }
}

}  // namespace
