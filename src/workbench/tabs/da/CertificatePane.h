#pragma once
#include "workbench/tabs/da/ChainPane.h"
#include "workbench/widgets/FileField.h"

namespace workbench
{

class ShowInFolder;

/// The pane that shows a finished certificate or chain: its path with "Browse", and what it holds.
class CertificatePane : public QWidget
{
    Q_OBJECT

public:
    explicit CertificatePane(QWidget *parent);

    [[nodiscard]] FileField *field() const { return m_field; }
    [[nodiscard]] ChainPane *chain() const { return m_chain; }

    /// Offers to show the folder of a certificate that was just made, until another path stands in
    /// the field.
    void offerMade(const QString &path);

signals:
    void browseRequested();
    void pathEntered(const QString &path);

private:
    FileField *m_field;
    ChainPane *m_chain;
    ShowInFolder *m_made;
};

}  // namespace workbench
