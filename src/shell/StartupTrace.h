#pragma once
// Start-up timing on request: with VONNEL_TRACE_FIRSTPAINT set in the
// environment, a few marks through start-up and the main window's first
// paint are written to stderr with the milliseconds since the process
// began. Off, it does nothing and watches nothing.

#include <QElapsedTimer>
#include <QObject>

class QWidget;

namespace vonnel {

class StartupTrace : public QObject {
public:
    // Reads the environment; made first thing in main.
    StartupTrace();

    bool on() const { return m_on; }
    // "vonnel: startup NAME at T ms" on stderr, when on.
    void mark(const char* name);
    // Watches the window for its first paint; the mark is written then and
    // the watch ends.
    void watchFirstPaint(QWidget* window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    double sinceStartMs() const;

    bool m_on = false;
    // The process's age when the timer started, from the kernel's record
    // of its start (in clock ticks, so to about 10 ms).
    double m_beforeMainMs = 0;
    QElapsedTimer m_sinceMain;
    QWidget* m_window = nullptr;
    bool m_exposed = false;
};

}  // namespace vonnel
