#pragma once
#include <QString>

class QWidget;

namespace workbench
{

/// Lays one plain sentence into the page of a tab whose form isn't part of this version: what the
/// tab is for, and that it can't be used yet. A page that already has a layout is left alone.
void layTabNotice(QWidget *page, const QString &sentence);

}  // namespace workbench
