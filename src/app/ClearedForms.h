#pragma once
#include "workbench/widgets/FileList.h"

#include <QPointer>
#include <QVariant>
#include <QWidget>

#include <vector>

class CentralWidget;

namespace app
{

/// Whether a field or a list of any tab holds something that clearing would lose.
bool areFormsFilled(const CentralWidget &form);

/// Clears all forms and keeps what they held, so that it can be brought back. Files of lists are
/// kept in memory with their addresses; none is read again.
class ClearedForms
{
public:
    explicit ClearedForms(CentralWidget &form);

    /// Whether the forms are still as clearing left them.
    [[nodiscard]] bool areUntouched() const;

    /// Puts all back. To be called once.
    void bringBack();

private:
    struct Input {
        QPointer<QWidget> widget;
        QVariant value;
    };
    struct Files {
        QPointer<workbench::FileList> list;
        workbench::FileRows::Taken taken;
    };
    [[nodiscard]] std::vector<Input> inputs() const;
    [[nodiscard]] QVariant valueBefore(const QWidget *widget) const;

    CentralWidget &m_form;
    std::vector<Files> m_files;
    std::vector<Input> m_held;
    std::vector<Input> m_left;  ///< by clearing
};

}  // namespace app
