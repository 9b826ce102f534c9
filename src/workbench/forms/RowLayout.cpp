// How the rows of a form lie on its page, and the order of the Tab key.
#include "workbench/forms/ListGrip.h"
#include "workbench/forms/RowForm.h"
#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/MissingLine.h"

#include <QHBoxLayout>
#include <QScrollBar>

#include <algorithm>

namespace workbench
{

namespace
{

// The grid: two pairs of label and input. Most rows take the first label and all the rest.
constexpr int kColumns = 4;
constexpr int kSecondPair = 2;
constexpr int kMargin = 9;
constexpr int kTopLabelGap = 5;

}  // namespace

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

void RowForm::place(Line &line, bool isFirstOfPair)
{
    const bool tall = line.row.isTall();
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
                       [](const Line &line) { return line.row.isTall(); });
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

}  // namespace workbench
