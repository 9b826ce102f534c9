#include "workbench/tabs/obk/ObkTab.h"

#include "workbench/tabs/obk/ObkTables.h"
#include "workbench/tabs/obk/ObkTabs.h"
#include "workbench/templates/TemplatePage.h"
#include "workbench/widgets/ShowInFolder.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace workbench
{

namespace
{

TemplatePage::Texts texts()
{
    const auto tr = [](const char *text) { return ObkTab::tr(text); };
    return {QStringLiteral("OBkeyRefresh"),
            tr("Tool Description:\n"
               "Makes a provisioning file (.obk) from an XML template. Open a template, fill "
               "in its fields and press \"Generate OBkey\". Relative paths count from the "
               "template's folder; the values used are kept in the template."),
            tr("The file to write; a relative path counts from the template's folder"),
            tr("Path of the provisioning file, .obk"),
            tr("output file"),
            QStringLiteral("Directories/OBkey_path"),
            QStringLiteral("Template/OBkey")};
}

}  // namespace

Tab *makeObkTab(const TabName &name, QWidget *page, FormContext &context)
{
    return new ObkTab(name, page, context);
}

ObkTab::ObkTab(const TabName &name, QWidget *page, FormContext &context)
    : Tab(name, page, context), m_view(new TemplatePage(key(), texts(), page)),
      m_rows(m_view->rows())
{
    m_view->setGenerate(tr("Generate OBkey"), tr("Writes the provisioning file"));
    buildRight();
    connectAll();
}

void ObkTab::buildRight()
{
    QVBoxLayout *const column = m_view->right();
    QWidget *const right = column->parentWidget();
    column->addWidget(TemplatePage::makeHeading(tr("Information"), right));
    m_info = new ObkInfoTable(right);
    column->addWidget(m_info);
    m_made = new ShowInFolder(key() + QStringLiteral("_show"), tr("OBkey"), right);
    column->addWidget(m_made, 0, Qt::AlignRight);
    m_slotTitle = TemplatePage::makeHeading(tr("Slot Information"), right);
    m_slotTitle->hide();
    column->addWidget(m_slotTitle);
    m_slots = new ObkSlotTable(right);
    m_slots->hide();
    column->addWidget(m_slots, 1);
    column->addStretch();
}

void ObkTab::connectAll()
{
    connect(m_view, &TemplatePage::openPressed, this, &ObkTab::openTemplate);
    connect(m_view, &TemplatePage::templateDropped, this, &ObkTab::open);
    connect(m_view, &TemplatePage::refreshPressed, this, &ObkTab::refresh);
    connect(m_view, &TemplatePage::folderPressed, this, &ObkTab::chooseOutput);
    connect(m_view, &TemplatePage::generatePressed, this, &ObkTab::generate);
    connect(m_rows, &ObkRows::selectorChanged, this, &ObkTab::followSelector);
    connect(m_rows, &ObkRows::openPressed, this,
            [this](int item) { chooseFile(m_rows->row(item)); });
    connect(m_rows, &ObkRows::regeneratePressed, this,
            [this](int item) { regenerateKey(m_rows->row(item)); });
    connect(m_rows, &ObkRows::restorePressed, this,
            [this](int item) { restoreKey(m_rows->row(item)); });
}

void ObkTab::showTemplate()
{
    m_view->showTemplate(obkey().templatePath, obkey().model, outputText(),
                         {m_info, m_made, m_slots});
    m_rows->applySelectors(obkey().model);
    obkey().refreshShownSlots();
    m_made->withdraw();
    showEncryption();
    showSlots();
}

QString ObkTab::outputText() const
{
    for (const ObDataItem &item : obkey().model.items) {
        if (item.kind == obk::ItemKind::Output) {
            QString path = item.text();
            path.chop(3);
            return path + QLatin1String(obkey().headerless ? "bin" : "obk");
        }
    }
    return {};
}

void ObkTab::showEncryption()
{
    const auto encryption = obkey().model.doEncryption;
    m_info->clearCells();
    if (!encryption) {
        m_view->setWarning({});
        return;
    }
    const bool isOff = *encryption == 0;
    m_info->setCell(ObkInfoTable::Encryption, isOff ? tr("disable") : tr("enable"));
    m_view->setWarning(
        isOff ? QStringLiteral("Encryption option is disabled!")
              : QStringLiteral("Encryption option is enabled! Make sure that you use crypto part "
                               "(VDR32H573)!"));
}

void ObkTab::showSlots()
{
    const Obkey &loaded = obkey();
    const bool hasSlots = !loaded.flashSlots.all.empty() || !loaded.obkSlots.empty();
    m_slots->show(loaded.flashSlots.all, loaded.obkSlots);
    m_slots->setVisible(hasSlots);
    m_slotTitle->setVisible(hasSlots);
}

}  // namespace workbench
