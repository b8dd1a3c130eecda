// The pictures of the toolbar and the window, drawn rather than loaded, so
// the program needs no picture files beside it.

#include "shell/Icons.h"

#include <QApplication>
#include <QPainter>

namespace vonnel {

QIcon dotIcon(const QColor& fill, const QColor& rim)
{
    QPixmap pm(16, 16);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(rim, 1.5));
    p.setBrush(fill);
    p.drawEllipse(QRectF(2.5, 2.5, 11, 11));
    return QIcon(pm);
}

// Two sheets, one over the other.
QIcon copyIcon(const QColor& ink)
{
    QPixmap pm(24, 24);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(ink, 1.4));
    for (const QPointF& at : {QPointF(4.5, 3.5), QPointF(9.5, 8.5)}) {
        p.setBrush(Qt::white);
        p.drawRoundedRect(QRectF(at, QSizeF(10, 12)), 1.5, 1.5);
        for (int line = 0; line < 3; ++line)
            p.drawLine(QPointF(at.x() + 2.5, at.y() + 3.5 + 3 * line),
                       QPointF(at.x() + 7.5, at.y() + 3.5 + 3 * line));
    }
    return QIcon(pm);
}

// A clipboard with a sheet on it.
QIcon pasteIcon(const QColor& ink)
{
    QPixmap pm(24, 24);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(ink, 1.4));
    p.setBrush(QColor(0xc8, 0x9b, 0x5c));
    p.drawRoundedRect(QRectF(4.5, 4.5, 14, 17), 2, 2);
    p.setBrush(QColor(0x90, 0x90, 0x90));
    p.drawRoundedRect(QRectF(8.5, 2.5, 6, 4), 1, 1);
    p.setBrush(Qt::white);
    p.drawRect(QRectF(10.5, 10.5, 10, 11));
    for (int line = 0; line < 3; ++line)
        p.drawLine(QPointF(12.5, 13.5 + 2.6 * line), QPointF(18.5, 13.5 + 2.6 * line));
    return QIcon(pm);
}

QIcon letterIcon(const QString& text, const QColor& color, bool bold, bool italic)
{
    QPixmap pm(24, 24);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::TextAntialiasing);
    QFont f = QApplication::font();
    f.setPixelSize(text.size() > 1 ? 11 : 16);
    f.setBold(bold);
    f.setItalic(italic);
    p.setFont(f);
    p.setPen(color);
    p.drawText(pm.rect(), Qt::AlignCenter, text);
    return QIcon(pm);
}

}  // namespace vonnel
