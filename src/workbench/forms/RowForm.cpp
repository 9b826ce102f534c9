#include "workbench/forms/RowForm.h"

#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/FocusView.h"
#include "workbench/widgets/MissingLine.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>
#include <utility>

namespace workbench
{

namespace
{

constexpr int kMargin = 9;

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

void RowForm::addGenerate(const QString &caption)
{
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, m_foot);
    m_generate = buttons->button(QDialogButtonBox::Ok);
    m_generate->setText(caption);
    m_generate->setIcon(QIcon());
    // Its name first: the program's style finds it by that, once.
    nameWidget(m_generate, m_key + QStringLiteral("_generate_ok"), withoutMnemonic(caption));
    m_generate->setStyleSheet(QStringLiteral("height: 40px;width: 150px;"));
    m_generate->setEnabled(false);
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
    if (line->row.isTall()) {
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
