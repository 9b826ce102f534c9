#include "workbench/forms/RowForm.h"

#include "workbench/forms/ListGrip.h"
#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/FocusView.h"
#include "workbench/widgets/MissingLine.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>
#include <utility>

namespace workbench
{

namespace
{

// The grid: two pairs of label and input. Most rows take the first label and all the rest.
constexpr int kColumns = 4;
constexpr int kSecondPair = 2;
constexpr int kMargin = 9;
constexpr int kTopLabelGap = 5;

bool isTall(const FormRow &row)
{
    return row.kind == RowKind::List || row.kind == RowKind::Table;
}

/// The part of an input that is enabled and explained.
QWidget *target(QWidget *input)
{
    auto *field = qobject_cast<FileField *>(input);
    return field == nullptr ? input : field->edit();
}

}  // namespace

RowForm::RowForm(const QString &key, QWidget *parent)
    : QWidget(parent), m_key(key), m_scroll(new QScrollArea(this)), m_foot(new QWidget(this)),
      m_missingLine(new MissingLine(key, m_foot))
{
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setWidgetResizable(true);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    keepFocusInView(m_scroll);
    buildPage();

    connect(m_missingLine, &MissingLine::chosen, this, &RowForm::focusRow);
    auto *foot = new QHBoxLayout(m_foot);
    foot->setContentsMargins(kMargin, 0, kMargin, kMargin);
    foot->addWidget(m_missingLine, 1);
    m_foot->hide();

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_scroll, 1);
    layout->addWidget(m_foot);
}

void RowForm::buildPage()
{
    m_page = new QWidget(this);
    m_grid = new QGridLayout(m_page);
    m_grid->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    m_grid->setHorizontalSpacing(10);
    m_grid->setVerticalSpacing(6);
    m_grid->setColumnStretch(1, 1);
    m_grid->setColumnStretch(kSecondPair + 1, 1);
    m_scroll->setWidget(m_page);
    m_page->setAutoFillBackground(false);
    m_scroll->viewport()->setAutoFillBackground(false);
}

void RowForm::addRows(const QList<FormRow> &rows)
{
    // Showing a widget lays out a visible page at once, which for hundreds is a second.
    m_page->hide();
    for (int at = 0; at < rows.size(); ++at) {
        addRow(rows[at], at + 1 < rows.size() && rows[at + 1].besideThePrevious);
    }
    alignColumns();
    showGrips();
    placeSpare();
    orderFocus();
    m_page->show();
    updateGenerate();
}

void RowForm::removeRows()
{
    m_lines.clear();
    m_index.clear();
    if (m_spare != nullptr) {
        m_spare->setParent(this);
    }
    const std::unique_ptr<QWidget> old(m_scroll->takeWidget());
    buildPage();
    m_page->show();
}

void RowForm::addRow(const FormRow &row, bool isFirstOfPair)
{
    Line line;
    line.row = row;
    if (row.separatorAbove) {
        placeSeparator(line);
    }
    line.input = makeInput(line);
    if (line.label == nullptr) {
        line.label = new QLabel(row.label, m_page);
        line.label->setObjectName(m_key + '_' + row.name + QStringLiteral("_label"));
        line.label->setBuddy(row.kind == RowKind::Note ? nullptr : line.input);
    }
    if (row.kind == RowKind::Choice || row.kind == RowKind::Text) {
        addButtons(line);
    }
    place(line, isFirstOfPair);
    showToolTip(line, {});
    m_index.insert(row.name, m_lines.size());
    m_lines.push_back(line);
    setRowVisible(row.name, row.kind != RowKind::Note);
    if (!row.disabledWhy.isEmpty()) {
        setRowEnabled(row.name, false, row.disabledWhy);
    }
}

