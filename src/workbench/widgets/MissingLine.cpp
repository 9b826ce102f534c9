#include "workbench/widgets/MissingLine.h"

#include "workbench/widgets/FieldNames.h"

namespace workbench
{

MissingLine::MissingLine(const QString &tab, QWidget *parent) : QLabel(parent)
{
    nameWidget(this, tab + QStringLiteral("_missing_label"), tr("Still missing"));
    setTextFormat(Qt::RichText);
    setWordWrap(true);
    setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    hide();
    connect(this, &QLabel::linkActivated, this, &MissingLine::chosen);
}

void MissingLine::tell(const QList<Input> &missing)
{
    QStringList links;
    for (const Input &each : missing) {
        links << QStringLiteral("<a href=\"%1\">%2</a>")
                     .arg(each.name.toHtmlEscaped(), each.noun.toHtmlEscaped());
    }
    setText(tr("Still missing: %1").arg(links.join(QStringLiteral(", "))));
    setVisible(!links.isEmpty());
}

}  // namespace workbench
