#include "workbench/tabs/da/ChainPane.h"

#include "workbench/tabs/da/RightsDelegate.h"
#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/SelectedRow.h"
#include "workbench/widgets/TableCopy.h"

#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QScrollBar>
#include <QStyle>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace workbench
{

namespace
{

enum Column { Place, Usage, Lifecycle, Class, Key, Issuer, Rights, ColumnCount };

constexpr int kMostRightNames = 12;
constexpr int kKeyDigits = 8;   // that are always seen
constexpr int kLongWords = 12;  // that go into two lines
constexpr int kLeastRows = 3;   // of a table, so that it looks like one
constexpr int kMostRows = 8;    // before it scrolls

QString text(const std::string &bytes)
{
    return QString::fromStdString(bytes);
}

/// Long words of a narrow column, broken at the blank that is nearest to the middle.
QString inTwoLines(QString words)
{
    const int middle = words.size() / 2;
    const int before = words.lastIndexOf(' ', middle);
    const int behind = words.indexOf(' ', middle);
    const int at = behind >= 0 && behind - middle < middle - before ? behind : before;
    if (words.size() > kLongWords && at >= 0) {
        words[at] = '\n';
    }
    return words;
}

QString issuerWord(const certif::ChainRow &row)
{
    switch (row.step.issuer) {
    case certif::Issuer::Matches:
        return QString(QChar(0x2713)) + ' ' + ChainPane::tr("matches");
    case certif::Issuer::Differs:
        return QString(QChar(0x2717)) + ' ' + ChainPane::tr("differs");
    case certif::Issuer::Unknown:
        break;
    }
    return ChainPane::tr("not known");
}

/// The rights that are left, by name where there is one.
QString rightsText(const certif::Mask &mask, const certif::Family *family)
{
    QStringList names;
    int set = 0;
    for (std::size_t bit = 0; bit < certif::kMaskBits; ++bit) {
        if ((mask[bit / 8] >> bit % 8 & 1) == 0 || ++set > kMostRightNames) {
            continue;
        }
        const QString name = family == nullptr ? QString() : family->bits[bit].name;
        names << (name.isEmpty() ? ChainPane::tr("Bit %1").arg(bit)
                                 : ChainPane::tr("Bit %1, %2").arg(bit).arg(name));
    }
    if (set > kMostRightNames) {
        names << ChainPane::tr("and %1 more").arg(set - kMostRightNames);
    }
    return names.isEmpty() ? ChainPane::tr("No right is left") : names.join('\n');
}

QByteArray bytesOf(const certif::Mask &mask)
{
    return {reinterpret_cast<const char *>(mask.data()), static_cast<int>(mask.size())};
}

QString verdictOn(const certif::ChainView &view)
{
    if (!view.faults.isEmpty()) {
        return QString(QChar(0x26A0)) + ' ' +
               ChainPane::tr("A device would not take this chain, or not for all its rights:");
    }
    const bool isKnown = std::ranges::none_of(view.rows, [](const certif::ChainRow &row) {
        return row.step.issuer == certif::Issuer::Unknown || row.keyIdentifier.isEmpty();
    });
    if (!isKnown) {
        return ChainPane::tr("Nothing is wrong as far as the form is filled in.");
    }
    return view.note.isEmpty()
               ? QString(QChar(0x2713)) + ' ' + ChainPane::tr("Nothing is wrong with this chain.")
               : view.note;
}

}  // namespace

ChainPane::ChainPane(const QString &name, const QString &title, const QString &emptyText,
                     QWidget *parent)
    : QWidget(parent), m_emptyText(emptyText), m_verdict(new QLabel(this)),
      m_table(new QTableWidget(0, ColumnCount, this)), m_faults(new QListWidget(this))
{
    nameWidget(m_verdict, name + QStringLiteral("_label"), title);
    m_verdict->setTextFormat(Qt::PlainText);
    m_verdict->setWordWrap(true);
    nameWidget(m_table, name + QStringLiteral("_table"), title);
    m_table->setHorizontalHeaderLabels({tr("Certificate"), tr("Usage"), tr("Lifecycle"),
                                        tr("Class"), tr("Subject"), tr("Issuer"),
                                        tr("Rights left")});
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setTabKeyNavigation(false);
    m_table->setTextElideMode(Qt::ElideRight);
    m_table->verticalHeader()->hide();
    m_table->horizontalHeaderItem(Key)->setToolTip(
        tr("Subject key identifier: SHA-256 of the key that the certificate is for"));
    m_table->horizontalHeaderItem(Rights)->setToolTip(
        tr("The 128 bits, the highest first.\nDark: a right that is left; red and crossed out: one "
           "that the chain above doesn't grant"));
    m_table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_table->setItemDelegate(new SelectedRowDelegate(m_table));
    m_table->setItemDelegateForColumn(Rights, new RightsDelegate(m_table));
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->horizontalHeader()->setSectionResizeMode(Key, QHeaderView::Interactive);
    m_table->setColumnWidth(Key,
                            qMax(m_table->horizontalHeader()->sectionSizeHint(Key),
                                 fontMetrics().horizontalAdvance(QString(kKeyDigits + 2, '0'))));
    makeCopyable(m_table);
    nameWidget(m_faults, name + QStringLiteral("_faults_list"), title + ' ' + tr("faults"));
    m_faults->setWordWrap(true);
    m_faults->setSelectionMode(QAbstractItemView::NoSelection);
    makeCopyable(m_faults);
    // Sentences on the page, as the one above them.
    m_faults->setStyleSheet(
        QStringLiteral("QListWidget { border: none; background: transparent; }"));
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(m_table);
    layout->addWidget(m_verdict);
    layout->addWidget(m_faults, 1);
    layout->addStretch(0);
    clear();
}

void ChainPane::clear()
{
    m_table->setRowCount(0);
    fitTable();
    m_verdict->setText(m_emptyText);
    showFaults({});
}

void ChainPane::show(const certif::ChainView &view, const certif::Family *family)
{
    m_table->setRowCount(0);
    m_table->setRowCount(static_cast<int>(view.rows.size()));
    for (std::size_t i = 0; i < view.rows.size(); ++i) {
        addRow(static_cast<int>(i), view.rows[i], family);
    }
    fitTable();
    m_verdict->setText(verdictOn(view));
    showFaults(view.faults);
}

void ChainPane::addRow(int at, const certif::ChainRow &row, const certif::Family *family)
{
    const certif::Certificate &certificate = row.certificate;
    const QString role = text(certif::roleName(certificate.role));
    const QString cells[ColumnCount] = {
        QStringLiteral("%1 %2").arg(at + 1).arg(row.isPlanned ? tr("%1\nnew").arg(role) : role),
        text(certif::usageName(certificate.usage)),
        inTwoLines(text(certif::lifecycleName(certificate.lifecycle))),
        QStringLiteral("0x") + QString::number(certificate.socClass, 16),
        row.keyIdentifier.isEmpty() ? tr("not known") : row.keyIdentifier,
        issuerWord(row),
        text(certif::hexText(row.step.remaining)),
    };
    const QString device = tr("SoC identifier %1\nOEM constraint 0x%2")
                               .arg(text(certif::hexText(certificate.socId)))
                               .arg(certificate.oemConstraint, 0, 16);
    for (int column = 0; column < ColumnCount; ++column) {
        auto *const item = new QTableWidgetItem(cells[column]);
        item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
        item->setToolTip(plainToolTip(column == Key      ? tr("SHA-256 of the key:\n") + cells[Key]
                                      : column == Rights ? rightsText(row.step.remaining, family)
                                                         : device));
        m_table->setItem(at, column, item);
    }
    QTableWidgetItem *const rights = m_table->item(at, Rights);
    rights->setData(RightsDelegate::Granted, bytesOf(row.step.remaining));
    rights->setData(RightsDelegate::InVain, bytesOf(row.step.lost));
}

/// As high as its rows, so that what is wrong with them stands right below.
void ChainPane::fitTable()
{
    m_table->resizeRowsToContents();
    const int rows = m_table->rowCount();
    int height = m_table->horizontalHeader()->sizeHint().height() + 2 * m_table->frameWidth();
    for (int row = 0; row < qMin(rows, kMostRows); ++row) {
        height += m_table->rowHeight(row);
    }
    height += qMax(0, kLeastRows - rows) * m_table->verticalHeader()->defaultSectionSize();
    m_table->setFixedHeight(height + m_table->horizontalScrollBar()->sizeHint().height());
}

void ChainPane::showFaults(const QStringList &faults)
{
    m_faults->clear();
    const QIcon sign = style()->standardIcon(QStyle::SP_MessageBoxWarning);
    for (const QString &fault : faults) {
        m_faults->addItem(new QListWidgetItem(sign, fault));
    }
    m_faults->setVisible(!faults.isEmpty());
}

}  // namespace workbench
