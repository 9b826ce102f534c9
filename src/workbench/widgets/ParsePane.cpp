#include "workbench/widgets/ParsePane.h"

#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/ShowInFolder.h"

#include <QVBoxLayout>

namespace workbench
{

ParsePane::ParsePane(const QString &tab, const QString &title, const PaneContents &contents,
                     QWidget *parent)
    : QWidget(parent),
      m_field(new FileField(tab + QStringLiteral("_parse"), tr("&Parse sfi, ssfi, mcsv file"),
                            {{QStringLiteral("browse"), tr("Browse")}}, this)),
      m_info(new InfoPane(tab + QStringLiteral("_imageInfo"), title, contents, this))
{
    auto *head = new QHBoxLayout;
    head->addWidget(m_field->label());
    head->addWidget(m_field, 1);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto *margin = new QWidget(this);
    margin->setLayout(head);
    layout->addWidget(margin);
    layout->addWidget(m_info, 1);
    connect(m_field->button(QStringLiteral("browse")), &QPushButton::clicked, this,
            &ParsePane::browseRequested);
    m_made = new ShowInFolder(tab + QStringLiteral("_parse_show"),
                              withoutMnemonic(m_field->label()->text()), this);
    head->addWidget(m_made);
    connect(m_field, &FileField::pathChanged, m_made, &ShowInFolder::withdraw);
}

void ParsePane::showMade(const QString &path)
{
    m_field->setPath(path);
    m_made->offer(path);
}

}  // namespace workbench
