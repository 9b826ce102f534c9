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
