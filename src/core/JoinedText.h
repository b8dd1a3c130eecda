#pragma once
// A panel text made of two parts and what stands between them, put
// together again only when a part changed. The receive path sets its status
// panels on every read, and the parts seldom change between two reads.

#include <QString>
#include <optional>
#include <utility>

namespace vonnel {

// Left and Right are QString or a whole number (shown in decimal).
template <typename Left, typename Right>
class JoinedText {
public:
    explicit JoinedText(QLatin1StringView between) : m_between(between) {}

    const QString& of(const Left& left, const Right& right)
    {
        if (!m_parts || m_parts->first != left || m_parts->second != right) {
            m_parts.emplace(left, right);
            m_text = shown(left) + m_between + shown(right);
        }
        return m_text;
    }

private:
    static QString shown(const QString& part) { return part; }
    static QString shown(qint64 part) { return QString::number(part); }

    QLatin1StringView m_between;
    std::optional<std::pair<Left, Right>> m_parts;  // what m_text was made of
    QString m_text;
};

}  // namespace vonnel
