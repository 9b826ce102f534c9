#include "workbench/tabs/sfi/ExtFirAddInfoDialog.h"

#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/NumberText.h"
#include "workbench/widgets/SeriesChoice.h"
#include "workbench/widgets/WrappingLabel.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

ExtFirAddInfoDialog::ExtFirAddInfoDialog(const QString &fileName, const QString &startAddress,
                                         QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(tr("External firmware"));
    buildFields(startAddress);
    layRows(fileName);
    (m_startEdit->isReadOnly() ? m_keyEdit : m_startEdit)->setFocus();
    connect(m_startEdit, &QLineEdit::textChanged, this, &ExtFirAddInfoDialog::OkEnabled);
    connect(m_regionSpin, &QSpinBox::textChanged, this, &ExtFirAddInfoDialog::OkEnabled);
    // The spin box itself is silent about a text without a number, such as an emptied one.
    connect(m_regionSpin->findChild<QLineEdit *>(), &QLineEdit::textChanged, this,
            &ExtFirAddInfoDialog::OkEnabled);
    connect(m_keyEdit, &QLineEdit::textChanged, this, &ExtFirAddInfoDialog::OkEnabled);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &ExtFirAddInfoDialog::CheckInputValue);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &ExtFirAddInfoDialog::reject);
}

void ExtFirAddInfoDialog::buildFields(const QString &startAddress)
{
    const auto name = [](QWidget *widget, const char *objectName, const QString &accessibleName) {
        widget->setObjectName(QLatin1String(objectName));
        widget->setAccessibleName(accessibleName);
    };
    m_startEdit = new QLineEdit(this);
    name(m_startEdit, "extFir_start_edit", tr("Start address"));
    if (startAddress != QLatin1String("-1")) {
        m_startEdit->setText(startAddress);
        m_startEdit->setReadOnly(true);
    }
    m_regionSpin = new QSpinBox(this);
    name(m_regionSpin, "extFir_region_spin", tr("Region number"));
    m_regionSpin->setRange(0, 7);
    m_regionSpin->setValue(0);  // or its text stays empty until it is shown
    m_modeSpin = new QSpinBox(this);
    name(m_modeSpin, "extFir_mode_spin", tr("Region mode"));
    m_modeSpin->setRange(0, 3);
    m_keyEdit = new QLineEdit(this);
    name(m_keyEdit, "extFir_key_edit", tr("Key address"));
    m_buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, Qt::Vertical, this);
    m_buttons->setObjectName(QStringLiteral("extFir_buttons"));
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(false);
    m_buttons->button(QDialogButtonBox::Ok)->setDefault(true);
}

void ExtFirAddInfoDialog::layRows(const QString &fileName)
{
    auto *file = new workbench::WrappingLabel(tr("External firmware file: ") + fileName, this);
    auto *layout = m_rows = new QGridLayout(this);
    layout->addWidget(file, 0, 0, 1, 2);
    struct Field {
        QString label;
        QWidget *input;
    };
    const Field fields[] = {{tr("&Start address:   "), m_startEdit},
                            {tr("&Region number:"), m_regionSpin},
                            {tr("Region &mode:    "), m_modeSpin},
                            {tr("&Key address:      "), m_keyEdit}};
    int line = 1;
    for (const Field &each : fields) {
        auto *label = new QLabel(each.label, this);
        label->setBuddy(each.input);
        layout->addWidget(label, line, 0);
        layout->addWidget(each.input, line, 1);
        ++line;
    }
    layout->addWidget(m_buttons, 0, 2, line, 1);
    layout->setColumnStretch(1, 1);
    layout->setColumnMinimumWidth(1, 220);
}

void ExtFirAddInfoDialog::setRegionNumberRange(int smallest, int largest)
{
    m_regionSpin->setRange(smallest, largest);
}

void ExtFirAddInfoDialog::setRegionModeRange(int smallest, int largest)
{
    m_modeSpin->setRange(smallest, largest);
}

void ExtFirAddInfoDialog::propose(std::uint32_t start, std::uint32_t region, std::uint32_t mode,
                                  std::uint32_t key)
{
    const auto hex = [](std::uint32_t number) {
        return QStringLiteral("0x") + QString::number(number, 16);
    };
    if (!m_startEdit->isReadOnly()) {
        m_startEdit->setText(hex(start));
        m_startEdit->selectAll();
    }
    m_regionSpin->setValue(static_cast<int>(region));
    m_modeSpin->setValue(static_cast<int>(mode));
    m_keyEdit->setText(hex(key));
}

const workbench::SeriesChoice *ExtFirAddInfoDialog::addSeries()
{
    return new workbench::SeriesChoice(QStringLiteral("extFir"), m_buttons, m_rows);
}

void ExtFirAddInfoDialog::OkEnabled()
{
    const bool complete = !m_startEdit->text().isEmpty() && !m_regionSpin->text().isEmpty() &&
                          !m_keyEdit->text().isEmpty();
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(complete);
}

void ExtFirAddInfoDialog::CheckInputValue()
{
    const auto start = workbench::unsignedFromText(m_startEdit->text());
    if (!start) {
        workbench::showBox(this, workbench::BoxKind::Error,
                           QStringLiteral("Invalid start address"));
        m_startEdit->clear();
    }
    const auto region = workbench::unsignedFromText(m_regionSpin->text());
    if (!region) {
        workbench::showBox(this, workbench::BoxKind::Error,
                           QStringLiteral("Invalid region number"));
        m_regionSpin->clear();
    }
    const auto key = workbench::unsignedFromText(m_keyEdit->text());
    if (!key) {
        workbench::showBox(this, workbench::BoxKind::Error, QStringLiteral("Invalid key address"));
        m_keyEdit->clear();
    }
    if (!start || !region || !key) {
        return;
    }
    m_startAddress = *start;
    m_regionNumber = *region;
    m_regionMode = static_cast<std::uint32_t>(m_modeSpin->value());
    m_keyAddress = *key;
    accept();
}
