#include "workbench/widgets/FileList.h"

#include "workbench/widgets/Drops.h"
#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/NotedItemDelegate.h"

#include <QClipboard>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace workbench
{

namespace
{

/// Recedes behind what users typed. Not by a role of the palette: under the application's style
/// sheet a label heeds none. Nor by an effect, which lays out the whole form for each drawing.
class FaintLabel : public QLabel
{
public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        constexpr double kFaint = 0.6;
        QPainter painter(this);
        painter.setOpacity(kFaint);
        const int place = QStyle::visualAlignment(layoutDirection(), alignment());
        style()->drawItemText(&painter, contentsRect(), place | Qt::TextWordWrap, palette(),
                              isEnabled(), text(), foregroundRole());
    }
};

}  // namespace

FileList::FileList(const QString &name, const QString &label, QWidget *parent)
    : QWidget(parent), m_label(new QLabel(label, parent)), m_view(new QListView(this)),
      m_add(new QPushButton(tr("Add"), this)), m_remove(new QPushButton(tr("Remove"), this)),
      m_hint(new FaintLabel(m_view->viewport()))
{
    const QString plain = withoutMnemonic(label);
    m_label->setObjectName(name + QStringLiteral("_label"));
    m_label->setBuddy(m_view);
    nameWidget(m_view, name + QStringLiteral("_list"), plain);
    nameWidget(m_add, name + QStringLiteral("_add"), plain + ' ' + m_add->text());
    nameWidget(m_remove, name + QStringLiteral("_remove"), plain + ' ' + m_remove->text());
    m_remove->setEnabled(false);
    m_add->setToolTip(tr("Adds files; they can be dropped on the list, too"));
    m_remove->setToolTip(tr("Takes the selected files off the list\nDelete does the same; while "
                            "none is selected, there is nothing to take off"));
    setFocusProxy(m_view);

    m_view->setModel(m_rows.model());
    m_view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setUniformItemSizes(true);
    m_view->setTextElideMode(Qt::ElideMiddle);
    m_view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view->setItemDelegate(new NotedItemDelegate(m_view));
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    m_view->setAcceptDrops(true);
    m_view->viewport()->setAcceptDrops(true);
    // The view itself knows how to move rows only, so drops are taken from its viewport.
    m_view->viewport()->installEventFilter(this);
    m_view->installEventFilter(this);
    buildLayout();

    connect(m_add, &QPushButton::clicked, this, &FileList::addRequested);
    connect(m_remove, &QPushButton::clicked, this, &FileList::removeRequested);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { reportSelection(); });
    connect(m_view, &QListView::doubleClicked, this,
            [this](const QModelIndex &index) { requestEdit(index.row()); });
    connect(m_view, &QListView::customContextMenuRequested, this, &FileList::showMenu);
    const auto showHint = [this] { m_hint->setVisible(m_rows.model()->rowCount() == 0); };
    for (const auto change :
         {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
        connect(m_rows.model(), change, this, showHint);
    }
    connect(m_rows.model(), &QAbstractItemModel::modelReset, this, showHint);
}

void FileList::buildLayout()
{
    auto *buttons = new QVBoxLayout;
    buttons->setSpacing(4);
    buttons->addWidget(m_add);
    buttons->addWidget(m_remove);
    buttons->addStretch();
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view, 1);
    layout->addLayout(buttons);
    m_view->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_view->setMinimumHeight(m_add->sizeHint().height() + m_remove->sizeHint().height() + 4);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

int FileList::selectedRow() const
{
    const QItemSelectionModel *model = m_view->selectionModel();
    if (model->isSelected(model->currentIndex())) {
        return model->currentIndex().row();
    }
    const QModelIndexList selected = model->selectedRows();
    return selected.isEmpty() ? -1 : selected.first().row();
}

QList<int> FileList::selectedRows() const
{
    QList<int> rows;
    const QModelIndexList selected = m_view->selectionModel()->selectedRows();
    for (const QModelIndex &index : selected) {
        rows << index.row();
    }
    std::sort(rows.begin(), rows.end(), std::greater<>());
    return rows;
}

void FileList::setHint(const QString &hint)
{
    m_hint->setText(hint);
    m_hint->setContentsMargins(6, 4, 6, 4);
    m_hint->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_hint->setWordWrap(true);
    fitHint();
    m_view->setAccessibleDescription(hint);
}