void RowForm::place(Line &line, bool isFirstOfPair)
{
    const bool tall = isTall(line.row);
    const Qt::Alignment labelAlignment = tall ? Qt::AlignTop : Qt::AlignVCenter;
    const Qt::Alignment inputAlignment =
        line.row.kind == RowKind::Check ? Qt::AlignLeft : Qt::Alignment();
    if (tall) {
        line.label->setContentsMargins(0, kTopLabelGap, 0, 0);  // level with the list's first row
    }
    if (line.row.besideThePrevious) {
        line.gridLine = m_grid->rowCount() - 1;
        m_grid->addWidget(line.label, line.gridLine, kSecondPair, labelAlignment);
        m_grid->addWidget(line.input, line.gridLine, kSecondPair + 1, inputAlignment);
        return;
    }
    line.gridLine = m_grid->rowCount();
    if (line.row.kind == RowKind::Block) {
        m_grid->addWidget(line.label, line.gridLine, 0, 1, kColumns);
        m_grid->addWidget(line.input, line.gridLine + 1, 0, 1, kColumns);
        return;
    }
    m_grid->addWidget(line.label, line.gridLine, 0, labelAlignment);
    if (!line.buttons.isEmpty()) {
        auto *const together = new QHBoxLayout;
        together->setSpacing(m_grid->verticalSpacing());
        together->addWidget(line.input, 1);
        for (QPushButton *const button : qAsConst(line.buttons)) {
            together->addWidget(button);
        }
        m_grid->addLayout(together, line.gridLine, 1, 1, kColumns - 1);
        return;
    }
    m_grid->addWidget(line.input, line.gridLine, 1, 1, isFirstOfPair ? 1 : kColumns - 1,
                      inputAlignment);
    if (line.row.kind == RowKind::List) {
        line.grip = new ListGrip(withoutMnemonic(line.row.label), line.input, m_page);
        line.grip->setObjectName(m_key + '_' + line.row.name + QStringLiteral("_grip"));
        m_grid->addWidget(line.grip, line.gridLine + 1, 1, 1, kColumns - 1);
    }
}

void RowForm::showGrips()
{
    QList<const Line *> shown;
    for (const Line &line : m_lines) {
        if (line.grip != nullptr && !line.input->isHidden()) {
            shown.append(&line);
        }
    }
    for (const Line &line : m_lines) {
        if (line.grip != nullptr) {
            // A list alone takes what the form has left.
            line.grip->setVisible(shown.size() > 1 && shown.contains(&line));
        }
    }
}

bool RowForm::hasLists() const
{
    return std::any_of(m_lines.begin(), m_lines.end(),
                       [](const Line &line) { return isTall(line.row); });
}

void RowForm::fillSpareRoom(QWidget *widget)
{
    m_spare = widget;
    placeSpare();
    orderFocus();
}

/// Without lists, short rows would share out the height that is left: it stays below them.
void RowForm::placeSpare()
{
    m_grid->setRowStretch(m_spareLine, 0);
    if (hasLists()) {
        return;
    }
    if (m_spare != nullptr) {
        m_grid->removeWidget(m_spare);
    }
    m_spareLine = m_grid->rowCount();
    m_grid->setRowStretch(m_spareLine, 1);
    if (m_spare != nullptr) {
        m_grid->addWidget(m_spare, m_spareLine, 0, 1, kColumns);
        m_spare->show();
    }
}

void RowForm::placeSeparator(Line &line)
{
    line.separator = new QFrame(m_page);
    line.separator->setObjectName(m_key + '_' + line.row.name + QStringLiteral("_line"));
    line.separator->setFrameShape(QFrame::HLine);
    line.separator->setFrameShadow(QFrame::Plain);
    line.separator->setForegroundRole(QPalette::Mid);
    m_grid->addWidget(line.separator, m_grid->rowCount(), 0, 1, kColumns);
}

/// One width for all buttons behind the fields and one for the first labels, shown or not.
void RowForm::alignColumns()
{
    const QList<QPushButton *> buttons = m_page->findChildren<QPushButton *>();
    int width = 0;
    for (QPushButton *button : buttons) {
        button->ensurePolished();
        width = qMax(width, button->sizeHint().width());
    }
    for (QPushButton *button : buttons) {
        button->setMinimumWidth(width);
    }
    int labelWidth = 0;
    for (const Line &line : m_lines) {
        if (!line.row.besideThePrevious && line.row.kind != RowKind::Block) {
            labelWidth = qMax(labelWidth, line.label->sizeHint().width());
        }
    }
    m_grid->setColumnMinimumWidth(0, labelWidth);
    // Scrolling in height only: the form may never be narrower than its fields.
    m_scroll->setMinimumWidth(m_page->minimumSizeHint().width() +
                              m_scroll->verticalScrollBar()->sizeHint().width());
}

