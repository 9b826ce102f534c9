#include "workbench/tabs/img/ImgTab.h"

#include "obk/ImageCommand.h"
#include "workbench/tabs/img/ImgTabs.h"
#include "workbench/templates/ObkRows.h"
#include "workbench/widgets/FieldNames.h"

#include <QFileInfo>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

namespace workbench
{

namespace
{

QLabel *makeLabel(const char *name, QWidget *parent)
{
    auto *const label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->hide();
    return label;
}

QLabel *makeDescription(QWidget *parent)
{
    QLabel *const text = makeLabel("img_description_label", parent);
    text->setText(
        ImgTab::tr("Tool Description:\n"
                   "Makes a boot image with the image tool, from an XML template. Open a template, "
                   "fill in its fields and press \"Generate image\". Relative paths count from the "
                   "template's folder; the values used are kept in the template."));
    text->setFont(QFont(QStringLiteral("Times")));
    text->setStyleSheet(QStringLiteral("background-color: #ECF3FB; color: #1c1c1c; padding: 6px;"));
    text->show();
    return text;
}

QLabel *makeHeading(const QString &text, QWidget *parent)
{
    auto *const heading = new QLabel(text, parent);
    QFont font = heading->font();
    font.setBold(true);
    heading->setFont(font);
    return heading;
}

/// A pane of text that is only read; Tab leaves it.
QPlainTextEdit *makePane(const char *name, const QString &spoken, const QString &hint,
                         QWidget *parent)
{
    auto *const pane = new QPlainTextEdit(parent);
    nameWidget(pane, QLatin1String(name), spoken);
    pane->setReadOnly(true);
    pane->setTabChangesFocus(true);
    pane->setPlaceholderText(hint);
    pane->setToolTip(hint);
    pane->setFont(QFont(QStringLiteral("DejaVu Sans Mono"), 9));
    return pane;
}

}  // namespace

Tab *makeImgTab(const TabName &name, QWidget *page, FormContext &context)
{
    return new ImgTab(name, page, context);
}

ImgTab::ImgTab(const TabName &name, QWidget *page, FormContext &context) : Tab(name, page, context)
{
    auto *const split = new QSplitter(Qt::Horizontal, page);
    split->setObjectName(QStringLiteral("img_split"));
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

void ImgTab::buildLeft(QWidget *left)
{
    auto *const column = new QVBoxLayout(left);
    column->setContentsMargins(0, 0, 6, 0);
    column->addWidget(makeFileGroup(left));
    column->addWidget(makeDescription(left));
    m_title = makeLabel("img_title_label", left);
    m_title->setStyleSheet(QStringLiteral("QLabel { color : #238BBF ; }"));
    m_title->setFont(QFont(QStringLiteral("Jumble"), 11, 75));
    m_purpose = makeLabel("img_purpose_label", left);
    column->addWidget(m_title);
    column->addWidget(m_purpose);
    m_rows = new ObkRows(key(), left);
    column->addWidget(m_rows, 1);
    column->addWidget(makeOutputGroup(left));
    m_generate = new QPushButton(left);
    m_generate->setStyleSheet(QStringLiteral("height: 40px;width: 150px;"));
    auto *const foot = new QHBoxLayout;
    foot->addStretch();
    foot->addWidget(m_generate);
    column->addLayout(foot);
    setRole(0, false);
}

QWidget *ImgTab::makeFileGroup(QWidget *parent)
{
    auto *const file = new QGroupBox(parent);
    file->setObjectName(QStringLiteral("img_xml_group"));
    auto *const line = new QHBoxLayout(file);
    auto *const label = new QLabel(tr("XML file"), file);
    m_path = new QLineEdit(file);
    nameWidget(m_path, QStringLiteral("img_xml_edit"), tr("XML file"));
    m_path->setPlaceholderText(QStringLiteral("Select an input XML File "));
    m_path->setReadOnly(true);
    m_path->setToolTip(tr("The template that the form shows"));
    label->setBuddy(m_path);
    m_open = new QPushButton(tr("Open"), file);
    nameWidget(m_open, QStringLiteral("img_xml_open"), tr("XML file Open"));
    m_open->setToolTip(tr("Opens an image template (.xml)"));
    m_refresh = new QPushButton(QIcon(QStringLiteral(":/refreshIcon.png")), QString(), file);
    nameWidget(m_refresh, QStringLiteral("img_xml_refresh"), tr("XML file Refresh"));
    m_refresh->setToolTip(tr("Opens the same template again"));
    line->addWidget(label);
    line->addWidget(m_path, 1);
    line->addWidget(m_open);
    line->addWidget(m_refresh);
    return file;
}

QWidget *ImgTab::makeOutputGroup(QWidget *parent)
{
    auto *const group = new QGroupBox(tr("Output File"), parent);
    auto *const line = new QHBoxLayout(group);
    m_outputLabel = new QLabel(group);
    m_outputLabel->setTextFormat(Qt::PlainText);
    m_output = new QLineEdit(group);
    nameWidget(m_output, QStringLiteral("img_output_edit"), tr("Output File"));
    m_output->setToolTip(tr("Where the image goes: .bin, .hex or .srec"));
    m_outputLabel->setBuddy(m_output);
    m_folder = new QPushButton(tr("Select Path"), group);
    nameWidget(m_folder, QStringLiteral("img_output_folder"), tr("Output File Select Path"));
    line->addWidget(m_outputLabel);
    line->addWidget(m_output, 1);
    line->addWidget(m_folder);
    return group;
}

void ImgTab::buildRight(QWidget *right)
{
    auto *const column = new QVBoxLayout(right);
    column->setContentsMargins(6, 0, 0, 0);
    column->addWidget(makeHeading(tr("Command"), right));
    m_command = makePane("img_command_edit", tr("Command"),
                         tr("What the image tool is run with, as a shell reads it"), right);
    column->addWidget(m_command, 1);
    m_copy = new QPushButton(tr("Copy"), right);
    nameWidget(m_copy, QStringLiteral("img_command_copy"), tr("Command Copy"));
    m_copy->setToolTip(tr("Copies the command for a shell"));
    m_copy->setEnabled(false);
    auto *const line = new QHBoxLayout;
    line->addStretch();
    line->addWidget(m_copy);
    column->addLayout(line);
    column->addWidget(makeHeading(tr("Image tool"), right));
    m_said = makePane("img_tool_edit", tr("Text of the image tool"),
                      tr("What the image tool said, run after run"), right);
    column->addWidget(m_said, 1);
}

void ImgTab::connectAll()
{
    connect(m_open, &QPushButton::clicked, this, &ImgTab::openTemplate);
    connect(m_refresh, &QPushButton::clicked, this, &ImgTab::refresh);
    connect(m_folder, &QPushButton::clicked, this, &ImgTab::chooseOutput);
    connect(m_copy, &QPushButton::clicked, this, &ImgTab::copyCommand);
    connect(m_rows, &ObkRows::openPressed, this, &ImgTab::chooseFile);
    connect(m_rows, &ObkRows::fieldChanged, this, &ImgTab::showCommand);
    connect(m_output, &QLineEdit::textChanged, this, &ImgTab::showCommand);
    connect(m_generate, &QPushButton::clicked, this, [this] {
        if (m_isSaveOnly) {
            saveConfiguration();
        } else {
            generate();
        }
    });
}

void ImgTab::setRole(std::size_t index, bool isSaveOnly)
{
    m_index = index;
    m_isSaveOnly = isSaveOnly;
    const QString caption = isSaveOnly ? tr("Save Configuration") : tr("Generate image");
    m_generate->setText(caption);
    nameWidget(m_generate, QStringLiteral("img_generate_ok"), caption);
    m_generate->setToolTip(isSaveOnly ? tr("Keeps the values in the template")
                                      : tr("Runs the image tool with the command at the right"));
}

void ImgTab::showTemplate()
{
    m_path->setText(m_template.templatePath);
    m_title->setText(m_template.model.title);
    m_title->show();
    m_purpose->setText(m_template.model.tooltip);
    m_purpose->setVisible(!m_template.model.tooltip.isEmpty());
    m_rows->build(m_template.model, QFileInfo(m_template.templatePath).path());
    for (const ObDataItem &item : m_template.model.items) {
        if (item.kind == obk::ItemKind::Output) {
            m_output->setText(item.text());
            m_output->setToolTip(plainToolTip(item.tooltip.value_or(m_output->toolTip())));
            m_outputLabel->setText(item.nameText());
        }
    }
    m_rows->leadFocusTo({m_output, m_folder, m_generate, m_command, m_copy, m_said});
    showCommand();
}

void ImgTab::showCommand()
{
    if (!m_template.isLoaded) {
        return;
    }
    const auto made = obk::imageArguments(m_template.model, m_template.templatePath, values());
    m_command->setPlainText(
        made ? obk::shellText(Obkey::imageToolPath(), *made)
             : tr("No command yet: %1").arg(QString::fromStdString(made.error().text).trimmed()));
    m_copy->setEnabled(made.has_value());
}

std::vector<std::optional<QString>> ImgTab::values() const
{
    auto fields = m_rows->fields();
    fields.resize(m_template.model.items.size());
    for (std::size_t at = 0; at < fields.size(); ++at) {
        if (m_template.model.items[at].kind == obk::ItemKind::Output) {
            fields[at] = m_output->text();
        }
    }
    return fields;
}

}  // namespace workbench
