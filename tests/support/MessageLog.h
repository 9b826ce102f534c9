#pragma once
#include <QString>

#include <functional>
#include <iosfwd>
#include <vector>

/// One report as the display callback got it: the level and the text, prefix included.
struct Message {
    int level = 0;
    QString text;

    bool operator==(const Message &other) const = default;
};
std::ostream &operator<<(std::ostream &out, const Message &message);

/// Collects all messages of `DisplayMng` while it lives, then puts the old callback back.
///
///     MessageLog log;
///     EXPECT_FALSE(manager.Open(...));
///     EXPECT_EQ(log.all(), (Messages{{5, "Error: The file x.bin is empty"}}));
class MessageLog
{
public:
    MessageLog();
    ~MessageLog();
    MessageLog(const MessageLog &) = delete;
    MessageLog &operator=(const MessageLog &) = delete;

    [[nodiscard]] const std::vector<Message> &all() const { return m_messages; }
    /// The messages since the last call of this.
    std::vector<Message> take();

private:
    std::function<void(int, const wchar_t *)> m_old;
    std::vector<Message> m_messages;
};

using Messages = std::vector<Message>;
