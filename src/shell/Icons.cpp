// The window's and the state panel's lights, drawn rather than loaded.

#include "shell/Icons.h"

#include <QPainter>

namespace vonnel {

QIcon dotIcon(const QColor& fill, const QColor& rim)
{
    // One drawing per size, so the light stays round at every scale.
    QIcon icon;
    for (int side : {16, 24, 32, 48, 64}) {
        const qreal k = side / 16.0;
        QPixmap pm(side, side);
        pm.fill(Qt::transparent);
        QPainter p(&pm);
        p.setRenderHint(QPainter::Antialiasing);
        p.scale(k, k);
        p.setPen(QPen(rim, 1.5));
        p.setBrush(fill);
        p.drawEllipse(QRectF(2.5, 2.5, 11, 11));
        p.end();
        icon.addPixmap(pm);
    }
    return icon;
}

}  // namespace vonnel
