#include "preparation/Preparation.h"

#include "files/FileManager.h"
#include "preparation/ImageOpener.h"
#include "preparation/KnownAnswers.h"
#include "preparation/SfiRequestBuilder.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <functional>

namespace
{

using preparation::OpenedImage;

SfiRequestBuilder knownAnswerRequest()
{
    SfiRequestBuilder request;
    request.nonce.clear();
    for (const std::uint8_t byte : ramp(0xA0, 3, 12)) {
        request.nonce.append(static_cast<char>(byte));
    }
    request.imageVersion = 7;
    request.profile = 0x484;
    request.ramSize = 128;
    request.obk(0x0FFD0100, 1, ramp(0x33, 7, 20));
    request.keyArea.segments = {request.segment(0, ramp(5, 11, 24))};
    request.keyArea.segmentCount = 1;
    request.firmware(0x08000210, ramp(1, 13, 150)).firmware(0x08000004, ramp(9, 5, 21));
    request.optionBytes.segments = {request.segment(0, ramp(0xF0, 1, 8))};
    return request;
}

TEST(KnownAnswer, Version1)
{
    EXPECT_EQ(knownAnswerRequest().build().toHex().toStdString(), kKnownVersion1);
}

TEST(KnownAnswer, Version2)
{
    SfiRequestBuilder request = knownAnswerRequest();
    request.hash = true;
    EXPECT_EQ(request.build().toHex().toStdString(), kKnownVersion2);
    EXPECT_TRUE(request.messages.empty());
}

/// The image's bytes stay alive beside what was opened.
struct Opened {
    Bytes bytes;
    OpenedImage image;
};

Opened open(SfiRequestBuilder &request)
{
    Opened opened{bytesOf(request.build()), {}};
    const Bytes key = bytesOf(request.key);
    auto image = preparation::openImage(opened.bytes, preparation::ByteView(key));
    EXPECT_TRUE(image.has_value()) << (image ? "" : image.error().text);
    if (image) {
        opened.image = std::move(*image);
        EXPECT_TRUE(opened.image.authentic);
    }
    return opened;
}

/// "F@08000000+20" for each area: letter, address, data size.
std::string outline(const OpenedImage &image)
{
    std::string text;
    for (const auto &area : image.parsed.areas) {
        char part[48];
        std::snprintf(part, sizeof part, "%c@%X+%X ", area.prefix.letter, area.prefix.address,
                      area.prefix.dataSize);
        text += part;
    }
    return text;
}

TEST(SfiPlan, KindsStandInTheirOrderAndInputsInTheirs)
{
    SfiRequestBuilder request;
    request.combined = true;
    request.ssfiArea(ramp(0, 1, 46), ramp(0, 1, 3));
    request.module(0x08100000, ramp(0, 1, 31), {1});            // 32 + 31 + 1: no padding
    request.module(0x08200004, ramp(0, 1, 1));                  // no licence: letter m
    request.smi(smiFile(0x08300010, 1));                        // padded from its odd address on
    request.obk(0x0FFD0200, 7, {1, 2}).obk(0x0FFD0100, 8, {});  // list order, not by address
    request.keyArea.segments = {request.segment(0, {1, 2, 3})};
    request.keyArea.segmentCount = 1;
    request.firmware(0x08002000, {1}).firmware(0x08001000, {}).firmware(0x08000000, {2, 3});
    request.external(0x90000000, {4}).external(0x70000000, {5});
    const Opened opened = open(request);
    EXPECT_EQ(outline(opened.image),
              "S@0+31 M@8100000+40 m@8200004+3C M@8300010+90 O@FFD0200+E O@FFD0100+C K@0+3 "
              "F@8000000+2 F@8002000+1 E@70000000+11 E@90000000+11 C@0+4 ");
}

TEST(SfiPlan, TrailerTakesTheNearestRecordBelowAndTheFirstOfEqualOnes)
{
    SfiRequestBuilder request;
    request.external(0x90000010, {1}).external(0x8FFFFFFF, {2});
    request.regions = {{0x90000011, 9, 9, 9}, {0x90000000, 1, 2, 3}, {0x90000000, 7, 7, 7}};
    const Opened opened = open(request);
    ASSERT_EQ(opened.image.plain.size(), 3U);
    EXPECT_EQ(opened.image.plain[0],
              (Bytes{2, 0xFF, 0xFF, 0xFF, 0x8F, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(opened.image.plain[1],
              (Bytes{1, 0x10, 0, 0, 0x90, 1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0}));
    const SfiRequestBuilder::Message notice = {
        7, L"External firmware segment 2 (0x8FFFFFFF) has no region record: region and key "
           L"address are 0"};
    EXPECT_EQ(request.messages, std::vector{notice});
}

TEST(SfiPlan, SmiFilesOfAnImageThatIsNotCombinedAreCountedInANotice)
{
    SfiRequestBuilder request;
    request.smi({1, 2, 3}).smi({});  // not even looked at
    EXPECT_EQ(outline(open(request).image), "C@0+4 ");
    ASSERT_EQ(request.messages.size(), 1U);
    EXPECT_EQ(request.messages[0].level, 7);
    EXPECT_TRUE(request.messages[0].text.starts_with(L"2 SMI files are not used"));
}

struct Cut {
    const char *name;
    unsigned int ram;
    unsigned int token;
    std::function<void(SfiRequestBuilder &)> fill;
    const char *outline;  ///< or the error's text
};

/// Keeps addresses of this run out of the test's name.
void PrintTo(const Cut &cut, std::ostream *out)
{
    *out << cut.name;
}

class RamCut : public ::testing::TestWithParam<Cut>
{
};

// Version 1: a header has 30 bytes, the option bytes area 34, a pause or resume 46.
TEST_P(RamCut, GivesTheseAreas)
{
    SfiRequestBuilder request;
    GetParam().fill(request);
    request.ramSize = GetParam().ram;
    request.token = GetParam().token;
    const QByteArray image = request.build();
    if (image.isEmpty()) {
        const std::wstring text = request.onlyMessage();
        EXPECT_EQ(std::string(text.begin(), text.end()), GetParam().outline);
        return;
    }
    EXPECT_EQ(outline(open(request).image), GetParam().outline);
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, RamCut,
    ::testing::Values(
        Cut{"ExactFitIsNotCut", 164, 0, [](auto &r) { r.firmware(0, Bytes(100)); },
            "F@0+64 C@0+4 "},
        // One byte less, and only the whole no longer fits: every area by itself still does.
        Cut{"AreasThatFitOneByOneStayWhole", 163, 0, [](auto &r) { r.firmware(0, Bytes(100)); },
            "F@0+64 C@0+4 "},
        Cut{"PieceThatFitsExactlyIsTheLast", 130, 0, [](auto &r) { r.firmware(0, Bytes(196)); },
            "F@0+60 F@60+64 C@0+4 "},
        Cut{"CutAtAddressesNotAtOffsets", 130, 0, [](auto &r) { r.firmware(0x1D, Bytes(150)); },
            "F@1D+63 F@80+33 C@0+4 "},
        Cut{"TrailerCountsInEachPiece", 146, 0, [](auto &r) { r.external(0x90000000, Bytes(101)); },
            "E@90000000+70 E@90000060+15 C@0+4 "},
        Cut{"SmallestRoom", 78, 0, [](auto &r) { r.external(0x90000001, Bytes(64)); },
            "E@90000001+2F E@90000020+30 E@90000040+11 C@0+4 "},
        Cut{"RoomTooSmall", 77, 0, [](auto &r) { r.firmware(0, Bytes(64)); },
            "Error: A RAM size of 77 bytes is too small, at least 78 are needed"},
        Cut{"TinyRamThatHoldsAllIsFine", 34, 0x20000000, [](auto &) {}, "C@0+4 "},
        Cut{"TokenWithASinglePart", 300, 0x20000000, [](auto &r) { r.firmware(0, Bytes(50)); },
            "F@0+32 C@0+4 "},
        // Room 216 - 92 = 124, of which a header takes 30.
        Cut{"TokenGroupsParts", 216, 0x20000000, [](auto &r) { r.firmware(0x10, Bytes(200)); },
            "F@10+50 P@20000000+10 R@20000000+10 F@60+40 P@20000000+10 R@20000000+10 F@A0+38 "
            "C@0+4 "},
        Cut{"PartIsFilledToTheLastByte", 216, 0x20000000,
            [](auto &r) {
                for (std::uint32_t i = 0; i < 4; ++i) {
                    r.firmware(i * 0x100, Bytes(32));
                }
            },
            "F@0+20 F@100+20 P@20000000+10 R@20000000+10 F@200+20 F@300+20 P@20000000+10 "
            "R@20000000+10 C@0+4 "},
        Cut{"TokenRoomTooSmall", 169, 4, [](auto &r) { r.firmware(0, Bytes(140)); },
            "Error: A RAM size of 169 bytes is too small, at least 170 are needed"},
        Cut{"KeyAreaThatFitsExactly", 100, 0,
            [](auto &r) {
                r.keyArea.segments = {r.segment(0, Bytes(70))};
                r.keyArea.segmentCount = 1;
            },
            "K@0+46 C@0+4 "},
        Cut{"KeyAreaCantBeCut", 100, 0,
            [](auto &r) {
                r.keyArea.segments = {r.segment(0, Bytes(71))};
                r.keyArea.segmentCount = 1;
            },
            "Error: The key area (71 bytes) can't be cut: with its header it has 101 bytes, the "
            "RAM has room for 100"}),
    [](const auto &cut) { return cut.param.name; });

struct Fault {
    const char *name;
    std::function<void(SfiRequestBuilder &)> fill;
    const char *text;
};

void PrintTo(const Fault &fault, std::ostream *out)
{
    *out << fault.name;
}

class SfiRefusal : public ::testing::TestWithParam<Fault>
{
};

TEST_P(SfiRefusal, IsOneErrorThatNamesTheFault)
{
    SfiRequestBuilder request;
    GetParam().fill(request);
    EXPECT_TRUE(request.build().isEmpty());
    const std::wstring text = request.onlyMessage();
    EXPECT_EQ(std::string(text.begin(), text.end()), std::string("Error: ") + GetParam().text);
    EXPECT_EQ(request.messages.at(0).level, 5);
}

INSTANTIATE_TEST_SUITE_P(
    Inputs, SfiRefusal,
    ::testing::Values(
        Fault{"Key", [](auto &r) { r.key.chop(1); },
              "The encryption key has 15 bytes, it must have 16"},
        Fault{"Nonce", [](auto &r) { r.nonce += 'x'; }, "The nonce has 13 bytes, it must have 12"},
        Fault{"Profile", [](auto &r) { r.profile = 0x485; }, "Unknown device profile 0x00000485"},
        Fault{"EmptyOptionBytes", [](auto &r) { r.optionBytes.segments[0].size = 0; },
              "The option bytes have 0 bytes, they must have a multiple of 4 and not be empty"},
        Fault{"OddOptionBytes", [](auto &r) { r.optionBytes.segments[0].size = 3; },
              "The option bytes have 3 bytes, they must have a multiple of 4 and not be empty"},
        Fault{"OptionBytesType", [](auto &r) { r.optionBytes.type = 0; },
              "Wrong file type 0 for option bytes, expected 6"},
        Fault{"FirmwareType", [](auto &r) { r.firmware(0, {1}).firmwareFile.type = 8; },
              "Wrong file type 8 for firmware, expected 0, 2, 3 or 4"},
        Fault{"SegmentCountBeyondTheList",
              [](auto &r) { r.firmware(0, {1}).firmwareFile.segmentCount = 2; },
              "The record of firmware counts 2 segments and holds 1"},
        Fault{"SegmentWithoutData",
              [](auto &r) { r.firmware(0, {1}).firmwareFile.segments[0].data = nullptr; },
              "Segment 1 of firmware has no data"},
        Fault{"ModuleWithoutData",
              [](auto &r) { r.module(0, {1}).modules.modules[0].module = nullptr; },
              "Module 1 of the modules list has no data"},
        Fault{"LicenceWithoutData",
              [](auto &r) { r.module(0, {1}, {2}).modules.modules[0].licence = nullptr; },
              "Module 1 of the modules list has no data"},
        Fault{"IdentifierWithoutText",
              [](auto &r) { r.module(0, {1}, {}, "ID").modules.modules[0].hsmFwId = nullptr; },
              "Module 1 of the modules list has no data"},
        Fault{"ModulesType", [](auto &r) { r.module(0, {1}).modules.type = 7; },
              "Wrong file type 7 for modules list, expected 12"},
        Fault{"ModuleCountBeyondTheList", [](auto &r) { r.module(0, {1}).modules.moduleCount = 2; },
              "The modules list counts 2 modules and holds 1"},
        Fault{"SmiOfTwoSegments",
              [](auto &r) {
                  r.combined = true;
                  r.smi(smiFile(0, 4)).smiFiles[0]->segments.push_back(r.segment(0, {1}));
                  r.smiFiles[0]->segmentCount = 2;
              },
              "SMI file 1 has 2 segments, it must have one"},
        Fault{"SsfiWithoutData", [](auto &r) { r.ssfiArea({1}, {2}).ssfi.areas[0].data = nullptr; },
              "The SSFI file's record holds no data"},
        Fault{"SsfiWithoutHeader",
              [](auto &r) { r.ssfiArea({1}, {2}).ssfi.areas[0].areaHeader = nullptr; },
              "The SSFI file's record holds no data"},
        Fault{"SsfiType", [](auto &r) { r.ssfiArea({1}, {}).ssfi.type = 7; },
              "Wrong file type 7 for SSFI file, expected 11"},
        Fault{"EmptySsfi", [](auto &r) { r.ssfiArea({}, {}); },
              "The SSFI file's record holds no data"},
        Fault{"NullObk", [](auto &r) { r.obkFiles.append(nullptr); },
              "There is no record for OBK file 1"},
        Fault{"Identifier", [](auto &r) { r.module(0, {1}, {}, "seventeen letters"); },
              "Module 1 has an identifier of 17 bytes, at most 16 are possible"},
        Fault{"SmiMagic",
              [](auto &r) {
                  r.combined = true;
                  r.smi(smiFile(0, 4)).smi(Bytes(128));
              },
              "SMI file 2 is not an SMI image"},
        Fault{"SmiCutShort",
              [](auto &r) {
                  r.combined = true;
                  r.smi({'S', 'M', 'I', 'M', 'A', 'G', 'I', 'C'});
              },
              "SMI file 1 is not an SMI image"},
        Fault{"SmiLength",
              [](auto &r) {
                  r.combined = true;
                  r.smi(smiFile(0, 33)).smiFiles[0]->segments[0].size -= 32;
              },
              "SMI file 1 has 128 bytes, its head says 160"},
        Fault{"SmiSizeThatWraps",
              [](auto &r) {
                  r.combined = true;
                  Bytes file = smiFile(0, 0);
                  std::fill_n(file.begin() + 16, 4, std::uint8_t{0xFF});
                  r.smi(file);
              },
              "SMI file 1 has 96 bytes, its head says 4294967392"}),
    [](const auto &fault) { return fault.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Placement, SfiRefusal,
    ::testing::Values(
        Fault{"EndAboveTheAddressSpace",
              [](auto &r) {
                  r.firmware(0xFFFFFFFF, {1, 2});
              },
              "The firmware segment 1 (0xFFFFFFFF, 2 bytes) ends above 0xFFFFFFFF"},
        Fault{"ModuleAboveTheAddressSpace",
              [](auto &r) {
                  r.module(0xFFFFFFFF, {1, 2});
              },
              "The module 1 (0xFFFFFFFF, 2 bytes) ends above 0xFFFFFFFF"},
        Fault{"EndAtTheTopBehindAnother",
              [](auto &r) { r.firmware(0xFFFFFFFF, {1}).firmware(0, {1}); },
              "The firmware segment 1 (0xFFFFFFFF, 1 bytes) ends at 0xFFFFFFFF behind another "
              "area of its kind, which readers take for an overlap"},
        Fault{"PieceAtTheTop", [](auto &r) { r.firmware(0xFFFFFF80, Bytes(128)).ramSize = 100; },
              "The firmware segment 1 (0xFFFFFFC0, 64 bytes) ends at 0xFFFFFFFF behind another "
              "area of its kind, which readers take for an overlap"},
        Fault{"FirmwareOverFirmware",
              [](auto &r) { r.firmware(0x10, Bytes(5)).firmware(0x14, {1}); },
              "Overlap between firmware segment 1 (0x00000010, 5 bytes) and firmware segment 2 "
              "(0x00000014, 1 bytes)"},
        Fault{"ExternalOverExternal",
              [](auto &r) {
                  r.external(0x10, Bytes(5)).external(0x0F, {1, 2}).regions.append(ExtBinInfo());
              },
              "Overlap between external firmware segment 2 (0x0000000F, 2 bytes) and external "
              "firmware segment 1 (0x00000010, 5 bytes)"},
        Fault{"ModuleOverFirmware", [](auto &r) { r.firmware(0x3F, {1}).module(0x20, Bytes(32)); },
              "Overlap between module 1 (0x00000020, 32 bytes) and firmware segment 1 "
              "(0x0000003F, 1 bytes)"},
        Fault{
            "SmiOverModule",
            [](auto &r) {
                r.combined = true;
                r.module(0x20, Bytes(32)).smi(smiFile(0x21, 1));
            },
            "Overlap between module 1 (0x00000020, 32 bytes) and SMI file 1 (0x00000021, 1 bytes)"},
        Fault{"LastFlashWord", [](auto &r) { r.module(0x20, Bytes(33)).firmware(0x5F, {1}); },
              "The firmware segment 1 (0x0000005F, 1 bytes) starts in the last Flash word of "
              "module 1 (0x00000020, 33 bytes)"}),
    [](const auto &fault) { return fault.param.name; });

TEST(SfiPlacement, WhatOnlySeemsToCollideIsBuilt)
{
    SfiRequestBuilder request;
    // Head and padding of a module lie outside its extent; firmware may touch it, if its last
    // Flash word is whole; external firmware is another memory; the top alone is no overlap.
    request.module(0x20, Bytes(32)).module(0xFFFFFFF0, Bytes(16));
    request.module(0x100, Bytes(33), {}, "sixteen letters!").firmware(0x140, Bytes(4));
    request.firmware(0x40, Bytes(4)).firmware(0x44, Bytes(4)).firmware(0x44, {});
    request.external(0xFFFFFFFE, Bytes(2));
    request.regions.append(ExtBinInfo());
    EXPECT_EQ(outline(open(request).image),
              "m@20+40 m@FFFFFFF0+30 M@100+60 F@40+4 F@44+4 F@140+4 E@FFFFFFFE+12 C@0+4 ");
    EXPECT_TRUE(request.messages.empty());
}

TEST(SfiPlan, AllAreasThatTheContainerCanCountAndNoMore)
{
    SfiRequestBuilder request;
    for (std::uint32_t i = 65534; i > 0; --i) {
        request.firmware(i * 32, {static_cast<std::uint8_t>(i)});
    }
    const Opened opened = open(request);
    EXPECT_EQ(opened.image.parsed.areas.size(), 65535U);
    EXPECT_EQ(opened.image.plain[65533], Bytes{0xFE});
    request.firmware(0, {1});
    EXPECT_TRUE(request.build().isEmpty());
    EXPECT_EQ(request.onlyMessage(), L"Error: The image needs 65536 areas or more, at most 65535 "
                                     L"are possible");
}

TEST(SfiPlan, MoreThanTwoGigabytesAreRefusedBeforeTheyAreRead)
{
    SfiRequestBuilder request;
    request.firmware(0, {1});
    request.firmwareFile.segments[0].size = 0x80000000;  // never touched, so it needn't be there
    EXPECT_TRUE(request.build().isEmpty());
    EXPECT_EQ(request.onlyMessage(), L"Error: The image would have 2147483740 bytes, at most "
                                     L"2147483647 are possible");
    request.ramSize = 100;  // pieces without end
    EXPECT_TRUE(request.build().isEmpty());
    EXPECT_TRUE(request.onlyMessage().starts_with(L"Error: The image needs 65536 areas"));
}

TEST(Sealing, EveryInputThatDiffersGivesAnotherKeyStream)
{
    const auto build = [](const std::function<void(SfiRequestBuilder &)> &change) {
        SfiRequestBuilder request;
        request.firmware(0x08000000, Bytes(64)).firmware(0x09000000, Bytes(64));
        change(request);
        return request.build();
    };
    const QByteArray base = build([](auto &) {});
    EXPECT_EQ(build([](auto &) {}), base);
    const std::function<void(SfiRequestBuilder &)> changes[] = {
        [](auto &r) {
            r.optionBytes.segments = {r.segment(0, {1, 2, 3, 5})};
        },
        [](auto &r) { r.nonce[11] = 'x'; },
        [](auto &r) { r.key[15] = 'x'; },
        [](auto &r) { r.imageVersion = 2; },
        [](auto &r) { r.profile = 0x484; },
        [](auto &r) { r.hash = true; },
        [](auto &r) { r.firmwareFile.segments[0].address += 4; },
    };
    for (const auto &change : changes) {
        const QByteArray other = build(change);
        ASSERT_FALSE(other.isEmpty());
        EXPECT_NE(other.mid(12, 16), base.mid(12, 16));
        const int header = other[8] == 1 ? 30 : 46;
        EXPECT_FALSE(base.contains(other.mid(28 + header, 8))) << "shares ciphertext";
    }
    EXPECT_NE(base.mid(58, 8), base.mid(58 + 64 + 30, 8)) << "two areas share ciphertext";
}

struct Device {
    const char *name;
    unsigned int ram;
    unsigned int token;
    unsigned int profile;
    bool hash;
};

void PrintTo(const Device &device, std::ostream *out)
{
    *out << device.name;
}

class DeviceRam : public ::testing::TestWithParam<Device>
{
};

TEST_P(DeviceRam, FirmwareOfAnySizeComesBackWholeInPartsThatFit)
{
    const Device &device = GetParam();
    const std::size_t base = device.ram == 0 ? 0x1000 : device.ram;
    for (const std::size_t size : {base / 2, base, base * 3}) {
        SfiRequestBuilder request;
        request.ramSize = device.ram;
        request.token = device.token;
        request.profile = device.profile;
        request.hash = device.hash;
        const Bytes firmware = ramp(1, 7, size);
        request.firmware(0x08000008, firmware);
        const Opened opened = open(request);
        Bytes joined;
        std::uint64_t part = 0;
        for (std::size_t i = 0; i < opened.image.plain.size(); ++i) {
            const auto &area = opened.image.parsed.areas[i];
            part = area.prefix.letter == 'R' ? 0 : part;
            part += area.header.size() + area.data.size();
            EXPECT_TRUE(device.token == 0 || part <= device.ram);
            EXPECT_TRUE(device.ram == 0 || area.header.size() + area.data.size() <= device.ram);
            if (area.prefix.letter == 'F') {
                EXPECT_EQ(area.prefix.address, 0x08000008 + joined.size());
                joined.insert(joined.end(), opened.image.plain[i].begin(),
                              opened.image.plain[i].end());
            }
        }
        EXPECT_EQ(joined, firmware);
        QTemporaryDir folder;
        QFile file(folder.filePath("image.sfi"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(request.build());
        file.close();
        FileType *record = nullptr;
        EXPECT_TRUE(FileManager().Open(file.fileName().toStdWString(), &record, 255, 0, 0));
        files::releaseRecord(record);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Presets, DeviceRam,
    ::testing::Values(
        Device{"H7", 0x1E000, 0x20000000, 0xFF, true}, Device{"U575", 0x55500, 0, 0xFF, true},
        Device{"U59x", 0xA5500, 0, 0xFF, false}, Device{"U535", 0x11500, 0, 0xFF, false},
        Device{"L5", 0x19000, 0, 0xFF, true}, Device{"WL", 0x2000, 0, 0xFF, true},
        Device{"L4", 0, 0, 0xFF, false}, Device{"WBA", 0xFED0, 0, 0xFF, true},
        Device{"H5", 0x19000, 0, 0x484, true}, Device{"SfixU575", 0x4B000, 0, 0xFF, false},
        Device{"SfixU59x", 0x55500, 0, 0xFF, false}, Device{"SfixL5", 0x19000, 0, 0xFF, false},
        Device{"SfixWL", 0x2000, 0, 0xFF, false}),
    [](const auto &device) { return device.param.name; });

}  // namespace
