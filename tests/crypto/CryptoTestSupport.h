#pragma once
#include "crypto/primitives/Handles.h"
#include "crypto/service/Crypto.h"
#include "report/DisplayMng.h"
#include "support/FullDisk.h"
#include "support/ScratchFolder.h"

#include <QDir>

#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <openssl/ec.h>
#include <openssl/err.h>
#include <openssl/rsa.h>
#include <sys/stat.h>
#include <unistd.h>

/// A path or password as the key service takes it.
class Chars
{
public:
    Chars(QByteArray text) : m_text(std::move(text)) {}
    operator unsigned char *() { return reinterpret_cast<unsigned char *>(m_text.data()); }

private:
    QByteArray m_text;
};

/// One pair for all tests of a program: making one takes a while.
inline EVP_PKEY *rsaKey()
{
    static const crypto::EvpKey key(EVP_RSA_gen(2048));
    return key.get();
}

inline EVP_PKEY *p256Key()
{
    static const crypto::EvpKey key(EVP_EC_gen("P-256"));
    return key.get();
}

/// What `action` prints on standard output.
inline std::string printedBy(const std::function<void()> &action)
{
    ::testing::internal::CaptureStdout();
    action();
    return ::testing::internal::GetCapturedStdout();
}

/// A folder of its own and a record of every message as "level|text".
class CryptoTest : public ::testing::Test
{
protected:
    CryptoTest()
    {
        DisplayMng::getInstance().displayCallback = [this](int level, const wchar_t *text) {
            m_messages << QString::number(level) + '|' + QString::fromWCharArray(text);
        };
    }
    ~CryptoTest() override { DisplayMng::getInstance().displayCallback = nullptr; }

    [[nodiscard]] QString at(const QString &name) const { return m_folder.path(name); }
    [[nodiscard]] QByteArray bytesAt(const QString &name) const
    {
        return QFile::encodeName(at(name));
    }

    /// Messages since the last call.
    QStringList messages() { return std::exchange(m_messages, QStringList()); }

    [[nodiscard]] QByteArray contents(const QString &name) const
    {
        return QByteArray::fromStdString(ScratchFolder::contents(at(name)));
    }
    void put(const QString &name, const QByteArray &bytes, mode_t mode = 0644) const
    {
        m_folder.file(name, bytes.toStdString());
        ASSERT_EQ(::chmod(bytesAt(name).constData(), mode), 0);
    }
    /// Permission bits of a file; -1 when there is none.
    [[nodiscard]] int mode(const QString &name) const
    {
        struct stat entry = {};
        return ::stat(bytesAt(name).constData(), &entry) == 0
                   ? static_cast<int>(entry.st_mode & 07777)
                   : -1;
    }
    [[nodiscard]] QStringList entries() const
    {
        return QDir(at("")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

private:
    ScratchFolder m_folder;
    QStringList m_messages;
};

/// Types `text` for whoever asks on standard input.
class Typing
{
public:
    explicit Typing(const QByteArray &text) : m_before(::dup(STDIN_FILENO))
    {
        int ends[2] = {};
        m_done =
            ::pipe(ends) == 0 &&
            ::write(ends[1], text.data(), static_cast<std::size_t>(text.size())) == text.size() &&
            ::dup2(ends[0], STDIN_FILENO) == STDIN_FILENO;
        ::close(ends[0]);
        ::close(ends[1]);
    }
    ~Typing()
    {
        ::dup2(m_before, STDIN_FILENO);
        ::close(m_before);
    }
    Typing(const Typing &) = delete;
    Typing &operator=(const Typing &) = delete;
    [[nodiscard]] bool done() const { return m_done; }

private:
    int m_before;
    bool m_done = false;
};

/// Root may write anything, so tests of refused writes step down to a plain user, who gets the
/// folder for himself.
class PlainUser
{
public:
    explicit PlainUser(const QByteArray &folder) : m_before(::geteuid())
    {
        constexpr uid_t kNobody = 65534;
        m_done = m_before != 0 ||
                 (::chown(folder.constData(), kNobody, kNobody) == 0 && ::seteuid(kNobody) == 0);
    }
    ~PlainUser()
    {
        if (::seteuid(m_before) != 0) {
            std::abort();
        }
    }
    PlainUser(const PlainUser &) = delete;
    PlainUser &operator=(const PlainUser &) = delete;
    [[nodiscard]] bool done() const { return m_done; }

private:
    uid_t m_before;
    bool m_done = false;
};
