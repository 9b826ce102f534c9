#include "support/FakeTool.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

FakeTool::FakeTool(const QString &path) : m_path(path)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile::remove(path);
    if (!QFile::copy(QStringLiteral(FAKE_TOOL), path)) {
        qFatal("the test can't install its tool");
    }
}

void FakeTool::setOrders(const QStringList &lines) const
{
    QFile file(m_path + QStringLiteral(".orders"));
    if (!file.open(QIODevice::WriteOnly) || file.write(lines.join(u'\n').toUtf8()) < 0) {
        qFatal("the test can't order its tool");
    }
}

QList<QStringList> FakeTool::seen() const
{
    QFile file(m_path + QStringLiteral(".seen"));
    QList<QStringList> runs;
    if (file.open(QIODevice::ReadOnly)) {
        QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
        lines.removeLast();
        for (const QString &line : qAsConst(lines)) {
            runs.append(line.isEmpty() ? QStringList() : line.split(QChar(u'\x1F')));
        }
    }
    return runs;
}
