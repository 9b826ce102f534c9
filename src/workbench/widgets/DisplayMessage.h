#pragma once
#include <QtGlobal>

/// The display callback of the whole program: raises a box for the levels 1, 4 and 5, and records
/// every text in the trace (`logs`, and the log file while one is in use). The box shows plain
/// text. Returns when the user has closed the box. GUI thread only.
/// @param level  any value; unknown ones go to the trace only
/// @param text   NUL-terminated, prefix included; null counts as empty
void displayMessage(int level, const wchar_t *text);

/// Swallows every message of Qt: installed around `dumpObjectInfo`, which would print on standard
/// error.
void myMessageHandler(QtMsgType type, const QMessageLogContext &context, const QString &text);
