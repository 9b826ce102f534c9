#include "workbench/widgets/PathEdit.h"

#include "workbench/widgets/Drops.h"
#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/PathText.h"

#include <QAbstractItemView>
#include <QAction>
#include <QCompleter>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QStringListModel>
#include <QStyle>
#include <QToolTip>

namespace workbench
{

namespace
{

constexpr int kPauseMs = 300;

}  // namespace

PathEdit::PathEdit(const QString &kind, Use use, QWidget *parent)
    : QLineEdit(parent), m_kind(kind), m_use(use)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(kPauseMs);
    connect(&m_pause, &QTimer::timeout, this, &PathEdit::markMissing);
    connect(this, &QLineEdit::textChanged, this, [this](const QString &text) {
        if (text.startsWith(QLatin1String("file:/"))) {
            clean();  // pasted: nobody types an address
        }
        m_pause.start();
    });
    connect(this, &QLineEdit::textEdited, this, &PathEdit::offer);
    connect(this, &QLineEdit::editingFinished, this, &PathEdit::clean);
}

QString PathEdit::path() const
{
    return text() == m_given ? m_given : cleanedPath(text());
}

void PathEdit::setPath(const QString &path)
{
    m_given = path;
    setText(path);
}

void PathEdit::choose(const QString &path)
{
    setPath(path);
    RecentPaths::instance().add(m_kind, path);
}

QString PathEdit::absolutePath() const
{
    return QDir::cleanPath(QDir(m_base).absoluteFilePath(path()));
}

void PathEdit::clean()
{
    const QString meant = path();
    const bool isTyped = isModified();
    if (meant != text()) {
        setText(meant);
    }
    if (!meant.isEmpty() && isTyped && QFileInfo(absolutePath()).isFile()) {
        RecentPaths::instance().add(m_kind, meant);
    }
}

void PathEdit::offer(const QString &text)
{
    if (m_completer == nullptr) {
        m_offers = new QStringListModel(this);
        m_completer = new QCompleter(m_offers, this);
        m_completer->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
        setCompleter(m_completer);
        m_completer->popup()->setAccessibleName(tr("Paths that fit"));
    }
    m_offers->setStringList(pathCompletions(text, RecentPaths::instance().of(m_kind), m_base));
    m_completer->complete();
}

void PathEdit::markMissing()
{
    m_isMissing = m_use == Use::Input && !path().isEmpty() && !QFileInfo(absolutePath()).isFile();
    if (m_missing != nullptr) {
        m_missing->setVisible(m_isMissing);
    }
    if (!m_isMissing || m_missing != nullptr) {
        return;
    }
    m_missing = addAction(style()->standardIcon(QStyle::SP_MessageBoxWarning), TrailingPosition);
    m_missing->setText(tr("There is no such file"));
    for (QWidget *sign : m_missing->associatedWidgets()) {
        if (sign != this) {
            nameWidget(sign, objectName() + QStringLiteral("_missing"),
                       accessibleName() + ' ' + m_missing->text());
        }
    }
}

bool PathEdit::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip && m_isMissing) {
        QStringList lines{tr("There is no such file: %1").arg(absolutePath())};
        if (!toolTip().isEmpty()) {
            lines << toolTip();
        }
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(),
                           plainToolTip(lines.join('\n')), this);
        return true;
    }
    return QLineEdit::event(event);
}

void PathEdit::dragEnterEvent(QDragEnterEvent *event)
{
    if (!droppedFiles(*event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
        return;
    }
    QLineEdit::dragEnterEvent(event);
}

void PathEdit::dropEvent(QDropEvent *event)
{
    const QStringList paths = droppedFiles(*event->mimeData());
    if (!paths.isEmpty()) {
        choose(paths.first());
        event->acceptProposedAction();
        return;
    }
    QLineEdit::dropEvent(event);
}

void PathEdit::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    const Qt::FocusReason reason = event->reason();
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
        reason == Qt::MouseFocusReason) {  // not for a menu, which may want the selection
        end(false);                        // the end of a long path tells more than its beginning
    }
}

void PathEdit::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Down && event->modifiers() == Qt::NoModifier) {
        offer(text());
        return;
    }
    QLineEdit::keyPressEvent(event);
}

}  // namespace workbench
