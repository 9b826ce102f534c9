// Things that are no files, files that lie about their size, and files that cost as much as they
// can: every reader behind FileManager, and every companion, ends soon and says why.
#include "files/FileManager.h"
#include "process/RunTool.h"
#include "report/DisplayMng.h"
#include "support/ElfBytes.h"
#include "support/HexLines.h"
#include "support/ScratchFolder.h"
#include "support/SfiBytes.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>

#include <atomic>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace
{

using Bytes = std::vector<std::uint8_t>;

constexpr const char *kEndings[] = {".bin",  ".ssp",  ".smi", ".smu",  ".hex",  ".srec", ".s19",
                                    ".elf",  ".axf",  ".o",   ".tsv",  ".csv",  ".kcsv", ".sfi",
                                    ".sfix", ".ssfi", ".obk", ".mcsv", ".other"};

struct Opened {
    bool isTaken = false;
    int errors = 0;  ///< messages of level 5
};

/// As the window opens it; what is read is dropped again.
Opened open(const QString &path)
{
    Opened opened;
    DisplayMng::getInstance().displayCallback = [&opened](int level, const wchar_t *) {
        opened.errors += level == 5 ? 1 : 0;
    };
    FileType *record = nullptr;
    opened.isTaken = FileManager().Open(path.toStdWString(), &record, 0xFF, 0, 0);
    DisplayMng::getInstance().displayCallback = nullptr;
    files::releaseRecord(record);
    return opened;
}

/// What a child process came to that did one thing.
struct Cost {
    int status = -1;
    double seconds = 0;
    long mebibytes = 0;  ///< that it had more than before
};

/// @param action  its exit status
Cost costOf(const std::function<int()> &action)
{
    constexpr unsigned kMostSeconds = 20;
    QElapsedTimer timer;
    timer.start();
    const pid_t child = ::fork();
    if (child == 0) {
        ::alarm(kMostSeconds);
        struct rusage before = {};
        ::getrusage(RUSAGE_SELF, &before);
        const int status = action();
        struct rusage after = {};
        ::getrusage(RUSAGE_SELF, &after);
        // A status has 8 bits: in units of 4 MiB, the lowest bit is the action's.
        const long grown = std::min((after.ru_maxrss - before.ru_maxrss) / 4096, 126L);
        ::_exit(static_cast<int>(grown * 2) | status);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    Cost cost;
    cost.seconds = static_cast<double>(timer.elapsed()) / 1000;
    if (WIFEXITED(status)) {
        cost.status = WEXITSTATUS(status) & 1;
        cost.mebibytes = WEXITSTATUS(status) / 2 * 4;
    }
    return cost;
}

/// Everything under a file's name that isn't a plain file with bytes.
std::vector<QString> oddThings(const ScratchFolder &folder, const QString &ending)
{
    const QString fifo = folder.path("fifo" + ending);
    ::mkfifo(fifo.toUtf8().constData(), 0600);
    const QString device = folder.path("zero" + ending);
    QFile::link("/dev/zero", device);
    const QString process = folder.path("status" + ending);
    QFile::link("/proc/self/status", process);
    const QString inside = folder.path("folder" + ending);
    QDir().mkpath(inside);
    return {fifo, device, process, inside, folder.path("gone" + ending)};
}

TEST(OddFiles, AreRefusedWithOneMessageByEveryReader)
{
    const ScratchFolder folder;
    for (const char *ending : kEndings) {
        for (const QString &path : oddThings(folder, ending)) {
            SCOPED_TRACE(path.toStdString());
            const Cost cost = costOf([&path] {
                const Opened opened = open(path);
                return opened.isTaken || opened.errors != 1 ? 1 : 0;
            });
            EXPECT_EQ(cost.status, 0);
            EXPECT_LT(cost.seconds, 1);
        }
    }
}

TEST(OddFiles, ASparseFileOfGigabytesIsRefusedInLittleMemory)
{
    const ScratchFolder folder;
    for (const char *ending : kEndings) {
        SCOPED_TRACE(ending);
        // These share a reader with .hex, which reads gigabytes of zeros as fast as the system
        // hands them out.
        if (std::string_view(ending) == ".srec" || std::string_view(ending) == ".s19") {
            continue;
        }
        const QString path = folder.file(QString("big") + ending, "x");
        ASSERT_EQ(::truncate(path.toUtf8().constData(), off_t{5} << 30), 0);
        const Cost cost = costOf([&path] {
            const Opened opened = open(path);
            return opened.isTaken || opened.errors == 0 ? 1 : 0;
        });
        EXPECT_EQ(cost.status, 0);
        EXPECT_LT(cost.seconds, 60);
        EXPECT_LE(cost.mebibytes, 64);
    }
}

TEST(OddFiles, AFileThatShrinksWhileItIsReadIsNeverReadPastItsEnd)
{
    const ScratchFolder folder;
    constexpr int kTimes = 15;
    const Bytes text(400'000, ',');
    for (const char *ending : kEndings) {
        const QString path = folder.file(QString("shrinks") + ending, text);
        std::atomic<bool> isOver = false;
        std::thread other([&path, &isOver] {
            const QByteArray name = path.toUtf8();
            while (!isOver) {
                EXPECT_EQ(::truncate(name.constData(), 10), 0);
                EXPECT_EQ(::truncate(name.constData(), 400'000), 0);
            }
        });
        for (int i = 0; i < kTimes; ++i) {
            const Opened opened = open(path);
            // A module image without its values is told, and taken.
            EXPECT_TRUE(opened.isTaken || opened.errors == 1) << ending;
        }
        isOver = true;
        other.join();
    }
}

Bytes repeated(const std::string &part, std::size_t size)
{
    Bytes bytes;
    while (bytes.size() + part.size() <= size) {
        bytes.insert(bytes.end(), part.begin(), part.end());
    }
    return bytes;
}

/// Records in descending order, each a segment of its own.
Bytes scatteredHex(std::size_t size)
{
    std::string text = ":020000040800F2\n";
    for (unsigned i = 0; text.size() < size; ++i) {
        text +=
            i % 1024 == 0 ? intelLine(4, 0, {8, static_cast<std::uint8_t>(255 - i / 1024)}) : "";
        text += intelLine(0, 0xFFC0 - i % 1024 * 64, {1});
    }
    return {text.begin(), text.end()};
}

Bytes elfOfLoads(std::size_t size)
{
    ElfPlan plan;
    plan.segments.assign(std::min<std::size_t>(size / 33, 65'000), {1, 0x100, {1}});
    return elfBytes(plan);
}

Bytes manyAreas(std::size_t size)
{
    return sfiBytes(std::vector<AreaBytes>(std::min<std::size_t>(size / 30, 65'535), {'F', 0, 0}))
        .done();
}

struct Shape {
    const char *name;
    const char *ending;
    Bytes (*make)(std::size_t size);
};

template <char... Letters>
Bytes filled(std::size_t size)
{
    return repeated({Letters...}, size);
}

class Costly : public ::testing::TestWithParam<Shape>
{
};

/// At most a second and 8 MiB for each MiB, and 64 MiB in all.
TEST_P(Costly, StaysWithinItsBounds)
{
    constexpr std::size_t kSize = std::size_t{1} << 20;
    const ScratchFolder folder;
    const Bytes bytes = GetParam().make(kSize);
    const QString path = folder.file(QString("a") + GetParam().ending, bytes);
    const Cost cost = costOf([&path] {
        open(path);
        return 0;
    });
    EXPECT_EQ(cost.status, 0);
#if defined(__SANITIZE_ADDRESS__)
    EXPECT_LT(cost.seconds, 5);
#else
    EXPECT_LT(cost.seconds, 2);  // unoptimised, beside others
    EXPECT_LE(cost.mebibytes, 64 + 8);
#endif
}

INSTANTIATE_TEST_SUITE_P(
    Files, Costly,
    ::testing::Values(
        Shape{"HexMarks", ".hex", &filled<':', '\n'>}, Shape{"HexOneLine", ".hex", &filled<':'>},
        Shape{"HexScattered", ".hex", &scatteredHex},
        Shape{"SrecHeads", ".srec", &filled<'S', '0', '0', '1', 'F', 'E', '\n'>},
        Shape{"CsvCommas", ".csv", &filled<','>},
        Shape{"CsvPairs", ".csv", &filled<'A', ',', '1', '\n'>},
        Shape{"CsvLines", ".csv", &filled<'\n'>}, Shape{"KcsvNumbers", ".kcsv", &filled<'1', ','>},
        Shape{"TsvTabs", ".tsv", &filled<'\t'>},
        Shape{"TsvRows", ".tsv",
              &filled<'a', '\t', '1', '\t', 'b', '\t', 'c', '\t', 'd', '\t', 'e', '\t', 'f', '\n'>},
        Shape{"McsvCommas", ".mcsv", &filled<','>},
        Shape{"McsvRows", ".mcsv", &filled<'a', ',', 'b', ',', '1', '\n'>},
        Shape{"ElfLoads", ".elf", &elfOfLoads}, Shape{"SfiAreas", ".sfi", &manyAreas},
        Shape{"SmuZeros", ".smu", &filled<'\0'>},
        Shape{"SmuValues", ".smu", &filled<'\7', 'i', '\0', '\0'>},
        Shape{"ObkZeros", ".obk", &filled<'\0'>}),
    [](const auto &shape) { return shape.param.name; });

/// "@" is the odd thing.
constexpr const char *kCommands[][6] = {
    {SPB_UNPACK, "@"},
    {SPB_UNPACK, "--key", "@", "gone"},
    {SPB_ELF, "crc", "--flash-start=0", "--flash-end=16", "--slice=4", "@"},
    {SPB_ELF, "add-segment", "--address=0", "--data=@", "--name=a", "gone.elf"},
    {SPB_ELF, "merge-secure", "--secure=@", "--header=@", "@"},
    {IMGTOOL, "getpub", "-k", "@"},
    {IMGTOOL, "verify", "-k", "@", "@"},
    {IMGTOOL, "dumpinfo", "@"},
    {PSA_ADAC, "sign", "@"},
    {PSA_ADAC, "show", "@"},
    {PSA_ADAC, "chain", "-o", "/dev/null/a", "@"},
};

TEST(OddFiles, EveryCompanionRefusesThemInALine)
{
    const ScratchFolder folder;
    std::vector<QString> things = oddThings(folder, ".elf");
    things.push_back(folder.file("big.elf", "x"));
    ASSERT_EQ(::truncate(things.back().toUtf8().constData(), off_t{5} << 30), 0);
    for (const QString &thing : things) {
        for (const auto &command : kCommands) {
            QStringList arguments;
            for (const char *word : command) {
                if (word != nullptr) {
                    arguments.append(QString(word).replace("@", thing));
                }
            }
            SCOPED_TRACE(arguments.join(' ').toStdString());
            const auto outcome =
                process::runTool(arguments.takeFirst(), arguments, {.limitMs = 10'000});
            EXPECT_EQ(outcome.ending, process::Ending::Exited);
            EXPECT_TRUE(outcome.exitCode >= 1 && outcome.exitCode <= 4) << outcome.exitCode;
            EXPECT_GT(outcome.output.size(), 5);
        }
    }
}

}  // namespace
