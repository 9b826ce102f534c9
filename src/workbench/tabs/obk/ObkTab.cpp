#include "workbench/tabs/obk/ObkTab.h"

#include "workbench/tabs/obk/ObkTables.h"
#include "workbench/tabs/obk/ObkTabs.h"
#include "workbench/templates/ObkRows.h"
#include "workbench/widgets/FieldNames.h"

#include <QFileInfo>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

namespace workbench
{

namespace
{

QLabel *makeDescription(QWidget *parent)
{
    auto *const text = new QLabel(
        ObkTab::tr("Tool Description:\n"
                   "Makes a provisioning file (.obk) from an XML template. Open a template, fill "
                   "in its fields and press \"Generate OBkey\". Relative paths count from the "
                   "template's folder; the values used are kept in the template."),
        parent);
    text->setObjectName(QStringLiteral("obk_description_label"));
    text->setWordWrap(true);
    text->setFont(QFont(QStringLiteral("Times")));
    text->setStyleSheet(QStringLiteral("background-color: #ECF3FB; color: #1c1c1c; padding: 6px;"));
    return text;
}

QString outputTip()
{
    return ObkTab::tr("The file to write; a relative path counts from the template's folder");
}

QLabel *makeHeading(const QString &text, QWidget *parent)
{
    auto *const heading = new QLabel(text, parent);
    QFont font = heading->font();
    font.setBold(true);
    heading->setFont(font);
    return heading;
}

}  // namespace

Tab *makeObkTab(const TabName &name, QWidget *page, FormContext &context)
{
    return new ObkTab(name, page, context);
}

ObkTab::ObkTab(const TabName &name, QWidget *page, FormContext &context) : Tab(name, page, context)
{
    auto *const split = new QSplitter(Qt::Horizontal, page);
    split->setObjectName(QStringLiteral("obk_split"));
    split->setChildrenCollapsible(false);
    auto *const left = new QWidget(split);
    auto *const right = new QWidget(split);
    buildLeft(left);
    buildRight(right);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 2);
    split->setSizes({820, 480});
    auto *const layout = new QHBoxLayout(page);
    layout->addWidget(split);
    connectAll();
}

void ObkTab::buildLeft(QWidget *left)
{
    auto *const column = new QVBoxLayout(left);
    column->setContentsMargins(0, 0, 6, 0);

    column->addWidget(makeFileGroup(left));
    column->addWidget(makeDescription(left));

    m_title = new QLabel(left);
    m_title->setObjectName(QStringLiteral("obk_title_label"));
    m_title->setTextFormat(Qt::PlainText);
    m_title->hide();
    column->addWidget(m_title);
    m_rows = new ObkRows(key(), left);
    column->addWidget(m_rows, 1);
    column->addWidget(makeOutputGroup(left));

    auto *const foot = new QHBoxLayout;
    m_warning = new QWidget(left);
    auto *const warningLine = new QHBoxLayout(m_warning);
    warningLine->setContentsMargins(0, 0, 0, 0);
    auto *const icon = new QLabel(m_warning);
    icon->setPixmap(QIcon(QStringLiteral(":/warningIcon.png")).pixmap(20, 20));
    m_warningText = new QLabel(m_warning);
    m_warningText->setObjectName(QStringLiteral("obk_warning_label"));
    m_warningText->setWordWrap(true);
    warningLine->addWidget(icon);
    warningLine->addWidget(m_warningText, 1);
    m_warning->hide();
    m_generate = new QPushButton(tr("Generate OBkey"), left);
    nameWidget(m_generate, QStringLiteral("obk_generate_ok"), tr("Generate OBkey"));
    m_generate->setStyleSheet(QStringLiteral("height: 40px;width: 150px;"));
    foot->addWidget(m_warning, 1);
    foot->addStretch();
    foot->addWidget(m_generate);
    column->addLayout(foot);
}

