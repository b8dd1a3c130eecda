#pragma once
// Clipboard access. Copies in one test process each get their own
// in-memory clipboard so they don't see each other's paste.

#include <QString>

namespace vonnel {

class Clipboard {
public:
    virtual ~Clipboard() = default;
    virtual QString text() const = 0;
    virtual void setText(const QString& text) = 0;
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
};

}  // namespace vonnel
