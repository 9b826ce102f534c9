#include "workbench/tabs/smi/SmiSections.h"

#include "files/base/SizeText.h"
#include "files/firmware/ElfLabels.h"
#include "preparation/smi/SmiModule.h"
#include "workbench/forms/PackageForm.h"
#include "workbench/widgets/Contrast.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPalette>

#include <elf.h>

namespace workbench
{

namespace
{

QString tr(const char *text)
{
    return QCoreApplication::translate("workbench::SmiTab", text);
}

// Words of the boxes after Generate.
const QLatin1String
    kMisalignedStart("Address of the section is not aligned on a flash word (256 bits)");
const QLatin1String kSingleWord("The section spans on a single Flash word while HW can only "
                                "protect areas spanning on at least 2 Flash words (512 bits)");
const QLatin1String kMisalignedEnd("The section does not end on a Flash word boundary");
const QLatin1String kNextInLastWord("The section immediately following the PCROP area starts in "
                                    "the last Flash word of the PCROP section");

constexpr std::uint64_t kLeastFlags = 2;

QStringList tlvRow(const TLV &entry, const QString &block)
{
    return {block, QString::fromLatin1(entry.name), addressText(entry.tlvType),
            QString::number(entry.length)};
}

/// Of rows that can't be chosen, on light and dark desktops.
RowColours faintColours()
{
    constexpr double kText = 0.4;
    constexpr double kGround = 0.08;
    const QPalette palette = QGuiApplication::palette();
    const QColor &text = palette.color(QPalette::Text);
    const QColor &base = palette.color(QPalette::Base);
    const QColor ground = mixed(base, text, kGround);
    return {legible(mixed(text, base, kText), ground, text), ground};
}

QString hexText(std::span<const std::uint8_t> bytes)
{
    const QByteArray raw(reinterpret_cast<const char *>(bytes.data()),
                         static_cast<int>(bytes.size()));
    return QString::fromLatin1(raw.toHex());
}

/// The memory that the loaded sections fill, each under its own name.
MapContents mapOfSections(const FileELF &elf)
{
    MapContents contents;
    contents.blockWord = QCoreApplication::translate("MemoryMap", "section");
    for (std::size_t row = 0; row < elf.sections.size(); ++row) {
        const section_header &section = elf.sections[row];
        if ((section.sectionFlags & SHF_ALLOC) == 0 || section.sectionSize == 0) {
            continue;
        }
        contents.groups.push_back({QString::fromStdString(section.name), std::nullopt});
        // Of 32-bit files, which the reader has made sure of.
        contents.blocks.push_back({static_cast<std::uint32_t>(section.sectionAddress),
                                   static_cast<std::uint32_t>(section.sectionSize),
                                   static_cast<int>(contents.groups.size()) - 1, section.index,
                                   static_cast<int>(row)});
    }
    return contents;
}

/// What a module's head says, or why it can't be read.
Details moduleHead(const files::Result<preparation::ParsedSmi> &smi)
{
    Details details{tr("Module"), {tr("Field"), tr("Value")}, {}};
    const auto add = [&details](const QString &field, const QString &value) {
        DetailRow &row = details.rows.emplace_back();
        row.cells = QStringList{field, value};
        row.why = value;  // the cell may cut it
    };
    if (!smi) {
        add(tr("Fault"), QString::fromStdString(smi.error().text));
        return details;
    }
    add(tr("Module size"), files::sizeText(smi->plainSize));
    add(tr("Security version"), hexText(smi->securityVersion));
    add(tr("Nonce"), hexText(smi->nonce));
    add(tr("Check block"), smi->hasCheck() ? hexText(smi->check) : tr("none"));
    return details;
}

PaneContents moduleFields(const QString &path, std::uint32_t address, int count,
                          std::uint64_t lastBytes)
{
    PaneContents contents = emptyModule();
    contents.overview.values = QStringList{QFileInfo(path).fileName(), addressText(address),
                                           QString::number(count), files::sizeText(lastBytes)};
    return contents;
}

}  // namespace

QString whyNotOffered(const section_header &section)
{
    if (section.sectionType == SHT_NOBITS) {
        return tr("This section has no bytes in the file");
    }
    if (section.sectionFlags < kLeastFlags) {
        return section.sectionType == SHT_SYMTAB || section.sectionType == SHT_DYNSYM
                   ? tr("This is a symbol table; it isn't loaded")
                   : tr("This section isn't loaded into the device");
    }
    return {};
}

QStringList offeredSections(const FileELF &elf)
{
    QStringList names;
    for (const section_header &section : elf.sections) {
        if (whyNotOffered(section).isEmpty()) {
            names << QString::fromStdString(section.name);
        }
    }
    return names;
}

QString placementText(const FileELF &elf, const QString &section)
{
    const section_header *found = preparation::findSection(elf, section.toStdString());
    if (found == nullptr) {
        return {};
    }
    if (found->sectionSize == 0) {
        return tr("The section has no bytes.");
    }
    const preparation::SmiPlacement placement = preparation::placementOf(elf, *found);
    QStringList sentences;
    if (placement.misalignedStart) {
        sentences << kMisalignedStart;
    }
    if (placement.singleWord) {
        sentences << kSingleWord;
    }
    if (placement.misalignedEnd) {
        sentences << kMisalignedEnd;
    }
    if (placement.nextInLastWord) {
        sentences << kNextInLastWord + tr("; no module can be made");
    }
    return sentences.isEmpty() ? QString() : sentences.join(QStringLiteral(".\n")) + '.';
}

PaneContents emptyElf()
{
    return {{Qt::Vertical, {tr("File name"), tr("ELF Type"), tr("ELF Machine"), tr("Size")}, {}},
            {tr("Sections"),
             {tr("Index"), tr("Name"), tr("Type"), tr("Address"), tr("Size"), tr("Flags")},
             {}}};
}

PaneContents describeElf(const QString &path, const FileELF &elf)
{
    PaneContents contents = emptyElf();
    const QFileInfo file(path);
    contents.overview.values =
        QStringList{file.fileName(), ELFtype(elf.elfType), ELFmachine(elf.machine),
                    files::sizeText(static_cast<std::uint64_t>(file.size()))};
    const RowColours faint = faintColours();
    for (const section_header &section : elf.sections) {
        DetailRow row;
        row.cells = QStringList{QString::number(section.index),
                                QString::fromStdString(section.name),
                                secType(section.sectionType),
                                addressText(section.sectionAddress),
                                files::sizeText(section.sectionSize),
                                secFlag(static_cast<unsigned long>(section.sectionFlags))};
        row.why = whyNotOffered(section);
        row.bytes = section.sectionSize;
        if (!row.why.isEmpty()) {
            row.colours = faint;
        }
        contents.details.rows.push_back(row);
    }
    contents.map = mapOfSections(elf);
    return contents;
}

PaneContents emptyModule()
{
    return {
        {Qt::Vertical,
         {tr("Original file name"), tr("SMI address"), tr("Number of files"), tr("Last file size")},
         {}},
        {}};
}

PaneContents describeResult(const QString &path, std::uint32_t address, int files,
                            const QByteArray &last)
{
    const auto size = static_cast<std::size_t>(last.size());
    PaneContents contents = moduleFields(path, address, files, size);
    contents.details = moduleHead(preparation::parseSmi(
        {reinterpret_cast<const std::uint8_t *>(last.constData()), size}, "It"));
    return contents;
}

PaneContents describeSmi(const QString &path, const FileData &record)
{
    const auto size = static_cast<std::uint64_t>(QFileInfo(path).size());
    if (record.segments.empty()) {
        return moduleFields(path, 0, 1, size);
    }
    const SegmentData &segment = record.segments.front();
    const auto smi = preparation::parseSmi({segment.data, segment.size}, "It");
    PaneContents contents = moduleFields(path, smi ? smi->loadAddress : 0, 1, size);
    contents.details = moduleHead(smi);
    return contents;
}

PaneContents describeSmu(const QString &path, const FileSMU &record)
{
    PaneContents contents = moduleFields(path, record.loadAddress, 1,
                                         static_cast<std::uint64_t>(QFileInfo(path).size()));
    contents.details = {tr("Values"), {tr("Block"), tr("Name"), tr("Type"), tr("Length")}, {}};
    for (const TLV &entry : record.protectedTlvs) {
        contents.details.rows.push_back({tlvRow(entry, tr("protected")), std::nullopt});
    }
    for (const TLV &entry : record.tlvs) {
        contents.details.rows.push_back({tlvRow(entry, tr("plain")), std::nullopt});
    }
    return contents;
}

QStringList moduleNames(const QString &output, int count, const QStringList &inputs)
{
    if (count == 1) {
        return {output};
    }
    const QFileInfo file(output);
    QStringList names;
    for (int index = 0; names.size() < count; ++index) {
        const QString name = file.absolutePath() + '/' + file.completeBaseName() +
                             QString::number(index) + '.' + file.suffix();
        if (outputOverInput({name}, inputs).isEmpty()) {
            names << name;
        }
    }
    return names;
}

PlacementFindings findingsOf(const Preparation &preparation)
{
    PlacementFindings findings;
    if (preparation.misalignedStart) {
        findings.warnings << kMisalignedStart;
    }
    if (preparation.singleWord) {
        findings.warnings << kSingleWord;
    }
    if (preparation.misalignedEnd) {
        findings.warnings << kMisalignedEnd;
    }
    if (preparation.nextInLastWord) {
        findings.error = kNextInLastWord;
    }
    return findings;
}

}  // namespace workbench
