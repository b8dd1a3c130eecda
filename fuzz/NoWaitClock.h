#pragma once
// The real time of day, but pauses and spins that return at once: a fuzz
// input that reaches a wait must not cost its length in wall time, or the
// run manages a handful of inputs a second.

#include "platform/Clock.h"

namespace vonnel::fuzz {

class NoWaitClock : public Clock {
public:
    void pauseMicroseconds(unsigned long) const override {}
    void spinFor(double) const override {}
};

}  // namespace vonnel::fuzz
