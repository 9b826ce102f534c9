#pragma once
#include "files/FileManager.h"
#include "preparation/Preparation.h"
#include "workbench/forms/DeviceLock.h"
#include "workbench/forms/Tab.h"
#include "workbench/tabs/sfi/SavedForm.h"
#include "workbench/tabs/sfi/SfiRequest.h"
#include "workbench/tabs/sfi/TwinForm.h"

#include <QObject>
#include <QVector>

#include <optional>

namespace workbench
{

/// The SFI or SFIx tab at work: lists, steps of a request, panes.
class TwinTab : public Tab
{
    Q_OBJECT

public:
    /// Builds the form into `page`, which owns everything.
    TwinTab(const TwinTraits &twin, const TabName &name, QWidget *page, FormContext &context);

    void clear() override;
    void clearPanes() override;
    void lockDevice(bool lock) override;
    void takeShared(SharedField field, const QString &path) override;
    bool showChecked(const QString &path, const FileType &record) override;
    [[nodiscard]] QString settingsGroup() const override;
    void save(SavedGroup &group) const override;
    void restore(const SavedGroup &group) override;
    void restoreFiles(const SavedGroup &group) override;

    [[nodiscard]] TwinForm *form() const { return m_form; }
    [[nodiscard]] const McuRow &mcu() const;

    // What the buttons and lists of the form do; `CentralWidget` has an operation for each.
    void changeMcu(int index);  ///< chooses an entry of the MCU box and sets the form for it
    void chooseFiles(Row row);  ///< asks for files, and adds them
    void removeSelected(Row row);
    void enableRemove(Row row, const QItemSelection &selection);
    void display(Row row, const QItemSelection &selection);  ///< the selected file; none: no change
    void choosePath(Row row);      ///< asks for a file; a shared field's goes to all tabs
    void makeRandomFile(Row row);  ///< asks for a name; key or nonce
    void chooseOutputFolder();
    void updateGenerate();  ///< enables or disables the Generate button
    void generate();

    /// Adds files as if they had been chosen in the row's dialog.
    void addFiles(Row row, const QStringList &paths);

    /// What the user told about each external firmware. It may be shorter than the list and out of
    /// step with it: S-record and ELF files have no entry.
    QVector<ExtBinInfo> extBinInfos;

    void chooseImage();  ///< asks for an image and shows it in the parse pane

    /// Shows an image or a modules list in the parse pane.
    /// @param fromUser  take the pane's path as it stands; otherwise the output path
    void parse(bool fromUser);

    /// Shows an image that is read already.
    void showImage(const QString &path, const FileSFI &image, const QString &version);

    /// Disables the "Remove" buttons of the firmware lists until something is selected again.
    void dropFirmwareSelections();

    /// Reads the files of a list that was saved. One that can't be read or doesn't fit is left out,
    /// reported; the others keep the places saved for them. "Corrupted settings file" ends it when
    /// a place is missing, and what was restored so far stays.
    void restoreList(Row row, const QStringList &paths, const SavedPlaces &places);

private:
    void connectLists();
    void connectFields();
    [[nodiscard]] TwinTab *twin(const char *key) const;  ///< SFI or SFIx; null while not built
    void addFile(Row row, const QString &path);
    /// @return the file as this row takes it; null when it can't, which has been reported
    files::RecordOwner<FileData> openFor(Row row, const QString &path);
    void appendFile(Row row, const QString &path, files::RecordOwner<FileData> record);
    bool restorePlace(Row row, FileData &record, const SavedPlaces &places, int at);
    bool askPlace(Row row, const QString &path, FileData &record);
    bool askExternalPlace(const QString &path, FileData &record);
    void dropFile(Row row, int at);
    void saveExternal(SavedGroup &group) const;
    void pickFile(Row row);  ///< the user turned to the selected file
    void showFile(Row row);
    void pickSegment(int file, int number);  ///< of the list that the map shows
    void parseModules(const QString &path);
    void setPath(Row row, const QString &path);  ///< in this tab or, of a shared field, in all

    // Steps of a request; each returns false when the request ends.
    bool reload(Row row, KeepAddress keep, bool disablesWhenEmpty);
    bool reloadFirmware(Row row, bool disablesWhenEmpty, files::RecordView<FileData> &merged);
    bool reloadAll(TwinInputs &inputs);
    bool readExtras(const TwinValues &values, TwinInputs &inputs);
    bool passes(const std::optional<Refusal> &refusal);
    [[nodiscard]] ListInputs listInputs() const;
    bool writeImage(const QString &path, const QByteArray &image);

    const TwinTraits &m_twin;
    TwinForm *m_form;
    DeviceLock m_lock;
    std::optional<Row> m_shownRow;  ///< list whose file stands in "Firmware information"
};

}  // namespace workbench
