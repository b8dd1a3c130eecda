#include "shell/ColorScheme.h"

#include "wire/PaneFormat.h"

#include <QApplication>
#include <QStyle>
#include <QStyleFactory>

#include <memory>

namespace vonnel {

ColorScheme schemeByName(const QString& name)
{
    const QString n = name.trimmed().toLower();
    if (n == QLatin1String("dark"))
        return ColorScheme::Dark;
    if (n == QLatin1String("light"))
        return ColorScheme::Light;
    return ColorScheme::System;
}

bool isDark(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness() < 128;
}

QPalette schemePalette(ColorScheme scheme)
{
    if (scheme != ColorScheme::Dark) {
        const std::unique_ptr<QStyle> fusion(QStyleFactory::create(QStringLiteral("Fusion")));
        return fusion->standardPalette();
    }
    const QColor window(0x2b, 0x2b, 0x2b), base(0x1e, 0x1e, 0x1e), text(0xe6, 0xe6, 0xe6);
    const QColor dimText(0x80, 0x80, 0x80), accent(0x3d, 0x8e, 0xe0);
    QPalette p(window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, window);
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Button, QColor(0x35, 0x35, 0x35));
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::BrightText, QColor(0xff, 0x6e, 0x6e));
    p.setColor(QPalette::ToolTipBase, QColor(0x3a, 0x3a, 0x3a));
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::PlaceholderText, dimText);
    p.setColor(QPalette::Highlight, accent);
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Link, QColor(0x6a, 0xb0, 0xf3));
    p.setColor(QPalette::Light, QColor(0x50, 0x50, 0x50));
    p.setColor(QPalette::Midlight, QColor(0x42, 0x42, 0x42));
    p.setColor(QPalette::Mid, QColor(0x30, 0x30, 0x30));
    p.setColor(QPalette::Dark, QColor(0x18, 0x18, 0x18));
    p.setColor(QPalette::Shadow, Qt::black);
    for (QPalette::ColorRole r : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        p.setColor(QPalette::Disabled, r, dimText);
    return p;
}

bool applyColorScheme(QApplication& app, ColorScheme wanted, std::optional<bool> desktopDark)
{
    if (wanted == ColorScheme::System) {
        if (!desktopDark)
            return false;  // the platform's palette is the desktop's
        wanted = *desktopDark ? ColorScheme::Dark : ColorScheme::Light;
    }
    if (isDark(QApplication::palette()) == (wanted == ColorScheme::Dark))
        return false;
    // Fusion draws every control from the palette, so ours holds throughout.
    app.setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    app.setPalette(schemePalette(wanted));
    return true;
}

std::optional<std::pair<QColor, QColor>> paneColours(qint64 fore, qint64 back)
{
    const PaneFormat preset;
    if (fore == preset.foreColor() && back == preset.backColor())
        return std::nullopt;
    return std::pair{PaneFormat::toColor(fore), PaneFormat::toColor(back)};
}

}  // namespace vonnel
