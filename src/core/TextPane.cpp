#include "core/TextPane.h"

namespace vonnel {

void TextPane::setText(const QString& t)
{
    if (t == m_text) {
        m_selStart = qMin(m_selStart, length());
        m_selLength = qMin(m_selLength, length() - m_selStart);
        return;
    }
    setText(t, int(t.size()));
}

void TextPane::setText(const QString& t, int caret)
{
    m_selLength = 0;
    if (t == m_text) {
        m_selStart = qBound(0, caret, length());
        return;
    }
    m_text = t;
    m_selStart = qBound(0, caret, length());
    Q_EMIT textChanged();
}

void TextPane::setSelection(int start, int length)
{
    m_selStart = qBound(0, start, this->length());
    m_selLength = qBound(0, length, this->length() - m_selStart);
}

void TextPane::append(const QString& t)
{
    if (t.isEmpty())
        return;
    m_text.insert(qMin(m_selStart, length()), t);
    m_selStart = length();
    m_selLength = 0;
    Q_EMIT textChanged();
}

void TextPane::chopTo(int n)
{
    if (n < 0)
        n = 0;
    if (n >= length())
        return;
    m_text.truncate(n);
    m_selStart = length();
    m_selLength = 0;
    Q_EMIT textChanged();
}

void TextPane::setEnabled(bool e)
{
    if (e == m_enabled)
        return;
    m_enabled = e;
    Q_EMIT enabledChanged(e);
}

void TextPane::setLocked(bool l)
{
    if (l == m_locked)
        return;
    m_locked = l;
    Q_EMIT lockedChanged(l);
}

}  // namespace vonnel
