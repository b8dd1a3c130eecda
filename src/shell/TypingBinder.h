#pragma once
// Binds the local pane's widget to live typing: key events of the widget
// become the key handlers' calls, and the widget shows the pane model and
// its look. The widget never edits its own text: the model is the truth.
// Also shows the remote pane's look on its widget.
//
// Installed by the main window with one line:
//     new TypingBinder(m_frm, m_server, m_client);

#include <QObject>
#include <QSet>
#include <QString>

class QKeyEvent;
class QPlainTextEdit;

namespace vonnel {

class FrmMain;
class PaneFormat;
class TextPane;

class TypingBinder : public QObject {
    Q_OBJECT
public:
    // Parented to the server widget; lives as long as it does.
    TypingBinder(FrmMain& frm, QPlainTextEdit* server, QPlainTextEdit* client = nullptr);

    // The key code and shift state that the key handlers take.
    static int keyCode(const QKeyEvent* e);
    static int shiftState(Qt::KeyboardModifiers m);
    // Position in the pane's text (CR LF line breaks) of a position in the
    // widget's text (LF line breaks).
    static int panePosition(const QString& paneText, int widgetPosition);
    // And back: the widget's position of a position in the pane's text.
    static int widgetPosition(const QString& paneText, int panePosition);

    static void showText(const TextPane& pane, QPlainTextEdit* view);
    static void showFormat(const PaneFormat& format, QPlainTextEdit* view);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool keyPress(QKeyEvent* e);
    bool keyRelease(QKeyEvent* e);
    // The widget's caret and selection into the pane model.
    void takeSelection();
    // Which physical key an event is of, the same at its press and release.
    static int physicalKey(const QKeyEvent* e);

    FrmMain& m_frm;
    QPlainTextEdit* m_server;
    // Keys that went down in this pane and are not up yet. A key held down
    // elsewhere (the Return that answered a box which has closed since,
    // another window) repeats into whatever has the focus: those repeats
    // and its release are not typing.
    QSet<int> m_keysDown;
    // The last release: a press of the same key at the same instant is a
    // repeat, also where the platform did not see it as one.
    struct KeyUp {
        int key = 0;
        quint64 time = 0;
        qint64 arrivedMs = 0;
        bool wasDown = false;
    } m_lastUp;
    static constexpr qint64 kRepeatGapMs = 8;
    // When the pane last took the focus, and how long after it a copied
    // press is still one of a key that went down elsewhere.
    qint64 m_focusAtMs = 0;
    static constexpr qint64 kLateCopyMs = 100;
};

}  // namespace vonnel
