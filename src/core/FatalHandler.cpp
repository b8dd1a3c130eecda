#include "core/FatalHandler.h"

#include "core/IniStore.h"

#include <QByteArray>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <unistd.h>

namespace vonnel::FatalHandler {

namespace {
// Process-wide by nature: a signal has no copy to ask. Set once at start.
QString g_errorLog;
int g_count = 0;
alignas(16) char g_altStack[64 * 1024];

void record(const QString& text)
{
    if (g_errorLog.isEmpty())
        return;
    ++g_count;
    WriteIni(kSection, QStringLiteral("Error ") + QString::number(g_count), text, g_errorLog);
}

void onSignal(int sig, siginfo_t* info, void*)
{
    // Not async-signal-safe, but the process is lost anyway; one record is
    // worth the risk. A second fault while recording ends at once.
    static volatile sig_atomic_t inside = 0;
    if (!inside) {
        inside = 1;
        record(faultText(sig, info ? info->si_code : 0));
    }
    _exit(128 + sig);
}

void onTerminate()
{
    QString text = QStringLiteral("Non Continuable Exception");
    if (auto e = std::current_exception()) {
        try {
            std::rethrow_exception(e);
        } catch (const std::exception& ex) {
            text = QString::fromLocal8Bit(ex.what());
        } catch (...) {
        }
    }
    record(text);
    _exit(134);
}
}  // namespace

QString unknownText(std::uint32_t code)
{
    return QStringLiteral("Unknown (&H") +
           QStringLiteral("%1").arg(code, 8, 16, QLatin1Char('0')).toUpper() +
           QLatin1Char(')');
}

QString faultText(int sig, int code)
{
    switch (sig) {
    case SIGSEGV:
        return code == SEGV_ACCERR ? QStringLiteral("Guard Page Violation")
                                   : QStringLiteral("Access Violation");
    case SIGBUS:
        return code == BUS_ADRALN ? QStringLiteral("Data Type Misalignment")
                                  : QStringLiteral("In Page Error");
    case SIGILL:
        return code == ILL_PRVOPC ? QStringLiteral("Privileged Instruction")
                                  : QStringLiteral("Illegal Instruction");
    case SIGTRAP:
        return code == TRAP_TRACE ? QStringLiteral("Single Step") : QStringLiteral("Breakpoint");
    case SIGFPE:
        switch (code) {
        case FPE_INTDIV: return QStringLiteral("Integer Divide By Zero");
        case FPE_INTOVF: return QStringLiteral("Integer Overflow");
        case FPE_FLTDIV: return QStringLiteral("Divide By Zero");
        case FPE_FLTOVF: return QStringLiteral("Float Overflow");
        case FPE_FLTUND: return QStringLiteral("Float Underflow");
        case FPE_FLTRES: return QStringLiteral("Floating Point Inexact Result");
        case FPE_FLTINV: return QStringLiteral("Invalid Operation");
        case FPE_FLTSUB: return QStringLiteral("Array Bounds Exceeded");
        default: return QStringLiteral("Float Stack Check");
        }
    case SIGINT:
        return QStringLiteral("Control-C Exit");
    default:
        return unknownText(std::uint32_t(sig));
    }
}

void setErrorLog(const QString& path)
{
    g_errorLog = path;
}

void install()
{
    // Its own stack, so a stack overflow can still be recorded.
    stack_t ss{};
    ss.ss_sp = g_altStack;
    ss.ss_size = sizeof g_altStack;
    sigaltstack(&ss, nullptr);
    struct sigaction sa {};
    sa.sa_sigaction = onSignal;
    sa.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_RESETHAND;
    sigemptyset(&sa.sa_mask);
    for (int sig : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGTRAP})
        sigaction(sig, &sa, nullptr);
    std::set_terminate(onTerminate);
}

}  // namespace vonnel::FatalHandler
