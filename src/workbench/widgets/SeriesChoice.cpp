#include "workbench/widgets/SeriesChoice.h"

#include "workbench/widgets/FieldNames.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QPushButton>

namespace workbench
{

SeriesChoice::SeriesChoice(const QString &name, QDialogButtonBox *buttons, QGridLayout *rows)
    : QObject(buttons),
      m_same(new QCheckBox(tr("Same &for all that follow one another"), buttons->parentWidget()))
{
    nameWidget(m_same, name + QStringLiteral("_same_check"), withoutMnemonic(m_same->text()));
    m_same->setToolTip(
        tr("Each further raw binary of this choice\ngoes to the next free address, unasked"));
    rows->addWidget(m_same, rows->rowCount(), 0, 1, 2);
    auto *cancelAll = buttons->addButton(tr("Cancel &all"), QDialogButtonBox::RejectRole);
    nameWidget(cancelAll, name + QStringLiteral("_cancelAll"), tr("Cancel all"));
    cancelAll->setToolTip(tr("Adds neither this file nor those that follow"));
    connect(cancelAll, &QPushButton::clicked, this, [this] { m_cancelsAll = true; });
}

bool SeriesChoice::isSameForAll() const
{
    return m_same->isChecked();
}

}  // namespace workbench
