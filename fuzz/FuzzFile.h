#pragma once
#include "FuzzSupport.h"

#include <QFile>
#include <QString>

#include <cstdint>
#include <span>
#include <vector>

/// A file in memory under a made-up name, so that a reader's whole way is fuzzed without a disk.
class FuzzFile : public QFile
{
public:
    FuzzFile(const QString &name, std::span<const std::uint8_t> bytes);

    QString fileName() const override { return m_name; }

private:
    QString m_name;
};

/// A file in memory that has a path with a name of its own, for readers that open a path or look at
/// the ending. Filled anew for each input.
class FuzzPath
{
public:
    /// @param name  of the link, in a folder of this process that is gone with it
    explicit FuzzPath(const QString &name);

    void fill(std::span<const std::uint8_t> bytes) const;
    [[nodiscard]] int handle() const { return m_handle; }
    [[nodiscard]] const QString &path() const { return m_path; }
    [[nodiscard]] std::string text() const { return m_path.toStdString(); }

private:
    int m_handle;
    QString m_path;
};

/// A path in the same folder.
QString fuzzPath(const QString &name);

/// Collects the levels of all reports while it lives.
class FuzzReports
{
public:
    FuzzReports();
    ~FuzzReports();
    FuzzReports(const FuzzReports &) = delete;
    FuzzReports &operator=(const FuzzReports &) = delete;

    [[nodiscard]] const std::vector<int> &levels() const { return m_levels; }

private:
    std::vector<int> m_levels;
};
