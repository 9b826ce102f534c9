#include "files/base/DataFolder.h"
#include "support/QtPrinters.h"
#include "support/ScratchFolder.h"

#include <QDir>

#include <gtest/gtest.h>

namespace
{

TEST(DataFolder, BesideTheProgramComesBeforeTheInstallation)
{
    const ScratchFolder scratch;
    const QDir root(scratch.path(""));
    const QString near = root.filePath("usr/libexec/own");
    const QString name = QStringLiteral("Template/a.xsd");
    ASSERT_TRUE(root.mkpath(near));
    EXPECT_EQ(files::installedPath(near, name), near + "/" + name) << "there is none";
    const QString shared = root.filePath("usr/share/sealed-package-builder/" + name);
    ASSERT_TRUE(root.mkpath(shared));
    EXPECT_EQ(files::installedPath(near, name), shared);
    EXPECT_EQ(files::installedPath(root.filePath("usr/bin"), name), shared);
    ASSERT_TRUE(root.mkpath(near + "/" + name));
    EXPECT_EQ(files::installedPath(near, name), near + "/" + name);
}

}  // namespace
