#include "report/DisplayMng.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>

namespace
{

/// The sink with its start values, and what it handed on.
class Sink : public ::testing::Test
{
protected:
    Sink()
    {
        sink.displayCallback = [this](int level, const wchar_t *text) {
            seen << QString::number(level) + '|' + QString::fromWCharArray(text);
        };
    }
    ~Sink() override
    {
        sink.displayCallback = nullptr;
        sink.plainLevels = sink.forceLevel7 = false;
    }

    DisplayMng &sink = DisplayMng::getInstance();
    QStringList seen;
};

constexpr int kLevels[] = {0, 1, 2, 4, 5, 7, 10, 11, 99};

TEST_F(Sink, LevelsDecideThePrefix)
{
    for (const int level : kLevels) {
        sink.logMessage(level, L"%ls %08X", L"at", 0x1Fu);
    }
    EXPECT_EQ(seen,
              (QStringList{"0|at 0000001F", "1|at 0000001F", "2|at 0000001F",
                           "4|Warning: at 0000001F", "5|Error: at 0000001F", "7|at 0000001F",
                           "10|Warning: at 0000001F", "11|Error: at 0000001F", "99|at 0000001F"}));
}

TEST_F(Sink, ProgressIsToldUnlessItIsSwitchedOff)
{
    int started = 0;
    int told = 0;
    sink.initProgressBarCallback = [&started] { ++started; };
    sink.loadBarCallback = [&told](int current, int total) { told += 10 * current + total; };
    const auto tell = [this](bool off, int mode) {
        sink.noProgress = off;
        sink.progressMode = mode;
        sink.InitProgressBar();
        sink.loadBar(1, 2);
    };
    tell(false, 0);
    EXPECT_EQ(std::pair(started, told), std::pair(1, 12));
    tell(true, 0);
    EXPECT_EQ(std::pair(started, told), std::pair(1, 12));
    tell(true, 1);
    EXPECT_EQ(std::pair(started, told), std::pair(1, 24));
    sink.initProgressBarCallback = nullptr;
    sink.loadBarCallback = nullptr;
    tell(false, 0);
    EXPECT_EQ(std::pair(started, told), std::pair(1, 24));
}

TEST_F(Sink, PlainLevelsRewriteAndDropPrefixesButForTen)
{
    sink.plainLevels = true;
    for (const int level : kLevels) {
        sink.logMessage(level, L"x");
    }
    EXPECT_EQ(seen, (QStringList{"0|x", "1|x", "9|x", "0|x", "0|x", "7|x", "10|Warning: x", "0|x",
                                 "99|x"}));
}

TEST_F(Sink, ForcedLevelKeepsTheChosenPrefix)
{
    sink.forceLevel7 = true;
    sink.logMessage(5, L"x");
    sink.plainLevels = true;
    sink.logMessage(10, L"y");
    EXPECT_EQ(seen, (QStringList{"7|Error: x", "7|Warning: y"}));
}

TEST_F(Sink, LongTextIsCutAndItsPrefixKept)
{
    for (const int length : {30718, 30719, 30720, 40000}) {
        seen.clear();
        sink.logMessage(5, L"%ls", std::wstring(static_cast<std::size_t>(length), L'x').c_str());
        ASSERT_EQ(seen.size(), 1);
        EXPECT_EQ(seen[0], "5|Error: " + QString(qMin(length, 30719), 'x')) << length;
    }
}

TEST_F(Sink, ANewLogFileEmptiesItsTargetAndKeepsTheLinesOfTheOldOne)
{
    const QTemporaryDir folder;
    const auto path = [&folder](const char *name) {
        return folder.filePath(QString::fromUtf8(name));
    };
    const auto contents = [](const QString &name) {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("absent");
    };
    sink.initLogFile(path("a.log"));
    ASSERT_NE(sink.logFile, nullptr);
    EXPECT_NE(::fcntl(::fileno(sink.logFile), F_GETFD) & FD_CLOEXEC, 0) << "tools get it, too";
    std::fputs("10:20:30:456 first", sink.logFile);
    sink.initLogFile(path("\xC3\xA9.log"));
    EXPECT_EQ(contents(path("a.log")), "10:20:30:456 first");
    EXPECT_EQ(contents(path("\xC3\xA9.log")), "");
    sink.initLogFile(path("a.log"));
    EXPECT_EQ(contents(path("a.log")), "");
    sink.initLogFile(path("missing/x.log"));
    EXPECT_EQ(sink.logFile, nullptr);
}

// A wrong choice in the settings must not cost a key or a report of somebody else.
TEST_F(Sink, AFileThatIsNoLogIsLeftAsItIs)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("VDR32SPB_Trace.log");
    const auto write = [&path](const QByteArray &bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    };
    const auto contents = [&path] {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("absent");
    };
    for (const char *other : {"k", "10:20:30:456", "10:20:30.456 text", "2026-11-23 10:20:30 text",
                              "x10:20:30:456 text", "\n10:20:30:456 text"}) {
        write(other);
        seen.clear();
        sink.initLogFile(path);
        EXPECT_EQ(sink.logFile, nullptr) << other;
        EXPECT_EQ(contents(), other);
        ASSERT_EQ(seen.size(), 1) << other;
        EXPECT_TRUE(seen[0].startsWith("5|Error: The file " + path)) << seen[0].toStdString();
    }
    for (const char *log : {"", "10:20:30:456 text\nmore", "00:00:00:000 "}) {
        write(log);
        seen.clear();
        sink.initLogFile(path);
        EXPECT_NE(sink.logFile, nullptr) << log;
        EXPECT_EQ(contents(), "");
        EXPECT_TRUE(seen.isEmpty());
    }
    sink.initLogFile("/dev/null");
    EXPECT_NE(sink.logFile, nullptr);
}

}  // namespace
