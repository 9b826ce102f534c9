#pragma once
#include "files/FileManager.h"
#include "preparation/Preparation.h"
#include "workbench/tabs/sfi/SavedForm.h"
#include "workbench/tabs/sfi/SfiRequest.h"
#include "workbench/tabs/sfi/TwinForm.h"

#include <QObject>
#include <QVector>

#include <functional>
#include <optional>

namespace workbench
{

/// What the form lends its SFI and SFIx tabs. The tabs keep a copy; the form outlives them.
struct TwinSurroundings {
    QWidget *form = nullptr;  ///< parent of all boxes and dialogs
    FileManager *fileManager = nullptr;
    Preparation *preparation = nullptr;
    QString *lastFolder = nullptr;
    QString *lastOutputFolder = nullptr;
    std::function<bool()> isCombined;             ///< whether SMI files go into the image
    std::function<QList<FileData *>()> smiFiles;  ///< and which
    std::function<void()> imageIsRead;            ///< called before a pane reads an image
    std::function<void()> clearImagePanes;        ///< of both tabs
};

/// The SFI or SFIx tab at work: lists, steps of a request, panes.
class TwinTab : public QObject
{
    Q_OBJECT

public:
    /// Builds the form into `page`, which owns everything.
    TwinTab(const TwinTraits &twin, QWidget *page, TwinSurroundings surroundings);

    [[nodiscard]] TwinForm *form() const { return m_form; }
    [[nodiscard]] const McuRow &mcu() const;

    // What the buttons and lists of the form do; `CentralWidget` has a slot for each.
    void changeMcu(int index);
    void chooseFiles(Row row);  ///< asks for files, and adds them
    void removeSelected(Row row);
    void enableRemove(Row row, const QItemSelection &selection);
    void display(Row row, const QItemSelection &selection);  ///< the selected file; none: no change
    void chooseOwnPath(Row row);                             ///< of a field that no other tab has
    void chooseOutputFolder();
    void updateGenerate();  ///< enables or disables the Generate button
    void generate();

    /// Adds files as if they had been chosen in the row's dialog.
    void addFiles(Row row, const QStringList &paths);

    /// What the user told about each external firmware. It may be shorter than the list and out of
    /// step with it: S-record and ELF files have no entry.
    QVector<ExtBinInfo> extBinInfos;

    /// Asks for an image and puts its path into the parse pane. @return false when cancelled
    bool chooseImage();

    /// Shows an image or a modules list in the parse pane.
    /// @param fromUser  take the pane's path as it stands; otherwise the output path
    void parse(bool fromUser);

    /// Shows an image that is read already.
    void showImage(const QString &path, const FileSFI &image, const QString &version);

    /// Disables the "Remove" buttons of the firmware lists until something is selected again.
    void dropFirmwareSelections();

    // Saved state (TwinSaved.cpp)
    [[nodiscard]] SavedForm saved() const;
    void restoreFields(const SavedForm &form);  ///< texts and version, no lists

    /// Reads the files of a list that was saved. One that can't be read or doesn't fit is left out,
    /// reported; the others keep the places saved for them. "Corrupted settings file" ends it when
    /// a place is missing, and what was restored so far stays.
    void restoreFiles(Row row, const QStringList &paths, const SavedPlaces &places);

    void clear();

private:
    void connectLists();
    void addFile(Row row, const QString &path);
    /// @return the file as this row takes it; null when it can't, which has been reported
    files::RecordOwner<FileData> openFor(Row row, const QString &path);
    void appendFile(Row row, const QString &path, files::RecordOwner<FileData> record);
    bool restorePlace(Row row, FileData &record, const SavedPlaces &places, int at);
    bool askPlace(Row row, const QString &path, FileData &record);
    bool askExternalPlace(const QString &path, FileData &record);
    void dropFile(Row row, int at);
    void pickFile(Row row);  ///< the user turned to the selected file
    void showFile(Row row);
    void parseModules(const QString &path);

    // Steps of a request; each returns false when the request ends.
    bool reload(Row row, KeepAddress keep, bool disablesWhenEmpty);
    bool reloadFirmware(Row row, bool disablesWhenEmpty, files::RecordView<FileData> &merged);
    bool reloadAll(TwinInputs &inputs);
    bool readExtras(const TwinValues &values, TwinInputs &inputs);
    bool passes(const std::optional<Refusal> &refusal);
    [[nodiscard]] ListInputs listInputs() const;
    bool writeImage(const QString &path, const QByteArray &image);

    const TwinTraits &m_twin;
    TwinSurroundings m_near;
    TwinForm *m_form;
    int m_deviceIndex = 0;          ///< entry of the MCU box that the form stands for
    std::optional<Row> m_shownRow;  ///< list whose file stands in "Firmware information"
};

}  // namespace workbench
