#pragma once
// Whether the user's screen saver is running: the question the away
// notice asks on every tick. The system's answer comes from the session's
// screen saver over D-Bus where one answers, else from the X server's idle
// time; where neither exists the answer is "not running", so no notice is
// ever set by it (minimising still sets one when the settings ask).

#include <memory>

namespace vonnel {

class ScreenSaver {
public:
    virtual ~ScreenSaver() = default;
    virtual bool running() = 0;
};

// A screen saver that answers what it was told; for tests and for copies
// that must not ask the desktop.
class FixedScreenSaver : public ScreenSaver {
public:
    bool running() override { return on; }
    bool on = false;
};

class SystemScreenSaver : public ScreenSaver {
public:
    SystemScreenSaver();
    ~SystemScreenSaver() override;
    bool running() override;

    // Where the last answer came from.
    enum class Source { Nothing, DBus, XIdle };
    Source source() const { return m_source; }

    // Idle time after which the X server's answer counts as running, when
    // the server has no screen saver time-out of its own.
    static constexpr int kDefaultIdleSeconds = 600;

private:
    Source m_source = Source::Nothing;
    // The D-Bus service stopped answering once: not asked again.
    bool m_dbusGone = false;
};

}  // namespace vonnel
