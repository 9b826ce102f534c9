#include "workbench/tabs/ob/ObForm.h"

#include "device/ObEntries.h"
#include "workbench/tabs/ob/ChangesPanel.h"
#include "workbench/tabs/ob/RegisterTree.h"
#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/MissingLine.h"
#include "workbench/widgets/PathEdit.h"
#include "workbench/widgets/SelectedRow.h"
#include "workbench/widgets/ShowInFolder.h"
#include "workbench/widgets/TableCopy.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTableWidget>
#include <QVBoxLayout>

namespace workbench
{

namespace
{

constexpr int kMargin = 9;
constexpr int kMcuBoxWidth = 240;
constexpr int kStatusLines = 2;
const QString kDevice = QStringLiteral("mcu");
const QString kPath = QStringLiteral("path");

QTableWidgetItem *fixedItem(const QString &text)
{
    auto *item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    return item;
}

}  // namespace

ObForm::ObForm(QWidget *parent) : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->addWidget(buildTop());
    layout->addWidget(buildMiddle(), 1);
    layout->addWidget(buildBottom());
    QWidget *const chain[] = {mcuBox, upload, tree,      changes,  summary, path,
                              browse, m_made, m_missing, generate, useInSfi};
    for (std::size_t i = 1; i < std::size(chain); ++i) {
        setTabOrder(chain[i - 1], chain[i]);
    }
    connect(tree, &RegisterTree::tablesChanged, this, [this] { tree->linkTabOrder(changes); });
    connect(tree, &RegisterTree::focused, this, [this](device::FieldId id) { describe(&id); });
    connect(changes, &ChangesPanel::chosen, tree, &RegisterTree::goTo);
    showDevice(nullptr);
    setReady(false);
}

QWidget *ObForm::buildTop()
{
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    mcuBox = new QComboBox(row);
    mcuBox->setMinimumWidth(kMcuBoxWidth);
    for (const device::ObEntry &entry : device::kObEntries) {
        mcuBox->addItem(tr(entry.label));
    }
    nameWidget(mcuBox, QStringLiteral("ob_mcu_combo"), tr("Microcontroller"));
    mcuBox->setToolTip(tr("The device whose option bytes are edited"));
    auto *label = new QLabel(tr("Microcontroller"), row);
    label->setObjectName(QStringLiteral("ob_mcu_label"));
    label->setBuddy(mcuBox);
    upload = new QPushButton(tr("Open Option Bytes File"), row);
    nameWidget(upload, QStringLiteral("ob_upload_open"), upload->text());
    upload->setToolTip(tr("Load the values of a CSV file into the registers.\ncsv file"));
    layout->addWidget(label);
    layout->addWidget(mcuBox);
    layout->addStretch(1);
    layout->addWidget(upload);
    return row;
}

QWidget *ObForm::titled(const QString &title, QWidget *buddy)
{
    auto *box = new QWidget(this);
    auto *layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    auto *label = new QLabel(title, box);
    label->setBuddy(buddy);
    layout->addWidget(label);
    layout->addWidget(buddy, 1);
    return box;
}

QWidget *ObForm::buildMiddle()
{
    tree = new RegisterTree(this);
    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("ob_status_label"));
    m_status->setTextFormat(Qt::PlainText);
    m_status->setWordWrap(true);
    m_status->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_status->setMinimumHeight(kStatusLines * fontMetrics().lineSpacing());
    auto *left = titled(tr("Registers"), tree);
    left->layout()->addWidget(m_status);

    changes = new ChangesPanel(this);
    summary = new QTableWidget(0, 2, this);
    nameWidget(summary, QStringLiteral("ob_summary_table"), tr("Summary"));
    summary->setHorizontalHeaderLabels({tr("Register"), tr("Value")});
    summary->setEditTriggers(QAbstractItemView::NoEditTriggers);
    summary->setSelectionBehavior(QAbstractItemView::SelectRows);
    summary->setTabKeyNavigation(false);
    summary->setItemDelegate(new SelectedRowDelegate(summary));
    makeCopyable(summary);
    summary->verticalHeader()->hide();
    summary->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    summary->horizontalHeader()->setHighlightSections(false);
    summary->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    summary->setStyleSheet(QStringLiteral("QTableWidget::item { padding: 3px 6px; }"));

    auto *right = new QSplitter(Qt::Vertical, this);
    right->addWidget(titled(tr("Changes"), changes));
    right->addWidget(titled(tr("Summary"), summary));
    right->setStretchFactor(0, 3);
    right->setStretchFactor(1, 2);
    right->setChildrenCollapsible(false);
    auto *splitter = new QSplitter(this);
    splitter->addWidget(left);
    splitter->addWidget(right);
    splitter->setStretchFactor(0, 2);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({900, 420});
    splitter->setChildrenCollapsible(false);
    return splitter;
}

