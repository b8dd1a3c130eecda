#include "platform/Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace vonnel {

QString SystemClipboard::text() const
{
    auto* app = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    return app ? QGuiApplication::clipboard()->text() : QString();
}

void SystemClipboard::setText(const QString& text)
{
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        QGuiApplication::clipboard()->setText(text);
}

}  // namespace vonnel
