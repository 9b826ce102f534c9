#include "files/base/SafeWriter.h"
#include "support/FullDisk.h"
#include "support/ScratchFolder.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using files::ErrorCode;
using files::SafeWriter;
using files::Secrecy;

std::span<const std::uint8_t> bytes(std::string_view text)
{
    return {reinterpret_cast<const std::uint8_t *>(text.data()), text.size()};
}

unsigned modeOf(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

class SafeWriterTest : public ::testing::Test
{
protected:
    SafeWriterTest() : m_oldMask(::umask(022)) {}
    ~SafeWriterTest() override { ::umask(m_oldMask); }

    QStringList everything() const
    {
        return QDir(folder.path(""))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    ScratchFolder folder;

private:
    mode_t m_oldMask;
};

TEST_F(SafeWriterTest, ShowsManyWritesAtOnceAndOnlyAfterCommit)
{
    const QString path = folder.file("out.bin", "old");
    auto writer = SafeWriter::open(path);
    ASSERT_TRUE(writer);
    EXPECT_TRUE(writer->write(bytes("one ")));
    EXPECT_TRUE(writer->write({}));
    EXPECT_TRUE(writer->write(bytes("two")));
    EXPECT_EQ(writer->written(), 7U);
    EXPECT_EQ(ScratchFolder::contents(path), "old");
    EXPECT_TRUE(writer->commit());
    EXPECT_EQ(ScratchFolder::contents(path), "one two");
    EXPECT_FALSE(writer->commit()) << "a second commit has nothing to put in place";
    EXPECT_EQ(everything(), QStringList{"out.bin"});
}

TEST_F(SafeWriterTest, DroppedWithoutCommitLeavesNothing)
{
    const QString path = folder.file("out.bin", "old");
    for (const QString &name : {path, folder.path("new.bin")}) {
        auto writer = SafeWriter::open(name);
        ASSERT_TRUE(writer && writer->write(bytes("half")));
    }
    EXPECT_EQ(ScratchFolder::contents(path), "old");
    EXPECT_EQ(everything(), QStringList{"out.bin"});
}

TEST_F(SafeWriterTest, AFileTooLargeForTheDiskKeepsTheOldOne)
{
    const QString path = folder.file("out.bin", "old");
    const std::string large(10000, 'x');
    {
        const FullDisk full(8192);
        auto writer = SafeWriter::open(path);
        ASSERT_TRUE(writer && writer->write(bytes("small")));
        const auto written = writer->write(bytes(large));
        ASSERT_FALSE(written);
        EXPECT_EQ(written.error().code, ErrorCode::WriteFailed);
        EXPECT_EQ(everything(), QStringList{"out.bin"}) << "the failure may be shown for minutes";
        EXPECT_FALSE(writer->commit()) << "part of the content is missing";
        const auto whole = files::writeWhole(folder.path("new.bin"), bytes(large));
        ASSERT_FALSE(whole);
        EXPECT_NE(whole.error().text.find(std::strerror(EFBIG)), std::string::npos)
            << whole.error().text;
    }
    EXPECT_EQ(ScratchFolder::contents(path), "old");
    EXPECT_EQ(everything(), QStringList{"out.bin"});
}

TEST_F(SafeWriterTest, ContentIsSyncedThenRenamedThenTheFolderIsSynced)
{
    const QString path = folder.file("out.bin", "old");
    const char *const steps[] = {"sync", "rename", "folder"};
    for (int failing = 0; failing <= 3; ++failing) {  // 3: none fails
        QStringList called;
        const auto step = [&](const char *name) {
            called << name;
            errno = EIO;
            return failing < 3 && name == steps[failing] ? -1 : 0;
        };
        const auto sync = [&](int handle) {
            struct stat status = {};
            return ::fstat(handle, &status) == 0 && S_ISDIR(status.st_mode) ? step(steps[2])
                                                                            : step(steps[0]);
        };
        const auto rename = [&](const char *from, const char *to) {
            return step(steps[1]) == 0 ? ::rename(from, to) : -1;
        };
        auto writer = SafeWriter::open(path, Secrecy::Public, {sync, rename});
        ASSERT_TRUE(writer && writer->write(bytes("new")));
        const auto committed = writer->commit();
        // A folder that can't be synced is no failure: the content is in place.
        EXPECT_EQ(committed.has_value(), failing >= 2);
        EXPECT_EQ(called, QStringList({"sync", "rename", "folder"}).mid(0, failing + 1));
        EXPECT_EQ(ScratchFolder::contents(path), failing >= 2 ? "new" : "old");
        EXPECT_EQ(everything(), QStringList{"out.bin"});
    }
}

TEST_F(SafeWriterTest, ModesFollowTheOldFileTheUmaskOrTheSecret)
{
    const struct {
        const char *name;
        unsigned oldMode;  ///< 0: no old file
        Secrecy secrecy;
        unsigned umask;
        unsigned growing;  ///< while the bytes are written
        unsigned expected;
    } rows[] = {
        {"new public", 0, Secrecy::Public, 027, 0640, 0640},
        {"new public, open umask", 0, Secrecy::Public, 0, 0666, 0666},
        {"old public", 0606, Secrecy::Public, 077, 0606, 0606},
        {"old executable", 0755, Secrecy::Public, 022, 0755, 0755},
        {"new secret", 0, Secrecy::Secret, 0, 0600, 0600},
        {"secret over a readable file", 0644, Secrecy::Secret, 0, 0600, 0600},
        {"unlocked secret", 0666, Secrecy::SecretUnlessLocked, 0, 0600, 0600},
        {"secret over a read-only file", 0400, Secrecy::Secret, 0, 0600, 0600},
    };
    for (const auto &row : rows) {
        const ScratchFolder own;
        const QString path = own.path("out");
        if (row.oldMode != 0) {
            own.file("out", "old");
            ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), row.oldMode), 0);
        }
        ::umask(row.umask);
        auto writer = SafeWriter::open(path, row.secrecy);
        ::umask(022);
        ASSERT_TRUE(writer) << row.name;
        const QStringList hidden =
            QDir(own.path("")).entryList({".spb-*"}, QDir::Files | QDir::Hidden);
        ASSERT_EQ(hidden.size(), 1) << row.name;
        EXPECT_EQ(modeOf(own.path(hidden[0])), row.growing) << row.name;
        ASSERT_TRUE(writer->write(bytes("new")) && writer->commit()) << row.name;
        EXPECT_EQ(modeOf(path), row.expected) << row.name;
        EXPECT_EQ(ScratchFolder::contents(path), "new") << row.name;
    }
}

