#include "shell/StartupTrace.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QWidget>
#include <QWindow>
#include <cstdio>
#include <ctime>
#include <unistd.h>

namespace vonnel {

namespace {

// Milliseconds between the process's start and now, from /proc: field 22
// of its stat line is the start in clock ticks since boot.
double processAgeMs()
{
    QFile stat(QStringLiteral("/proc/self/stat"));
    if (!stat.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray line = stat.readAll();
    // The command name may hold blanks; the fields are counted after it.
    const qsizetype close = line.lastIndexOf(')');
    if (close < 0)
        return 0;
    const QList<QByteArray> fields = line.mid(close + 2).split(' ');
    // Field 22 overall is the 20th after the name (fields 3 onward).
    if (fields.size() < 20)
        return 0;
    const double startTicks = fields[19].toDouble();
    timespec boot{};
    clock_gettime(CLOCK_BOOTTIME, &boot);
    const double nowMs = double(boot.tv_sec) * 1000.0 + double(boot.tv_nsec) / 1e6;
    const double age = nowMs - startTicks * 1000.0 / double(sysconf(_SC_CLK_TCK));
    return age > 0 ? age : 0;
}

}  // namespace

StartupTrace::StartupTrace()
{
    m_on = !qEnvironmentVariableIsEmpty("VONNEL_TRACE_FIRSTPAINT");
    if (!m_on)
        return;
    m_sinceMain.start();
    m_beforeMainMs = processAgeMs();
}

double StartupTrace::sinceStartMs() const
{
    return m_beforeMainMs + double(m_sinceMain.nsecsElapsed()) / 1e6;
}

void StartupTrace::mark(const char* name)
{
    if (!m_on)
        return;
    // The processor time beside the wall time: on a busy machine the gap
    // between them is time spent waiting for a processor.
    timespec cpu{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &cpu);
    std::fprintf(stderr, "vonnel: startup %s at %.1f ms (%.1f ms after main, %.1f ms of processor)\n", name,
                 sinceStartMs(), double(m_sinceMain.nsecsElapsed()) / 1e6,
                 double(cpu.tv_sec) * 1000.0 + double(cpu.tv_nsec) / 1e6);
    std::fflush(stderr);
}

void StartupTrace::watchFirstPaint(QWidget* window)
{
    if (!m_on || !window)
        return;
    m_window = window;
    // Paint events go to the widget that paints, often a child: the whole
    // application is watched until one lands in the main window.
    QCoreApplication::instance()->installEventFilter(this);
}

bool StartupTrace::eventFilter(QObject* watched, QEvent* event)
{
    if (!m_window)
        return false;
    // The window system's expose goes to the window's native handle.
    if (event->type() == QEvent::Expose) {
        if (!m_exposed && watched == m_window->windowHandle()) {
            m_exposed = true;
            mark("expose");
        }
        return false;
    }
    if (event->type() != QEvent::Paint || !watched->isWidgetType())
        return false;
    if (static_cast<QWidget*>(watched)->window() == m_window) {
        mark("first paint");
        m_window = nullptr;
        QCoreApplication::instance()->removeEventFilter(this);
    }
    return false;
}

}  // namespace vonnel
