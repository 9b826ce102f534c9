#include "obk/Choices.h"
#include "obk/Generation.h"
#include "obk/KeyInput.h"
#include "obk/Slots.h"
#include "workbench/templates/ObkRows.h"
#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/PermissionTable.h"

#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QVBoxLayout>

namespace workbench
{

namespace
{

/// Only a text that needs it is wrapped: where heights depend on widths, each new width of the
/// window has all rows measured anew.
void tell(QLabel *note, const QString &text)
{
    // A path is one long word; without places to break it would lose its end.
    static const QRegularExpression joint(QStringLiteral("([/_])|(?=\\.\\w)"));
    note->setWordWrap(!text.isEmpty());
    note->setText(QString(text).replace(joint, QStringLiteral("\\1") + QChar(0x200B)));
    note->setToolTip(plainToolTip(text));
}

}  // namespace

QString ObkRows::faultOf(const ObkRow &row) const
{
    const ObDataItem &item = m_model.items[static_cast<std::size_t>(row.item)];
    const QString text = row.text(item);
    if (item.kind == obk::ItemKind::File) {
        if (item.isParam && text.isEmpty()) {
            return {};  // the command does without it
        }
        const QFileInfo file(obk::completePath(text, m_folder));
        return !file.exists()                      ? (item.isParam ? tr("No such file")
                                                                   : tr("No such file yet: choose one, or make a key"))
               : file.isDir()                      ? tr("That is a folder")
               : file.isFile() && file.size() == 0 ? tr("The file is empty")
                                                   : QString();
    }
    if (const auto good = obk::checkField(item, text); !good) {
        return item.kind == obk::ItemKind::Text
                   ? tr("%1 bytes, but %2 to %3 are allowed")
                         .arg(text.toUtf8().size())
                         .arg(item.minWidth)
                         .arg(item.width)
                   : QString::fromStdString(good.error().text).trimmed();
    }
    if (m_isBuilt && (item.hasSlot || item.hasObkSlot)) {
        const auto good = obk::checkSlotsOf(static_cast<std::size_t>(row.item), fields(), m_model);
        return good ? QString() : QString::fromStdString(good.error().text).trimmed();
    }
    if (row.permissions != nullptr &&
        (obk::lowLong(text) & ~std::uint64_t{obk::kPermissionMask}) != 0) {
        return tr("The file has no place for bits 8 to 11 and above 15; they become 0.");
    }
    return {};
}

void ObkRows::checkSlotsLike(std::size_t at)
{
    const auto itemOf = [this](const ObkRow &row) -> const ObDataItem & {
        return m_model.items[static_cast<std::size_t>(row.item)];
    };
    if (at >= m_rows.size() || !(itemOf(m_rows[at]).hasSlot || itemOf(m_rows[at]).hasObkSlot)) {
        return;
    }
    for (std::size_t other = 0; other < m_rows.size(); ++other) {
        const ObDataItem &item = itemOf(m_rows[other]);
        const bool isSlot = other != at && (item.hasSlot || item.hasObkSlot);
        if (isSlot &&
            (!m_rows[other].note->text().isEmpty() || obk::sharesSlot(itemOf(m_rows[at]), item))) {
            check(other);
        }
    }
}

void ObkRows::check(std::size_t at)
{
    if (at >= m_rows.size()) {
        return;
    }
    const QString fault = faultOf(m_rows[at]);
    tell(m_rows[at].note, fault.isEmpty() ? QString() : QString(QChar(0x26A0)) + ' ' + fault);
}

void ObkRows::checkFiles()
{
    for (std::size_t at = 0; at < m_rows.size(); ++at) {
        if (m_rows[at].open != nullptr && m_rows[at].keptAs.isEmpty()) {
            check(at);
        }
    }
}

void ObkRows::setNote(ObkRow &row, const QString &note, bool canRestore)
{
    const ObDataItem &item = m_model.items[static_cast<std::size_t>(row.item)];
    if (note.isEmpty()) {
        check(static_cast<std::size_t>(&row - m_rows.data()));
    } else {
        tell(row.note, note);
    }
    if (canRestore && row.restore == nullptr) {
        row.restore = new QPushButton(tr("Put it back"), row.field);
        nameWidget(row.restore, objectName(item, "restore"),
                   item.nameText() + tr(" put the old key back"));
        row.field->layout()->addWidget(row.restore);
        QWidget::setTabOrder(row.regenerate, row.restore);
        connect(row.restore, &QPushButton::clicked, this,
                [this, at = row.item] { emit restorePressed(at); });
    }
    if (row.restore != nullptr) {
        row.restore->setVisible(canRestore);
    }
}

}  // namespace workbench
