#pragma once
#include "obk/Template.h"
#include "workbench/templates/ObkRow.h"

#include <QScrollArea>

#include <vector>

class QGridLayout;
class QHBoxLayout;

namespace workbench
{

/// The rows that a template of either kind builds. It knows widgets and rules of single fields;
/// files, keys and generation are the tab's.
class ObkRows : public QScrollArea
{
    Q_OBJECT

public:
    /// @param tab  key of the tab, with which object names begin
    ObkRows(const QString &tab, QWidget *parent);

    /// Replaces all rows by those of a template, which has passed all its checks.
    /// @param folder  relative paths of files count from it
    void build(const obk::Template &model, const QString &folder);

    /// Puts what follows the rows behind them in the order of the Tab key, where new rows stand
    /// last. Moving the rows instead would take long.
    void leadFocusTo(std::initializer_list<QWidget *> following) const;

    /// Text of each item's field by item; absent for items without one.
    [[nodiscard]] std::vector<std::optional<QString>> fields() const;

    /// The row of an item; null for none.
    [[nodiscard]] ObkRow *row(int item);
    /// The row of an item of that name and kind, by the exact name first; null for none.
    [[nodiscard]] ObkRow *row(const QString &name, obk::ItemKind kind);

    /// Switches the fields that depend on selectors, by what the selectors show now.
    /// @param model  the items get the flag by which slots count
    void applySelectors(obk::Template &model);

    /// Looks again at the files that rows name, but for rows that tell of an old key.
    void checkFiles();

    /// Puts a chosen path into a file row; an old key of it is forgotten.
    void setFile(ObkRow &row, const QString &path);

    /// Puts a sentence beside a row; instead of an empty one stands what is wrong with the field.
    void setNote(ObkRow &row, const QString &note, bool canRestore);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void fieldChanged();  ///< any of them
    void selectorChanged(const QString &item);
    // Of a row, by its item: names may be missing.
    void openPressed(int item);
    void regeneratePressed(int item);
    void restorePressed(int item);

private:
    void addRow(const ObDataItem &item, int index);
    void addText(ObkRow &row, const ObDataItem &item);
    void addPermission(ObkRow &row, const ObDataItem &item);
    void addBool(ObkRow &row, const ObDataItem &item);
    void addList(ObkRow &row, const ObDataItem &item);
    void addFile(ObkRow &row, const ObDataItem &item);
    void addRegenerate(ObkRow &row, const ObDataItem &item, QHBoxLayout *line);
    void addClear(ObkRow &row, const ObDataItem &item, QHBoxLayout *line);
    static void lock(ObkRow &row);
    static void explain(const ObkRow &row, const ObDataItem &item);
    void place(ObkRow &row, const ObDataItem &item);
    void startPart();
    void alignParts() const;
    void check(std::size_t row);
    /// Looks again at the rows whose slots the row's number moves, and at slots found wrong before.
    void checkSlotsLike(std::size_t row);
    [[nodiscard]] QString faultOf(const ObkRow &row) const;
    [[nodiscard]] QString objectName(const ObDataItem &item, const char *role) const;

    QString m_tab;
    obk::Template m_model;  ///< as built; names, kinds and widths of the rows
    QString m_folder;
    QWidget *m_page = nullptr;
    // The part of the rows that is being built: thousands of siblings would be laid out and painted
    // in quadratic time.
    QWidget *m_part = nullptr;
    QGridLayout *m_grid = nullptr;
    std::vector<QGridLayout *> m_grids;  ///< of all parts
    std::vector<ObkRow> m_rows;
    bool m_isBuilt = false;  ///< slots have passed their checks at opening
};

}  // namespace workbench