QWidget *ObForm::buildBottom()
{
    auto *box = new QWidget(this);
    auto *grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    path = new PathEdit(QStringLiteral("obPath"), PathEdit::Use::Output, box);
    nameWidget(path, QStringLiteral("ob_path_edit"), tr("OB generation path"));
    path->setPlaceholderText(tr("Path of the option bytes, .csv"));
    path->setToolTip(tr("Select the file to write the option bytes to.\ncsv file"));
    auto *label = new QLabel(tr("OB generation path"), box);
    label->setObjectName(QStringLiteral("ob_path_label"));
    label->setBuddy(path);
    browse = new QPushButton(tr("Browse"), box);
    nameWidget(browse, QStringLiteral("ob_path_browse"), tr("OB generation path Browse"));
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, box);
    generate = buttons->button(QDialogButtonBox::Ok);
    generate->setText(tr("Generate OB"));
    generate->setIcon(QIcon());
    nameWidget(generate, QStringLiteral("ob_generate_ok"), generate->text());
    generate->setStyleSheet(QStringLiteral("height: 40px;width: 150px;"));
    useInSfi = buttons->addButton(tr("Use in SFI"), QDialogButtonBox::ActionRole);
    nameWidget(useInSfi, QStringLiteral("ob_useInSfi_ok"), useInSfi->text());
    useInSfi->setStyleSheet(QStringLiteral("height: 40px;"));
    useInSfi->setToolTip(tr("Put the file written last into the option-bytes fields of the SFI and "
                            "SFIx tabs.\nAfter an edit it has to be generated again first."));
    m_missing = new MissingLine(QStringLiteral("ob"), box);
    connect(m_missing, &MissingLine::chosen, this, [this](const QString &name) {
        QWidget *const input = name == kDevice ? static_cast<QWidget *>(mcuBox) : path;
        input->setFocus(Qt::OtherFocusReason);
    });
    connect(path, &QLineEdit::textChanged, this, &ObForm::tellMissing);
    m_made = new ShowInFolder(QStringLiteral("ob_show"), tr("OB generation path"), box);
    m_irreversible = new QLabel(box);
    m_irreversible->setObjectName(QStringLiteral("ob_irreversible_label"));
    m_irreversible->setAlignment(Qt::AlignRight);
    grid->addWidget(label, 0, 0);
    grid->addWidget(path, 0, 1);
    grid->addWidget(browse, 0, 2);
    grid->addWidget(m_made, 0, 3);
    auto *foot = new QHBoxLayout;
    foot->addWidget(m_missing, 1);
    foot->addWidget(buttons);
    grid->addLayout(foot, 1, 0, 1, 4);
    grid->addWidget(m_irreversible, 2, 0, 1, 4);
    return box;
}

void ObForm::showDevice(const device::ObEditor *editor)
{
    m_editor = editor;
    tree->show(editor);
    const std::size_t count = editor == nullptr ? 0 : editor->registers().size();
    summary->setRowCount(0);
    summary->setRowCount(static_cast<int>(count));
    for (std::size_t reg = 0; reg < count; ++reg) {
        summary->setItem(static_cast<int>(reg), 0,
                         fixedItem(QString::fromStdString(editor->reg(reg).name)));
        summary->setItem(static_cast<int>(reg), 1, fixedItem({}));
        refreshSummary(reg);
    }
    describe(nullptr);
    refreshChanges();
}

void ObForm::refreshSummary(std::size_t reg)
{
    summary->item(static_cast<int>(reg), 1)->setText(device::wordText(m_editor->shown(reg)));
}

void ObForm::refreshChanges()
{
    changes->show(m_editor);
    const int count = changes->irreversibleCount();
    const QString sign = QString(QChar(0x26A0)) + ' ';
    m_irreversible->setText(count == 0 ? QString()
                            : count == 1
                                ? sign + tr("1 of these values can't be taken back")
                                : sign + tr("%1 of these values can't be taken back").arg(count));
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, ChangesPanel::warningColour(palette()));
    m_irreversible->setPalette(colours);
}

void ObForm::refresh(device::FieldId id)
{
    tree->refresh(id);
    refreshSummary(id.reg);
    refreshChanges();
    describe(&id);
}

void ObForm::refreshAll()
{
    if (m_editor == nullptr) {
        return;
    }
    for (std::size_t reg = 0; reg < m_editor->registers().size(); ++reg) {
        for (std::size_t field = 0; field < m_editor->reg(reg).fields.size(); ++field) {
            tree->refresh({reg, field});
        }
        refreshSummary(reg);
    }
    refreshChanges();
}

void ObForm::setReady(bool canGenerate)
{
    generate->setEnabled(canGenerate);
    upload->setEnabled(canGenerate);
    tellMissing();
}

void ObForm::setWritten(const QString &written)
{
    useInSfi->setEnabled(!written.isEmpty());
    if (written.isEmpty()) {
        m_made->withdraw();
    } else {
        m_made->offer(written);
    }
}

/// Without a path the button stays enabled, and refuses with a sentence.
void ObForm::tellMissing()
{
    QList<MissingLine::Input> missing;
    if (mcuBox->currentIndex() <= 0) {
        missing.append({kDevice, tr("microcontroller")});
    } else if (path->text().isEmpty()) {
        missing.append({kPath, tr("OB generation path")});
    }
    m_missing->tell(missing);
}

void ObForm::describe(const device::FieldId *id)
{
    if (m_editor == nullptr) {
        m_status->setText(tr("Choose a microcontroller to see its option bytes."));
        return;
    }
    if (id == nullptr) {
        m_status->setText(tr("Arrow keys walk over the bits, Space flips, Enter opens a box."));
        return;
    }
    const obField &field = m_editor->field(*id);
    const device::FieldState &state = m_editor->state(*id);
    QString text = device::accessibleText(*m_editor, *id) + QLatin1String(": ") +
                   QString::fromStdString(field.description);
    const QString address = device::equationText(m_editor->notes(*id), m_editor->bits(*id));
    if (!state.isValid) {
        text += ' ' + tr("This text is no hexadecimal number of %1 bits.").arg(field.width);
    } else if (!address.isEmpty()) {
        text += ' ' + address;
    }
    m_status->setText(text);
}

void ObForm::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_irreversible != nullptr) {
        refreshChanges();
    }
}

}  // namespace workbench
