#include "workbench/templates/ObkRows.h"

#include "obk/Choices.h"
#include "obk/ImageCommand.h"
#include "workbench/widgets/Drops.h"
#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/FocusView.h"
#include "workbench/widgets/PermissionTable.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace workbench
{

namespace
{

enum Column { kLabel, kField, kUnit, kNote };

constexpr std::size_t kPartRows = 100;
constexpr int kLabelWidth = 150;  // pixels
constexpr const char *kItemProperty = "templateItem";

std::vector<PermissionBit> permissionBits()
{
    std::vector<PermissionBit> bits;
    for (int bit = 0; bit < 16; ++bit) {
        const bool isUsable = (obk::kPermissionMask >> bit & 1) != 0;
        bits.push_back({ObkRows::tr("Bit %1").arg(bit),
                        isUsable ? ObkRows::tr("Adds 0x%1 to the permissions")
                                       .arg(1 << bit, 4, 16, QLatin1Char('0'))
                                 : ObkRows::tr("The file has no place for this bit"),
                        isUsable});
    }
    return bits;
}

/// Between text and background, in every colour scheme.
QPalette muted(QPalette palette)
{
    const QColor text = palette.color(QPalette::WindowText);
    const QColor back = palette.color(QPalette::Window);
    const auto mix = [](int a, int b) { return (3 * a + 2 * b) / 5; };
    palette.setColor(QPalette::WindowText,
                     QColor(mix(text.red(), back.red()), mix(text.green(), back.green()),
                            mix(text.blue(), back.blue())));
    return palette;
}

}  // namespace

ObkRows::ObkRows(const QString &tab, QWidget *parent) : QScrollArea(parent), m_tab(tab)
{
    setObjectName(m_tab + QLatin1String("_rows_area"));
    setAccessibleName(tr("Fields of the template"));
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    keepFocusInView(this);
}

void ObkRows::build(const obk::Template &model, const QString &folder)
{
    m_rows.clear();
    m_isBuilt = false;
    m_model = model;
    m_folder = folder;
    m_grids.clear();
    // Filled before it is shown, so that everything is laid out once.
    m_page = new QWidget;
    auto *const column = new QVBoxLayout(m_page);
    column->setContentsMargins(0, 4, 8, 4);
    m_rows.reserve(model.items.size());
    for (std::size_t at = 0; at < model.items.size(); ++at) {
        const ObDataItem &item = model.items[at];
        const bool isShown = !item.hidden && item.kind != obk::ItemKind::Output &&
                             !(item.kind == obk::ItemKind::Data && item.reserved);
        if (!isShown) {
            continue;
        }
        if (m_rows.size() % kPartRows == 0) {
            startPart();
        }
        addRow(item, static_cast<int>(at));
    }
    alignParts();
    column->addStretch(1);
    setWidget(m_page);  // destroys the one before
    for (std::size_t at = 0; at < m_rows.size(); ++at) {
        check(at);
    }
    m_isBuilt = true;
}

void ObkRows::startPart()
{
    m_part = new QWidget(m_page);
    m_grid = new QGridLayout(m_part);
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setHorizontalSpacing(10);
    m_grid->setColumnStretch(kField, 3);
    m_grid->setColumnStretch(kNote, 2);
    m_grids.push_back(m_grid);
    m_page->layout()->addWidget(m_part);
}

void ObkRows::alignParts() const
{
    if (m_grids.size() < 2) {
        return;
    }
    for (const int column : {int(kLabel), int(kUnit)}) {
        int widest = 0;
        for (QGridLayout *const grid : m_grids) {
            for (int line = 0; line < grid->rowCount(); ++line) {
                const QLayoutItem *const cell = grid->itemAtPosition(line, column);
                widest = std::max(widest, cell == nullptr ? 0 : cell->sizeHint().width());
            }
        }
        for (QGridLayout *const grid : m_grids) {
            grid->setColumnMinimumWidth(column, widest);
        }
    }
}

QString ObkRows::objectName(const ObDataItem &item, const char *role) const
{
    return QStringLiteral("%1_%2_%3")
        .arg(m_tab, nameInObjects(item.nameText()), QLatin1String(role));
}

void ObkRows::addRow(const ObDataItem &item, int index)
{
    ObkRow row;
    row.item = index;
    row.field = new QWidget(m_part);
    auto *const column = new QVBoxLayout(row.field);
    column->setContentsMargins(0, 0, 0, 0);
    switch (item.kind) {
    case obk::ItemKind::Bool:
        addBool(row, item);
        break;
    case obk::ItemKind::List:
        addList(row, item);
        break;
    case obk::ItemKind::File:
        addFile(row, item);
        break;
    case obk::ItemKind::Permission:
        addPermission(row, item);
        break;
    default:
        addText(row, item);
        break;
    }
    if (item.isLocked) {
        lock(row);
    }
    place(row, item);
    m_rows.push_back(row);
}

void ObkRows::lock(ObkRow &row)
{
    row.field->setEnabled(false);
}

/// Every input says what it is, and a locked one why it is locked.
void ObkRows::explain(const ObkRow &row, const ObDataItem &item)
{
    QStringList lines{item.tooltip.value_or(QString())};
    if (lines.first().isEmpty()) {
        const QString unit = unitText(item);
        lines = QStringList(unit.isEmpty() ? item.nameText() : item.nameText() + ": " + unit);
    }
    if (item.isLocked) {
        lines << tr("The template fixes this value");
    } else if (item.kind == obk::ItemKind::File) {
        lines << tr("\"Open\" chooses the file; it can be dropped here, too");
    }
    const QString tip = plainToolTip(lines.join('\n'));
    for (QWidget *const input :
         {static_cast<QWidget *>(row.edit), static_cast<QWidget *>(row.check),
          static_cast<QWidget *>(row.combo)}) {
        if (input != nullptr) {
            input->setToolTip(tip);
        }
    }
    if (row.edit != nullptr) {
        row.edit->setPlaceholderText(item.isParam ? tr("Left out while empty") : unitText(item));
    }
}

void ObkRows::addText(ObkRow &row, const ObDataItem &item)
{
    row.edit = new QLineEdit(item.text(), row.field);
    nameWidget(row.edit, objectName(item, "edit"), item.nameText());
    row.field->layout()->addWidget(row.edit);
    const std::size_t at = m_rows.size();
    connect(row.edit, &QLineEdit::textChanged, this, [this, at] {
        check(at);
        checkSlotsLike(at);
        emit fieldChanged();
    });
    if (item.isParam && obk::isSecretOption(item)) {
        row.edit->setEchoMode(QLineEdit::Password);
    }
}

void ObkRows::addPermission(ObkRow &row, const ObDataItem &item)
{
    addText(row, item);
    if (!m_model.daLayout) {
        return;
    }
    row.permissions = new PermissionTable(QLatin1String("obk_") + nameInObjects(item.nameText()),
                                          permissionBits(), m_part);
    row.permissions->setMask(obk::lowWord(item.text()));
    auto *const edit = row.edit;
    auto *const table = row.permissions;
    connect(table, &PermissionTable::changed, edit, [edit, table] {
        const auto word = static_cast<std::uint32_t>(table->mask());
        if ((obk::lowWord(edit->text()) & obk::kPermissionMask) != word) {
            edit->setText(obk::permissionText(word));
        }
    });
    connect(edit, &QLineEdit::textEdited, table,
            [table](const QString &text) { table->setMask(obk::lowWord(text)); });
}

void ObkRows::addBool(ObkRow &row, const ObDataItem &item)
{
    row.check = new QCheckBox(row.field);
    nameWidget(row.check, item.nameText(), item.nameText());
    row.check->setChecked(obk::isChecked(item).value_or(false));
    row.field->layout()->addWidget(row.check);
    const std::size_t at = m_rows.size();
    connect(row.check, &QCheckBox::stateChanged, this, [this, at, name = item.nameText()] {
        check(at);
        emit selectorChanged(name);
        emit fieldChanged();
    });
}

void ObkRows::addList(ObkRow &row, const ObDataItem &item)
{
    row.combo = new QComboBox(row.field);
    nameWidget(row.combo, item.nameText(), item.nameText());
    QStringList entries;
    for (const QString &entry : item.entries) {
        entries << obk::listEntry(entry).shown;
    }
    row.combo->addItems(entries);
    row.combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    row.combo->setMinimumContentsLength(16);
    row.combo->setCurrentIndex(obk::currentEntry(item));
    row.field->layout()->addWidget(row.combo);
    const std::size_t at = m_rows.size();
    connect(row.combo, qOverload<int>(&QComboBox::currentIndexChanged), this,
            [this, at, name = item.nameText()] {
                check(at);
                emit selectorChanged(name);
                emit fieldChanged();
            });
}

void ObkRows::addFile(ObkRow &row, const ObDataItem &item)
{
    const QString name = item.nameText();
    row.edit = new QLineEdit(item.text(), row.field);
    nameWidget(row.edit, objectName(item, "edit"), name);
    row.edit->setEnabled(false);  // a path isn't typed here
    row.field->setAcceptDrops(true);
    row.field->setProperty(kItemProperty, row.item);
    row.field->installEventFilter(this);
    const std::size_t at = m_rows.size();
    connect(row.edit, &QLineEdit::textChanged, this, [this, at] { check(at); });
    row.open = new QPushButton(tr("Open"), row.field);
    nameWidget(row.open, objectName(item, "open"), tr("%1 Open").arg(name));
    auto *const column = static_cast<QVBoxLayout *>(row.field->layout());
    auto *const line = new QHBoxLayout;
    if (item.isParam) {
        line->addWidget(row.edit, 1);
        line->addWidget(row.open);
        addClear(row, item, line);
    } else {
        column->addWidget(row.edit);
        line->addWidget(row.open);
        addRegenerate(row, item, line);
    }
    column->addLayout(line);
    connect(row.edit, &QLineEdit::textChanged, this, &ObkRows::fieldChanged);
    connect(row.open, &QPushButton::clicked, this, [this, at = row.item] { emit openPressed(at); });
}

void ObkRows::addRegenerate(ObkRow &row, const ObDataItem &item, QHBoxLayout *line)
{
    const QString name = item.nameText();
    // Made in the order of the Tab key, as all of a row.
    row.keyType = new QComboBox(row.field);
    nameWidget(row.keyType, objectName(item, "combo"), name + tr(" key type"));
    row.keyType->addItems(item.keyType.value_or(QString()).split(QLatin1Char(',')));
    row.regenerate = new QPushButton(tr("Regenerate"), row.field);
    nameWidget(row.regenerate, name, tr("%1 Regenerate").arg(name));
    row.keyType->setToolTip(tr("The kind of key that \"Regenerate\" makes"));
    row.regenerate->setToolTip(tr("Makes a new key pair; an old key is kept under another name"));
    line->addWidget(row.keyType, 1);
    line->addWidget(row.regenerate);
    connect(row.regenerate, &QPushButton::clicked, this,
            [this, at = row.item] { emit regeneratePressed(at); });
}

void ObkRows::addClear(ObkRow &row, const ObDataItem &item, QHBoxLayout *line)
{
    row.clear = new QPushButton(tr("Clear"), row.field);
    nameWidget(row.clear, objectName(item, "clear"), item.nameText() + tr(" Clear"));
    row.clear->setToolTip(tr("Empties the path: the command does without it"));
    line->addWidget(row.clear);
    connect(row.clear, &QPushButton::clicked, row.edit, &QLineEdit::clear);
}

void ObkRows::place(ObkRow &row, const ObDataItem &item)
{
    const int line = m_grid->rowCount();
    auto *const label = new QLabel(m_part);
    label->setTextFormat(Qt::PlainText);
    label->setText(item.nameText());
    label->setWordWrap(label->sizeHint().width() > kLabelWidth);
    label->setMinimumWidth(kLabelWidth);
    auto *const unit = new QLabel(unitText(item), m_part);
    unit->setTextFormat(Qt::PlainText);
    unit->setPalette(muted(palette()));
    row.note = new QLabel(m_part);
    row.note->setObjectName(objectName(item, "note"));
    row.note->setTextFormat(Qt::PlainText);
    row.note->setMinimumWidth(120);
    explain(row, item);
    const bool isTall = item.kind == obk::ItemKind::File && !item.isParam;
    const auto middle = isTall ? Qt::AlignTop : Qt::AlignVCenter;
    for (QLabel *const text : {label, unit, row.note}) {
        text->setContentsMargins(0, isTall ? 6 : 0, 0,
                                 0);  // level with the first line of the field
    }
    m_grid->addWidget(label, line, kLabel, middle);
    m_grid->addWidget(row.field, line, kField);
    m_grid->addWidget(unit, line, kUnit, middle);
    m_grid->addWidget(row.note, line, kNote, middle);
    if (row.permissions != nullptr) {
        m_grid->addWidget(row.permissions, line + 1, kField, 1, kNote - kField + 1);
    }
}

void ObkRows::setFile(ObkRow &row, const QString &path)
{
    row.edit->setText(path);
    row.keptAs.clear();
    setNote(row, {}, false);
}

bool ObkRows::eventFilter(QObject *watched, QEvent *event)
{
    const QVariant item = watched->property(kItemProperty);
    ObkRow *const target = item.isValid() ? row(item.toInt()) : nullptr;
    if (event->type() == QEvent::DragEnter && target != nullptr) {
        auto *const drag = static_cast<QDragEnterEvent *>(event);
        drag->setAccepted(droppedFiles(*drag->mimeData()).size() == 1);
        return true;
    }
    if (event->type() == QEvent::Drop && target != nullptr) {
        auto *const drop = static_cast<QDropEvent *>(event);
        const QStringList paths = droppedFiles(*drop->mimeData());
        if (paths.size() == 1) {
            setFile(*target, paths.first());
            drop->acceptProposedAction();
        }
        return true;
    }
    return QScrollArea::eventFilter(watched, event);
}

void ObkRows::leadFocusTo(std::initializer_list<QWidget *> following) const
{
    if (m_rows.empty()) {
        return;
    }
    const ObkRow &last = m_rows.back();
    QWidget *before = nullptr;
    for (QWidget *const widget :
         {static_cast<QWidget *>(last.edit), static_cast<QWidget *>(last.check),
          static_cast<QWidget *>(last.combo), static_cast<QWidget *>(last.open),
          static_cast<QWidget *>(last.keyType), static_cast<QWidget *>(last.regenerate),
          static_cast<QWidget *>(last.clear)}) {
        before = widget != nullptr ? widget : before;
    }
    if (last.permissions != nullptr) {
        before = last.permissions->button(0);
    }
    for (QWidget *const widget : following) {
        QWidget::setTabOrder(before, widget);
        before = widget;
    }
}

std::vector<std::optional<QString>> ObkRows::fields() const
{
    std::vector<std::optional<QString>> texts(m_model.items.size());
    for (const ObkRow &row : m_rows) {
        const auto item = static_cast<std::size_t>(row.item);
        texts[item] = row.text(m_model.items[item]);
    }
    return texts;
}

ObkRow *ObkRows::row(int item)
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(),
                                    [item](const ObkRow &row) { return row.item == item; });
    return found == m_rows.end() ? nullptr : &*found;
}

