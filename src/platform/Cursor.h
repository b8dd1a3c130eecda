#pragma once
// The mouse pointer over the program's windows: the wait pointer while the
// program is busy with a blocking wait or a long send, the normal one
// otherwise. The logic only says which; tests record it, headless runs
// have no pointer, and windowed runs set Qt's override cursor.

#include <QStringList>

namespace vonnel {

class Cursor {
public:
    virtual ~Cursor() = default;
    // Puts up the wait pointer (the hourglass); again while up does nothing.
    virtual void setWait() {}
    // The normal pointer again; while it shows already, nothing happens.
    virtual void setNormal() {}
};

// Windowed runs: QGuiApplication's override cursor, over every window of
// the program. Only this object's own override is ever taken back.
class OverrideCursor : public Cursor {
public:
    ~OverrideCursor() override;
    void setWait() override;
    void setNormal() override;

private:
    bool m_waiting = false;
};

// Records every change of the pointer ("wait", "normal"); for tests.
class RecordingCursor : public Cursor {
public:
    void setWait() override
    {
        changes << QStringLiteral("wait");
        waiting = true;
    }
    void setNormal() override
    {
        changes << QStringLiteral("normal");
        waiting = false;
    }
    QStringList changes;
    bool waiting = false;
};

// The wait pointer for one scope: up while it lives, the normal pointer
// again however the scope is left.
class WaitPointer {
public:
    explicit WaitPointer(Cursor& cursor) : m_cursor(cursor) { m_cursor.setWait(); }
    ~WaitPointer() { m_cursor.setNormal(); }
    WaitPointer(const WaitPointer&) = delete;
    WaitPointer& operator=(const WaitPointer&) = delete;

private:
    Cursor& m_cursor;
};

}  // namespace vonnel
