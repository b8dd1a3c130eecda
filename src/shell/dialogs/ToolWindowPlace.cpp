#include "shell/dialogs/ToolWindowPlace.h"

#include "core/CopyContext.h"
#include "core/Twips.h"
#include "wire/PaneFormat.h"

#include <QWidget>

namespace vonnel {

void placeFromSettings(QWidget* window, CopyContext& ctx, const PlaceKeys& keys, QSize fallback)
{
    const int left = ctx.settingInt(keys.left);
    const int top = ctx.settingInt(keys.top);
    const int width = ctx.settingInt(keys.width);
    const int height = ctx.settingInt(keys.height);
    window->resize(width > 0 ? width / kTwipsPerPixel : fallback.width(),
                   height > 0 ? height / kTwipsPerPixel : fallback.height());
    if (left > 0 && top > 0)
        window->move(left / kTwipsPerPixel, top / kTwipsPerPixel);
}

void writePlace(const QWidget* window, CopyContext& ctx, const PlaceKeys& keys)
{
    ctx.writeSetting(keys.left, QString::number(window->x() * kTwipsPerPixel));
    ctx.writeSetting(keys.top, QString::number(window->y() * kTwipsPerPixel));
    ctx.writeSetting(keys.width, QString::number(window->width() * kTwipsPerPixel));
    ctx.writeSetting(keys.height, QString::number(window->height() * kTwipsPerPixel));
}

void applyColours(CopyContext& ctx, const QString& key, std::initializer_list<QWidget*> widgets)
{
    if (ctx.settingInt(key + QStringLiteral("-Colour")) != 1)
        return;
    const QColor fg = PaneFormat::toColor(ctx.settingInt(key + QStringLiteral("-Colour-FG")));
    const QColor bk = PaneFormat::toColor(ctx.settingInt(key + QStringLiteral("-Colour-BK")));
    for (QWidget* w : widgets) {
        QPalette p = w->palette();
        p.setColor(QPalette::Text, fg);
        p.setColor(QPalette::Base, bk);
        w->setPalette(p);
    }
}

}  // namespace vonnel
