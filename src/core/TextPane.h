#pragma once
// What a text box of the main window holds, apart from its widget: the
// text, the caret, whether it takes input, and its length limit. The logic
// writes here; the window shows it.

#include <QObject>
#include <QString>

namespace vonnel {

class TextPane : public QObject {
    Q_OBJECT
public:
    explicit TextPane(QString name, QObject* parent = nullptr)
        : QObject(parent), m_name(std::move(name)) {}

    QString name() const { return m_name; }
    const QString& text() const { return m_text; }
    int length() const { return int(m_text.size()); }
    void setText(const QString& t);
    // The text with the caret placed at caret (clamped), not at the end.
    void setText(const QString& t, int caret);
    void clear() { setText(QString()); }
    // Adds at the caret, which the panes always keep at the end.
    void append(const QString& t);
    void chopTo(int length);

    int selStart() const { return m_selStart; }
    // As with the text control, placing the caret ends any selection.
    void setSelStart(int pos) { m_selStart = qBound(0, pos, length()); m_selLength = 0; }
    void caretToEnd() { m_selStart = length(); m_selLength = 0; }
    // The selection: selLength characters from selStart.
    int selLength() const { return m_selLength; }
    void setSelection(int start, int length);

    bool enabled() const { return m_enabled; }
    void setEnabled(bool e);
    bool locked() const { return m_locked; }
    void setLocked(bool l);
    int maxLength() const { return m_maxLength; }
    void setMaxLength(int n) { m_maxLength = n; }

Q_SIGNALS:
    void textChanged();
    void enabledChanged(bool enabled);
    void lockedChanged(bool locked);

private:
    QString m_name;
    QString m_text;
    int m_selStart = 0;
    int m_selLength = 0;
    bool m_enabled = true;
    bool m_locked = false;
    int m_maxLength = 0;
};

}  // namespace vonnel
