#pragma once
// The probe of the network tools: one echo with the request data "Echo"
// and a 200 ms wait. A station is online when its answer came back whole
// with our data.

#include "platform/Pinger.h"

namespace vonnel {

// One echo: the round trip in milliseconds, or minus the status when no
// answer came. The whole result goes to reply.
qint32 sendEcho(Pinger& pinger, const QString& address, EchoResult& reply);

// True when the station answered with status 0 and data beginning "Echo".
// A malformed address is a failed probe, and nothing is sent for it.
bool pingStation(Pinger& pinger, const QString& address);

}  // namespace vonnel
