#pragma once
#include "files/FileManager.h"
#include "support/MessageLog.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <utility>

/// Opens files of a scratch folder as the window does, but with a padding byte of its own, and
/// records all messages.
class OpenFixture : public ::testing::Test
{
protected:
    files::RecordOwner<FileType> open(const QString &path, unsigned position = 0, unsigned size = 0)
    {
        FileType *file = nullptr;
        const bool result = manager.Open(path.toStdWString(), &file, 0xEE, position, size);
        EXPECT_EQ(result, file != nullptr);
        return files::RecordOwner<FileType>(file);
    }

    /// Writes the content under `name`, opens it and casts the record.
    /// @return null when the file was refused
    template <typename Record, typename Content>
    files::RecordOwner<Record> openAs(const QString &name, const Content &content)
    {
        auto record = open(folder.file(name, content));
        return files::RecordOwner<Record>(static_cast<Record *>(record.release()));
    }

    FileManager manager;
    ScratchFolder folder;
    MessageLog log;
};
