#pragma once
#include "files/base/Records.h"
#include "preparation/Preparation.h"
#include "workbench/widgets/InfoContents.h"

#include <QByteArray>
#include <QStringList>

#include <vector>

/// @file
/// What the SMI tab knows of an ELF file's sections and of module files, without widgets.

namespace workbench
{

/// Why a section isn't offered, as a sentence; empty for one that is.
QString whyNotOffered(const section_header &section);

/// Names of the sections that are offered, in file order.
QStringList offeredSections(const FileELF &elf);

/// How the section lies among Flash words, in sentences for the form; empty when it lies well.
QString placementText(const FileELF &elf, const QString &section);

/// The file's head, and its sections: those that aren't offered are grey and say why.
PaneContents emptyElf();
PaneContents describeElf(const QString &path, const FileELF &elf);

/// The modules made last.
PaneContents emptyModule();
PaneContents describeResult(const QString &path, std::uint32_t address, int files,
                            const QByteArray &last);

/// A module file: SMI or SMU.
PaneContents describeSmi(const QString &path, const FileData &record);
PaneContents describeSmu(const QString &path, const FileSMU &record);

/// Names for several modules: "base" and a number before the suffix, none of them a file of the
/// form.
QStringList moduleNames(const QString &output, int count, const QStringList &inputs);

/// What the builder found wrong with the section's place, in the order in which it is told. The
/// last one stops the work.
struct PlacementFindings {
    QStringList warnings;
    QString error;
};
PlacementFindings findingsOf(const Preparation &preparation);

}  // namespace workbench
