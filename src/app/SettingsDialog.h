#pragma once
#include <QCheckBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

/// Padding byte, settings file and log file. It changes the log file at once when it is accepted;
/// the rest is for the caller to read from it and to take over.
class SettingsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit SettingsDialog(QWidget *parent);

    struct Values {
        bool paddingFF = true;
        bool generateSettingsFile = true;
        bool generateLogFile = false;
        QString logFilePath;
    };
    /// Shows values as those that hold now; the focus goes to the padding byte in use.
    /// @param hasFilledForms  whether another padding byte would empty something
    void setValues(const Values &values, bool hasFilledForms = false);
    [[nodiscard]] Values values() const;

public slots:
    void LogFolder();     ///< asks for the folder of the log file
    void LogEnabled();    ///< lets path and button follow the check box
    void SaveSettings();  ///< opens or leaves the log file, then accepts

private:
    QGroupBox *addGroup(const char *name, const QString &title, const QString &toolTip);
    void buildPadding();
    void buildSettings();
    void buildLog();
    void warnOfPadding();

    QRadioButton *m_padding00 = nullptr;
    QRadioButton *m_paddingFF = nullptr;
    QLabel *m_paddingWarning = nullptr;
    QCheckBox *m_settings = nullptr;
    QCheckBox *m_log = nullptr;
    QLineEdit *m_logPath = nullptr;
    QPushButton *m_logFolder = nullptr;
    bool m_paddingWasFF = true;
    bool m_hasFilledForms = false;
};
