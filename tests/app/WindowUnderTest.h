#pragma once
#include "app/MainWindow.h"
#include "workbench/frame/CentralWidget.h"

#include <QApplication>
#include <QTabWidget>
#include <QTimer>

#include <memory>
#include <vector>

/// A real window, started with arguments.
class WindowUnderTest
{
public:
    /// @param arguments  without the program's own name
    explicit WindowUnderTest(const QStringList &arguments = {},
                             workbench::Building building = workbench::Building::AtOnce)
    {
        m_texts << "program";
        for (const QString &argument : arguments) {
            m_texts << argument.toLocal8Bit();
        }
        for (QByteArray &text : m_texts) {
            m_argv.push_back(text.data());
        }
        m_window = std::make_unique<MainWindow>(static_cast<int>(m_argv.size()), m_argv.data(),
                                                nullptr, building);
    }

    MainWindow *operator->() const { return m_window.get(); }
    MainWindow &operator*() const { return *m_window; }
    CentralWidget &form() const { return *m_window->centralWidget; }
    QTabWidget &tabs() const { return *form().tabWidget; }

    /// Closes the window from within the event loop.
    /// @return the loop's status, which is the process's exit status
    int closeAndEnd() const
    {
        QTimer::singleShot(0, m_window.get(), &QWidget::close);
        return QApplication::exec();
    }

    QStringList titles() const
    {
        QStringList all;
        for (int i = 0; i < tabs().count(); ++i) {
            all << tabs().tabText(i);
        }
        return all;
    }

private:
    QList<QByteArray> m_texts;
    std::vector<char *> m_argv;
    std::unique_ptr<MainWindow> m_window;
};