TEST_F(SafeWriterTest, FollowsLinksAndKeepsThem)
{
    ASSERT_TRUE(QDir(folder.path("")).mkdir("inner"));
    const QString target = folder.file("inner/target", "old");
    const auto link = [this](const char *to, const char *name) {
        return ::symlink(to, QFile::encodeName(folder.path(name)).constData()) == 0;
    };
    // The relative links count from their own folder, not from the working directory.
    ASSERT_TRUE(link("inner/hop", "to-old") && link("target", "inner/hop") &&
                link("inner/fresh", "dangling") && link("loop", "loop"));
    EXPECT_TRUE(files::writeWhole(folder.path("to-old"), bytes("new")));
    EXPECT_TRUE(files::writeWhole(folder.path("dangling"), bytes("made")));
    EXPECT_EQ(ScratchFolder::contents(target), "new");
    EXPECT_EQ(ScratchFolder::contents(folder.path("inner/fresh")), "made");
    EXPECT_TRUE(QFileInfo(folder.path("to-old")).isSymLink());
    EXPECT_TRUE(QFileInfo(folder.path("inner/hop")).isSymLink());
    EXPECT_TRUE(QFileInfo(folder.path("dangling")).isSymLink());
    const auto loop = files::writeWhole(folder.path("loop"), bytes("new"));
    ASSERT_FALSE(loop);
    EXPECT_EQ(loop.error().code, ErrorCode::CannotOpen);
}

TEST_F(SafeWriterTest, RefusesTargetsThatCannotBeOpenedForWriting)
{
    // A running program can't be written to by anyone, root included.
    const QString ownProgram = QFileInfo("/proc/self/exe").canonicalFilePath();
    const QString targets[] = {folder.path(""),
                               folder.path("none/out"),
                               "/dev/full",
                               "",
                               folder.path(QString("cut") + QChar(0) + "off"),
                               ownProgram};
    for (const QString &target : targets) {
        for (const auto secrecy : {Secrecy::Public, Secrecy::SecretUnlessLocked}) {
            const auto writer = SafeWriter::open(target, secrecy);
            ASSERT_FALSE(writer) << target.toStdString();
            EXPECT_EQ(writer.error().code, ErrorCode::CannotOpen) << target.toStdString();
        }
    }
    EXPECT_EQ(everything(), QStringList{});
}

TEST_F(SafeWriterTest, TakesNamesAsLongAsTheSystemAllows)
{
    const QString path = folder.path(QString(255, 'n'));
    EXPECT_TRUE(files::writeWhole(path, bytes("new")));
    EXPECT_TRUE(files::writeWhole(path, bytes("newer")));
    EXPECT_EQ(ScratchFolder::contents(path), "newer");
}

}  // namespace
