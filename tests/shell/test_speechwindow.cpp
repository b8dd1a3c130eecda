// The Voice menu, the Mute button and the panes' Speak entries of the main
// window reach the speech routines with the selections the user made; and
// with the system's engine the Speak entry has the engine speak.

#include "media/Speech.h"
#include "platform/AudioPlayer.h"
#include "shell/MainWindow.h"
#include "support/TestCopy.h"
#include "core/Controls.h"
#include "core/MainModel.h"

#include <QAction>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTextCursor>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

void select(QPlainTextEdit* pane, int from, int to)
{
    QTextCursor c = pane->textCursor();
    c.setPosition(from);
    c.setPosition(to, QTextCursor::KeepAnchor);
    pane->setTextCursor(c);
}

struct SpeechWindow {
    explicit SpeechWindow(SpeechEngine* engine = nullptr)
    {
        if (engine)
            copy.useSpeech(engine);
        started = copy.start();
        window = std::make_unique<MainWindow>(copy.frm());
    }
    FrmMain& f() { return copy.frm(); }
    void trigger(Control c) { window->action(c)->trigger(); }
    TestCopy copy;
    std::unique_ptr<MainWindow> window;
    bool started = false;
};

TEST(SpeechWindow, SpeakReadsTheSelectionsOfBothPanes)
{
    SpeechWindow w;
    ASSERT_TRUE(w.started);
    w.f().model().txtServer.setText("first line\r\nsecond line");
    w.f().model().txtClient(0).setText("from the peer");
    // The widget shows one line break where the pane holds CR LF.
    select(w.window->serverPane(), 11, 17);
    select(w.window->clientPane(), 9, 13);
    w.trigger(Control::mnuSpeak);
    ASSERT_EQ(w.copy.speech().said.size(), 2);
    EXPECT_EQ(w.copy.speech().said[0].text, "second");
    EXPECT_EQ(w.copy.speech().said[1].text, "peer");
}

TEST(SpeechWindow, VoiceMenuFollowsThePanesAndMuteIsTheButtonsToo)
{
    SpeechWindow w;
    ASSERT_TRUE(w.started);
    auto* voice = w.window->findChild<QMenu*>("mnuVoice");
    ASSERT_TRUE(voice);
    Q_EMIT voice->aboutToShow();
    EXPECT_FALSE(w.window->action(Control::mnuSpeak)->isEnabled()) << "nothing typed yet";
    w.f().model().txtServer.setText("x");
    Q_EMIT voice->aboutToShow();
    EXPECT_TRUE(w.window->action(Control::mnuSpeak)->isEnabled());

    QAction* button = w.window->action(Control::Toolbar1_16);
    ASSERT_TRUE(button->isCheckable());
    button->trigger();
    EXPECT_TRUE(button->isChecked());
    EXPECT_TRUE(w.window->action(Control::mnuMute)->isChecked());
    EXPECT_EQ(w.copy.get("Remote Speaker Off"), "1");
    w.trigger(Control::mnuMute);
    EXPECT_FALSE(button->isChecked());
    EXPECT_FALSE(w.window->action(Control::mnuMute)->isChecked());
    EXPECT_EQ(w.copy.get("Local Speaker Off"), "0");

    // Volume Down adds, Volume Up takes off.
    VoiceEngine& tts = w.f().speech().dssTTS();
    tts.volume = 50;
    w.trigger(Control::mnuVolDown);
    EXPECT_EQ(tts.volume, 60);
    w.trigger(Control::mnuVolUp);
    EXPECT_EQ(tts.volume, 50);
}

TEST(SpeechWindow, TheSystemEngineSpeaksTheSelection)
{
    SystemSpeechEngine engine;
    if (!engine.available() || !audioDevicePresent())
        GTEST_SKIP() << "no speech engine or no audio output here";
    SpeechWindow w(&engine);
    ASSERT_TRUE(w.started);
    w.f().model().txtServer.setText("Hello from the menu.");
    select(w.window->serverPane(), 0, 20);
    w.trigger(Control::mnuSpeak);
    // The engine itself says that it began to speak.
    EXPECT_TRUE(waitUntil([&] { return engine.startedSpeaking() == 1; }, 20000));
}

}  // namespace
}  // namespace vonnel::test
