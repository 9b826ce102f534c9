#include "workbench/widgets/ParsePane.h"

#include "workbench/widgets/FileChoice.h"

#include <QVBoxLayout>

namespace workbench
{

ParsePane::ParsePane(const QString &tab, const QString &title, const PaneContents &contents,
                     QWidget *parent)
    : QWidget(parent),
      m_field(new FileField(tab + QStringLiteral("_parse"), tr("&Parse sfi, ssfi, mcsv file"),
                            {{QStringLiteral("browse"), tr("Browse")},
                             {QStringLiteral("show"), tr("Show in folder")}},
                            this)),
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
    QPushButton *show = m_field->button(QStringLiteral("show"));
    show->hide();
    connect(show, &QPushButton::clicked, this, [this] { showInFolder(m_field->path()); });
    connect(m_field, &FileField::pathChanged, show, &QPushButton::hide);
}

void ParsePane::showMade(const QString &path)
{
    m_field->setPath(path);
    m_field->button(QStringLiteral("show"))->show();
}

}  // namespace workbench
