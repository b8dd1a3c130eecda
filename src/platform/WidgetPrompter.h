#pragma once
// Real dialogs: message boxes, input boxes and file dialogs.

#include "platform/Prompter.h"

class QWidget;

namespace vonnel {

class WidgetPrompter : public Prompter {
public:
    explicit WidgetPrompter(QWidget* parent = nullptr) : m_parent(parent) {}
    void setParent(QWidget* parent) { m_parent = parent; }

    Answer box(const BoxRequest& request) override;
    std::optional<QString> input(const QString& title, const QString& prompt,
                                 const QString& defaultText) override;
    QString file(const FileRequest& request) override;

    // "Text files (*.txt)|*.txt|All files|*.*" becomes a Qt filter list.
    static QString qtFilter(const QString& filter);
    // The width a box keeps so the desktop can show its whole title.
    static int titleRoom(const QString& title);

private:
    QWidget* m_parent;
};

}  // namespace vonnel
