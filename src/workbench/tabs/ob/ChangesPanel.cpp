#include "workbench/tabs/ob/ChangesPanel.h"

#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/SelectedRow.h"
#include "workbench/widgets/TableCopy.h"

#include <QEvent>
#include <QHeaderView>

namespace workbench
{

namespace
{

enum Column { kField, kOld, kNew, kColumns };

}  // namespace

ChangesPanel::ChangesPanel(QWidget *parent) : QTableWidget(0, kColumns, parent)
{
    nameWidget(this, QStringLiteral("ob_changes_table"), tr("Changes"));
    setHorizontalHeaderLabels({tr("Field"), tr("Default"), tr("New value")});
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setTabKeyNavigation(false);
    setWordWrap(true);
    setItemDelegate(new SelectedRowDelegate(this));
    makeCopyable(this);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->resizeSection(kField, 140);
    horizontalHeader()->resizeSection(kOld, 100);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setStyleSheet(QStringLiteral("QTableWidget::item { padding: 3px 6px; }"));
    horizontalHeader()->setHighlightSections(false);
    setToolTip(tr("Double-click a line to see its field"));
    connect(this, &QTableWidget::cellActivated, this, [this](int row, int) {
        if (row < static_cast<int>(m_changes.size())) {
            emit chosen(m_changes[static_cast<std::size_t>(row)].id);
        }
    });
}

void ChangesPanel::show(const device::ObEditor *editor)
{
    m_changes = editor == nullptr ? std::vector<device::FieldChange>() : editor->changes();
    m_irreversible = 0;
    setRowCount(0);
    for (const device::FieldChange &change : m_changes) {
        Q_ASSERT(editor != nullptr);
        addRow(*editor, change);
        m_irreversible += change.isIrreversible ? 1 : 0;
    }
    paintWarnings();
}

void ChangesPanel::addRow(const device::ObEditor &editor, const device::FieldChange &change)
{
    const obField &field = editor.field(change.id);
    const QString name = QString::fromStdString(editor.reg(change.id.reg).name) + ' ' +
                         QString::fromStdString(field.name);
    const int row = rowCount();
    insertRow(row);
    const QString sign = change.isIrreversible ? QString(QChar(0x26A0)) + ' ' : QString();
    const QString warning =
        change.isIrreversible ? QLatin1Char('\n') + tr("can't be taken back") : QString();
    const QString equation = device::equationText(editor.notes(change.id), change.to);
    const QString address = equation.isEmpty()
                                ? QString()
                                : QLatin1String("\n= ") + equation.section(QLatin1String("= "), 1);
    const QString texts[] = {sign + name, device::valueText(field, change.from),
                             device::valueText(field, change.to) + address + warning};
    for (int column = 0; column < kColumns; ++column) {
        auto *item = new QTableWidgetItem(texts[column]);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        item->setToolTip(
            plainToolTip(device::fieldToolTip(field, editor.notes(change.id), change.to)));
        QFont font = item->font();
        font.setBold(change.isIrreversible);
        item->setFont(font);
        setItem(row, column, item);
    }
}

void ChangesPanel::paintWarnings()
{
    for (int row = 0; row < m_irreversible; ++row) {
        for (int column = 0; column < kColumns; ++column) {
            item(row, column)->setForeground(warningColour(palette()));
        }
    }
}

void ChangesPanel::changeEvent(QEvent *event)
{
    QTableWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        paintWarnings();
    }
}

QColor ChangesPanel::warningColour(const QPalette &palette)
{
    const bool isDark = palette.color(QPalette::Base).lightness() < 128;
    return isDark ? QColor(0xFF, 0x9A, 0x8B) : QColor(0xB0, 0x22, 0x18);
}

}  // namespace workbench
