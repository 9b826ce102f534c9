#include "workbench/forms/ListExtras.h"

#include "workbench/widgets/FileList.h"

#include <QEvent>
#include <QLabel>

namespace workbench
{

EmptyListHint::EmptyListHint(FileList *list, const QString &hint)
    : QObject(list), m_list(list), m_words(new QLabel(hint, list->view()->viewport()))
{
    m_words->setTextFormat(Qt::PlainText);
    m_words->setWordWrap(true);
    m_words->setAlignment(Qt::AlignCenter);
    m_words->setMargin(4);
    m_words->setEnabled(false);  // the muted colour of the desktop
    m_words->setAttribute(Qt::WA_TransparentForMouseEvents);
    list->view()->viewport()->installEventFilter(this);
    const QAbstractItemModel *model = list->view()->model();
    connect(model, &QAbstractItemModel::rowsInserted, this, &EmptyListHint::update);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &EmptyListHint::update);
    connect(model, &QAbstractItemModel::modelReset, this, &EmptyListHint::update);
}

void EmptyListHint::update()
{
    m_words->setVisible(m_list->view()->model()->rowCount() == 0);
}

bool EmptyListHint::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        m_words->setGeometry(m_list->view()->viewport()->rect());
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace workbench
