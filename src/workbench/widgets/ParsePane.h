#pragma once
#include "workbench/widgets/FileField.h"
#include "workbench/widgets/InfoPane.h"

namespace workbench
{

class ShowInFolder;

/// The pane that shows an existing image: its path with "Browse", and what stands in it.
class ParsePane : public QWidget
{
    Q_OBJECT

public:
    /// @param tab       first part of all object names, such as "sfi"
    /// @param title     accessible names of the tables begin with it, such as "SFI information"
    /// @param contents  headings shown while no image is
    ParsePane(const QString &tab, const QString &title, const PaneContents &contents,
              QWidget *parent);

    [[nodiscard]] FileField *field() const { return m_field; }
    [[nodiscard]] InfoPane *info() const { return m_info; }

    /// Shows the path of an image that was just made, with "Show in folder" behind it until another
    /// path takes its place.
    void showMade(const QString &path);

signals:
    void browseRequested();

private:
    FileField *m_field;
    InfoPane *m_info;
    ShowInFolder *m_made = nullptr;
};

}  // namespace workbench
