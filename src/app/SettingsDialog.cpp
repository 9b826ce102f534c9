#include "app/SettingsDialog.h"

#include "report/DisplayMng.h"
#include "workbench/widgets/FieldNames.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QVBoxLayout>

using workbench::nameWidget;

SettingsDialog::SettingsDialog(QWidget *parent) : QDialog(parent)
{
    setWindowTitle(tr("Settings"));
    setLayout(new QVBoxLayout);
    buildPadding();
    buildSettings();
    buildLog();
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->setObjectName(QStringLiteral("settings_buttons"));
    connect(buttons, &QDialogButtonBox::accepted, this, &SettingsDialog::SaveSettings);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout()->addWidget(buttons);
    setValues({});
    // As large as its contents want in the user's font, and no other size.
    layout()->setSizeConstraint(QLayout::SetFixedSize);
}

QGroupBox *SettingsDialog::addGroup(const char *name, const QString &title, const QString &toolTip)
{
    auto *group = new QGroupBox(title, this);
    group->setObjectName(QLatin1String(name));
    group->setToolTip(toolTip);
    layout()->addWidget(group);
    return group;
}

void SettingsDialog::buildPadding()
{
    QGroupBox *group = addGroup("paddingGr", tr("Padding byte"),
                                tr("The padding byte is used to fill gaps between close segments "
                                   "in a firmware file"));
    m_padding00 = new QRadioButton(tr("0x00"), group);
    m_paddingFF = new QRadioButton(tr("0xFF"), group);
    nameWidget(m_padding00, QStringLiteral("settings_pad00_radio"), tr("Padding byte 0x00"));
    nameWidget(m_paddingFF, QStringLiteral("settings_padFF_radio"), tr("Padding byte 0xFF"));
    // Said before Ok, since nothing brings the forms back afterwards.
    m_paddingWarning = new QLabel(tr("Ok will empty all forms: their files were read with the "
                                     "other padding byte."),
                                  group);
    m_paddingWarning->setObjectName(QStringLiteral("settings_pad_label"));
    m_paddingWarning->setWordWrap(true);
    m_paddingWarning->hide();
    connect(m_paddingFF, &QRadioButton::toggled, this, &SettingsDialog::warnOfPadding);
    auto *row = new QHBoxLayout;
    row->addWidget(m_padding00);
    row->addWidget(m_paddingFF);
    row->addStretch();
    auto *column = new QVBoxLayout(group);
    column->addLayout(row);
    column->addWidget(m_paddingWarning);
}

void SettingsDialog::warnOfPadding()
{
    const bool wanted = m_hasFilledForms && m_paddingFF->isChecked() != m_paddingWasFF;
    m_paddingWarning->setVisible(wanted);
    // Screen readers don't read a label that appears, but what belongs to the button in focus.
    for (QRadioButton *button : {m_padding00, m_paddingFF}) {
        button->setAccessibleDescription(wanted ? m_paddingWarning->text() : QString());
    }
}

void SettingsDialog::buildSettings()
{
    QGroupBox *group = addGroup("settingsGr", tr("Settings file"),
                                tr("If this option is enabled a .ini file is generated in the "
                                   "executable folder to save the application state"));
    m_settings = new QCheckBox(tr("Generate settings file"), group);
    nameWidget(m_settings, QStringLiteral("settings_file_check"), m_settings->text());
    auto *column = new QVBoxLayout(group);
    column->addWidget(m_settings);
}

void SettingsDialog::buildLog()
{
    constexpr int kPathWidth = 360;
    QGroupBox *group = addGroup("logGr", tr("Log file"),
                                tr("If this option is enabled a log file is generated in the "
                                   "chosen path"));
    m_log = new QCheckBox(tr("Generate log file"), group);
    m_logPath = new QLineEdit(group);
    m_logPath->setMinimumWidth(kPathWidth);
    m_logFolder = new QPushButton(tr("Select folder"), group);
    nameWidget(m_log, QStringLiteral("settings_log_check"), m_log->text());
    nameWidget(m_logPath, QStringLiteral("settings_log_edit"), tr("Log file"));
    nameWidget(m_logFolder, QStringLiteral("settings_log_folder"), tr("Log file Select folder"));
    connect(m_log, &QCheckBox::stateChanged, this, &SettingsDialog::LogEnabled);
    connect(m_logFolder, &QPushButton::clicked, this, &SettingsDialog::LogFolder);
    auto *row = new QHBoxLayout;
    row->addWidget(m_logPath);
    row->addWidget(m_logFolder);
    auto *column = new QVBoxLayout(group);
    column->addWidget(m_log);
    column->addLayout(row);
}

void SettingsDialog::setValues(const Values &values, bool hasFilledForms)
{
    m_paddingWasFF = values.paddingFF;
    m_hasFilledForms = hasFilledForms;
    m_padding00->setChecked(!values.paddingFF);
    m_paddingFF->setChecked(values.paddingFF);
    m_settings->setChecked(values.generateSettingsFile);
    m_log->setChecked(values.generateLogFile);
    m_logPath->setText(values.logFilePath);
    warnOfPadding();
    (values.paddingFF ? m_paddingFF : m_padding00)->setFocus();
    LogEnabled();  // a box that is set to what it was sends no signal
}

SettingsDialog::Values SettingsDialog::values() const
{
    return {m_paddingFF->isChecked(), m_settings->isChecked(), m_log->isChecked(),
            m_logPath->text()};
}

void SettingsDialog::LogEnabled()
{
    m_logPath->setEnabled(m_log->isChecked());
    m_logFolder->setEnabled(m_log->isChecked());
}

void SettingsDialog::LogFolder()
{
    const QString folder = QFileDialog::getExistingDirectory(
        this, tr("Select folder"), QCoreApplication::applicationDirPath());
    if (!folder.isEmpty()) {
        m_logPath->setText(folder + QLatin1String("/VDR32SPB_Trace.log"));
    }
}

void SettingsDialog::SaveSettings()
{
    DisplayMng &display = DisplayMng::getInstance();
    if (m_log->isChecked()) {
        display.initLogFile(m_logPath->text());
    }
    display.logToFile = m_log->isChecked();
    accept();
}
