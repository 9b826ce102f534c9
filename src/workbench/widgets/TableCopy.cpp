#include "workbench/widgets/TableCopy.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QTableWidget>

namespace workbench
{

namespace
{

/// Ctrl+C in a table. No shortcut: those are the window's, one meaning for each key, and menu
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

QString textOf(const QTableWidgetItem *item)
{
    static const QRegularExpression breaks(QStringLiteral("[\\t\\r\\n]"));
    return item == nullptr ? QString() : item->text().replace(breaks, QStringLiteral(" "));
}

QString rowText(const QTableWidget &table, int row)
{
    QStringList cells;
    if (!table.verticalHeader()->isHidden()) {
        cells << textOf(table.verticalHeaderItem(row));
    }
    for (int column = 0; column < table.columnCount(); ++column) {
        cells << textOf(table.item(row, column));
    }
    return cells.join('\t') + '\n';
}

QAction *addAction(QTableWidget *table, const QString &caption,
                   QString (*text)(const QTableWidget &))
{
    auto *action = new QAction(caption, table);
    QObject::connect(action, &QAction::triggered, table, [table, text] {
        const QString copied = text(*table);
        if (!copied.isEmpty()) {
            QApplication::clipboard()->setText(copied);
        }
    });
    table->addAction(action);
    return action;
}

}  // namespace

QString selectedText(const QTableWidget &table)
{
    QString text;
    for (int row = 0; row < table.rowCount(); ++row) {
        if (table.selectionModel()->rowIntersectsSelection(row, {})) {
            text += rowText(table, row);
        }
    }
    return text;
}

QString wholeText(const QTableWidget &table)
{
    QString text;
    if (!table.horizontalHeader()->isHidden()) {
        QStringList headings;
        for (int column = 0; column < table.columnCount(); ++column) {
            headings << textOf(table.horizontalHeaderItem(column));
        }
        text = headings.join('\t') + '\n';
    }
    for (int row = 0; row < table.rowCount(); ++row) {
        text += rowText(table, row);
    }
    return text;
}

void makeCopyable(QTableWidget *table)
{
    QAction *copy = addAction(table, QObject::tr("&Copy"), selectedText);
    table->installEventFilter(new CopyKeys(copy));
    addAction(table, QObject::tr("Copy &all"), wholeText);
    table->setContextMenuPolicy(Qt::ActionsContextMenu);
}

}  // namespace workbench
