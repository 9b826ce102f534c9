#pragma once
#include <QString>
#include <QStringList>

/// A small program that does as a test tells it, installed under any name and in any folder. Its
/// orders, one a line:
///   print TEXT   error TEXT   print as a line on standard output or error; "\n" breaks the line
///   raw N        N bytes, all values in turn        flood      prints without end
///   write PATH TEXT    a file of its own            copy FROM TO
///   input        "input: " and what standard input holds, or "closed" when it is at its end
///   spawn PATH   a child that hangs, its process number in the file
///   sleep MS     hang       crash                   closeout   closes both outputs
///   exit N       and 0 when the orders end
/// "$1" to "$9" in an order stand for the tool's arguments.
class FakeTool
{
public:
    /// Makes the folder and copies the tool there.
    explicit FakeTool(const QString &path);

    [[nodiscard]] QString path() const { return m_path; }
    void setOrders(const QStringList &lines) const;
    /// The arguments of each run so far, in turn.
    [[nodiscard]] QList<QStringList> seen() const;

private:
    QString m_path;
};
