#include "HelpPictures.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QTest>

namespace demo
{

namespace
{

constexpr int kSettleMs = 300;  // pending layout and paint events, before a picture

}  // namespace

HelpPictures::HelpPictures(QMainWindow &window, const QString &folder)
    : m_hands(window), m_folder(folder)
{
}

QString HelpPictures::run(const QString &scriptPath)
{
    QFile script(scriptPath);
    if (!script.open(QIODevice::ReadOnly)) {
        return scriptPath + QStringLiteral(" can't be read");
    }
    int number = 0;
    while (!script.atEnd() && m_hands.missing().isEmpty()) {
        ++number;
        const QString line = QString::fromUtf8(script.readLine()).trimmed();
        if (!line.isEmpty() && !line.startsWith('#')) {
            step(line.section(' ', 0, 0), line.section(' ', 1, 1), line.section(' ', 2));
            QTest::qWait(1);
        }
    }
    return m_hands.missing().isEmpty()
               ? QString()
               : QStringLiteral("step %1: %2").arg(number).arg(m_hands.missing());
}

void HelpPictures::step(const QString &word, const QString &name, const QString &rest)
{
    if (word == QLatin1String("page") || word == QLatin1String("turn")) {
        m_hands.turnTo(name);
    } else if (word == QLatin1String("type")) {
        m_hands.type(name, rest);
    } else if (word == QLatin1String("choose")) {
        m_hands.choose(name, rest);
    } else if (word == QLatin1String("click")) {
        m_hands.click(name);
    } else if (word == QLatin1String("action")) {
        auto *action = m_hands.window().findChild<QAction *>(name);
        action != nullptr ? action->trigger()
                          : m_hands.note(name + QStringLiteral(" is no action"));
    } else if (word == QLatin1String("answer")) {
        QStringList paths;
        for (const QString &file : (name + ' ' + rest).split(' ', Qt::SkipEmptyParts)) {
            paths << QDir().absoluteFilePath(file);
        }
        m_hands.robot().chooseNext(paths);
    } else if (word == QLatin1String("address")) {
        m_hands.robot().setStartAddress(name, rest);
    } else if (word == QLatin1String("size")) {
        m_hands.window().resize(name.toInt(), rest.toInt());
    } else if (word == QLatin1String("picture")) {
        take(name, rest);
    } else {
        m_hands.note(word + QStringLiteral(" is no step"));
    }
}

void HelpPictures::take(const QString &file, const QString &name)
{
    QTest::qWait(kSettleMs);
    QWidget *const widget = name.isEmpty() ? &m_hands.window() : m_hands.find<QWidget>(name);
    if (widget != nullptr && !widget->window()->grab().save(QDir(m_folder).filePath(file))) {
        m_hands.note(file + QStringLiteral(" can't be written"));
    }
}

}  // namespace demo
