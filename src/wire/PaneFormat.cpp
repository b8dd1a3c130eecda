#include "wire/PaneFormat.h"

#include <cmath>

namespace vonnel {

void PaneFormat::setFontName(const QString& name)
{
    if (name == m_fontName)
        return;
    m_fontName = name;
    Q_EMIT changed();
}

void PaneFormat::setSize(double size)
{
    if (!(size > 0) || !std::isfinite(size) || size == m_size)
        return;
    m_size = size;
    Q_EMIT changed();
}

void PaneFormat::setBold(bool on)
{
    if (on == m_bold)
        return;
    m_bold = on;
    Q_EMIT changed();
}

void PaneFormat::setItalic(bool on)
{
    if (on == m_italic)
        return;
    m_italic = on;
    Q_EMIT changed();
}

void PaneFormat::setForeColor(qint64 colour)
{
    if (colour == m_foreColor)
        return;
    m_foreColor = colour;
    Q_EMIT changed();
}

void PaneFormat::setBackColor(qint64 colour)
{
    if (colour == m_backColor)
        return;
    m_backColor = colour;
    Q_EMIT changed();
}

void PaneFormat::copyFrom(const PaneFormat& other)
{
    const bool same = m_fontName == other.m_fontName && m_size == other.m_size &&
                      m_bold == other.m_bold && m_italic == other.m_italic &&
                      m_foreColor == other.m_foreColor && m_backColor == other.m_backColor;
    if (same)
        return;
    m_fontName = other.m_fontName;
    m_size = other.m_size;
    m_bold = other.m_bold;
    m_italic = other.m_italic;
    m_foreColor = other.m_foreColor;
    m_backColor = other.m_backColor;
    Q_EMIT changed();
}

QString PaneFormat::boolText(bool on)
{
    return on ? QStringLiteral("True") : QStringLiteral("False");
}

QString PaneFormat::numberText(double v)
{
    // Seven significant digits, as a single-precision number prints; the
    // C locale, so both sides read the same point.
    QString s = QString::number(v, 'f', 6);
    if (s.contains(QLatin1Char('.'))) {
        while (s.endsWith(QLatin1Char('0')))
            s.chop(1);
        if (s.endsWith(QLatin1Char('.')))
            s.chop(1);
    }
    return s;
}

QColor PaneFormat::toColor(qint64 colour)
{
    const quint32 c = quint32(colour) & 0xFFFFFFu;
    return QColor(int(c & 0xFF), int((c >> 8) & 0xFF), int((c >> 16) & 0xFF));
}

qint64 PaneFormat::fromColor(const QColor& c)
{
    return qint64(c.blue()) * 65536 + qint64(c.green()) * 256 + qint64(c.red());
}

}  // namespace vonnel
