#pragma once
// What the links code needs from the rest of the copy, handed in by whoever
// wires it: settings read at the point of use, the session state, the one
// text send routine, the language lookup, the URL History window and the
// user's own program for addresses. Nothing here knows the main window.

#include <QString>
#include <QUrl>
#include <functional>

namespace vonnel {

class Prompter;

// The language lookup: the entry for a text, or the text itself.
using TranslateFn = std::function<QString(const QString&)>;

inline QString untranslated(const QString& text)
{
    return text;
}

struct LinkSeams {
    // A flag of section Vonnel, read each time it is needed (numeric value not 0).
    std::function<bool(const QString& key)> settingFlag;
    // IsConnected: a session is up.
    std::function<bool()> isConnected;
    // xSendData: the one text send routine; it enciphers under encryption.
    std::function<void(const QString& frame)> xSendData;
    TranslateFn translate = untranslated;
    // The present length of the local pane txtServer.
    std::function<int()> localPaneLength;
    // urlScanned lives with the typing code; the scan moves it.
    std::function<void(int)> setUrlScanned;
    // Shows frmURLHistory. With focusBack set the typing pane of the main
    // window takes the focus again.
    std::function<void(bool focusBack)> showHistory;
    // Hands an address to the user's default program (QDesktopServices),
    // never to a shell.
    std::function<bool(const QUrl&)> openUrl;
    Prompter* prompter = nullptr;
};

}  // namespace vonnel
