#pragma once
// The Messages menu: six texts the user sets in the options, with their
// own menu captions, and two fixed ones. A click pastes the text as if the
// user had pasted it, by way of the clipboard, and gives the clipboard back.

#include "core/Control.h"

#include <QString>
#include <array>

namespace vonnel {

class Clipboard;
class CopyContext;
class Controls;
class LiveTyping;

// Pastes text into the session as a paste from the clipboard would go,
// leaving the user's clipboard as it was.
void pasteThroughClipboard(Clipboard& clipboard, LiveTyping& typing, const QString& text);

class PresetMessages {
public:
    static constexpr int kUserPresets = 6;
    static constexpr int kMessages = 8;

    PresetMessages(CopyContext& ctx, Controls& controls, LiveTyping& typing);

    // Texts from index 1: Message1 to Message6 from the settings, 7 and 8
    // fixed; captions Menu1 to Menu6.
    std::array<QString, kMessages + 1> Message;
    std::array<QString, kUserPresets + 1> Menu;

    // Loads the texts and captions, and shows each of the six entries only
    // when its caption is not empty.
    void SetMsgMnu();
    // mnuMsg1_Click to mnuMsg8_Click.
    void mnuMsg_Click(int n);
    // The entry of message n, and the n of an entry (0 for another control).
    static Control entry(int n);
    static int messageOf(Control c);

private:
    CopyContext& m_ctx;
    Controls& m_controls;
    LiveTyping& m_typing;
};

}  // namespace vonnel
