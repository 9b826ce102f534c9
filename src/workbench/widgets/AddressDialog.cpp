#include "workbench/widgets/AddressDialog.h"

#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/NumberText.h"
#include "workbench/widgets/SeriesChoice.h"
#include "workbench/widgets/WrappingLabel.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

AddressDialog::AddressDialog(const QString &fileName, QWidget *parent) : QDialog(parent)
{
    setWindowTitle(tr("Start address"));
    auto *question = new workbench::WrappingLabel(
        tr("Please specify the starting address for the file : ") + fileName, this);
    auto *label = new QLabel(tr("&Start address : "), this);
    m_startEdit = new QLineEdit(this);
    m_startEdit->setObjectName(QStringLiteral("address_start_edit"));
    m_startEdit->setAccessibleName(tr("Start address"));
    m_startEdit->setToolTip(tr("Decimal, or hexadecimal behind 0x"));
    label->setBuddy(m_startEdit);
    m_buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, Qt::Vertical, this);
    m_buttons->setObjectName(QStringLiteral("address_buttons"));
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(false);
    m_buttons->button(QDialogButtonBox::Ok)->setDefault(true);

    auto *layout = m_rows = new QGridLayout(this);
    layout->addWidget(question, 0, 0, 1, 2);
    layout->addWidget(label, 1, 0);
    layout->addWidget(m_startEdit, 1, 1);
    layout->addWidget(m_buttons, 0, 2, 2, 1);
    layout->setColumnStretch(1, 1);
    layout->setColumnMinimumWidth(1, 220);
    setTabOrder(m_startEdit, m_buttons);
    m_startEdit->setFocus();

    connect(m_startEdit, &QLineEdit::textChanged, this, &AddressDialog::OkEnabled);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &AddressDialog::CheckAddress);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &AddressDialog::reject);
}

void AddressDialog::proposeAddress(std::uint32_t address)
{
    m_startEdit->setText(QStringLiteral("0x") + QString::number(address, 16));
    m_startEdit->selectAll();
}

const workbench::SeriesChoice *AddressDialog::addSeries()
{
    return new workbench::SeriesChoice(QStringLiteral("address"), m_buttons, m_rows);
}

void AddressDialog::OkEnabled()
{
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(!m_startEdit->text().isEmpty());
}

void AddressDialog::CheckAddress()
{
    const auto address = workbench::unsignedFromText(m_startEdit->text());
    if (!address) {
        workbench::showBox(this, workbench::BoxKind::Error, QStringLiteral("Invalid address"));
        m_startEdit->clear();
        m_startEdit->setFocus();
        return;
    }
    m_address = *address;
    accept();
}
