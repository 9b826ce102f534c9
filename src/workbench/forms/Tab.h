#pragma once
#include "workbench/forms/FormContext.h"
#include "workbench/forms/SavedGroup.h"

#include <QObject>
#include <QString>
#include <QWidget>

struct FileType;

namespace workbench
{

/// How a tab is called.
struct TabName {
    const char *key;    ///< first part of all its object names, such as "sfi"
    const char *title;  ///< on its tab; translated when shown
    /// Of its group in the settings file, such as "SFI"; empty for a tab that keeps nothing.
    const char *settingsGroup = "";
};

/// One tab of the form: builds its widgets into a page, connects them, and does their work. The
/// frame knows tabs by this class alone, and lists them in `frame/TabRegistry.cpp`. What a tab has
/// no use for it leaves as it is.
class Tab : public QObject
{
    Q_OBJECT

public:
    /// @param page     empty; owns the tab from now on. Its object name is the key and "_page"
    /// @param context  outlives the tab
    Tab(const TabName &name, QWidget *page, FormContext &context);

    [[nodiscard]] QString key() const { return QLatin1String(m_name.key); }
    [[nodiscard]] QString title() const { return tr(m_name.title); }
    [[nodiscard]] QString settingsGroup() const { return QLatin1String(m_name.settingsGroup); }
    [[nodiscard]] QWidget *page() const;

    /// Empties texts, lists and panes, releases what they held; the device box keeps its entry.
    virtual void clear() {}

    /// Empties the tables that show existing images.
    virtual void clearPanes() {}

    /// Sets the device box to the device of the H5 panel and disables it; or gives it back with the
    /// entry that it had. Doing either twice is doing it once.
    virtual void lockDevice(bool /*lock*/) {}

    /// Takes over a path that was opened for all tabs.
    virtual void takeShared(SharedField /*field*/, const QString & /*path*/) {}

    /// Shows a file that was opened by the window's "Check SFI/SMI".
    /// @return false when this tab doesn't show files of its kind
    virtual bool showChecked(const QString & /*path*/, const FileType & /*record*/)
    {
        return false;
    }

    // The settings file. Tabs without a group there are not asked.
    virtual void save(SavedGroup & /*group*/) const {}
    /// Fills texts, numbers and choices. Reads no file.
    virtual void restore(const SavedGroup & /*group*/) {}
    /// Reads the files that were saved; called when all tabs have their texts. Faults are reported.
    virtual void restoreFiles(const SavedGroup & /*group*/) {}

protected:
    [[nodiscard]] FormContext &context() const { return m_context; }

private:
    TabName m_name;
    FormContext &m_context;
};

}  // namespace workbench
