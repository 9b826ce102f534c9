#pragma once
#include "certif/ChainView.h"
#include "certif/PermissionNames.h"

#include <QWidget>

class QLabel;
class QListWidget;
class QTableWidget;

namespace workbench
{

/// A chain of certificates, root first, one in a row: what it tells, who signed it, and the rights
/// that are left after it as a picture of the bits. Below, everything that makes it useless.
class ChainPane : public QWidget
{
    Q_OBJECT

public:
    /// @param name       object names begin with it, such as "da_chain"
    /// @param title      what is said of the table
    /// @param emptyText  stands above the table while it shows nothing
    ChainPane(const QString &name, const QString &title, const QString &emptyText, QWidget *parent);

    /// @param family  names the rights in tool tips; null for numbers alone
    void show(const certif::ChainView &view, const certif::Family *family);
    void clear();

    using QWidget::show;

private:
    void addRow(int at, const certif::ChainRow &row, const certif::Family *family);
    void fitTable();
    void showFaults(const QStringList &faults);

    QString m_emptyText;
    QLabel *m_verdict;
    QTableWidget *m_table;
    QListWidget *m_faults;
};

}  // namespace workbench
