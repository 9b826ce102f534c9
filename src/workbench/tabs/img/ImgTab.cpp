#include "workbench/tabs/img/ImgTab.h"

#include "obk/ImageCommand.h"
#include "workbench/tabs/img/ImgTabs.h"
#include "workbench/templates/TemplatePage.h"
#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/ShowInFolder.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace workbench
{

namespace
{

TemplatePage::Texts texts()
{
    const auto tr = [](const char *text) { return ImgTab::tr(text); };
    return {QStringLiteral("img_xml_refresh"),
            tr("Tool Description:\n"
               "Makes a boot image with the image tool, from an XML template. Open a template, "
               "fill in its fields and press \"Generate image\". Relative paths count from the "
               "template's folder; the values used are kept in the template."),
            tr("Where the image goes: .bin, .hex or .srec"),
            tr("Path of the image, .bin, .hex or .srec"),
            tr("output file"),
            QStringLiteral("Directories/Imgtool_path"),
            QStringLiteral("Template/Image")};
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

ImgTab::ImgTab(const TabName &name, QWidget *page, FormContext &context)
    : Tab(name, page, context), m_view(new TemplatePage(key(), texts(), page)),
      m_rows(m_view->rows())
{
    setRole(0, false);
    buildRight();
    connectAll();
}

void ImgTab::buildRight()
{
    QVBoxLayout *const column = m_view->right();
    QWidget *const right = column->parentWidget();
    column->addWidget(TemplatePage::makeHeading(tr("Command"), right));
    m_command = makePane("img_command_edit", tr("Command"),
                         tr("What the image tool is run with, as a shell reads it"), right);
    column->addWidget(m_command, 1);
    m_copy = new QPushButton(tr("Copy"), right);
    nameWidget(m_copy, QStringLiteral("img_command_copy"), tr("Command Copy"));
    m_copy->setToolTip(tr("Copies the command for a shell"));
    m_copy->setEnabled(false);
    m_made = new ShowInFolder(key() + QStringLiteral("_show"), tr("Boot image"), right);
    auto *const line = new QHBoxLayout;
    line->addStretch();
    line->addWidget(m_made);
    line->addWidget(m_copy);
    column->addLayout(line);
    column->addWidget(TemplatePage::makeHeading(tr("Image tool"), right));
    m_said = makePane("img_tool_edit", tr("Text of the image tool"),
                      tr("What the image tool said, run after run"), right);
    column->addWidget(m_said, 1);
}

void ImgTab::connectAll()
{
    connect(m_view, &TemplatePage::openPressed, this, &ImgTab::openTemplate);
    connect(m_view, &TemplatePage::templateDropped, this, &ImgTab::open);
    connect(m_view, &TemplatePage::refreshPressed, this, &ImgTab::refresh);
    connect(m_view, &TemplatePage::folderPressed, this, &ImgTab::chooseOutput);
    connect(m_copy, &QPushButton::clicked, this, &ImgTab::copyCommand);
    connect(m_rows, &ObkRows::openPressed, this, &ImgTab::chooseFile);
    connect(m_rows, &ObkRows::fieldChanged, this, &ImgTab::showCommand);
    connect(m_view, &TemplatePage::outputChanged, this, &ImgTab::showCommand);
    connect(m_view, &TemplatePage::generatePressed, this, [this] {
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
    m_view->setGenerate(isSaveOnly ? tr("Save Configuration") : tr("Generate image"),
                        isSaveOnly ? tr("Keeps the values in the template")
                                   : tr("Runs the image tool with the command at the right"));
}

void ImgTab::showTemplate()
{
    const auto &items = m_template.model.items;
    const auto output = std::ranges::find(items, obk::ItemKind::Output, &ObDataItem::kind);
    m_view->showTemplate(m_template.templatePath, m_template.model,
                         output == items.end() ? QString() : output->text(),
                         {m_command, m_made, m_copy, m_said});
    m_view->setPurpose(m_template.model.tooltip);
    m_made->withdraw();
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
            fields[at] = m_view->outputPath();
        }
    }
    return fields;
}

}  // namespace workbench
