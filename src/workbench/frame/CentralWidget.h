#pragma once
#include "files/FileManager.h"
#include "obk/Obkey.h"
#include "preparation/Preparation.h"

#include <QFont>
#include <QItemSelection>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <cstdint>
#include <string>
#include <vector>

class QComboBox;
class QFrame;
class QGroupBox;
class QHBoxLayout;
class QLabel;
class QMessageBox;
class QPushButton;
class QScrollArea;
class QTabWidget;
class QVBoxLayout;

namespace workbench
{
class FileList;
class TwinTab;
struct TwinSurroundings;
}  // namespace workbench

/// The form: owns every tab page, every field and every workflow slot of the program. Each tab's
/// share stands in the file of its name (`SfiTab.cpp`), the left panel in `Panels.cpp`.
class CentralWidget : public QWidget
{
    Q_OBJECT
public:
    /// What the command line asked for; decides how closing the window ends the program.
    enum LaunchMode { Interactive = 0, NoGeneration = 1, FromCommandLine = 2 };

    /// @param buildForm  0 leaves all fields empty; any other value builds the whole form, which
    ///                   opens on the `sfi` panel
    explicit CentralWidget(unsigned char buildForm, QWidget *parent = nullptr);
    ~CentralWidget() override;

    // Frame (CentralWidget.cpp)
    int launchMode = Interactive;
    std::string templatePath;  ///< UTF-8, slashes only; handed over behind `-obk` or `-pb`
    FileManager fileManager;
    Preparation preparation;
    QString lastFolder;        ///< proposed by every "open" dialog
    QString lastOutputFolder;  ///< proposed by every dialog for output
    QTabWidget *tabWidget = nullptr;
    // Created once; a panel that doesn't show a page only takes it off the tab widget.
    QWidget *sfiPage = nullptr;
    QWidget *sfixPage = nullptr;
    QWidget *smiPage = nullptr;
    QWidget *hsmPage = nullptr;
    QWidget *sfiObPage = nullptr;
    QWidget *obkeyPage = nullptr;
    QWidget *licensePage = nullptr;
    QWidget *sspPage = nullptr;
    QWidget *signPage = nullptr;
    QWidget *daPage = nullptr;

    /// Appends a tab whose title is its tool tip, too.
    /// @return its index
    int addTab(QWidget *page, const QString &title);

    // Left panel (Panels.cpp)
    QGroupBox *panelFrame = nullptr;
    QPushButton *hamburgerButton = nullptr;
    QPushButton *sfiButton = nullptr;
    QPushButton *sspButton = nullptr;
    QPushButton *wbButton = nullptr;
    QPushButton *h5Button = nullptr;
    QPushButton *helpButton = nullptr;
    QLabel *sfiLabel = nullptr;
    QLabel *sspLabel = nullptr;
    QLabel *wbLabel = nullptr;
    QLabel *h5Label = nullptr;
    QLabel *helpLabel = nullptr;
    bool isHamburgerOpen = false;

    // Check and clear (CheckAndClear.cpp)
    void clearParsePanes();  ///< empties the tables that show existing images
    /// Shows an image that is read already in the SFI tab.
    /// @return false when the record isn't a protected image
    bool showCheckedSfi(const QString &path, const FileType &record);
    void clearForms();  ///< all tabs, shown or not; the MCU boxes keep their entries

    // Saved state (SavedFirmwares.cpp). The paths are set first; each operation takes them over and
    // shows what it can of them in the list, see TwinTab::restoreFiles.
    QStringList firmwarePaths;
    QStringList firmIxPaths;
    QStringList firmExPaths;
    void ParseSavedFirmwares(QList<QVariant> addresses);
    void ParseSavedFirmwIx(QList<QVariant> addresses);
    /// Of the external files only binaries and Intel HEX have entries in the four lists.
    void ParseSavedFirmwEx(QList<QVariant> addresses, QList<QVariant> modes,
                           QList<QVariant> numbers, QList<QVariant> keyAddresses);

    // SFI tab (SfiTab.cpp)
    QComboBox *sfiMcuCombo = nullptr;      ///< null until the tab is built
    int currentSfiSelection = 0;           ///< index to return to when the `h5` panel is left
    workbench::TwinTab *sfiTab = nullptr;  ///< its form, lists and panes
    void InitSfiTab();
    void clearSfiForm();  ///< empties texts, lists and panes; the MCU box keeps its index
    void setSFImcuComboBoxH5(bool lock);

    /// Shows an image or modules list in a parse pane.
    /// @param kind      "sfi" or "sfix", in any case: whose pane
    /// @param fromUser  true takes the pane's path as it stands, false the output path
    void parseSfiFile(const QString &kind, bool fromUser);

    // SFIx tab (SfixTab.cpp)
    QComboBox *sfixMcuCombo = nullptr;
    int currentSfixSelection = 0;
    workbench::TwinTab *sfixTab = nullptr;
    void InitSfixTab();
    void clearSfixForm();
    void setSFIxmcuComboBoxH5(bool lock);

