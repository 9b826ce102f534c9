#include "workbench/tabs/sfi/TwinForm.h"

#include "workbench/tabs/sfi/SfiInspection.h"
#include "workbench/widgets/FieldNames.h"

#include <QDialogButtonBox>
#include <QScrollArea>
#include <QSplitter>
#include <QTabBar>
#include <QVBoxLayout>

namespace workbench
{

namespace
{

// The grid: two pairs of label and field. Most rows take the first label and all the rest.
constexpr int kColumns = 4;
constexpr int kSecondPair = 2;
constexpr int kMcuBoxWidth = 200;
constexpr int kNumberWidth = 40;
constexpr int kMargin = 9;
constexpr int kTopLabelGap = 5;
// Shares of form and info panes in the width of a tab.
constexpr int kFormShare = 11;
constexpr int kInfoShare = 9;

bool isSecondOfPair(Row row)
{
    return row == Row::Hash || row == Row::Token;
}

bool isFirstOfPair(Row row)
{
    return row == Row::Version || row == Row::Ram;
}

}  // namespace

TwinForm::TwinForm(const TwinTraits &twin, QWidget *parent)
    : QWidget(parent), m_kind(QLatin1String(twin.kind)), m_rowsPage(new QWidget(this))
{
    m_grid = new QGridLayout(m_rowsPage);
    m_grid->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    m_grid->setHorizontalSpacing(10);
    m_grid->setVerticalSpacing(6);
    m_grid->setColumnStretch(1, 1);
    m_grid->setColumnStretch(3, 1);
    for (const FormRow &row : twin.rows) {
        buildRow(row);
    }
    for (const McuRow &mcu : twin.mcus) {
        m_mcu->addItem(tr(mcu.name));
    }

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    m_generate = buttons->button(QDialogButtonBox::Ok);
    m_generate->setText(tr(twin.generateCaption));
    m_generate->setIcon(QIcon());
    m_generate->setStyleSheet(QStringLiteral("height: 40px;width: 150px;"));
    m_generate->setEnabled(false);
    nameWidget(m_generate, m_kind + QStringLiteral("_generate_ok"),
               withoutMnemonic(m_generate->text()));

    buildPanes(twin);
    alignColumns();
    auto *left = new QWidget(this);
    auto *leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins(0, 0, 0, 0);
    leftLayout->setSpacing(0);
    leftLayout->addWidget(wrapForm(), 1);
    buttons->setContentsMargins(0, 0, kMargin, kMargin);
    leftLayout->addWidget(buttons);

    auto *splitter = new QSplitter(this);
    splitter->addWidget(left);
    splitter->addWidget(m_tabs);
    splitter->setStretchFactor(0, kFormShare);
    splitter->setStretchFactor(1, kInfoShare);
    splitter->setSizes({100 * kFormShare, 100 * kInfoShare});
    splitter->setChildrenCollapsible(false);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(splitter);
    // The tab bar was made last, but stands above what it shows.
    setTabOrder(m_generate, m_tabs->tabBar());
    applyMcu(twin.mcus.front());
}

/// One width for all buttons behind the fields and one for the first labels, shown or not, so that
/// edges form columns and stay where they are when the device changes.
void TwinForm::alignColumns()
{
    const QList<QPushButton *> buttons = m_rowsPage->findChildren<QPushButton *>();
    int width = 0;
    for (QPushButton *button : buttons) {
        button->ensurePolished();
        width = qMax(width, button->sizeHint().width());
    }
    for (QPushButton *button : buttons) {
        button->setMinimumWidth(width);
    }
    int labelWidth = 0;
    for (const auto &[row, widgets] : m_rowWidgets) {
        if (!isSecondOfPair(row)) {
            labelWidth = qMax(labelWidth, widgets.first()->sizeHint().width());
        }
    }
    m_grid->setColumnMinimumWidth(0, labelWidth);
}

QWidget *TwinForm::wrapForm()
{
    auto *scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(m_rowsPage);
    m_rowsPage->setAutoFillBackground(false);
    scroll->viewport()->setAutoFillBackground(false);
    scroll->setFocusPolicy(Qt::NoFocus);
    // Scrolling in height only: the form may never be narrower than its fields.
    scroll->setMinimumWidth(m_rowsPage->minimumSizeHint().width());
    return scroll;
}

void TwinForm::buildPanes(const TwinTraits &twin)
{
    const QString firmwareTitle = tr("Firmware information");
    const QString imageTitle = tr(twin.imageTitle);
    m_firmwareInfo = new InfoPane(m_kind + QStringLiteral("_firmwareInfo"), firmwareTitle,
                                  emptyFirmwarePane(), this);
    m_parse = new ParsePane(m_kind, imageTitle, emptyImagePane(), this);
    m_tabs = new InfoTabs(m_kind + QStringLiteral("_info_tabs"), m_firmwareInfo, firmwareTitle,
                          m_parse, imageTitle, this);
}

QString TwinForm::objectName(const FormRow &row) const
{
    return m_kind + '_' + QLatin1String(row.name);
}

void TwinForm::buildRow(const FormRow &row)
{
    switch (row.id) {
    case Row::Mcu:
        buildMcu(row);
        break;
    case Row::Firmware:
    case Row::External:
    case Row::Smi:
    case Row::Obk:
        buildList(row);
        break;
    case Row::Version:
        m_version = new QSpinBox(m_rowsPage);
        m_version->setRange(0, 255);
        placePlain(row, m_version, "spin");
        break;
    case Row::Hash:
        m_hash = new QCheckBox(m_rowsPage);
        placePlain(row, m_hash, "check");
        break;
    case Row::Ram:
        m_ram = new QLineEdit(m_rowsPage);
        m_ram->setMinimumWidth(kNumberWidth);
        placePlain(row, m_ram, "edit");
        break;
    case Row::Token:
        m_token = new QLineEdit(m_rowsPage);
        m_token->setMinimumWidth(kNumberWidth);
        placePlain(row, m_token, "edit");
        break;
    default:
        buildField(row);
        break;
    }
}

void TwinForm::buildMcu(const FormRow &row)
{
    m_mcu = new QComboBox(m_rowsPage);
    m_mcu->setMaximumWidth(kMcuBoxWidth);
    m_mcu->setMinimumWidth(kMcuBoxWidth);
    placePlain(row, m_mcu, "combo");
}

void TwinForm::buildList(const FormRow &row)
{
    if (row.id == Row::Smi) {
        placeLine(row);
    }
    auto *list = new FileList(objectName(row), tr(row.label), m_rowsPage);
    m_lists[row.id] = list;
    placeRow(row.id, list->label(), list, Qt::AlignTop);
    m_listLines[row.id] = m_grid->rowCount() - 1;
    setRowVisible(row.id, true);
}

void TwinForm::buildField(const FormRow &row)
{
    QList<FieldButton> buttons{{"open", "Open"}};
    if (row.id == Row::Key || row.id == Row::Nonce) {
        buttons.append(FieldButton{"generate", "Generate"});
    } else if (row.id == Row::Output) {
        buttons = {{"folder", "Select folder"}};
    }
    if (row.id == Row::KeyArea) {
        placeLine(row);
    }
    auto *field = new FileField(objectName(row), tr(row.label), buttons, m_rowsPage);
    if (row.toolTip != nullptr) {
        field->edit()->setToolTip(tr(row.toolTip));
    }
    m_fields[row.id] = field;
    placeRow(row.id, field->label(), field, Qt::AlignVCenter);
}

void TwinForm::placePlain(const FormRow &row, QWidget *widget, const char *role)
{
    if (row.id == Row::Ram) {
        placeLine(row);
    }
    auto *label = new QLabel(tr(row.label), m_rowsPage);
    label->setObjectName(objectName(row) + QStringLiteral("_label"));
    label->setBuddy(widget);
    nameWidget(widget, objectName(row) + '_' + QLatin1String(role), withoutMnemonic(label->text()));
    if (row.toolTip != nullptr) {
        widget->setToolTip(tr(row.toolTip));
    }
    placeRow(row.id, label, widget, Qt::AlignVCenter);
}

void TwinForm::placeLine(const FormRow &row)
{
    auto *line = new QFrame(m_rowsPage);
    line->setObjectName(objectName(row) + QStringLiteral("_line"));
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Plain);
    line->setForegroundRole(QPalette::Mid);
    m_grid->addWidget(line, m_grid->rowCount(), 0, 1, kColumns);
    m_lines[row.id] = line;
}

