#include "workbench/widgets/FieldNames.h"

#include <QTextDocument>
#include <QWidget>

namespace workbench
{

QString withoutMnemonic(const QString &label)
{
    QString plain;
    plain.reserve(label.size());
    for (int at = 0; at < label.size(); ++at) {
        if (label.at(at) == '&' && at + 1 < label.size()) {
            ++at;
        }
        plain.append(label.at(at));
    }
    return plain;
}

QString plainToolTip(const QString &text)
{
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal) : text;
}

void nameWidget(QWidget *widget, const QString &objectName, const QString &accessibleName)
{
    widget->setObjectName(objectName);
    widget->setAccessibleName(accessibleName);
}

}  // namespace workbench
