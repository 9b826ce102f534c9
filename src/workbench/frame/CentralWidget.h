#pragma once
#include "files/FileManager.h"
#include "obk/Obkey.h"
#include "preparation/Preparation.h"
#include "workbench/forms/FormContext.h"
#include "workbench/frame/Building.h"

#include <QFont>
#include <QItemSelection>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QGroupBox;
class QLabel;
class QMessageBox;
class QPushButton;
class QScrollArea;
class QTabWidget;

struct FileType;

namespace workbench
{
class Tab;
class ImgTab;
class TabSet;
struct Panel;
}  // namespace workbench

/// The form: owns every tab page and knows all tabs through `workbench::Tab`. What a tab does
/// stands in the folder of that tab; the operations here that are named after one hand over to it,
/// in the file of its name (`SfiTab.cpp`). The left panel stands in `Panels.cpp`.
class CentralWidget : public QWidget
{
    Q_OBJECT
public:
    /// What the command line asked for; decides how closing the window ends the program.
    enum LaunchMode { Interactive = 0, NoGeneration = 1, FromCommandLine = 2 };

    /// @param buildForm  0 leaves all fields empty; any other value builds the whole form, which
    ///                   opens on the `sfi` panel
    explicit CentralWidget(unsigned char buildForm, QWidget *parent = nullptr,
                           workbench::Building building = workbench::Building::AtOnce);
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

    // Tabs (CentralWidget.cpp)
    /// All tabs, in the order of the registry; those made often come last. Builds what is missing.
    [[nodiscard]] const std::vector<workbench::Tab *> &tabs() const;
    /// Those of them that are built.
    [[nodiscard]] const std::vector<workbench::Tab *> &builtTabs() const;
    /// @return the first tab with the key, which is built now at the latest; null while there is
    ///         none: some come later
    [[nodiscard]] workbench::Tab *tab(const QString &key) const;
    /// Builds the tab in front, when the form stands in its window.
    void buildTabInFront();
    /// Builds the missing tabs in the turns of the event loop that come now.
    void buildTheRestInTime();
    void clearForms();       ///< all tabs, shown or not; the device boxes keep their entries
    void clearParsePanes();  ///< empties the tables that show existing images
    /// Shows an image that is read already in the tab for its kind.
    /// @return false when no tab shows records of that kind
    bool showChecked(const QString &path, const FileType &record);

    /// Shows the tabs of a panel, the first in front, and marks its button.
    void showPanel(const workbench::Panel &panel);

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

    // Saved firmware lists. The paths are set first; each operation takes them over.
    QStringList firmwarePaths;
    QStringList firmIxPaths;
    QStringList firmExPaths;
    void ParseSavedFirmwares(QList<QVariant> addresses);
    void ParseSavedFirmwIx(QList<QVariant> addresses);
    /// Of the external files only binaries and Intel HEX have entries in the four lists.
    void ParseSavedFirmwEx(QList<QVariant> addresses, QList<QVariant> modes,
                           QList<QVariant> numbers, QList<QVariant> keyAddresses);

    // SFI tab (SfiTab.cpp)
    void InitSfiTab() { buildTab(QStringLiteral("sfi")); }
    void setSFImcuComboBoxH5(bool lock) { lockDevice(QStringLiteral("sfi"), lock); }

    /// Shows an image or modules list in a parse pane.
    /// @param kind      "sfi" or "sfix", in any case: whose pane
    /// @param fromUser  true takes the pane's path as it stands, false the output path
    void parseSfiFile(const QString &kind, bool fromUser);

    // SFIx tab (SfixTab.cpp)
    void InitSfixTab() { buildTab(QStringLiteral("sfix")); }
    void setSFIxmcuComboBoxH5(bool lock) { lockDevice(QStringLiteral("sfix"), lock); }

    // Option bytes tab (ObTab.cpp)
    void InitSfiObTab() { buildTab(QStringLiteral("ob")); }
    void setSFIOBmcuComboBoxH5(bool lock) { lockDevice(QStringLiteral("ob"), lock); }
    void ParseSfiObRegs(unsigned int id, int core);

    /// Finds an image's footer and cuts the image there (PackageTabs.cpp).
    /// @param out  receives a record that the caller owns
    /// @return false after a box
    bool GetVDImgAndFooter(FileData **input, SignedImage **image, FileData **out);

