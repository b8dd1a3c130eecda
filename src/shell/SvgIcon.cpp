#include "shell/SvgIcon.h"

#include <QApplication>
#include <QFile>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

namespace vonnel {

namespace {

class SvgIconEngine : public QIconEngine {
public:
    explicit SvgIconEngine(QByteArray svg) : m_svg(std::move(svg)) {}

    void paint(QPainter* p, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        QSvgRenderer r(tinted(mode));
        p->save();
        if (mode == QIcon::Disabled)
            p->setOpacity(p->opacity() * 0.45);
        r.render(p, QRectF(rect));
        p->restore();
    }

    // QIcon asks with the size in device pixels already and sets the
    // pixmap's ratio itself.
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal) override
    {
        return pixmap(size, mode, state);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        const QSize device = size;
        if (device.isEmpty())
            return QPixmap();
        // Toolbars ask for the same few pixmaps at every repaint.
        const QString key = QStringLiteral("%1x%2/%3/%4/%5")
                                .arg(device.width())
                                .arg(device.height())
                                .arg(int(mode))
                                .arg(ink(mode).rgba())
                                .arg(QApplication::palette().color(QPalette::Base).rgba());
        auto it = m_cache.constFind(key);
        if (it == m_cache.constEnd()) {
            QPixmap pm(device);
            pm.fill(Qt::transparent);
            QPainter p(&pm);
            p.setRenderHint(QPainter::Antialiasing);
            paint(&p, QRect(QPoint(), device), mode, state);
            p.end();
            it = m_cache.insert(key, pm);
        }
        return *it;
    }

    QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override { return size; }
    QIconEngine* clone() const override { return new SvgIconEngine(m_svg); }
    QString key() const override { return QStringLiteral("vonnel-svg"); }
    bool isNull() override { return false; }

private:
    static QColor ink(QIcon::Mode mode)
    {
        const QPalette pal = QApplication::palette();
        return pal.color(mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active, QPalette::WindowText);
    }

    QByteArray tinted(QIcon::Mode mode) const
    {
        QByteArray svg = m_svg;
        svg.replace(kDrawingPaper, QApplication::palette().color(QPalette::Base).name(QColor::HexRgb).toLatin1());
        return svg.replace(kDrawingInk, ink(mode).name(QColor::HexRgb).toLatin1());
    }

    QByteArray m_svg;
    QHash<QString, QPixmap> m_cache;
};

}  // namespace

QIcon svgIcon(const QString& resourcePath)
{
    QFile f(resourcePath);
    if (!f.open(QIODevice::ReadOnly))
        return QIcon();
    const QByteArray svg = f.readAll();
    if (!QSvgRenderer(svg).isValid())
        return QIcon();
    return QIcon(new SvgIconEngine(svg));
}

}  // namespace vonnel
