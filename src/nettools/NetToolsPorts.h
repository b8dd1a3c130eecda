#pragma once
// What the network tools need from the rest of the program, kept narrow so
// the tools can be wired to any copy and driven by fakes in tests.

#include <QString>

namespace vonnel {

// Forward and reverse name lookups. Both give "- - - - - - " on failure.
class NameLookup {
public:
    virtual ~NameLookup() = default;
    // The dotted address of a host name (a dotted text gives itself).
    virtual QString resolveName(const QString& host) = 0;
    // The host name of a dotted address.
    virtual QString resolveAddress(const QString& address) = 0;
};

// The settings of one copy, read at the point of use ("" when absent).
class SettingsStore {
public:
    virtual ~SettingsStore() = default;
    virtual QString read(const QString& key) = 0;
    virtual void write(const QString& key, const QString& value) = 0;
};

// The session as the tools ask about it.
class SessionQuery {
public:
    virtual ~SessionQuery() = default;
    virtual bool isConnected() const = 0;
    virtual bool isLocked() const { return false; }
    virtual bool isClosing() const { return false; }
    // The address of the present peer, "" without a session.
    virtual QString peerAddress() const { return {}; }
};

}  // namespace vonnel
