#include "files/OpenFixture.h"

#include <QDir>

namespace
{

/// A folder with the files that the lists of these tests name.
class Modules : public OpenFixture
{
protected:
    Modules() : m_oldFolder(QDir::currentPath())
    {
        folder.file("m.bin", "module");
        folder.file("M.SMU", "signed");
        folder.file("l.lic", "licence");
        folder.file("A.LIC", "upper");
        folder.file("bad.hex", ":00000001FE\n");
        folder.file("holes.hex", ":020000040800F2\n:020000001122CB\n:01003000339C\n");
        folder.file("wider.hex", ":0100000011EE\n:020000042000DA\n:0100000022DD\n");
        QDir().mkpath(folder.path("x.bin"));
        QDir::setCurrent("/");
    }
    ~Modules() override { QDir::setCurrent(m_oldFolder); }

    files::RecordOwner<FileMCSV> read(const std::string &list)
    {
        return openAs<FileMCSV>("list.mcsv", list);
    }

private:
    QString m_oldFolder;
};

std::string text(const std::uint8_t *bytes, std::uint32_t size)
{
    return bytes == nullptr ? "(null)" : std::string(bytes, bytes + size);
}

TEST_F(Modules, KeepsWhatEachRowNames)
{
    const std::string absolute = folder.path("m.bin").mid(1).toStdString();
    const auto list = read("# comment\n\n  \t\n ./m.bin , ./l.lic , 0x08000000 \r\n" + absolute +
                           ",ID of 15 bytes!,0023456780\n./M.SMU,./A.LIC,a0\n"
                           "./m.bin,,1\n./holes.hex,NONE,None\n./m.bin,./gone.lic,2");
    EXPECT_EQ(log.all(), Messages{});
    ASSERT_TRUE(list);
    ASSERT_EQ(list->moduleCount, 6U);
    const struct {
        const char *name, *module, *licence, *identifier;
        std::uint32_t address, isFile;
    } rows[] = {
        {"./m.bin", "module", "licence", "(null)", 0x08000000, 1},
        {absolute.c_str(), "module", "(null)", "ID of 15 bytes!", 0x23456780, 0},
        {"./M.SMU", "signed", "upper", "(null)", 0xA0, 1},
        {"./m.bin", "module", "(null)", "", 1, 0},
        {"./holes.hex", nullptr, "(null)", "(null)", 0x08000000, 0},
        {"./m.bin", "module", "(null)", "(null)", 2, 0},
    };
    for (std::size_t i = 0; i < 6; ++i) {
        const SegmentDataMCSV &module = list->modules[i];
        EXPECT_STREQ(module.moduleName, rows[i].name);
        EXPECT_EQ(module.address, rows[i].address) << i;
        EXPECT_EQ(module.licenceIsFile, rows[i].isFile) << i;
        EXPECT_EQ(text(module.licence, module.licenceSize), rows[i].licence) << i;
        EXPECT_EQ(text(module.hsmFwId, module.hsmFwIdSize), rows[i].identifier) << i;
        if (rows[i].module != nullptr) {
            EXPECT_EQ(text(module.module, module.moduleSize), rows[i].module) << i;
        }
    }
    EXPECT_EQ(text(list->modules[4].module, list->modules[4].moduleSize),
              "\x11\x22" + std::string(46, '\xFF') + "\x33");
}

struct ListRow {
    const char *name;
    std::string list;
    int level;
    const char *text;  ///< '@' stands for the list's path, '~' for its folder
};

void PrintTo(const ListRow &row, std::ostream *out)
{
    *out << row.name;
}

class ModuleFaults : public Modules, public ::testing::WithParamInterface<ListRow>
{
};

TEST_P(ModuleFaults, AreReportedWordForWord)
{
    const auto &[name, content, level, expected] = GetParam();
    const auto list = read(content);
    EXPECT_EQ(list == nullptr, level == 5);
    const QString sentence =
        QString(expected).replace('@', folder.path("list.mcsv")).replace('~', folder.path(""));
    EXPECT_EQ(log.all(), (Messages{{level, (level == 5 ? "Error: " : "Warning: ") + sentence}}));
}

const std::string kGood = "./m.bin,none,0\n";
std::string repeated(int count)
{
    std::string list;
    for (int i = 0; i < count; ++i) {
        list += kGood;
    }
    return list;
}

#define INVALID "@ is an invalid mcsv file"
INSTANTIATE_TEST_SUITE_P(
    Lists, ModuleFaults,
    ::testing::Values(
        ListRow{"OneComma", kGood + "./m.bin,none\n", 5, INVALID},
        ListRow{"FourColumns", "./m.bin,none,0,\n", 5,
                "mcsv file @ is not conform: it may miss or exceed some columns !"},
        ListRow{"NoRows", "#only\n \n", 5, INVALID "\nNo module is mentioned !"},
        ListRow{"NinthRow", repeated(9), 5, INVALID "\nMaximum modules number : 8"},
        ListRow{"NinthRowIsReadFirst", repeated(8) + "./y.bin,none,0\n", 5,
                "Module file : ~/./y.bin does not exist !"},
        ListRow{"AddressOf11Characters", "./m.bin,none,0x008000000\n", 5,
                INVALID "\nCheck destination address parameter\n\nInvalid address: 0x008000000"},
        ListRow{"AddressBeforeLicenceAndModule", "./y.exe,an identifier of 31 characters,\n", 5,
                INVALID "\nCheck destination address parameter\n\nInvalid address: "},
        ListRow{"IdentifierBeforeModule", "./y.exe,identifier of 16,0\n", 5,
                INVALID "\nHSM FW ID parameter exceeds 15 characters: identifier of 16"},
        ListRow{"IdentifierOfTooManyBytes",
                "./m.bin,\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9,0\n", 5,
                INVALID "\nHSM FW ID parameter exceeds 15 bytes: "
                        "\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9"},
        ListRow{"NoLicence", "./m.bin,\\l.lic,0\n", 5, "License file : ~/\\l.lic does not exist !"},
        ListRow{"LicenceOfTheWorkingFolder", "./m.bin,l.lic,0\n", 5,
                "License file : l.lic does not exist !"},
        ListRow{"ModuleEnding", "./m.exe,none,0\n", 5, INVALID "\nPlease check module : ./m.exe"},
        ListRow{"ModuleAbsolute", "/m.hex,none,0\n", 5, "Module file : ~//m.hex does not exist !"},
        ListRow{"ModuleIsAFolder", "./x.bin,none,0\n", 5, "Unable to open the file: ~/./x.bin"},
        ListRow{"BinaryWithoutAddress", "./M.SMU,none,none\n", 5,
                "Module file : ~/./M.SMU should not contain [none] destination address !"},
        ListRow{"HexElsewhere", "./holes.hex,none,0x08000004\n", 4,
                "Module hex file : ~/./holes.hex contains address [0x08000000] different than the "
                "Destination Address field [0x08000004] !\n\nThe value [0x08000000] will be "
                "considered as destination address."},
        ListRow{"HexTooWide", "./wider.hex,none,0\n", 5,
                "Module hex file : ~/./wider.hex spans 536870913 bytes from address 0x00000000 on, "
                "more than the 536870911 bytes that a module may span"}),
    [](const auto &row) { return row.param.name; });

TEST_F(Modules, AFaultInAHexModuleIsReportedByItsReader)
{
    EXPECT_FALSE(read("./bad.hex,none,0\n"));
    EXPECT_EQ(log.all().size(), 3U);
    EXPECT_EQ(log.all()[0], (Message{5, "Error: \nParsing fail"}));
}

}  // namespace
