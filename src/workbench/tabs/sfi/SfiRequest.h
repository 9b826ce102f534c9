#pragma once
#include "files/FileManager.h"
#include "files/base/Records.h"
#include "preparation/Preparation.h"
#include "workbench/tabs/sfi/SfiCheck.h"
#include "workbench/widgets/FileRows.h"

#include <QByteArray>

#include <functional>
#include <optional>

/// @file
/// One request for an SFI or SFIx image: the steps between the form and the image builder. No step
/// shows a box of its own; it returns the refusal, and readers report through `DisplayMng`.

namespace workbench
{

/// What one request reads; all of it is released, and keys are wiped, when the request ends.
struct SfiInputs {
    SfiInputs() = default;
    ~SfiInputs();
    SfiInputs(const SfiInputs &) = delete;
    SfiInputs &operator=(const SfiInputs &) = delete;

    files::RecordView<FileData> firmware;  ///< shares its bytes with the list's records
    files::RecordView<FileData> external;  ///< likewise
    files::RecordOwner<FileData> optionBytes;
    files::RecordOwner<FileData> keyArea;
    files::RecordOwner<FileSFI> ssfi;
    files::RecordOwner<FileMCSV> modules;
    QByteArray key;    ///< 16 bytes
    QByteArray nonce;  ///< 12 bytes
    Numbers numbers;
};

/// Which address a list's file keeps when it is read anew.
enum class KeepAddress {
    OfBinaries,  ///< a raw binary has none of its own: the one given by the user stays
    InsteadOfZero,
    No,
};

/// Reads every file of a list anew, in order, so that changes since "Add" count.
/// @param replaced  called with the row after each success
/// @return the row that failed; the rows from there on are as they were
std::optional<int> reloadList(FileManager &manager, FileRows &rows, KeepAddress keep,
                              const std::function<void(int)> &replaced);

/// Makes one image of a list; an empty list gives none.
/// @return a refusal when two files overlap
std::optional<Refusal> mergeList(FileManager &manager, const FileRows &rows,
                                 files::RecordView<FileData> &out);

/// Key, nonce, option bytes, key area and numbers, in this order.
std::optional<Refusal> readInputs(FileManager &manager, const SfiVariant &variant,
                                  const SfiFormValues &values, SfiInputs &inputs);

/// SSFI and modules of a device that takes them.
std::optional<Refusal> readProvisioning(FileManager &manager, const SfiFormValues &values,
                                        SfiInputs &inputs);

/// The lists that go into the image, and what else the builder takes from outside the request.
struct ListInputs {
    bool combined = false;
    QList<FileOBK *> obkFiles;
    QList<FileData *> smiFiles;
    QVector<ExtBinInfo> externalInfos;
};

/// Calls the image builder. @return the image; empty when it refused, which it has reported
QByteArray buildImage(Preparation &preparation, const SfiDevice &device,
                      const SfiFormValues &values, const ListInputs &lists, SfiInputs &inputs);

}  // namespace workbench