ObkRow *ObkRows::row(const QString &name, obk::ItemKind kind)
{
    for (const auto sensitivity : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
        for (ObkRow &row : m_rows) {
            const ObDataItem &item = m_model.items[static_cast<std::size_t>(row.item)];
            if (item.kind == kind && item.nameText().compare(name, sensitivity) == 0) {
                return &row;
            }
        }
    }
    return nullptr;
}

void ObkRows::applySelectors(obk::Template &model)
{
    // Selectors that have no row keep what the template says.
    std::vector<ObDataItem> shown = m_model.items;
    for (const ObkRow &row : m_rows) {
        const auto item = static_cast<std::size_t>(row.item);
        shown[item].value = row.text(m_model.items[item]);
    }
    const auto selectors = obk::selectorsOf(shown);
    obk::applyDependencies(model.items, selectors);
    for (const ObkRow &row : m_rows) {
        const ObDataItem &item = m_model.items[static_cast<std::size_t>(row.item)];
        if (item.kind != obk::ItemKind::Data || !item.dependency) {
            continue;
        }
        const auto wanted = obk::condition(*item.dependency);
        const bool isOn = obk::isSwitchedOn(wanted, selectors);
        row.edit->setEchoMode(isOn ? QLineEdit::Normal : QLineEdit::NoEcho);
        row.edit->setEnabled(isOn);
        if (isOn) {
            explain(row, item);
        } else {
            row.edit->setToolTip(
                plainToolTip(tr("Off. \"%1\" set to \"%2\" switches it on.")
                                 .arg(obk::findSelector(wanted, selectors)->name, wanted.value)));
        }
    }
}

}  // namespace workbench