    // Option bytes tab (SfiObTab.cpp)
    QComboBox *sfiObMcuCombo = nullptr;
    int currentSfiObSelection = 0;
    void InitSfiObTab();
    void setSFIOBmcuComboBoxH5(bool lock);

    // SMI, SSP, signed image, HSM, licence and certificate tabs
    void InitSmiTab();
    void InitSspTab();
    void InitSignTab();
    void InitHSMTab();
    void InitLicenseTab();
    void InitCertifTab();

    // OBkey tab (OBkeyTab.cpp)
    Obkey *obkey = nullptr;  ///< created by `ensureObkey`, owned by the form
    QScrollArea *obkeyScrollArea = nullptr;
    std::uint8_t obkeyTabIndex = 0;
    void InitOBkeyTab();
    void OpenOBkeyKey();
    void ensureObkey();  ///< creates `obkey` if there is none

    // Image-generation tabs (ImageGenTab.cpp)
    std::vector<QWidget *> imageGenPages;  ///< without a parent until shown; owned by the form
    std::uint8_t imageGenTabIndex = 0;
    void InitMCUbootTab();  ///< lays the form into page `imageGenCount` - 1, if there is one
    void OpenMCUboot();
    void appendImageGenPage();
    QWidget *currentImageGenPage() const;  ///< page `imageGenCount` - 1, or null

public slots:
    // Left panel (Panels.cpp): each clears the tab widget, shows its pages and marks its button.
    void displaySFI_Tabs();
    void displaySSP_Tabs();
    void displayWB_Tabs();
    void displayH5_Tabs();
    void displayHamburger();
    void displayHelp();

    // SFI tab (SfiTab.cpp). What a slot does stands in `workbench::TwinTab`, for both twins.
    void changeSfiElements(int index);
    void AddFirmwares();
    void RemoveFirmware();
    void RemoveFirmwareEnabled(const QItemSelection &selection);
    void DisplayFirInfo(const QItemSelection &selection);
    void AddRSSOBKeys();
    void RemoveRSSOBKeys();
    void RemoveRSSOBKeysEnabled(const QItemSelection &selection);
    void DisplayOBKeyfileInfo(const QItemSelection &selection);
    void AddSmis();
    void RemoveSmi();
    void RemoveSmiEnabled(const QItemSelection &selection);
    void DisplaySmiInfo(const QItemSelection &selection);
    void OpenAreaK_SFI();
    void OpenSfiSsfi();
    void OpenH5Modules();
    void SfiFolder();
    void GenerateSfiEnabled();
    void GenerateSfi();
    void OpenSfiFile();
    // Keys, nonces and option bytes go into the fields of all tabs that have them.
    void OpenSfiKey();
    void OpenSfiNonce();
    void OpenOb();
    void GenerateEncryptionKey();
    void GenerateNonceKey();

    // SFIx tab (SfixTab.cpp)
    void changeSfixElements(int index);
    void AddFirmIx();
    void RemoveFirmIx();
    void RemoveFirmIxEnabled(const QItemSelection &selection);
    void DisplayFirmIxInfo(const QItemSelection &selection);
    void AddVFirmEx();
    void RemoveFirmEx();
    void RemoveFirmExEnabled(const QItemSelection &selection);
    void DisplayFirmExInfo(const QItemSelection &selection);
    void AddRSSOBKeys_SFIx();
    void RemoveRSSOBKeys_SFIx();
    void RemoveRSSOBKeysEnabled_SFIx(const QItemSelection &selection);
    void DisplayOBKeyfileInfo_SFIx(const QItemSelection &selection);
    void OpenAreaK();
    void OpenSfixSsfi();
    void OpenH5Modules_SFIx();
    void SfixFolder();
    void GenerateSfixEnabled();
    void GenerateSfix();
    void OpenSfixFile();

public:
    void initPanelIcons();                           ///< builds the panel; ends in displaySFI_Tabs
    void highlightCurrentIcon(const QString &name);  ///< "sfi", "ssp", "wb", "h5", in any case

private:
    void createPages();
    void buildTabs();
    void connectPanel();

    // SFI and SFIx tabs (SfiTab.cpp)
    using Slot = void (CentralWidget::*)();
    using SelectionSlot = void (CentralWidget::*)(const QItemSelection &);
    /// What the two tabs call differently.
    struct TwinSlots {
        void (CentralWidget::*changeMcu)(int);
        Slot openKeyArea, openSsfi, openModules, folder, generateEnabled, generate, openImage;
    };
    workbench::TwinSurroundings twinSurroundings();
    void connectTwin(workbench::TwinTab *tab, const TwinSlots &own);
    void connectList(workbench::FileList *list, Slot add, Slot remove, SelectionSlot removeEnabled,
                     SelectionSlot display);
    void fillFields(const char *row, const QString &path);
    void generateRandomFile(const char *row, int bytes, const QString &success,
                            const QString &failure);

    QMessageBox *m_aboutBox = nullptr;  ///< null until the first look
    QHBoxLayout *m_topLayout = nullptr;
    QVBoxLayout *m_rightLayout = nullptr;
};
