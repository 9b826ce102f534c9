#pragma once
#include "app/WindowUnderTest.h"
#include "report/DisplayMng.h"
#include "support/DialogAnswers.h"
#include "support/QtPrinters.h"
#include "support/ScratchFolder.h"
#include "workbench/tabs/sfi/SfiTab.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QLineEdit>
#include <QListView>
#include <QLockFile>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QTest>

#include <gtest/gtest.h>
#include <sys/stat.h>

/// Windows that save and restore, over a folder of small inputs. The settings file lies beside the
/// test program; a lock keeps tests that run at the same time out of it.
class SettingsFixture : public ::testing::Test
{
protected:
    SettingsFixture() : m_lock(QCoreApplication::applicationDirPath() + "/settings.lock")
    {
        m_lock.setStaleLockTime(0);
        m_lock.lock();
        removeSettings();
    }
    ~SettingsFixture() override
    {
        removeSettings();
        DisplayMng &display = DisplayMng::getInstance();
        display.logToFile = false;
        if (display.logFile != nullptr) {
            std::fclose(std::exchange(display.logFile, nullptr));
        }
    }

    static QString settingsPath()
    {
        return QCoreApplication::applicationDirPath() + "/Settings.ini";
    }
    static void removeSettings()
    {
        QFile::remove(settingsPath());
        QDir().rmdir(settingsPath());
    }
    static QByteArray contentsOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<none>");
    }
    static void writeSettings(const QByteArray &text)
    {
        QFile file(settingsPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    template <typename Widget>
    static Widget *widget(const WindowUnderTest &window, const QString &name)
    {
        auto *found = window->findChild<Widget *>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    static void fill(const WindowUnderTest &window, const QString &name, const QString &text)
    {
        widget<QLineEdit>(window, name)->setText(text);
    }
    static int rows(const WindowUnderTest &window, const char *name)
    {
        return widget<QListView>(window, name)->model()->rowCount();
    }
    static bool canGenerate(const WindowUnderTest &window, const char *name)
    {
        return widget<QPushButton>(window, name)->isEnabled();
    }
    /// Answers the dialog that asks where a binary goes, or an external file with its region.
    static DialogAnswer place(const QString &address, const QString &key = {})
    {
        return DialogAnswer([=](QDialog &dialog) {
            const auto put = [&](const char *name, const QString &text) {
                auto *edit = dialog.findChild<QLineEdit *>(name);
                if (edit != nullptr && !edit->isReadOnly()) {
                    edit->setText(text);
                }
            };
            put("address_start_edit", address);
            put("extFir_start_edit", address);
            put("extFir_key_edit", key);
            for (const char *spin : {"extFir_region_spin", "extFir_mode_spin"}) {
                if (auto *box = dialog.findChild<QSpinBox *>(spin)) {
                    box->setValue(spin[7] == 'r' ? 3 : 2);
                }
            }
            dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
        });
    }
    static workbench::SfiTab *tab(const CentralWidget &form, const char *key)
    {
        return static_cast<workbench::SfiTab *>(form.tab(key));
    }
    /// "name@address" of each file in a list.
    static QStringList places(workbench::SfiTab *tab, const QString &row)
    {
        QStringList all;
        const workbench::FileRows &files = tab->form()->list(row)->rows();
        EXPECT_EQ(files.paths().size(), files.count());
        for (int i = 0; i < files.count(); ++i) {
            all << QFileInfo(files.path(i)).fileName() + '@' +
                       QString::number(files.record(i).segments.front().address, 16);
        }
        return all;
    }
    static QStringList infos(const workbench::SfiTab &tab)
    {
        QStringList all;
        for (const ExtBinInfo &info : tab.extBinInfos()) {
            all << QStringLiteral("%1 %2 %3 %4")
                       .arg(info.startAddress, 0, 16)
                       .arg(info.regionNumber)
                       .arg(info.regionMode)
                       .arg(info.keyAddress, 0, 16);
        }
        return all;
    }

    ScratchFolder folder;

private:
    QLockFile m_lock;
};
