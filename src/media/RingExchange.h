#pragma once
// The ring between two copies: the Ring press sends "^g" name "^G^"; the
// peer plays its file of that name, or, lacking it and with Same Remote
// Ring set, asks with "^rW" for ours, which comes back as "^s>" length name
// followed by the file on the transfer channel, and is played when it has
// arrived.
//
// A name from the peer is only ever used as a bare file name in the
// application folder: a name with a folder, a drive or ".." in it is never
// fetched, written or opened; the local ring plays instead.

#include "core/Control.h"

#include <QObject>
#include <QString>

namespace vonnel {

class CopyContext;
class MainModel;
class Session;
class Sender;
class Receiver;
class Transfer;
class Sound;

class RingExchange : public QObject {
    Q_OBJECT
public:
    RingExchange(CopyContext& ctx, MainModel& model, Session& session, Sender& sender,
                 Receiver& receiver, Transfer& transfer, Sound& sound, QObject* parent = nullptr);

    // The Ring button of the toolbar and the Alert Ring entry.
    void mnuBeep_Click();

    // "^g" name "^G^" from the peer.
    void ringReceived(const QString& name);
    // "^rW": the peer lacks our ring file.
    void ringFileRequested();
    // "^s>" size name: the peer sends the ring file we asked for.
    void ringFileAnnounced(const QString& name, qint64 size);

    // Set when "^rW" went out, cleared when a ring is played directly.
    bool ringFetchPending = false;
    // The size the last "^s>" announced.
    qint64 ringSize = 0;

    // The toolbar's Ring button.
    // The Ring button of the toolbar (the fifteenth of the window's buttons).
    static constexpr int kRingButton = 15;
    static Control ringButton();

private:
    bool transferUnderWay() const;

    CopyContext& m_ctx;
    MainModel& m_model;
    Session& m_session;
    Sender& m_sender;
    Receiver& m_receiver;
    Transfer& m_transfer;
    Sound& m_sound;
};

}  // namespace vonnel
