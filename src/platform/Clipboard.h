#pragma once
// Clipboard access. Copies in one test process each get their own
// in-memory clipboard so they don't see each other's paste.

#include <QString>
#include <memory>

class QMimeData;

namespace vonnel {

// Whatever the clipboard held, every format of it, to be put back later.
struct ClipboardContent {
    virtual ~ClipboardContent() = default;
};

class Clipboard {
public:
    virtual ~Clipboard() = default;
    virtual QString text() const = 0;
    virtual void setText(const QString& text) = 0;
    // The whole content (a picture or a file list as well as text), for a
    // routine that borrows the clipboard and gives it back as it was.
    virtual std::unique_ptr<ClipboardContent> keep() const;
    virtual void restore(const ClipboardContent& content);
};

class MemoryClipboard : public Clipboard {
public:
    QString text() const override { return m_text; }
    void setText(const QString& text) override { m_text = text; }

private:
    QString m_text;
};

class SystemClipboard : public Clipboard {
public:
    QString text() const override;
    void setText(const QString& text) override;
    std::unique_ptr<ClipboardContent> keep() const override;
    void restore(const ClipboardContent& content) override;
};

}  // namespace vonnel
