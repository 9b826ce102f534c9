#pragma once
#include <QObject>
#include <QString>

class QLabel;

namespace workbench
{

class FileList;

/// Words in an empty list that say what goes in. Lives with the list.
class EmptyListHint : public QObject
{
    Q_OBJECT

public:
    EmptyListHint(FileList *list, const QString &hint);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void update();

    FileList *m_list;
    QLabel *m_words;
};

}  // namespace workbench
