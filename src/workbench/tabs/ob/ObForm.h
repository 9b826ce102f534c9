#pragma once
#include "device/ObEditor.h"

#include <QWidget>

class QComboBox;
class QLabel;
class QPushButton;
class QTableWidget;

namespace workbench
{

class ChangesPanel;
class MissingLine;
class PathEdit;
class RegisterTree;
class ShowInFolder;

/// The widgets of the option-bytes tab. They show an editor's state; what they do stands in
/// `ObTab`.
class ObForm : public QWidget
{
    Q_OBJECT

public:
    explicit ObForm(QWidget *parent);

    /// Shows another device, or none for null. @param editor  outlives what is shown
    void showDevice(const device::ObEditor *editor);
    /// Shows what an edit of a field changed.
    void refresh(device::FieldId id);
    /// Shows the editor's state of everything.
    void refreshAll();
    /// @param canGenerate  for both the Generate button and the upload
    void setReady(bool canGenerate);
    /// What was written and still holds; empty for nothing.
    void setWritten(const QString &path);
    /// Describes a field, or says how to begin.
    void describe(const device::FieldId *id);

    QComboBox *mcuBox = nullptr;
    QTableWidget *summary = nullptr;
    RegisterTree *tree = nullptr;
    ChangesPanel *changes = nullptr;
    PathEdit *path = nullptr;
    QPushButton *browse = nullptr;
    QPushButton *upload = nullptr;
    QPushButton *generate = nullptr;
    QPushButton *useInSfi = nullptr;

protected:
    void changeEvent(QEvent *event) override;

private:
    QWidget *buildTop();
    QWidget *buildMiddle();
    QWidget *buildBottom();
    QWidget *titled(const QString &title, QWidget *buddy);
    void refreshSummary(std::size_t reg);
    void refreshChanges();
    void tellMissing();

    const device::ObEditor *m_editor = nullptr;
    QLabel *m_status = nullptr;
    MissingLine *m_missing = nullptr;
    ShowInFolder *m_made = nullptr;
    QLabel *m_irreversible = nullptr;
};

}  // namespace workbench
