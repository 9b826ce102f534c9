// Allocations of our own fail once, and fail from then on, each that answers with null and each of
// 4 KiB and more: the user gets a message or the same result as ever, and (under the sanitizers)
// nothing leaks.
#include "certif/Certificates.h"
#include "files/FileManager.h"
#include "files/PostProcessing.h"
#include "files/base/Ownership.h"
#include "machine/Writers.h"
#include "obk/Obkey.h"
#include "obk/SystemTools.h"
#include "preparation/ImageOpener.h"
#include "preparation/SfiRequestBuilder.h"
#include "report/DisplayMng.h"
#include "support/FullDisk.h"
#include "support/MessageLog.h"
#include "support/ScarceMemory.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <QFile>

#include <algorithm>
#include <cctype>
#include <functional>
#include <new>

namespace
{

const QString kDemo = QStringLiteral(DEMO_FOLDER "/");
const QString kTemplates = QStringLiteral(TEMPLATE_FOLDER "/");

/// What a run gave: empty when it was refused, which takes a message.
using Outcome = std::string;

struct Operation {
    const char *name;
    std::function<Outcome()> run;
};

void PrintTo(const Operation &operation, std::ostream *out)
{
    *out << operation.name;
}

Outcome openFile(const QString &path)
{
    FileType *file = nullptr;
    if (!FileManager().Open(path.toStdWString(), &file, 0xFF, 0, 0)) {
        return {};
    }
    const files::RecordOwner<FileType> owner(file);
    const ScarceMemory::Pause pause;
    std::string bytes = "read";
    for (const SegmentData &segment : static_cast<FileData *>(file)->segments) {
        bytes += std::to_string(segment.address) + ':';
        bytes.append(reinterpret_cast<const char *>(segment.data), segment.size);
    }
    return bytes;
}

/// The message of an operation that leaves it to its caller, as the programs' edges do.
void passOn()
{
    DisplayMng::getInstance().logMessage(5, L"Unable to allocate memory");
}

/// @param tells  the writer reports by itself
Outcome write(const char *name, bool tells)
{
    const ScratchFolder folder;
    folder.file("key.pem", kRootKey);
    bool isWritten = false;
    try {
        isWritten = writers().at(name)(folder.path(""));
    } catch (const std::bad_alloc &) {
        EXPECT_FALSE(tells);
    }
    if (!isWritten && !tells) {
        passOn();
    }
    const ScarceMemory::Pause pause;
    const std::string content = ScratchFolder::contents(folder.path("out"));
    EXPECT_EQ(content == "(none)", !isWritten) << "whole or not at all";
    return isWritten ? content : Outcome();
}

/// What comes of a copy of the demo's firmware that an operation of the file manager changes.
Outcome change(const char *file,
               const std::function<bool(FileManager &, const std::wstring &)> &run)
{
    std::optional<ScarceMemory::Pause> setUp(std::in_place);
    const ScratchFolder folder;
    const std::string before = ScratchFolder::contents(kDemo + file);
    const QString path = folder.file(file, before);
    FileManager manager;
    setUp.reset();
    const bool isDone = run(manager, path.toStdWString());
    const ScarceMemory::Pause pause;
    const std::string after = ScratchFolder::contents(path);
    EXPECT_TRUE(isDone || after == before) << "whole or not at all";
    return isDone ? after : Outcome();
}

Outcome sum(const char *file)
{
    return change(file, [](FileManager &manager, const std::wstring &path) {
        return manager.MultipleCRC(path, 0x08000000, 0x08040000, 1024, 0);
    });
}

Outcome addSegment()
{
    return change("firmware.elf", [](FileManager &, const std::wstring &path) {
        return AddSegToElf(QString::fromStdWString(path), QByteArray(6000, 'a'), 0x08100000,
                           ".more", 0);
    });
}

SfiRequestBuilder request()
{
    const ScarceMemory::Pause pause;
    SfiRequestBuilder made;
    made.hash = true;
    made.firmware(0x08000000, ramp(1, 3, 100000));
    made.firmware(0x08100000, ramp(2, 5, 9000));
    return made;
}

Outcome buildImage()
{
    SfiRequestBuilder inputs = request();
    const QByteArray image = inputs.build();
    const ScarceMemory::Pause pause;
    if (image.isEmpty()) {
        EXPECT_NE(inputs.onlyMessage(), L"");
        passOn();
    }
    return image.toStdString();
}

Outcome openImage()
{
    static const Bytes image = bytesOf(request().build());
    static const Bytes key = bytesOf(request().key);
    try {
        const auto opened = preparation::openImage(image, key);
        const ScarceMemory::Pause pause;
        if (!opened || !opened->authentic) {
            passOn();
            return {};
        }
        return std::to_string(opened->plain.at(0).size());
    } catch (const std::bad_alloc &) {
        passOn();
        return {};
    }
}

Outcome provision()
{
    try {
        Obkey obkey;
        if (!obkey.openTemplate(kTemplates + "memory-layout.xml")) {
            return {};
        }
        const auto product =
            obkey.generate(std::vector<std::optional<QString>>(obkey.model.items.size()), false,
                           obk::systemTools());
        return product ? std::string(product->bytes.begin(), product->bytes.end()) : Outcome();
    } catch (const std::bad_alloc &) {
        passOn();
        return {};
    }
}

std::vector<Operation> operations()
{
    std::vector<Operation> list = {{"build an image", buildImage},
                                   {"open an image", openImage},
                                   {"provision", provision},
                                   {"settings", [] { return write("settings", false); }}};
    for (const char *name : {"firmware.hex", "firmware.elf", "option-bytes.csv"}) {
        list.push_back({name, [name] { return openFile(kDemo + name); }});
    }
    for (const char *name : {"firmware.hex", "firmware.bin", "firmware.elf"}) {
        list.push_back({name, [name] { return sum(name); }});
    }
    list.push_back({"add a segment", addSegment});
    list.push_back({"two areas", [] {
                        static const ScratchFolder folder;
                        static const QString path =
                            folder.file("a.elf", ScratchFolder::contents(kDemo + "firmware.elf"));
                        static const bool hasTwo =
                            AddSegToElf(path, QByteArray(6000, 'a'), 0x08100000, ".more", 0);
                        return hasTwo ? openFile(path) : Outcome();
                    }});
    list.push_back({"large binary", [] {
                        static const ScratchFolder folder;
                        static const QString path = folder.file("a.bin", ramp(0, 1, 100000));
                        return openFile(path);
                    }});
    for (const char *name : {"hex", "srec", "binary", "private-key"}) {
        list.push_back({name, [name] { return write(name, true); }});
    }
    return list;
}

class Memory : public ::testing::TestWithParam<Operation>
{
};

TEST_P(Memory, MayFailAnywhere)
{
    constexpr std::size_t kSmallest = 1;
    constexpr std::size_t kMost = 300;
    const auto &run = GetParam().run;
    MessageLog log;
    const Outcome whole = run();
    ASSERT_FALSE(whole.empty());
    std::size_t points = 0;
    {
        const ScarceMemory plenty(0, false, kSmallest);
        ASSERT_EQ(run(), whole);
        points = ScarceMemory::count();
    }
    ASSERT_GT(points, 0U);
    log.take();
    for (std::size_t at = 1; at <= points; at += points / kMost + 1) {
        for (const bool forEver : {false, true}) {
            Outcome outcome;
            ASSERT_NO_THROW({
                const ScarceMemory scarce(at, forEver, kSmallest);
                outcome = run();
            }) << "allocation "
               << at;
            const auto messages = log.take();
            const bool isTold = std::any_of(messages.begin(), messages.end(),
                                            [](const Message &one) { return one.level == 5; });
            EXPECT_TRUE(outcome.empty() ? isTold : outcome == whole) << "allocation " << at;
        }
    }
}

// One file stays empty, in the next the first bytes fit.
TEST(FullDisk, LeavesAllOrNothingOfEachWriter)
{
    for (const auto &[name, writer] : writers()) {
        for (const rlim_t room : {0, 20}) {
            const ScratchFolder folder;
            folder.file("key.pem", kRootKey);
            const QString out = folder.file("out", std::string("old"));
            MessageLog log;
            const QByteArray home = qgetenv("HOME");
            qputenv("HOME", QFile::encodeName(folder.path("")));
            {
                const FullDisk disk(room);
                EXPECT_TRUE(name == "nonce" || !writer(folder.path(""))) << name;
            }
            qputenv("HOME", home);
            EXPECT_EQ(ScratchFolder::contents(out), "old") << name;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(OfEachOperation, Memory, ::testing::ValuesIn(operations()),
                         [](const auto &each) {
                             std::string name = std::to_string(each.index) + each.param.name;
                             std::replace_if(
                                 name.begin(), name.end(),
                                 [](char c) { return std::isalnum(c) == 0; }, '_');
                             return name;
                         });

}  // namespace
