#include "support/MessageLog.h"

#include "report/DisplayMng.h"

#include <ostream>
#include <utility>

std::ostream &operator<<(std::ostream &out, const Message &message)
{
    return out << message.level << " \"" << message.text.toStdString() << '"';
}

MessageLog::MessageLog() : m_old(DisplayMng::getInstance().displayCallback)
{
    DisplayMng::getInstance().displayCallback = [this](int level, const wchar_t *text) {
        m_messages.push_back({level, QString::fromWCharArray(text)});
    };
}

MessageLog::~MessageLog()
{
    DisplayMng::getInstance().displayCallback = m_old;
}

std::vector<Message> MessageLog::take()
{
    return std::exchange(m_messages, {});
}
