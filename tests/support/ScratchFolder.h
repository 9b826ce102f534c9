#pragma once
#include <QFile>
#include <QTemporaryDir>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// A temporary folder that tests fill with files; it is gone when the test is.
class ScratchFolder
{
public:
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

    /// Writes a file. @return its path
    QString file(const QString &name, const std::vector<std::uint8_t> &bytes) const
    {
        return store(name, reinterpret_cast<const char *>(bytes.data()), bytes.size());
    }
    QString file(const QString &name, std::string_view text) const
    {
        return store(name, text.data(), text.size());
    }

    /// The bytes of a file anywhere, as text; "(none)" when it can't be read.
    static std::string contents(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "(none)";
    }

private:
    QString store(const QString &name, const char *data, std::size_t size) const
    {
        QFile file(path(name));
        // Without a buffer that a search for freed keys would find.
        if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) ||
            file.write(data, static_cast<qint64>(size)) != static_cast<qint64>(size)) {
            qFatal("the test can't write its file");
        }
        return file.fileName();
    }

    QTemporaryDir m_folder;
};