/// Rows that came after the button stand before it all the same.
void RowForm::orderFocus()
{
    if (m_generate == nullptr) {
        return;
    }
    QWidget *last = nullptr;
    const QList<QWidget *> widgets = m_page->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        // The list of an open combo box is a window of its own.
        const bool isOfThePage = widget->window() == m_page->window();
        if (isOfThePage && (widget->focusPolicy() & Qt::TabFocus) != 0 &&
            widget->focusProxy() == nullptr) {
            if (last != nullptr) {
                setTabOrder(last, widget);
            }
            last = widget;
        }
    }
    if (last != nullptr) {
        setTabOrder(last, m_missingLine);
        setTabOrder(m_missingLine, m_generate);
    }
}

void RowForm::addGenerate(const QString &caption)
{
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, m_foot);
    m_generate = buttons->button(QDialogButtonBox::Ok);
    m_generate->setText(caption);
    m_generate->setIcon(QIcon());
    m_generate->setStyleSheet(QStringLiteral("height: 40px;width: 150px;"));
    m_generate->setEnabled(false);
    nameWidget(m_generate, m_key + QStringLiteral("_generate_ok"), withoutMnemonic(caption));
    m_foot->layout()->addWidget(buttons);
    m_foot->show();
    orderFocus();
    updateGenerate();
}

void RowForm::setMissing(std::function<QList<MissingInput>()> missing)
{
    m_missing = std::move(missing);
    updateGenerate();
}

QList<MissingInput> RowForm::emptyRows() const
{
    QList<MissingInput> rows;
    for (const Line &line : m_lines) {
        if (line.row.needed && isEmpty(line)) {
            rows.append({line.row.name, true});
        }
    }
    return rows;
}

void RowForm::updateGenerate()
{
    if (m_generate == nullptr) {
        return;
    }
    const QList<MissingInput> missing = m_missing ? m_missing() : emptyRows();
    m_generate->setEnabled(std::ranges::none_of(missing, &MissingInput::blocks));
    showMissing(missing);
}

void RowForm::holdGenerate(const QString &row)
{
    m_generate->setEnabled(false);
    showMissing({{row, true}});
}

void RowForm::showMissing(const QList<MissingInput> &missing)
{
    QList<MissingLine::Input> inputs;
    for (const MissingInput &each : missing) {
        if (const Line *line = find(each.row)) {
            inputs.append({each.row, line->row.noun.isEmpty()
                                         ? withoutMnemonic(line->row.label).trimmed()
                                         : line->row.noun});
        }
    }
    m_missingLine->tell(inputs);
}

void RowForm::report(const QString &row)
{
    updateGenerate();
    emit edited(row);
}

const RowForm::Line *RowForm::find(const QString &name) const
{
    const auto hit = m_index.find(name);
    return hit == m_index.end() ? nullptr : &m_lines[*hit];
}

RowForm::Line *RowForm::find(const QString &name)
{
    return const_cast<Line *>(std::as_const(*this).find(name));
}

const FormRow *RowForm::row(const QString &name) const
{
    const Line *line = find(name);
    return line == nullptr ? nullptr : &line->row;
}

QString RowForm::nameOf(const FormRow &row, const char *role) const
{
    return row.objectName.isEmpty() ? m_key + '_' + row.name + QLatin1String(role) : row.objectName;
}

bool RowForm::isEmpty(const Line &line) const
{
    switch (line.row.kind) {
    case RowKind::List:
        return list(line.row.name)->rows().isEmpty();
    case RowKind::Choice:
        return choice(line.row.name)->currentIndex() <= 0;  // the first entry asks to choose
    case RowKind::File:
    case RowKind::Text:
        return text(line.row.name).isEmpty();
    default:
        return false;
    }
}

QLineEdit *RowForm::edit(const QString &name) const
{
    if (const FileField *field = file(name)) {
        return field->edit();
    }
    return input<QLineEdit>(name);
}

