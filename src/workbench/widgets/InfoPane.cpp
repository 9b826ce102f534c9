#include "workbench/widgets/InfoPane.h"

#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/SelectedRow.h"
#include "workbench/widgets/ShowInFolder.h"
#include "workbench/widgets/TableCopy.h"

#include <QEvent>
#include <QFontDatabase>
#include <QHeaderView>
#include <QVBoxLayout>

#include <memory>

namespace workbench
{

namespace
{

QTableWidget *makeTable(const QString &objectName, const QString &accessibleName, QWidget *parent)
{
    auto *table = new QTableWidget(parent);
    nameWidget(table, objectName, accessibleName);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setTextElideMode(Qt::ElideMiddle);
    table->setWordWrap(false);
    table->setTabKeyNavigation(false);  // Tab leaves the table, as in the rest of the form
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table->horizontalHeader()->setHighlightSections(false);
    table->verticalHeader()->setHighlightSections(false);
    table->setItemDelegate(new SelectedRowDelegate(table));
    makeCopyable(table);
    return table;
}

const QLatin1String kSize("Size");
const QLatin1String kAddress("Address");
constexpr int kMeasuredRows = 200;  // columns fit what is seen, in no more time for 65,535 rows

/// The column that takes the room which the others leave: the last one that reads from the left.
int widestColumn(const QStringList &columns)
{
    const int last = columns.size() - 1;
    return last > 0 && columns.at(last) == kSize ? last - 1 : last;
}

QTableWidgetItem *makeItem(const QString &text)
{
    auto item = std::make_unique<QTableWidgetItem>(text);
    item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    return item.release();
}

}  // namespace

InfoPane::InfoPane(const QString &name, const QString &title, const PaneContents &contents,
                   QWidget *parent)
    : QWidget(parent), m_start(contents), m_name(name), m_spokenTitle(title),
      m_overview(makeTable(name + QStringLiteral("_table"), title, this)),
      m_title(new QLabel(this)),
      m_details(makeTable(name + QStringLiteral("_segments"), title, this)),
      m_map(new MemoryMap(name + QStringLiteral("_map"), title, this))
{
    m_title->setObjectName(name + QStringLiteral("_label"));
    m_overview->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_overview->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_overview->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_details->verticalHeader()->hide();
    auto *layout = new QVBoxLayout(this);
    m_details->horizontalHeader()->setResizeContentsPrecision(kMeasuredRows);
    layout->addWidget(m_overview);
    layout->addWidget(m_title);
    layout->addWidget(m_details, 1);
    layout->addWidget(m_map);
    layout->addStretch();  // holds the overview at the top while there is no long table
    connectMap();
    reset();
}

void InfoPane::connectMap()
{
    connect(m_details, &QTableWidget::itemSelectionChanged, this, [this] {
        m_map->selectRow(selectedRow());
        emit selectionChanged();
    });
    connect(m_map, &MemoryMap::rowChosen, this, [this](int row) {
        const QSignalBlocker blocker(m_details);  // the map knows, and may stand on no row at all
        if (row < 0) {
            m_details->clearSelection();
        } else {
            m_details->selectRow(row);
        }
    });
}

int InfoPane::selectedRow() const
{
    const QList<QTableWidgetSelectionRange> ranges = m_details->selectedRanges();
    return ranges.isEmpty() ? -1 : ranges.first().topRow();
}

void InfoPane::showMade(const QString &path, const PaneContents &contents)
{
    show(contents);
    if (m_made == nullptr) {
        m_made = new ShowInFolder(m_name + QStringLiteral("_show"), m_spokenTitle, this);
        auto *column = static_cast<QVBoxLayout *>(layout());
        column->insertWidget(column->indexOf(m_overview) + 1, m_made, 0, Qt::AlignRight);
        setTabOrder(m_overview, m_made);
    }
    m_made->offer(path);
}

void InfoPane::withdrawMade()
{
    if (m_made != nullptr) {
        m_made->withdraw();
    }
}

void InfoPane::show(const PaneContents &contents)
{
    withdrawMade();
    showOverview(contents.overview);
    showDetails(contents.details);
    showMap(contents.map);
}

void InfoPane::clearContents()
{
    withdrawMade();
    m_overview->clearContents();
    m_details->setRowCount(0);
    m_map->setContents({});
}

void InfoPane::reset()
{
    m_start.overview.values.clear();
    m_start.details.rows.clear();
    m_start.map = {};
    show(m_start);
}

bool InfoPane::event(QEvent *event)
{
    const bool isDone = QWidget::event(event);
    if (event->type() == QEvent::Polish) {
        fitOverview();
        fitColumns();
    }
    return isDone;
}

void InfoPane::showOverview(const Overview &overview)
{
    const bool beside = overview.headings == Qt::Vertical;
    const int count = overview.names.size();
    m_overview->clear();
    m_overview->setRowCount(beside ? count : 1);
    m_overview->setColumnCount(beside ? 1 : count);
    m_overview->verticalHeader()->setVisible(beside);
    m_overview->horizontalHeader()->setVisible(!beside);
    if (beside) {
        m_overview->setVerticalHeaderLabels(overview.names);
    } else {
        m_overview->setHorizontalHeaderLabels(overview.names);
    }
    for (int at = 0; at < count; ++at) {
        const QString text = overview.values.value(at);
        QTableWidgetItem *item = makeItem(text);
        item->setToolTip(plainToolTip(text));  // the cell may cut a long name
        m_overview->setItem(beside ? at : 0, beside ? 0 : at, item);
    }
    fitOverview();
}

// Measuring gives widgets their style, which until a pane is first seen may change several times.
void InfoPane::fitOverview()
{
    if (!testAttribute(Qt::WA_WState_Polished)) {
        return;
    }
    int height = 2 * m_overview->frameWidth();
    if (!m_overview->horizontalHeader()->isHidden()) {
        height += m_overview->horizontalHeader()->sizeHint().height();
    }
    for (int row = 0; row < m_overview->rowCount(); ++row) {
        height += m_overview->rowHeight(row);
    }
    m_overview->setFixedHeight(height);
}

void InfoPane::showDetails(const Details &details)
{
    m_title->setText(details.title);
    m_title->setVisible(!details.columns.isEmpty());
    m_details->setVisible(!details.columns.isEmpty());
    m_details->setAccessibleName(m_spokenTitle + ' ' + details.title);
    m_details->setUpdatesEnabled(false);
    m_details->clear();
    m_details->setRowCount(0);  // far cheaper than shrinking row by row
    m_details->setColumnCount(details.columns.size());
    m_details->setHorizontalHeaderLabels(details.columns);
    m_details->setRowCount(static_cast<int>(details.rows.size()));
    // The first look for a font takes as long as a start of the program may.
    const QFont fixed =
        details.rows.empty() ? QFont() : QFontDatabase::systemFont(QFontDatabase::FixedFont);
    int row = 0;
    for (const DetailRow &wanted : details.rows) {
        for (int column = 0; column < wanted.cells.size(); ++column) {
            QTableWidgetItem *item = makeItem(wanted.cells.at(column));
            const QString &heading = details.columns.value(column);
            if (heading == kSize) {
                item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
                if (wanted.bytes) {
                    item->setToolTip(tr("%1 bytes").arg(QString::number(*wanted.bytes)));
                }
            } else if (heading == kAddress) {
                item->setFont(fixed);
            }
            if (wanted.colours) {
                item->setForeground(wanted.colours->text);
                item->setBackground(wanted.colours->background);
            }
            if (!wanted.why.isEmpty()) {
                item->setToolTip(plainToolTip(wanted.why));
                item->setData(Qt::AccessibleDescriptionRole, wanted.why);
            }
            m_details->setItem(row, column, item);
        }
        ++row;
    }
    fitColumns();
    m_details->setUpdatesEnabled(true);
}

void InfoPane::fitColumns()
{
    if (!testAttribute(Qt::WA_WState_Polished)) {
        return;
    }
    QStringList columns;
    for (int column = 0; column < m_details->columnCount(); ++column) {
        columns << m_details->horizontalHeaderItem(column)->text();
    }
    QHeaderView *header = m_details->horizontalHeader();
    header->setSectionResizeMode(QHeaderView::Interactive);
    m_details->resizeColumnsToContents();
    if (!columns.isEmpty()) {
        header->setSectionResizeMode(widestColumn(columns), QHeaderView::Stretch);
    }
}

void InfoPane::showMap(const MapContents &contents)
{
    m_map->setContents(contents);
    for (const auto &[row, words] : m_map->marksOfRows()) {
        for (int column = 0; column < m_details->columnCount(); ++column) {
            if (QTableWidgetItem *item = m_details->item(row, column)) {
                QStringList lines{item->toolTip(), words};
                lines.removeAll(QString());
                item->setToolTip(plainToolTip(lines.join('\n')));
                item->setData(Qt::AccessibleDescriptionRole, words);
            }
        }
    }
}

}  // namespace workbench
