#pragma once
#include <QLabel>
#include <QList>

namespace workbench
{

/// Beside a "Generate" button: what the request still waits for, each as a link that leads to its
/// input. Not there while nothing is missing.
class MissingLine : public QLabel
{
    Q_OBJECT

public:
    struct Input {
        QString name;  ///< handed over by `chosen`
        QString noun;  ///< as shown
    };

    /// @param tab  first part of its object name, such as "sfi"
    MissingLine(const QString &tab, QWidget *parent);

    void tell(const QList<Input> &missing);

signals:
    void chosen(const QString &name);
};

}  // namespace workbench
