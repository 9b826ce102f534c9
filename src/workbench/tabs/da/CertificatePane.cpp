#include "workbench/tabs/da/CertificatePane.h"

#include "workbench/widgets/ShowInFolder.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace workbench
{

CertificatePane::CertificatePane(QWidget *parent)
    : QWidget(parent), m_field(new FileField(QStringLiteral("da_parse"), tr("Certificate to &show"),
                                             {{QStringLiteral("browse"), tr("Browse")}}, this)),
      m_chain(new ChainPane(QStringLiteral("da_certificate"), tr("Certificate information"),
                            tr("A certificate or chain that is there already is shown here."),
                            this)),
      m_made(new ShowInFolder(QStringLiteral("da_parse_show"), tr("Certificate"), this))
{
    m_field->edit()->setPlaceholderText(tr("Certificate or chain, .cert or .b64"));
    m_field->edit()->setToolTip(tr("A certificate or chain to look into.\ncert or b64 file"));
    auto *const head = new QWidget(this);
    auto *const row = new QHBoxLayout(head);
    row->addWidget(m_field->label());
    row->addWidget(m_field, 1);
    row->addWidget(m_made);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(head);
    layout->addWidget(m_chain, 1);
    connect(m_field->button(QStringLiteral("browse")), &QPushButton::clicked, this,
            &CertificatePane::browseRequested);
    connect(m_field, &FileField::pathChanged, m_made, &ShowInFolder::withdraw);
    connect(m_field->edit(), &QLineEdit::returnPressed, this,
            [this] { emit pathEntered(m_field->path()); });
}

void CertificatePane::offerMade(const QString &path)
{
    m_made->offer(path);
}

}  // namespace workbench