void TwinForm::placeRow(Row row, QLabel *label, QWidget *field, Qt::Alignment labelAlignment)
{
    m_rowWidgets[row] = {label, field};
    if (labelAlignment == Qt::AlignTop) {
        label->setContentsMargins(0, kTopLabelGap, 0, 0);  // level with the list's first row
    }
    if (isSecondOfPair(row)) {
        const int line = m_grid->rowCount() - 1;
        m_grid->addWidget(label, line, kSecondPair, labelAlignment);
        m_grid->addWidget(field, line, kSecondPair + 1,
                          row == Row::Hash ? Qt::AlignLeft : Qt::Alignment());
        return;
    }
    const int line = m_grid->rowCount();
    m_grid->addWidget(label, line, 0, labelAlignment);
    m_grid->addWidget(field, line, 1, 1, isFirstOfPair(row) ? 1 : kColumns - 1);
}

FileList *TwinForm::list(Row row) const
{
    const auto hit = m_lists.find(row);
    return hit == m_lists.end() ? nullptr : hit->second;
}

FileField *TwinForm::field(Row row) const
{
    const auto hit = m_fields.find(row);
    return hit == m_fields.end() ? nullptr : hit->second;
}

QString TwinForm::pathOf(Row row) const
{
    return field(row)->path();
}

