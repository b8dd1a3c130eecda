#pragma once
// The one text send routine and the raw write of a session. With
// encryption off a text goes out whole; with it on, the wrapped frames are
// cut out one by one and their inner text enciphered, everything else
// passing in clear.

#include "core/Sender.h"

namespace vonnel {

class CopyContext;
class MainModel;
class Session;
class Encryption;
class LiveTyping;

class FrameSender : public Sender {
public:
    FrameSender(CopyContext& ctx, MainModel& model, Session& session, Encryption& cipher);
    // The typing path marks its key frame sent when a send announced it.
    void setTyping(LiveTyping* typing) { m_typing = typing; }

    bool IsConnected() const override;
    void xSendData(QString data) override;
    void sendRaw(const QString& text) override;
    void sendRawBytes(const QByteArray& bytes) override;

private:
    CopyContext& m_ctx;
    MainModel& m_model;
    Session& m_session;
    Encryption& m_cipher;
    LiveTyping* m_typing = nullptr;
};

}  // namespace vonnel
