#include "workbench/widgets/ToolProgress.h"

#include "workbench/widgets/FieldNames.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGridLayout>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>

namespace workbench
{

namespace
{

bool isInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::Drop:
    case QEvent::Close:
        return true;
    default:
        return false;
    }
}

}  // namespace

ToolProgress::ToolProgress(QWidget *parent) : m_box(new QMessageBox(parent))
{
    m_box->setObjectName(QStringLiteral("progress_box"));
    m_box->setWindowTitle(tr("Operation in progress, please wait ..."));
    m_box->setText(tr("Operation in progress, please wait ..."));
    m_box->setTextFormat(Qt::PlainText);
    m_box->setModal(false);
    m_box->resize(350, 10);
    m_cancel = m_box->addButton(QMessageBox::Cancel);
    nameWidget(m_cancel, QStringLiteral("progress_cancel_button"), tr("Cancel the operation"));
    // However the box goes: by its button, by Escape or by its window's own frame, which presses no
    // button and would leave nothing that ends the tool.
    connect(m_box.get(), &QMessageBox::finished, this, [this] { m_isCancelled = true; });
    m_box->show();
}

ToolProgress::~ToolProgress() = default;

void ToolProgress::finish()
{
    m_box->hide();
}

bool ToolProgress::step(const QString &what, int done, int of)
{
    if (m_bar == nullptr) {
        m_bar = new QProgressBar(m_box.get());
        nameWidget(m_bar, QStringLiteral("progress_bar"), tr("Progress"));
        auto *const grid = qobject_cast<QGridLayout *>(m_box->layout());
        grid->addWidget(m_bar, grid->rowCount(), 0, 1, grid->columnCount());
    }
    m_bar->setRange(0, of);
    m_bar->setValue(done);
    m_box->setText(what);
    turn();
    return !m_isCancelled;
}

void ToolProgress::setCancellable(bool isCancellable)
{
    m_cancel->setEnabled(isCancellable);
}

process::ToolWatch ToolProgress::watch()
{
    return {.isCancelled = [this] { return m_isCancelled; }, .idle = [this] { turn(); }};
}

void ToolProgress::turn()
{
    QCoreApplication::instance()->installEventFilter(this);
    QCoreApplication::processEvents();
    QCoreApplication::instance()->removeEventFilter(this);
}

bool ToolProgress::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Shortcut && !watched->isWidgetType()) {
        return true;  // of an action in a menu, whose window gets no event of its own
    }
    if (!watched->isWidgetType() || !isInput(event->type())) {
        return false;
    }
    auto *const widget = static_cast<QWidget *>(watched);
    if (widget == m_box.get() || m_box->isAncestorOf(widget)) {
        return false;
    }
    // A close event that nobody refuses closes the window, whoever swallows it.
    event->ignore();
    return true;
}

}  // namespace workbench
