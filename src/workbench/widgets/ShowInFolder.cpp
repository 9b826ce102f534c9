#include "workbench/widgets/ShowInFolder.h"

#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/FileChoice.h"

namespace workbench
{

ShowInFolder::ShowInFolder(const QString &objectName, const QString &of, QWidget *parent)
    : QPushButton(tr("Show in folder"), parent)
{
    nameWidget(this, objectName, of + QLatin1Char(' ') + text());
    hide();
    connect(this, &QPushButton::clicked, this, [this] {
        if (!showInFolder(m_path)) {
            showBox(window(), BoxKind::Warning,
                    QStringLiteral("The desktop has nothing to show the folder with.") + '\n' +
                        m_path);
        }
    });
}

void ShowInFolder::offer(const QString &path)
{
    m_path = path;
    setToolTip(plainToolTip(tr("Opens the folder of %1").arg(path)));
    show();
}

}  // namespace workbench