QWidget *ObkTab::makeFileGroup(QWidget *parent)
{
    auto *const file = new QGroupBox(parent);
    file->setObjectName(QStringLiteral("obk_xml_group"));
    auto *const fileLine = new QHBoxLayout(file);
    auto *const label = new QLabel(tr("XML file"), file);
    m_path = new QLineEdit(file);
    nameWidget(m_path, QStringLiteral("obk_xml_edit"), tr("XML file"));
    m_path->setPlaceholderText(QStringLiteral("Select an input XML File "));
    m_path->setReadOnly(true);
    m_path->setToolTip(tr("The template that the form shows"));
    label->setBuddy(m_path);
    m_open = new QPushButton(tr("Open"), file);
    nameWidget(m_open, QStringLiteral("obk_xml_open"), tr("XML file Open"));
    m_refresh = new QPushButton(QIcon(QStringLiteral(":/refreshIcon.png")), QString(), file);
    nameWidget(m_refresh, QStringLiteral("OBkeyRefresh"), tr("XML file Refresh"));
    m_refresh->setToolTip(tr("Opens the same template again"));
    fileLine->addWidget(label);
    fileLine->addWidget(m_path, 1);
    fileLine->addWidget(m_open);
    fileLine->addWidget(m_refresh);
    return file;
}

QWidget *ObkTab::makeOutputGroup(QWidget *parent)
{
    m_outputGroup = new QGroupBox(tr("Output File"), parent);
    auto *const outputLine = new QHBoxLayout(m_outputGroup);
    m_outputLabel = new QLabel(m_outputGroup);
    m_outputLabel->setTextFormat(Qt::PlainText);
    m_output = new QLineEdit(m_outputGroup);
    nameWidget(m_output, QStringLiteral("obk_output_edit"), tr("Output File"));
    m_output->setToolTip(outputTip());
    m_outputLabel->setBuddy(m_output);
    m_folder = new QPushButton(tr("Select Path"), m_outputGroup);
    nameWidget(m_folder, QStringLiteral("obk_output_folder"), tr("Output File Select Path"));
    outputLine->addWidget(m_outputLabel);
    outputLine->addWidget(m_output, 1);
    outputLine->addWidget(m_folder);
    return m_outputGroup;
}

void ObkTab::buildRight(QWidget *right)
{
    auto *const column = new QVBoxLayout(right);
    column->setContentsMargins(6, 0, 0, 0);
    column->addWidget(makeHeading(tr("Information"), right));
    m_info = new ObkInfoTable(right);
    column->addWidget(m_info);
    m_slotTitle = makeHeading(tr("Slot Information"), right);
    m_slotTitle->hide();
    column->addWidget(m_slotTitle);
    m_slots = new ObkSlotTable(right);
    m_slots->hide();
    column->addWidget(m_slots, 1);
    column->addStretch();
}

void ObkTab::connectAll()
{
    connect(m_open, &QPushButton::clicked, this, &ObkTab::openTemplate);
    connect(m_refresh, &QPushButton::clicked, this, &ObkTab::refresh);
    connect(m_folder, &QPushButton::clicked, this, &ObkTab::chooseOutput);
    connect(m_generate, &QPushButton::clicked, this, &ObkTab::generate);
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
    const Obkey &loaded = obkey();
    m_path->setText(loaded.templatePath);
    m_title->setStyleSheet(QStringLiteral("QLabel { color : #238BBF ; }"));
    m_title->setFont(QFont(QStringLiteral("Jumble"), 11, 75));
    m_title->setMinimumSize(52, 52);
    m_title->setText(loaded.model.title);
    m_title->show();
    m_rows->build(loaded.model, QFileInfo(loaded.templatePath).path());
    m_rows->applySelectors(obkey().model);
    obkey().refreshShownSlots();
    showOutput();
    showEncryption();
    showSlots();
    m_rows->leadFocusTo({m_output, m_folder, m_generate, m_info, m_slots});
}

void ObkTab::showOutput()
{
    const Obkey &loaded = obkey();
    for (const ObDataItem &item : loaded.model.items) {
        if (item.kind == obk::ItemKind::Output) {
            QString path = item.text();
            path.chop(3);
            m_output->setText(path + QLatin1String(loaded.headerless ? "bin" : "obk"));
            m_output->setToolTip(plainToolTip(item.tooltip.value_or(outputTip())));
            m_outputLabel->setText(item.nameText());
        }
    }
}

void ObkTab::showEncryption()
{
    const auto encryption = obkey().model.doEncryption;
    m_info->clearCells();
    m_warning->setVisible(encryption.has_value());
    if (!encryption) {
        return;
    }
    const bool isOff = *encryption == 0;
    m_info->setCell(ObkInfoTable::Encryption, isOff ? tr("disable") : tr("enable"));
    m_warningText->setText(
        isOff ? tr("Encryption option is disabled!")
              : tr("Encryption option is enabled! Make sure that you use crypto part "
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
