#pragma once
// How a subsystem puts text on the session: the one text routine that
// enciphers what must be enciphered, and the raw write for frames that go
// out as they are. Implemented by the wire; subsystems below it hold only
// this interface.

#include <QByteArray>
#include <QString>

namespace vonnel {

class Sender {
public:
    virtual ~Sender() = default;
    // True while the session socket is connected and the copy not ending.
    virtual bool IsConnected() const = 0;
    // Text out, wrapped frames enciphered while encryption is on.
    virtual void xSendData(QString data) = 0;
    // Text out in the single-byte code page, as it is.
    virtual void sendRaw(const QString& text) = 0;
    virtual void sendRawBytes(const QByteArray& bytes) = 0;
};

}  // namespace vonnel
