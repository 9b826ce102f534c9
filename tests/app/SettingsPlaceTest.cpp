#include "app/SettingsPlace.h"
#include "support/QtPrinters.h"
#include "support/ScratchFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>

namespace
{

/// Sets two variables of the environment and puts them back.
class Surroundings
{
public:
    Surroundings(const char *home, const char *configuration)
    {
        set("HOME", home);
        set("XDG_CONFIG_HOME", configuration);
    }
    ~Surroundings()
    {
        qputenv("HOME", m_home);
        qputenv("XDG_CONFIG_HOME", m_configuration);
    }
    Surroundings(const Surroundings &) = delete;
    Surroundings &operator=(const Surroundings &) = delete;

private:
    static void set(const char *name, const char *value)
    {
        value != nullptr ? qputenv(name, value) : qunsetenv(name);
    }
    QByteArray m_home = qgetenv("HOME"), m_configuration = qgetenv("XDG_CONFIG_HOME");
};

TEST(SettingsPlace, IsTheUsersFolderWhereTheProgramsIsLocked)
{
    struct Row {
        const char *home;
        const char *configuration;
        const char *path;
    };
    for (const auto &[home, configuration, path] : {
             Row{"/h", nullptr, "/h/.config/sealed-package-builder/Settings.ini"},
             Row{"/h", "/x/conf", "/x/conf/sealed-package-builder/Settings.ini"},
             Row{"/h", "conf", "/h/.config/sealed-package-builder/Settings.ini"},
             Row{"/h", "", "/h/.config/sealed-package-builder/Settings.ini"},
             Row{nullptr, "/x", "/x/sealed-package-builder/Settings.ini"},
             Row{nullptr, nullptr, ""},
             Row{"", nullptr, ""},
             Row{"here", nullptr, ""},
         }) {
        const Surroundings surroundings(home, configuration);
        // Nobody, not even root, can write to this folder.
        EXPECT_EQ(app::settingsPlace(QStringLiteral("/proc/nowhere")), QLatin1String(path));
        EXPECT_EQ(app::settingsPlace(QDir::tempPath()), QDir::tempPath() + "/Settings.ini");
    }
}

TEST(SettingsPlace, FolderIsMadeForTheOwnerOnly)
{
    const ScratchFolder scratch;
    const mode_t mask = ::umask(0);
    app::makeSettingsFolder(scratch.path("config/own/Settings.ini"));
    ::umask(mask);
    for (const char *name : {"config", "config/own"}) {
        struct stat entry = {};
        ASSERT_EQ(::stat(QFile::encodeName(scratch.path(name)).constData(), &entry), 0) << name;
        EXPECT_EQ(entry.st_mode & 0777U, 0700U) << name;
    }
    EXPECT_FALSE(QFileInfo::exists(scratch.path("config/own/Settings.ini")));
}

}  // namespace
