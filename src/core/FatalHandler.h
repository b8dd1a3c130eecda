#pragma once
// Last words of a process that hits a processor fault or an exception that
// nobody caught: the fault's name goes to error.log as "Error " + n, and
// the process ends. A fault cannot safely be carried on from here.

#include <QString>
#include <cstdint>

namespace vonnel {

namespace FatalHandler {
// Installs the handlers for fatal signals and std::terminate. Once per
// process, at its entry.
void install();
// The error.log of the copy that owns the process.
void setErrorLog(const QString& path);
// The name of a fault: signal number and its code (si_code).
QString faultText(int signal, int code);
// The text for an unknown code: "Unknown (&H" + eight hex digits + ")".
QString unknownText(std::uint32_t code);
}  // namespace FatalHandler

}  // namespace vonnel
