#pragma once
// Sessions for tests: a raw TCP peer taken on by a copy, or two copies
// joined to each other over loopback.

#include "support/TestCopy.h"

#include <QTcpSocket>

namespace vonnel::test {

// Connects the raw peer to the copy and has the copy take it on as its
// session (through the copy's own decision if it makes one, with Auto
// Accept Connection set, else by accepting directly). Returns what the copy
// sent first (its version frame, if it sends one), read off the peer.
QByteArray acceptRawPeer(TestCopy& copy, QTcpSocket& peer, int timeoutMs = 5000);

// Joins caller to callee: callee accepts automatically, caller connects
// from its own socket. True when both sockets are connected.
bool connectCopies(TestCopy& caller, TestCopy& callee, int timeoutMs = 8000);

// Makes the socket's close a reset (RST) rather than an orderly end, as the
// kernel does for a process that was killed with data in flight.
void resetOnClose(qintptr descriptor);

// Reads from the raw peer until at least n bytes came or time is up.
QByteArray readAtLeast(QTcpSocket& peer, int n, int timeoutMs = 3000);
// Reads whatever arrives within the given time.
QByteArray readFor(QTcpSocket& peer, int ms);

}  // namespace vonnel::test