void FileList::fitHint()
{
    const int width = m_view->viewport()->width();
    m_hint->resize(width, m_hint->heightForWidth(width));
}

void FileList::requestEdit(int row)
{
    if (m_rows.contains(row) && m_isEditable && m_isEditable(row)) {
        emit editRequested(row);
    }
}

void FileList::showMenu(const QPoint &place)
{
    const int row = m_view->indexAt(place).isValid() ? m_view->indexAt(place).row() : selectedRow();
    const bool canEdit = m_rows.contains(row) && m_isEditable && m_isEditable(row);
    QMenu menu(this);
    QAction *edit = menu.addAction(tr("Edit address"));
    edit->setEnabled(canEdit);
    QAction *copy = menu.addAction(tr("Copy path"));
    copy->setEnabled(selectedRow() >= 0);
    QAction *remove = menu.addAction(tr("Remove"));
    remove->setEnabled(m_remove->isEnabled() && selectedRow() >= 0);
    const QAction *chosen = menu.exec(m_view->viewport()->mapToGlobal(place));
    if (chosen == edit) {
        requestEdit(row);
    } else if (chosen == copy) {
        copyPaths();
    } else if (chosen == remove) {
        m_remove->click();
    }
}

void FileList::copyPaths() const
{
    QStringList paths;
    for (const int row : selectedRows()) {
        paths.prepend(m_rows.path(row));
    }
    QGuiApplication::clipboard()->setText(paths.join('\n'));
}

QItemSelection FileList::selection() const
{
    return m_view->selectionModel()->selection();
}

void FileList::removeRow(int row)
{
    if (!m_rows.contains(row)) {
        return;
    }
    {
        const QScopedValueRollback<bool> guard(m_changingRows, true);
        const bool wasSelected = selectedRows().contains(row);
        m_rows.removeAt(row);
        if (wasSelected && !m_rows.isEmpty()) {
            // Not the view's own way, which heeds a Ctrl key that is still held down.
            m_view->selectionModel()->setCurrentIndex(
                m_rows.model()->index(qMin(row, m_rows.count() - 1), 0),
                QItemSelectionModel::ClearAndSelect);
        }
    }
    reportSelection();
}

void FileList::removeAllRows()
{
    {
        const QScopedValueRollback<bool> guard(m_changingRows, true);
        m_rows.clear();
    }
    reportSelection();
}

FileRows::Taken FileList::takeRows()
{
    FileRows::Taken taken;
    {
        const QScopedValueRollback<bool> guard(m_changingRows, true);
        taken = m_rows.takeAll();
    }
    reportSelection();
    return taken;
}

void FileList::giveBack(FileRows::Taken taken)
{
    m_rows.giveBack(std::move(taken));
}

void FileList::clearSelection()
{
    m_view->clearSelection();
    // Without a current row the same row can be selected again by a click or a key.
    m_view->selectionModel()->clearCurrentIndex();
}

void FileList::reportSelection()
{
    if (!m_changingRows) {
        emit selectionChanged(selection());
    }
}

bool FileList::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        if (watched == m_view && static_cast<QKeyEvent *>(event)->matches(QKeySequence::Delete)) {
            m_remove->click();
            return true;
        }
        if (watched == m_view && static_cast<QKeyEvent *>(event)->matches(QKeySequence::Copy)) {
            copyPaths();
            return true;
        }
        break;
    case QEvent::Resize:
        if (watched == m_view->viewport()) {
            fitHint();
        }
        break;
    case QEvent::DragEnter:
    case QEvent::DragMove: {
        auto *drag = static_cast<QDragMoveEvent *>(event);
        const bool wanted = !droppedFiles(*drag->mimeData()).isEmpty();
        drag->setDropAction(Qt::CopyAction);
        drag->setAccepted(wanted);
        return true;
    }
    case QEvent::Drop: {
        auto *drop = static_cast<QDropEvent *>(event);
        drop->setDropAction(Qt::CopyAction);
        drop->accept();
        acceptDrop(*drop->mimeData());
        return true;
    }
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void FileList::acceptDrop(const QMimeData &dropped)
{
    const QStringList paths = droppedFiles(dropped);
    if (paths.isEmpty()) {
        return;
    }
    // Queued: a box raised while the drop is still going on would block the program it came from.
    QMetaObject::invokeMethod(
        this, [this, paths] { emit filesDropped(paths); }, Qt::QueuedConnection);
}

}  // namespace workbench
