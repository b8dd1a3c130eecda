#include "media/RingExchange.h"

#include "connection/Session.h"
#include "core/Controls.h"
#include "core/CopyContext.h"
#include "core/IniStore.h"
#include "core/MainModel.h"
#include "core/Sender.h"
#include "media/Sound.h"
#include "media/SoundFile.h"
#include "platform/Winsock.h"
#include "transfer/Transfer.h"
#include "transfer/TransferText.h"
#include "wire/Receiver.h"
#include "core/WireCodec.h"

#include <QFileInfo>

namespace vonnel {

RingExchange::RingExchange(CopyContext& ctx, MainModel& model, Session& session, Sender& sender,
                           Receiver& receiver, Transfer& transfer, Sound& sound, QObject* parent)
    : QObject(parent),
      m_ctx(ctx),
      m_model(model),
      m_session(session),
      m_sender(sender),
      m_receiver(receiver),
      m_transfer(transfer),
      m_sound(sound)
{
}

Control RingExchange::ringButton() { return toolbarButton(kRingButton); }

bool RingExchange::transferUnderWay() const
{
    return m_transfer.fileOffered() || m_transfer.fileSending() || m_transfer.fileReceiving();
}

void RingExchange::mnuBeep_Click()
{
    m_model.controls.setEnabled(ringButton(), false);
    m_ctx.rings.Ring = m_ctx.setting(QStringLiteral("Ring"));
    // With no ring set the button stays off until something else turns it on.
    if (m_ctx.rings.Ring.isEmpty())
        return;
    m_sound.lastPlayResult = m_sound.PlayMMCFile(m_ctx.appFile(m_ctx.rings.Ring));
    m_session.idleDelay0();
    if (m_sound.lastPlayResult &&
        m_session.winsock(m_session.sIdx).State() == Winsock::sckConnected)
        m_sender.xSendData(wire::text(wire::kRingOpen) + m_ctx.rings.Ring + wire::text(wire::kRingClose));
    m_model.controls.setEnabled(ringButton(), true);
}

void RingExchange::ringReceived(const QString& wanted)
{
    QString name = wanted;
    const bool same = m_ctx.settingNumber(QStringLiteral("Same Remote Ring")) != 0;
    // A name with a folder in it is never looked for, fetched or played.
    const bool bare = isBareFileName(name);
    const bool present = bare && FileExist(m_ctx.appFile(name), &m_ctx.prompter());
    if (bare && !present && !transferUnderWay() &&
        m_model.controls.enabled(Control::mnuSendFile) && same) {
        m_sender.xSendData(wire::text(wire::kRingWanted));
        ringFetchPending = true;
        m_receiver.ringWanted = name;
        return;
    }
    if (!present)
        name = m_ctx.setting(QStringLiteral("Ring"));
    // Names are matched without regard to case, as the test above found it.
    m_sound.lastPlayResult = m_sound.PlayMMCFile(resolveCaseBlind(m_ctx.appFile(name)));
    ringFetchPending = false;
}

void RingExchange::ringFileRequested()
{
    // A request in the middle of a transfer would take the transfer's
    // place; it is left unanswered, as a request for a missing file is.
    if (transferUnderWay())
        return;
    const QString ring = m_ctx.rings.Ring;
    // The bare name as it stands: it is looked for in the current folder.
    if (!FileExist(ring, &m_ctx.prompter()))
        return;
    m_sender.xSendData(wire::text(wire::kRingSize) + QString::number(QFileInfo(ring).size()) + ring);
    m_transfer.beginSendFile(ring);
    m_transfer.ringSent = ring;
}

void RingExchange::ringFileAnnounced(const QString& name, qint64 size)
{
    ringSize = size;
    // Only the file asked for, into the application folder, and never over
    // a transfer that is under way.
    if (!transferUnderWay() && m_transfer.receiveRingFile(name, size, soundSizeLimit(m_ctx)))
        return;
    if (!transferUnderWay())
        m_model.controls.setEnabled(Control::mnuSendFile, true);
}

}  // namespace vonnel
