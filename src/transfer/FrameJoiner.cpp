#include "transfer/FrameJoiner.h"

#include <cstring>

namespace vonnel {

namespace {

// The openings the receive loop knows; a frame end with one of them behind
// it is where a frame ends inside a read.
const QList<QByteArray>& loopHeads()
{
    static const QList<QByteArray> heads = [] {
        QList<QByteArray> out;
        for (const wire::Family f : wire::kReceiveOrder)
            out << wire::head(f).toByteArray();
        return out;
    }();
    return heads;
}

}  // namespace

qsizetype findInnerFrameEnd(const QByteArray& c, qsizetype from, qsizetype* undecided)
{
    if (undecided)
        *undecided = -1;
    qsizetype e = c.indexOf(kFrameEnd, qMax<qsizetype>(from, 4));
    while (e >= 0) {
        const qsizetype restAt = e + kFrameEnd.size();
        const qsizetype restLen = c.size() - restAt;
        if (restLen > 0) {
            bool possible = false;
            for (const QByteArray& h : loopHeads()) {
                const qsizetype n = qMin(restLen, h.size());
                if (std::memcmp(c.constData() + restAt, h.constData(), size_t(n)) != 0)
                    continue;
                if (n == h.size())
                    return e;
                possible = true;  // the rest so far is the start of a head
            }
            if (possible && undecided && *undecided < 0)
                *undecided = e;
        }
        e = c.indexOf(kFrameEnd, e + 1);
    }
    return -1;
}

void FrameJoiner::clear()
{
    m_frame.clear();
    m_scanned = 0;
}

void FrameJoiner::hold(const QByteArray& frame)
{
    m_frame = frame;
    m_scanned = kFrameHead.size();
}

bool FrameJoiner::join(const QByteArray& bytes, QList<QByteArray>& parts)
{
    if (m_frame.isEmpty())
        return false;
    m_frame += bytes;
    if (m_frame.endsWith(kFrameEnd)) {
        parts << m_frame;
        clear();
        return true;
    }
    qsizetype undecided = -1;
    const qsizetype end = findInnerFrameEnd(m_frame, m_scanned, &undecided);
    if (end >= 0) {
        const qsizetype at = end + kFrameEnd.size();
        parts << m_frame.left(at) << m_frame.mid(at);
        clear();
        return true;
    }
    if (m_frame.size() > kMaxHeldFrame) {
        parts << m_frame;
        clear();
        return true;
    }
    // Look again from the first end marker that is still open, or from the
    // last bytes that could begin one.
    m_scanned = undecided >= 0 ? undecided
                                      : qMax<qsizetype>(4, m_frame.size() - kFrameEnd.size());
    return true;
}

}  // namespace vonnel
