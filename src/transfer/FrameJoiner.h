#pragma once
// The data frame's markers, and the joining of frames torn across reads.
//
// A data frame has no length field: it runs from "<*> " to " </*>". A read
// that holds only the start of one is kept here, and the reads after it are
// added until its end marker comes; an end marker counts as the frame's end
// only at the end of what arrived, or with the opening of another message
// of the receive loop right behind it.

#include "core/WireCodec.h"

#include <QByteArray>
#include <QList>

namespace vonnel {

inline const QByteArray kFrameHead = wire::kDataOpen.toByteArray();
inline const QByteArray kFrameEnd = wire::kDataClose.toByteArray();

// Where the data frame in c (starting "<*> ") ends, when it ends before the
// last byte: the position of a " </*>" that has behind it the start of one
// of the messages of the receive loop. -1 when there is none yet. from is
// where to start looking; undecided is set to the first end marker whose
// rest is still too short to tell.
qsizetype findInnerFrameEnd(const QByteArray& c, qsizetype from, qsizetype* undecided = nullptr);

class FrameJoiner {
public:
    // A frame is never held beyond this many bytes; past it the bytes go to
    // the literal rule (the last five bytes taken as the end marker).
    static constexpr qsizetype kMaxHeldFrame = 4 * 1024 * 1024;

    bool holding() const { return !m_frame.isEmpty(); }
    void clear();
    // Keeps a frame whose end has not come yet.
    void hold(const QByteArray& frame);
    // Adds a read to the held frame. Returns false when nothing is held
    // (the read goes to the receive loop as it is); otherwise parts gets
    // what is now ready for the loop, in order: the whole frame, and
    // whatever came behind its end.
    bool join(const QByteArray& bytes, QList<QByteArray>& parts);

private:
    QByteArray m_frame;
    qsizetype m_scanned = 0;
};

}  // namespace vonnel
