#pragma once
// A panel text made of two parts and what stands between them, put
// together again only when a part changed. The receive path sets its status
// panels on every read, and the parts seldom change between two reads.

#include <QString>

namespace vonnel {

class JoinedText {
public:
    explicit JoinedText(QLatin1StringView between) : m_between(between) {}

    // One instance keeps to one of the forms.
    const QString& of(const QString& left, const QString& right)
    {
        if (!m_made || left != m_leftText || right != m_rightText) {
            m_leftText = left;
            m_rightText = right;
            make(left, right);
        }
        return m_text;
    }
    const QString& of(qint64 left, const QString& right)
    {
        if (!m_made || left != m_leftNumber || right != m_rightText) {
            m_leftNumber = left;
            m_rightText = right;
            make(QString::number(left), right);
        }
        return m_text;
    }
    const QString& of(qint64 left, qint64 right)
    {
        if (!m_made || left != m_leftNumber || right != m_rightNumber) {
            m_leftNumber = left;
            m_rightNumber = right;
            make(QString::number(left), QString::number(right));
        }
        return m_text;
    }

private:
    void make(const QString& left, const QString& right)
    {
        m_text = left + m_between + right;
        m_made = true;
    }

    QLatin1StringView m_between;
    QString m_leftText, m_rightText;
    qint64 m_leftNumber = 0, m_rightNumber = 0;
    QString m_text;
    bool m_made = false;
};

}  // namespace vonnel