QPushButton *RowForm::button(const QString &name, const QString &role) const
{
    if (const FileField *field = file(name)) {
        return field->button(role);
    }
    const Line *line = find(name);
    const QString named = m_key + '_' + name + '_' + role;
    const auto isAsked = [&](const QPushButton *button) { return button->objectName() == named; };
    const auto hit = line == nullptr ? QList<QPushButton *>::const_iterator()
                                     : std::ranges::find_if(line->buttons, isAsked);
    return line == nullptr || hit == line->buttons.end() ? nullptr : *hit;
}

QString RowForm::text(const QString &name) const
{
    if (const FileField *field = file(name)) {
        return field->path();
    }
    if (const QLineEdit *line = edit(name)) {
        return line->text();
    }
    const QComboBox *box = choice(name);
    return box == nullptr ? QString() : box->currentText();
}

void RowForm::setLabel(const QString &name, const QString &label)
{
    Line *line = find(name);
    if (line == nullptr) {
        return;
    }
    line->row.label = label;
    line->label->setText(label);
    const QString plain = withoutMnemonic(label).trimmed();
    if (auto *field = qobject_cast<FileField *>(line->input)) {
        field->setSpokenLabel(plain);
    } else {
        line->input->setAccessibleName(plain);
    }
    updateGenerate();
}

void RowForm::setDefaultName(const QString &name, const QString &fileName)
{
    if (Line *line = find(name)) {
        line->row.defaultName = fileName;
    }
}

void RowForm::setText(const QString &name, const QString &text)
{
    if (FileField *field = file(name)) {
        field->setPath(text);
    } else if (QLineEdit *line = edit(name)) {
        line->setText(text);
    } else if (QLabel *note = input<QLabel>(name)) {
        note->setText(text);
        setRowVisible(name, !text.isEmpty());
    }
}

void RowForm::choosePath(const QString &name, const QString &path)
{
    if (FileField *field = file(name)) {
        field->choose(path);
    }
}

void RowForm::setRowVisible(const QString &name, bool visible)
{
    const Line *line = find(name);
    if (line == nullptr) {
        return;
    }
    line->label->setVisible(visible);
    line->input->setVisible(visible);
    for (QPushButton *const button : line->buttons) {
        button->setVisible(visible);
    }
    if (isTall(line->row)) {
        // An empty line of the grid would keep its share of the height.
        m_grid->setRowStretch(line->gridLine, visible ? 1 : 0);
        showGrips();
    }
}

void RowForm::setSeparatorVisible(const QString &name, bool visible)
{
    const Line *line = find(name);
    if (line != nullptr && line->separator != nullptr) {
        line->separator->setVisible(visible);
    }
}

void RowForm::setRowEnabled(const QString &name, bool enabled, const QString &why)
{
    const Line *line = find(name);
    if (line == nullptr) {
        return;
    }
    target(line->input)->setEnabled(enabled);
    showToolTip(*line, enabled ? QString() : why);
}

void RowForm::showToolTip(const Line &line, const QString &why)
{
    QStringList parts{line.row.toolTip, why};
    parts.removeAll(QString());
    target(line.input)->setToolTip(plainToolTip(parts.join(QLatin1Char('\n'))));
}

void RowForm::focusRow(const QString &name)
{
    const Line *line = find(name);
    if (line == nullptr) {
        return;
    }
    m_scroll->ensureWidgetVisible(line->input);
    line->input->setFocus(Qt::OtherFocusReason);
}

void RowForm::takeShared(SharedField field, const QString &path)
{
    for (const Line &line : m_lines) {
        if (line.row.shared == field) {
            choosePath(line.row.name, path);
        }
    }
}

void RowForm::clear()
{
    for (const Line &line : m_lines) {
        if (line.row.kind != RowKind::Note) {
            setText(line.row.name, {});
        }
        if (auto *spin = qobject_cast<QSpinBox *>(line.input)) {
            spin->setValue(line.row.least);
        } else if (auto *files = qobject_cast<FileList *>(line.input)) {
            files->removeAllRows();
            files->removeButton()->setEnabled(false);
        } else if (auto *cells = qobject_cast<QTableWidget *>(line.input)) {
            cells->setRowCount(0);
        }
    }
    updateGenerate();
}

}  // namespace workbench
