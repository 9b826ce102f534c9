#pragma once
#include "files/FileManager.h"
#include "workbench/forms/DeviceLock.h"
#include "workbench/forms/FormTab.h"
#include "workbench/tabs/sfi/SfiRequest.h"
#include "workbench/widgets/InfoTabs.h"
#include "workbench/widgets/ParsePane.h"

#include <QVector>

#include <optional>

class ExtFirAddInfoDialog;

Q_DECLARE_METATYPE(ExtBinInfo)

namespace workbench
{

/// What the settings file tells about the files of one list: unsigned numbers of 32 bits, and
/// anything at all in a damaged file.
struct SavedNumbers {
    QList<QVariant> addresses;
    // External firmware only:
    QList<QVariant> modes;
    QList<QVariant> numbers;
    QList<QVariant> keyAddresses;
};

/// The SFI or SFIx tab: lists, steps of a request, panes. Rows are named as in `sfi_row`.
class SfiTab : public FormTab
{
    Q_OBJECT

public:
    SfiTab(const SfiVariant &variant, const TabName &name, QWidget *page, FormContext &context);

    void clear() override;
    void clearPanes() override;
    void lockDevice(bool lock) override;
    bool showChecked(const QString &path, const FileType &record) override;
    void save(SavedGroup &group) const override;
    void restore(const SavedGroup &group) override;
    void restoreFiles(const SavedGroup &group) override;

    [[nodiscard]] const SfiDevice &device() const;

    // What the buttons and lists of the form do; `CentralWidget` has an operation for each.
    void changeDevice(int index);  ///< chooses an entry of the MCU box and sets the form for it
    void chooseFiles(const QString &row);  ///< asks for files, and adds them
    void removeSelected(const QString &row);
    void enableRemove(const QString &row, const QItemSelection &selection);
    /// Shows the selected file; without one nothing changes.
    void display(const QString &row, const QItemSelection &selection);
    /// Asks again for what the user told about a firmware file: address or region.
    void editAddress(const QString &row, int at);
    void generate();
    void chooseImage();  ///< asks for an image and shows it in the parse pane

    /// Adds files as if they had been chosen in the row's dialog.
    void addFiles(const QString &row, const QStringList &paths);

    /// What the user told about the external files, in the order of the list. S-record and ELF
    /// files have no entry, so it may be shorter than the list.
    [[nodiscard]] QVector<ExtBinInfo> extBinInfos() const;

    /// Shows an image or a modules list in the parse pane.
    /// @param fromUser  take the pane's path as it stands; otherwise the output path
    void parse(bool fromUser);

    /// Reads the files of a list that was saved (SfiTabSaved.cpp). One that can't be read or
    /// doesn't fit is left out, reported; the others keep the numbers saved for them. "Corrupted
    /// settings file" ends it when a number is missing, and what was restored so far stays.
    void restoreList(const QString &row, const QStringList &paths, const SavedNumbers &saved);

private:
    void buildPanes();
    void connectLists();
    [[nodiscard]] SfiTab *other(const char *key) const;  ///< SFI or SFIx; null while not built
    [[nodiscard]] SfiFormValues values() const;
    [[nodiscard]] int countOf(const QString &row) const;  ///< 0 when there is no such list
    void applyDevice();
    void countSmiFiles();  ///< says how many files of the SFI tab the SFIx image takes

    struct Series;  ///< files of one choice that are added one after the other
    void addFile(const QString &row, const QString &path, Series &series);
    /// @return the file as this row takes it; null when it can't, which has been reported
    files::RecordOwner<FileData> openFor(const QString &row, const QString &path);
    void appendFile(const QString &row, const QString &path, files::RecordOwner<FileData> record,
                    const std::optional<ExtBinInfo> &region);
    // Each asks for what the file doesn't tell. @return false when the user cancelled
    bool askAddress(const QString &path, FileData &record, Series &series);
    bool askRegion(const QString &path, FileData &record, Series &series,
                   std::optional<ExtBinInfo> &region);
    void editRegion(int at);
    void setRegionRanges(ExtFirAddInfoDialog &dialog) const;
    bool restoreNumbers(const QString &row, FileData &record, const SavedNumbers &saved, int at,
                        std::optional<ExtBinInfo> &region);
    void saveExternal(SavedGroup &group) const;
    void dropFile(const QString &row, int at);
    /// Disables the "Remove" buttons of the firmware lists until something is selected again.
    void dropFirmwareSelections();

    void pickFile(const QString &row);       ///< the user turned to the selected file
    void pickSegment(int file, int number);  ///< of the list that the map shows
    void showFile(const QString &row);
    void parseFile(const QString &path);
    void showImage(const QString &path, const FileSFI &image, const QString &version);
    void parseModules(const QString &path);

    void make(const SfiFormValues &values);
    // Steps of a request (SfiTabRequest.cpp); each returns false when the request ends.
    bool reload(const QString &row, KeepAddress keep, bool disablesWhenEmpty);
    bool reloadFirmware(const QString &row, bool disablesWhenEmpty,
                        files::RecordView<FileData> &merged);
    bool reloadAll(SfiInputs &inputs);
    bool readExtras(const SfiFormValues &values, SfiInputs &inputs);
    bool passes(const std::optional<Refusal> &refusal);
    [[nodiscard]] ListInputs listInputs() const;
    bool writeImage(const QString &path, const QByteArray &image);

    const SfiVariant &m_variant;
    InfoPane *m_firmwareInfo = nullptr;
    ParsePane *m_parse = nullptr;
    InfoTabs *m_panes = nullptr;
    DeviceLock m_lock;
    QString m_shownRow;  ///< list whose file stands in "Firmware information"; empty for none
};

}  // namespace workbench
