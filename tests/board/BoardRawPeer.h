#pragma once
// A copy whose board a raw peer of the old wire has opened.

#include "board/Scrivet.h"
#include "support/Session.h"

#include <QTcpSocket>

namespace vonnel::test {

// Starts the copy, takes the peer's call and has the peer ask for the
// board; false where one of the steps did not come about.
inline bool boardOpenedByRawPeer(TestCopy& copy, QTcpSocket& peer)
{
    if (!copy.start())
        return false;
    acceptRawPeer(copy, peer);
    peer.write("&& Scrivet Request &&");
    return waitUntil([&] { return copy.frm().scrivet().isOpen(); });
}

}  // namespace vonnel::test