    // SMI, SSP, signed image, SFU, HSM, licence and certificate tabs
    void InitSfuTab() { buildTab(QStringLiteral("sfu")); }
    void InitSmiTab() { buildTab(QStringLiteral("smi")); }
    void InitSspTab() { buildTab(QStringLiteral("ssp")); }
    void InitSignTab() { buildTab(QStringLiteral("sign")); }
    void InitHSMTab() { buildTab(QStringLiteral("hsm")); }
    /// Gives the HSM tab the list of microcontrollers, or that of microprocessors.
    void setHsmMcuSelectComponent(bool mcu);
    void InitLicenseTab() { buildTab(QStringLiteral("lic")); }
    void InitCertifTab() { buildTab(QStringLiteral("da")); }

    // OBkey tab (OBkeyTab.cpp)
    Obkey *obkey = nullptr;  ///< created by `ensureObkey`; lives as long as the form
    QScrollArea *obkeyScrollArea = nullptr;
    std::uint8_t obkeyTabIndex = 0;
    void InitOBkeyTab();
    void ensureObkey();  ///< creates `obkey` if there is none

    // Image-generation tabs (ImageGenTab.cpp)
    std::vector<QWidget *> imageGenPages;  ///< children of the form, then of the tab widget
    std::uint8_t imageGenTabIndex = 0;
    void InitMCUbootTab();  ///< lays the form into page `imageGenCount` - 1, if there is one
    void OpenMCUboot();     ///< opens a template in the latest of these tabs
    void saveMCUbootConfPinBench();  ///< keeps the values of the latest of these tabs
    void appendImageGenPage();
    QWidget *currentImageGenPage() const;  ///< page `imageGenCount` - 1, or null

signals:
    void tabBuilt(workbench::Tab *tab);

public slots:
    // Left panel (Panels.cpp): each clears the tab widget, shows its pages and marks its button.
    void displaySFI_Tabs();
    void displaySSP_Tabs();
    void displayWB_Tabs();
    void displayH5_Tabs();
    void displayHamburger();
    void displayHelp();

    // SFI tab (SfiTab.cpp)
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

    // OBkey tab (OBkeyTab.cpp). Those of a row take its item's name.
    void OpenOBkeyKey();
    void OpenDirectory();
    void refreshOBkeyBool();
    void OpenOBkeyFile(const QString &item);
    void OBkListLink(const QString &item);
    void OBkCBLink(const QString &item);
    void GenerateKeys(const QString &item);
    void generateOBkey();

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

    // SMI, SSP, signed image and SFU tabs (PackageTabs.cpp)
    void ParseElf();
    void GenerateSmi();
    void GenerateSmiEnabled();
    void ParseSmis();  ///< adds SMI files to the SFI tab's list
    void GenerateSsp();
    void GenerateSspEnabled();
    void DisplayBlobInfo(QString path);
    void changeSspElements(int index);
    void generateKeySSP();
    void generateNonceSSP();
    void GenerateSign();
    void GenerateSignEnabled();
    void DisplaySignInfo(QString path);
    void ParseSfuFirmware();
    void GenerateSfu();
    void GenerateSfuEnabled();

    // Option bytes tab (ObTab.cpp). Those that modify take the field with the keyboard focus.
    void changeSfiobElements(int index);
    void sfiObModifyBit();
    void sfiObModifyLineEdit();
    void sfiObModifyComboBox();
    void sfiObFolder();
    void GenerateSfiOb();
    void uploadSFIOB();

public:
    void initPanelIcons();                           ///< builds the panel; ends in displaySFI_Tabs
    void highlightCurrentIcon(const QString &name);  ///< "sfi", "ssp", "wb", "h5", in any case

private:
    /// Button and label of a panel.
    struct PanelButton {
        const workbench::Panel *panel;
        QPushButton *button;
        QLabel *label;
    };

    void createPages();
    void lendContext();
    QWidget *pageOf(const QString &key);
    void buildTab(const QString &key);  ///< on its page; a second time does nothing
    void lockDevice(const QString &key, bool lock);
    [[nodiscard]] workbench::ImgTab *currentImageGenTab() const;  ///< or null
    void greetTab(workbench::Tab *tab);  ///< tells a tab that was built what it has missed

    void addPanelTab(const QString &key);
    [[nodiscard]] const PanelButton &panelButton(const char *name) const;
    void connectPanel();

    std::unique_ptr<Obkey> m_obkey;
    std::unique_ptr<workbench::FormContext> m_context;          ///< null without a form
    std::function<void(int, const wchar_t *)> m_displayBefore;  ///< put back at the form's end
    std::unique_ptr<workbench::TabSet> m_tabs;
    std::optional<bool> m_hsmMcu;  ///< which list the HSM tab was last given
    std::vector<PanelButton> m_panelButtons;
    QMessageBox *m_aboutBox = nullptr;  ///< null until the first look
};
