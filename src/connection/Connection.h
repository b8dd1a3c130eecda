#pragma once
// The life of a connection: calling out, deciding on callers, opening and
// ending a session, and the socket events of a running one.

#include <QObject>
#include <QPointer>
#include <QString>
#include <memory>

namespace vonnel {

class CopyContext;
class MainModel;
class Session;
class Sender;
class Encryption;
class AddressServices;
class LoginDialog;
class PropertyDialog;
class PrivateLink;

class Connection : public QObject {
    Q_OBJECT
public:
    Connection(CopyContext& ctx, MainModel& model, Session& session, Sender& sender,
               Encryption& cipher, QObject* parent = nullptr);
    ~Connection() override;

    AddressServices& address() const { return *m_address; }
    // Going private with a peer of ours, and what the session is now.
    PrivateLink& privateLink() const { return *m_private; }

    // --- calling out ---------------------------------------------------------
    // The menu entry: opens frmLogin modally; the dialog's OK runs the call.
    void mnuConnect_Click();
    // The two halves of mnuConnect_Click around the modal dialog, for code
    // that fills the dialog itself (the command line, tests). beginConnect
    // gives null during a session (after its box) or a running attempt.
    LoginDialog* beginConnect();
    void endConnect();
    // Calls an address as the command line does: the fields are filled and
    // the dialog's OK runs. An empty port takes RemotePort.
    void connectTo(const QString& address, const QString& port);
    // The open connect dialog, or null.
    LoginDialog* login() const;
    // True from beginConnect to endConnect: a second call is not started.
    bool connectInProgress() const { return m_login != nullptr; }
    // One attempt with its retries, from Previous IP Address and Connect Port.
    void ConnectProcedure();
    // True for this computer's own names and addresses.
    bool isOwnAddress(const QString& text) const;
    // The last call reached the other side, which closed it without a word:
    // it did not take the call.
    bool callRefused() const { return m_callRefused; }
    // Lang.txt key: the text returned
    static QString refusedText() { return QStringLiteral("The remote user did not accept the connection"); }

    // --- the session's events ----------------------------------------------
    void winsock_Connect(int index);
    void ConnectOK();
    void Winsock_ConnectionRequest(int index, qintptr requestId);
    void Winsock_Close(int index);
    void Winsock_Error(int index, int number, const QString& description);
    void Winsock_SendComplete(int index);
    void Winsock_SendProgress(int index, qint64 bytesSent, qint64 bytesRemaining);

    // Ends the session or the attempt in order and listens again; also the
    // routine any code runs to reset the socket.
    void mnuDisconnect_Click();
    // Rebinds the local port from the settings, moving to the next port
    // when it is taken.
    void ListenOnLocalPort();
    // The peer said it shuts down: the socket closes and listens again on
    // the local port.
    void closeAfterPeerShutDown();
    // Shows the computer's name, addresses and port in the local pane.
    void ShowLocalInfo();

    // frmProperty's logic while it is up; made on first use.
    PropertyDialog& propertyDialog();
    PropertyDialog* property() const { return m_property.get(); }
    void unloadProperty();

    // One turn of a waiting loop: pending events run, then a short pause.
    void spin();

    // A click on a status bar panel: the Status panel explains a time-out
    // and resets a closed or failed socket.
    void stStatusbar_PanelClick(int panel);

Q_SIGNALS:
    // frmProperty's Apply wrote the settings.
    void propertiesApplied();
    // The peer closed the session (Winsock_Close): the station check may
    // switch itself off.
    void peerClosed();

private:
    void showMain();
    void connectFailed(const QString& description);

    CopyContext& m_ctx;
    MainModel& m_model;
    Session& m_session;
    // Panel 4 as last read by the send event, and its number.
    QString m_minutesText;
    qint64 m_minutesShown = 0;
    Sender& m_sender;
    Encryption& m_cipher;
    std::unique_ptr<AddressServices> m_address;
    std::unique_ptr<PrivateLink> m_private;
    std::unique_ptr<LoginDialog> m_login;
    std::unique_ptr<PropertyDialog> m_property;
    bool m_callRefused = false;
};

}  // namespace vonnel
