#pragma once
// The life of a connection: calling out, deciding on callers, opening and
// ending a session, and the socket events of a running one.

#include <QObject>
#include <QString>

namespace vonnel {

class FrmMain;

class Connection : public QObject {
    Q_OBJECT
public:
    explicit Connection(FrmMain& frm);

    // Ends the session or the attempt in order and listens again; also the
    // routine any code runs to reset the socket.
    void mnuDisconnect_Click();
    // Rebinds the local port from the settings, moving to the next port
    // when it is taken.
    void ListenOnLocalPort();
    // Shows the computer's name, addresses and port in the local pane.
    void ShowLocalInfo();

    void Winsock_SendComplete(int index);
    void Winsock_SendProgress(int index, qint64 bytesSent, qint64 bytesRemaining);

private:
    FrmMain& m_frm;
};

}  // namespace vonnel
