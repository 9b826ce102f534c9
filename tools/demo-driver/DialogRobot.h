#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>

class QDialog;
class QFileDialog;
class QMessageBox;

namespace demo
{

/// Answers the modal dialogs of the program as a user would, while the call that opened them waits.
/// Needs Qt's own file dialogs (AA_DontUseNativeDialogs). Each dialog is named on standard output.
class DialogRobot : public QObject
{
    Q_OBJECT

public:
    explicit DialogRobot(QObject *parent = nullptr);

    /// What the next file dialog is to choose; one list for each dialog to come, in order.
    void chooseNext(const QStringList &paths) { m_choices.append(paths); }

    /// The texts typed into each dialog that asks for a start address, and for a region's key
    /// address.
    void setStartAddress(const QString &start, const QString &key = {})
    {
        m_startAddress = start;
        m_keyAddress = key;
    }

    /// "title: text" of each message box so far, in order.
    QStringList boxes() const { return m_boxes; }

private:
    void look();
    void answerFileDialog(QFileDialog *dialog);
    void answerBox(QMessageBox *box);
    void answerAddress(QDialog *dialog);

    QTimer m_timer;
    QPointer<QWidget> m_seen;  ///< the dialog looked at last: it gets one more round to appear
    QList<QStringList> m_choices;
    QString m_startAddress;
    QString m_keyAddress;
    QStringList m_boxes;
};

}  // namespace demo
