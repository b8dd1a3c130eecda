#include "platform/Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace vonnel {

namespace {

struct KeptText : ClipboardContent {
    QString text;
};

struct KeptMime : ClipboardContent {
    QMimeData data;
};

QClipboard* systemClipboard()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) ? QGuiApplication::clipboard() : nullptr;
}

}  // namespace

std::unique_ptr<ClipboardContent> Clipboard::keep() const
{
    auto kept = std::make_unique<KeptText>();
    kept->text = text();
    return kept;
}

void Clipboard::restore(const ClipboardContent& content)
{
    if (auto* kept = dynamic_cast<const KeptText*>(&content))
        setText(kept->text);
}

QString SystemClipboard::text() const
{
    QClipboard* c = systemClipboard();
    return c ? c->text() : QString();
}

void SystemClipboard::setText(const QString& text)
{
    if (QClipboard* c = systemClipboard())
        c->setText(text);
}

std::unique_ptr<ClipboardContent> SystemClipboard::keep() const
{
    auto kept = std::make_unique<KeptMime>();
    if (QClipboard* c = systemClipboard())
        if (const QMimeData* now = c->mimeData())
            for (const QString& format : now->formats())
                kept->data.setData(format, now->data(format));
    return kept;
}

void SystemClipboard::restore(const ClipboardContent& content)
{
    QClipboard* c = systemClipboard();
    auto* kept = dynamic_cast<const KeptMime*>(&content);
    if (!c || !kept)
        return;
    if (kept->data.formats().isEmpty()) {
        c->clear();
        return;
    }
    auto* back = new QMimeData;
    for (const QString& format : kept->data.formats())
        back->setData(format, kept->data.data(format));
    c->setMimeData(back);  // the clipboard takes it
}

}  // namespace vonnel