TwinValues TwinForm::values() const
{
    TwinValues values;
    values.mcuIndex = m_mcu->currentIndex();
    values.keyPath = pathOf(Row::Key);
    values.noncePath = pathOf(Row::Nonce);
    values.optionBytesPath = pathOf(Row::OptionBytes);
    values.keyAreaPath = pathOf(Row::KeyArea);
    values.ssfiPath = pathOf(Row::Ssfi);
    values.modulesPath = pathOf(Row::Modules);
    values.ramText = m_ram->text();
    values.tokenText = m_token->text();
    values.outputPath = pathOf(Row::Output);
    values.imageVersion = static_cast<std::uint8_t>(m_version->value());
    values.hash = m_hash->isChecked();
    return values;
}

void TwinForm::setRowVisible(Row row, bool visible)
{
    const auto hit = m_rowWidgets.find(row);
    if (hit == m_rowWidgets.end()) {
        return;
    }
    for (QWidget *widget : hit->second) {
        widget->setVisible(visible);
    }
    const auto line = m_listLines.find(row);
    if (line != m_listLines.end()) {
        // An empty line of the grid would keep its share of the height.
        m_grid->setRowStretch(line->second, visible ? 1 : 0);
    }
}

void TwinForm::setLineVisible(Row row, bool visible)
{
    const auto hit = m_lines.find(row);
    if (hit != m_lines.end()) {
        hit->second->setVisible(visible);
    }
}

void TwinForm::applyMcu(const McuRow &mcu)
{
    m_ram->setEnabled(mcu.ramEnabled);
    m_ram->setText(QLatin1String(mcu.ramText));
    m_token->setEnabled(mcu.token == TokenField::Enabled);
    if (mcu.token == TokenField::DisabledAndEmptied) {
        m_token->clear();
    }
    m_hash->setChecked(mcu.hashChecked);
    m_hash->setEnabled(!mcu.hashLocked);
    setRowVisible(Row::Smi, mcu.smiRow);
    setLineVisible(Row::Smi, mcu.smiLine);
    setRowVisible(Row::KeyArea, mcu.keyAreaRow);
    setLineVisible(Row::KeyArea, mcu.keyAreaLine);
    for (const Row row : {Row::Obk, Row::Ssfi, Row::Modules}) {
        setRowVisible(row, mcu.provisioningRows);
    }
    setLineVisible(Row::Ram, mcu.ramLine);
    if (mcu.emptiesSsfi) {
        field(Row::Ssfi)->edit()->clear();
    }
}

void TwinForm::clear()
{
    for (const auto &[row, field] : m_fields) {
        field->edit()->clear();
    }
    m_ram->clear();
    m_token->clear();
    m_version->setValue(0);
    for (const auto &[row, list] : m_lists) {
        list->removeAllRows();
        list->removeButton()->setEnabled(false);
    }
    m_firmwareInfo->reset();
    m_parse->field()->edit()->clear();
    m_parse->info()->reset();
    m_generate->setEnabled(false);
}

}  // namespace workbench
