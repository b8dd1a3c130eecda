#pragma once
// Why a call failed, in words a user can act on. The key is the text in
// English, looked up through translate like every other text.

#include <QString>

namespace vonnel {

enum class CallFailure { None, Refused, TimedOut, Unreachable, NameNotFound, ClosedAtOnce };

// From the socket's error number of the last attempt; an attempt that got
// no answer at all within its time is TimedOut.
CallFailure callFailureFromError(int winsockError);
QString callFailureText(CallFailure why);

}  // namespace vonnel
