#pragma once
#include "workbench/forms/Tab.h"

#include <span>

namespace workbench
{

/// One line of the list of all tabs.
struct TabEntry {
    enum class Built {
        WithTheForm,
        LaterOnce,  ///< by the window, on a page that the form has from the beginning
        ManyTimes,  ///< each on a page of its own
    };
    TabName name;
    Built built;
    /// Builds the tab into the page, which owns it. Null for a tab without a form, see `sentence`.
    Tab *(*make)(const TabName &name, QWidget *page, FormContext &context);
    const char *sentence;  ///< what a tab without a form says instead
};

/// All tabs, in the order in which the form builds them.
std::span<const TabEntry> tabRegistry();

/// @param key  of a tab in the registry
const TabEntry &tabEntry(const QString &key);

/// Builds the tab of an entry into a page.
Tab *makeTab(const TabEntry &entry, QWidget *page, FormContext &context);

}  // namespace workbench
