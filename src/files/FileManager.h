#pragma once
#include "files/base/Records.h"

#include <QFile>

#include <string>
#include <vector>

/// The one door through which the program reads firmware, image and configuration files.
/// Reports go to `DisplayMng::logMessage`. GUI thread only.
class FileManager
{
public:
    /// Hands the sink of all messages to `DisplayMng`.
    void setDisplayCallback(void (*callback)(int level, const wchar_t *text));

    /// Reads a file by its name's ending (unknown endings as raw binary, with a notice).
    /// @param path         file to read
    /// @param file         receives a new record that the caller owns (`files::releaseRecord`);
    ///                     untouched on failure
    /// @param paddingByte  fills holes of up to 31 bytes; kept for later list operations
    /// @param position     raw binary only: bytes to skip at the start
    /// @param size         raw binary only: bytes to read; 0 for the file's whole size
    /// @return false when the file was refused; the reason has been reported
    bool Open(const std::wstring &path, FileType **file, unsigned char paddingByte,
              unsigned int position, unsigned int size);

    /// Joins neighbours less than 32 bytes apart (the hole takes the padding byte) and resolves
    /// overlaps in favour of the later segment. The list must be sorted.
    /// @return 1 when segments overlapped or memory ran out, else 0
    int ReduceFileSegment(FileData *file);

    /// Makes one sorted image of several; segments share their `data` with the sources.
    /// @param merged  receives a new record (`files::releaseRecordHead`); untouched on failure
    /// @return false when segments of two files overlap; that has been reported
    bool MergeFiles(const std::vector<FileData *> &files, FileData **merged);

    // The readers behind `Open`. Each reads an open file from its start, fills a fresh record, sets
    // its type, and returns false after a report; the record is then as it was but for the type.

    /// Intel HEX or S-record text, whichever the text is; sorted and reduced.
    bool HexSrec_Parsing(QFile *file, FileData *data);

    /// Reads a 32-bit ELF file: one segment for each PT_LOAD header, at its physical address, then
    /// head and tables.
    /// @param file  gives the name only; the file is opened anew
    /// @return false after a report
    bool ELF_Parsing(QFile *file, FileELF *elf);

    /// Copies the first section of that name out of an ELF file of either class.
    /// @param data  receives a `malloc` block of the section's size, zeros where the file has none
    /// @return bytes; 0 without memory or above 0x1FFFFFFF bytes, -1 without file or section, both
    ///         after a report
    int GetDataFromSection(const std::string &elfPath, const std::string &sectionName,
                           unsigned char **data);

    /// An SFI or SFIx image up to its first `C` area, with the checks of its areas.
    bool SFI_Parsing(QFile *file, FileSFI *image);
    /// The same for an SSFI image.
    bool SSFI_Parsing(QFile *file, FileSFI *image);
    /// A secure module image of the MCUboot kind, whose format has no refusal of its own.
    /// @param size  bytes of the file that count
    /// @return false only without memory
    bool SMU_Parsing(QFile *file, long long size, FileSMU *image);
    /// A flash layout: rows, and a filtered text with a head of 256 bytes in front.
    bool filter_tsv_file(QFile *file, FileTSV *layout);
    /// Option bytes: address and value pairs, or hexadecimal values alone when the name ends in
    /// ".kcsv". Gives one segment of 32-bit values, lowest byte first.
    bool extract_csv_config(QFile *file, FileData *data);
    /// A modules list, with all files that it names. Overwrites `paddingByte` when one is a HEX.
    bool extract_mcsv_config(QFile *file, FileMCSV *modules);

    /// Writes raw binary: the first segment's address is file offset 0, holes take the padding
    /// byte. The segments must be sorted; starts more than 0x1FFFFFFF apart are refused.
    /// @return bytes of the file; or -1 after a report, and then an old file is as it was
    std::int64_t SaveFile(FileData *file, const std::wstring &path);

    /// The same for a modules list: addresses and modules, without licences.
    std::int64_t SaveFileModule(FileMCSV *modules, const std::wstring &path);

    /// Writes Intel HEX; nothing at all, not even an end record, for no segments.
    /// @return false after a report, and then an old file is as it was
    bool SaveHexFile(FileData *file, const std::wstring &path);

    /// Writes S-records, all of the kind that the highest address needs. Otherwise as above.
    bool SaveSrecFile(FileData *file, const std::wstring &path);

    /// Puts a table of CRC-32 sums, one for each slice, at the top of a flash range, and writes the
    /// file in place. A binary is taken to start at the range's start.
    /// @param flashEnd   one past the range's last byte
    /// @param sliceSize  bytes; must divide the range
    /// @param padding    ELF files only: fills what is left free
    /// @return false after a report, and then the file is as it was; true also when no segment lies
    ///         in the range. A file that can't be written ends the process with status -2
    bool MultipleCRC(const std::wstring &path, unsigned int flashStart, unsigned int flashEnd,
                     unsigned int sliceSize, unsigned char padding);

    /// Adds the segments of a secure boot ELF, and a header ahead of the second segment, to a user
    /// application's ELF, which is written once, when all of it stands.
    /// @return false after a report, and then the file is as it was
    bool SBUPDAddToUserAppli(const std::wstring &userElf, const std::wstring &headerBin,
                             const std::wstring &secureElf);

    /// Fills the holes of up to 31 bytes; the last `Open` decides.
    unsigned char paddingByte = 0xFF;
};
