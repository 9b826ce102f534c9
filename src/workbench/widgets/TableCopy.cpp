#include "workbench/widgets/TableCopy.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QTableView>
#include <QTreeView>

namespace workbench
{

namespace
{

/// Ctrl+C in a view. No shortcut: those are the window's, one meaning for each key, and menu
/// entries show none.
class CopyKeys : public QObject
{
public:
    explicit CopyKeys(QAction *copy) : QObject(copy), m_copy(copy) {}

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress &&
            static_cast<QKeyEvent *>(event)->matches(QKeySequence::Copy)) {
            m_copy->trigger();
            return true;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QAction *m_copy;
};

QString oneLine(const QVariant &cell)
{
    static const QRegularExpression breaks(QStringLiteral("[\\t\\r\\n]"));
    return cell.toString().replace(breaks, QStringLiteral(" "));
}

/// @return null where the view has no such headings
const QHeaderView *headingsOf(const QAbstractItemView &view, Qt::Orientation orientation)
{
    if (const auto *table = qobject_cast<const QTableView *>(&view)) {
        return orientation == Qt::Horizontal ? table->horizontalHeader() : table->verticalHeader();
    }
    const auto *tree = qobject_cast<const QTreeView *>(&view);
    return tree == nullptr || orientation == Qt::Vertical ? nullptr : tree->header();
}

bool showsHeadings(const QAbstractItemView &view, Qt::Orientation orientation)
{
    const QHeaderView *headings = headingsOf(view, orientation);
    return headings != nullptr && !headings->isHidden();
}

void addRow(const QAbstractItemView &view, int row, const QModelIndex &parent, QString &text)
{
    const QAbstractItemModel &model = *view.model();
    QStringList cells;
    if (showsHeadings(view, Qt::Vertical)) {
        cells << oneLine(model.headerData(row, Qt::Vertical));
    }
    for (int column = 0; column < model.columnCount(parent); ++column) {
        cells << oneLine(model.index(row, column, parent).data());
    }
    if (!parent.isValid() || !cells.join(QString()).isEmpty()) {
        text += cells.join('\t') + '\n';
    }
}

void addRows(const QAbstractItemView &view, const QModelIndex &parent, bool areAll, QString &text)
{
    const QAbstractItemModel &model = *view.model();
    for (int row = 0; row < model.rowCount(parent); ++row) {
        if (areAll || view.selectionModel()->rowIntersectsSelection(row, parent)) {
            addRow(view, row, parent, text);
        }
        addRows(view, model.index(row, 0, parent), areAll, text);
    }
}

QAction *addAction(QAbstractItemView *view, const QString &caption,
                   QString (*text)(const QAbstractItemView &))
{
    auto *action = new QAction(caption, view);
    QObject::connect(action, &QAction::triggered, view, [view, text] {
        const QString copied = text(*view);
        if (!copied.isEmpty()) {
            QApplication::clipboard()->setText(copied);
        }
    });
    view->addAction(action);
    return action;
}

}  // namespace

QString selectedText(const QAbstractItemView &view)
{
    QString text;
    addRows(view, {}, false, text);
    return text;
}

QString wholeText(const QAbstractItemView &view)
{
    QString text;
    if (showsHeadings(view, Qt::Horizontal)) {
        QStringList headings;
        for (int column = 0; column < view.model()->columnCount(); ++column) {
            headings << oneLine(view.model()->headerData(column, Qt::Horizontal));
        }
        text = headings.join('\t') + '\n';
    }
    addRows(view, {}, true, text);
    return text;
}

void makeCopyable(QAbstractItemView *view)
{
    QAction *copy = addAction(view, QObject::tr("&Copy"), selectedText);
    view->installEventFilter(new CopyKeys(copy));
    addAction(view, QObject::tr("Copy &all"), wholeText);
    view->setContextMenuPolicy(Qt::ActionsContextMenu);
}

}  // namespace workbench
