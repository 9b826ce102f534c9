#include "support/PlainHexText.h"

#include <cstdio>

namespace
{

class PlainParser
{
public:
    explicit PlainParser(const std::vector<std::uint8_t> &text) : m_text(text) {}

    PlainHexResult run()
    {
        std::size_t at = 0;
        while (at < m_text.size() && m_result.fault.empty()) {
            m_line.clear();
            while (at < m_text.size() && m_line.size() < 399) {
                m_line.push_back(static_cast<char>(m_text[at++]));
                if (m_line.back() == '\n') {
                    break;
                }
            }
            ++m_result.line;
            if (m_syntax == 0 && (m_line[0] == 'S' || m_line[0] == ':')) {
                m_syntax = m_line[0];
            }
            m_at = 1;
            m_sum = 0;
            m_bytes.clear();
            if (m_syntax == 'S') {
                srecord();
            } else if (m_syntax == ':' && m_line[0] == ':') {
                intel();
            }
        }
        if (!m_result.fault.empty()) {
            m_result.segments.clear();
        }
        return m_result;
    }

private:
    char next() { return m_at < m_line.size() ? m_line[m_at++] : '\0'; }

    void fault(const std::string &text)
    {
        if (m_result.fault.empty()) {
            m_result.fault = text;
        }
    }

    unsigned nibble(const char *field)
    {
        const char c = next();
        if (c >= '0' && c <= '9') {
            return static_cast<unsigned>(c - '0');
        }
        if ((c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f')) {
            return static_cast<unsigned>((c | 0x20) - 'a' + 10);
        }
        const std::string found = c == '\0' ? "" : std::string(1, c);
        fault(std::string("parsing ") + field + ", expecting hex digit, found '" + found + "'");
        return 0;
    }

    unsigned byte(const char *field)
    {
        const unsigned high = nibble(field);
        const unsigned value = high * 16 + nibble(field);
        m_sum += value;
        return value;
    }

    bool checksumFits(unsigned expected)
    {
        const unsigned found = byte("checksum");
        if (found != (expected & 255)) {
            char text[60];
            std::snprintf(text, sizeof text, "found checksum 0x%02x, expecting 0x%02x", found,
                          expected & 255);
            fault(text);
        }
        return m_result.fault.empty();
    }

    unsigned at(std::size_t index) const { return index < m_bytes.size() ? m_bytes[index] : 0; }

    void intel()
    {
        const unsigned count = byte("count");
        const unsigned high = byte("addr");
        const unsigned offset = high * 256 + byte("addr");
        const unsigned type = byte("recType");
        for (unsigned i = 0; i < count; ++i) {
            m_bytes.push_back(static_cast<std::uint8_t>(byte("data")));
        }
        if (!checksumFits(0U - m_sum)) {
            return;
        }
        if (type > 5) {
            fault("Unrecognized record type: " + std::to_string(type));
        } else if (type == 0) {
            data(m_segmentBase + m_linearBase + offset);
        } else if (type == 1) {
            m_open = false;
        } else if (type == 2) {
            m_segmentBase = (at(0) << 12) + (at(1) << 4);
        } else if (type == 4) {
            m_linearBase = (at(0) << 24) + (at(1) << 16);
        }
    }

    void srecord()
    {
        if (m_line[0] != 'S') {
            return fault("doesn't start with an 'S'");
        }
        const char digit = next();
        if (digit < '0' || digit > '9') {
            const std::string found = digit == '\0' ? "" : std::string(1, digit);
            return fault("expecting digit (0-9), found: '" + found + "'");
        }
        const unsigned count = byte("count");
        for (unsigned i = 1; i < count; ++i) {
            m_bytes.push_back(static_cast<std::uint8_t>(byte("data")));
        }
        if (!checksumFits(~m_sum)) {
            return;
        }
        if (digit < '1' || digit > '4') {
            m_open = false;
            return;
        }
        const std::size_t width = static_cast<std::size_t>(digit - '0') + 1;
        if (digit == '4' || m_bytes.size() < width) {
            return fault(std::string("Unrecognized S-Record: S") + digit);
        }
        std::uint32_t address = 0;
        for (std::size_t i = 0; i < width; ++i) {
            address = address * 256 + m_bytes[i];
        }
        m_bytes.erase(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(width));
        data(address);
    }

    void data(std::uint32_t address)
    {
        if (m_bytes.empty()) {
            return;
        }
        auto &list = m_result.segments;
        if (!m_open ||
            address != list.back().address + static_cast<std::uint32_t>(list.back().bytes.size())) {
            list.push_back({address, {}});
            m_open = true;
        }
        list.back().bytes.insert(list.back().bytes.end(), m_bytes.begin(), m_bytes.end());
    }

    const std::vector<std::uint8_t> &m_text;
    PlainHexResult m_result;
    std::string m_line;
    std::size_t m_at = 0;
    std::vector<std::uint8_t> m_bytes;
    unsigned m_sum = 0;
    char m_syntax = 0;
    bool m_open = false;
    unsigned m_segmentBase = 0;
    unsigned m_linearBase = 0;
};

}  // namespace

PlainHexResult plainHexText(const std::vector<std::uint8_t> &text)
{
    return PlainParser(text).run();
}
