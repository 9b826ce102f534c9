#pragma once
#include "obk/Generation.h"
#include "obk/Slots.h"
#include "obk/Template.h"

#include <QByteArray>
#include <QDomDocument>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

/// One image-generation tab.
struct ImgTool {
    int saveStatus =
        0;  ///< 2 at creation under `-ng`, 1 after a successful save, 0 after a failed one
};

/// One template in memory, and the edge where its reader, checks and generation report: each
/// operation that returns false has told the user why, with one message at level 5.
///
/// A template is opened into a fresh object, which then takes the old one's place: after a failure
/// the old one is as it was. GUI thread only.
class Obkey
{
public:
    // What the template tabs keep for the life of the form
    std::uint8_t imageGenCount = 0;  ///< image-generation tabs created so far
    std::vector<ImgTool> imgTools;   ///< one for each of them, in the order of creation

    // The template
    obk::Template model;
    QDomDocument document;       ///< as parsed; null until then
    int dbState = 1;             ///< see check_DB
    int templateKind = 0;        ///< 0 provisioning template, 1 image template
    int runMode = 0;             ///< 0 driven by the form, 1 by the command line
    bool headerless = false;     ///< the output has no header
    bool isLoaded = false;       ///< a template was opened
    QString templatePath;        ///< absolute, slashes only
    obk::FlashSlots flashSlots;  ///< what the memory table shows
    std::vector<Slot> obkSlots;

    /// "/Template/OBkeyPrototype.xsd" beside the executable.
    static QString schemaPath();
    /// "/Template/McuBootPrototype.xsd" beside the executable.
    static QString imageSchemaPath();
    /// "/Utilities/Linux/imgtool" beside the executable.
    static QString imageToolPath();

    /// All steps of opening a provisioning template, from the schema to what its rows start with.
    /// Nothing of an earlier template is left; after a failure the object is of no use.
    bool openTemplate(const QString &path);

    /// All steps of opening an image template. Likewise.
    bool openImageTemplate(const QString &path);

    /// Takes over an opened template; the image-generation tabs stay.
    void takeTemplate(Obkey &&opened);

    // Opening, step by step

    /// File-level check against a schema: bounds, XML declaration on the first line, schema. Line
    /// numbers in the report are the file's.
    bool xmlValid(const QString &xmlPath, const QString &schemaPath);
    /// Reads the file into this object, and goes on to its kind's reader.
    bool parseTemplateXML(const QString &path);
    /// Sets `dbState`: 1 no document, 2 nothing behind the document's first child (the XML
    /// declaration), 3 what follows it is not "Root", 4 valid.
    void check_DB();
    /// With a valid document the first child of "Root", whose name decides `templateKind`;
    /// otherwise a null node.
    QDomNode GetObdataNode();
    bool parseOBkeyXML(const QDomNode &obdata);
    /// Reads one element. @param item  fresh
    bool GetItem(ObDataItem &item, const QDomNode &node);
    bool parseMcubootXML(const QDomNode &node);
    /// Reads one element of an image template. @param item  fresh
    bool GetItemMcuBoot(ObDataItem &item, const QDomNode &node);
    static std::string get_txt(const QDomNode &node);
    static bool isHex(const QString &text);
    static bool isDecimal(const QString &text);
    static QString convDecToHex(const QString &text);

    // Checks
    bool duplicateElementCheck();
    bool mandatoryElementCheck();
    bool duplicateElementCheckImg();
    bool mandatoryElementCheckImg();
    bool xmlCheck(Obkey *obkey);  ///< names, widths and slots
    /// @param tag  the element that a tag list belongs to; lists of names need none
    bool uniqueName(const QStringList &entries, const QString &tag = {});
    bool uniqueNameTabs(Obkey *obkey);
    static bool widthValid(unsigned width);
    static bool widthValidText(unsigned length, unsigned maximum, unsigned minimum);
    bool totalValueCheck(const QString &value, const QString &name, int width);
    bool totalValueCheckText(const QString &text, int maximum, int minimum);
    bool validWidthAndDefaultVal(Obkey *obkey);
    static bool flashExist(const QStringList &names);
    static bool obkExist(const QStringList &names);
    static bool authObkExist(const QStringList &names);

    // Slots
    void fillingSlotVector(std::size_t item, std::vector<Slot> &all, std::vector<Slot> &execution,
                           std::vector<Slot> &download);
    void fillingObkSlotVector(std::size_t item, std::vector<Slot> &declared);
    void fillDependencyVectorSlot(std::size_t first, std::vector<Slot> &all,
                                  std::vector<Slot> &execution, std::vector<Slot> &download);
    void fillDependencyVectorObkSlot(std::size_t first, std::vector<Slot> &declared);
    /// Both of the above into `flashSlots` and `obkSlots`, from empty lists.
    void refreshShownSlots();
    static void sortVector(std::vector<Slot> &declared);
    static std::vector<Interval> fillVectorInterval(const std::vector<Slot> &declared);
    bool checkSectorAndFlashBelong(const std::vector<Interval> &intervals,
                                   const std::vector<Slot> &declared);
    bool overlapFlashSlotFunction(const std::vector<Interval> &intervals,
                                  const std::vector<Slot> &declared);
    /// Sectors, place and overlap of flash slots. Neither opening nor generation asks for it: flash
    /// slots of one template may overlap.
    bool checkOverlapFlashSlot(std::vector<Slot> &declared);
    bool checkOverlapObkSlot(std::vector<Slot> &declared);

    // Generation

    /// Makes the files' bytes, see obk::generate.
    /// @param hasForm   the fields come from the form
    /// @param whenDone  runs before a refusal is reported, and after success
    std::optional<obk::Product> generate(std::vector<std::optional<QString>> fields, bool hasForm,
                                         const obk::KeyTools &tools,
                                         const std::function<void()> &whenDone = {});
    /// Writes the password file, with its message, and then the .obk file; keeps the values.
    bool writeProduct(const obk::Product &product);
    /// Writes the values of all items into the template file. Failures don't undo anything; a file
    /// that can't be read is left alone without a message.
    void saveOBKeyConf(Obkey *obkey);
    /// Writes the values of an image template's items into its file, but for those of options that
    /// take a pass phrase. @return false after a report, and then the file is as it was
    bool saveImageValues(const std::vector<std::optional<QString>> &values);
    /// SHA-256. @param out  32 bytes
    static void HashFunction(const unsigned char *data, std::size_t size, unsigned char *out);
};
