#pragma once
// The system bell.

namespace vonnel {

// One beep of the desktop's bell (nothing without a desktop).
void systemBeep();

}  // namespace vonnel
