#include "wire/Receiver.h"

#include "connection/PrivateLink.h"

#include "core/Cp1252.h"
#include "access/Encryption.h"

#include "access/CipherText.h"
#include "connection/Connection.h"
#include "core/IniStore.h"
#include "platform/Cursor.h"
#include "platform/Prompter.h"
#include "connection/Session.h"
#include "core/CopyContext.h"
#include "platform/Clock.h"
#include "core/Sender.h"
#include "core/MainModel.h"
#include "core/Views.h"
#include "core/WireCodec.h"
#include "wire/FrameText.h"
#include "wire/LiveTyping.h"
#include "wire/RemotePane.h"


namespace vonnel {

namespace {


// Toolbar1 button 3 is Refresh.
constexpr int kRefreshButton = 3;

}  // namespace

Receiver::Receiver(CopyContext& ctx, MainModel& model, Session& session, Sender& sender,
                   Encryption& cipher, Connection& connection, QObject* parent)
    : QObject(parent),
      m_ctx(ctx),
      m_model(model),
      m_session(session),
      m_sender(sender),
      m_cipher(cipher),
      m_connection(connection),
      m_pane(new RemotePane(ctx.clock(), model, session, sender, *this, this)),
      m_faults(ctx.prompter(), ctx.logs())
{
    connect(&session, &Session::sessionOpened, m_pane, &RemotePane::beginSession);
    connect(&session, &Session::sessionOpened, this, [this] {
        m_faults.beginSession();
        remoteHistory.clear();
    });
    cSendFileCheck = [](QString& data, QByteArray&) { return consumeFileMessage(data); };
    // With no board to read them, board messages and what follows them in
    // the read go as the board's error tail would let them go.
    cDrawcheck = [](QString&) { return QString(); };
    keySent = [] { return false; };
    connect(&m_session.winsock(0), &Winsock::DataArrival, this, &Receiver::Winsock_DataArrival);
    m_loneTimer.setSingleShot(true);
    m_loneTimer.setInterval(kLoneHoldMs);
    connect(&m_loneTimer, &QTimer::timeout, this, &Receiver::releaseLoneAmpersand);
    connect(&session, &Session::sessionOpened, this, [this] {
        m_loneTimer.stop();
        m_loneAmpersand = false;
    });
}

void Receiver::readLimits(bool atStart)
{
    if (atStart) {
        int limit = m_ctx.settingInt(QStringLiteral("Text Limit"));
        if (limit > 64000)
            limit = 64000;
        if (limit < 1)
            limit = 32000;
        m_ctx.writeSetting(QStringLiteral("Text Limit"), QString::number(limit));
        textLimit = limit;
    }
    overflowLimit = m_ctx.settingInt(QStringLiteral("Overflow"));
    acceptIncompatible = m_ctx.settingFlag(QStringLiteral("Accept Incompatible Character"));
    selfRepair = m_ctx.settingFlag(QStringLiteral("Character Self Repair"));
    repairCountLimit = m_ctx.settingInt(QStringLiteral("Repair Count Limit"));
    // The test delay is read with the limits (at each session and each
    // change of the options), not on every read: a settings read costs a
    // system call, and a transfer reads twice a frame.
    testDelay = m_ctx.settingNumber(QStringLiteral("Test"));
    // At the start a missing value is written back; later it only stands in.
    if (overflowLimit == 0) {
        overflowLimit = 50;
        if (atStart)
            m_ctx.writeSetting(QStringLiteral("Overflow"), QStringLiteral("50"));
    }
    if (repairCountLimit == 0) {
        repairCountLimit = 50;
        if (atStart)
            m_ctx.writeSetting(QStringLiteral("Repair Count Limit"), QStringLiteral("50"));
    }
}

// --- the receive event --------------------------------------------------------

void Receiver::Winsock_DataArrival(int index, qint64 bytesTotal)
{
    if (index > 0 || m_ctx.unloading)
        return;
    // The words of going private are taken off before anything else looks.
    QByteArray bytes = m_connection.privateLink().takeWord(m_session.winsock(m_session.sIdx).GetData());
    if (bytes.isEmpty())
        return;
    handleArrival(index, std::move(bytes), bytesTotal);
}

void Receiver::handleArrival(int index, QByteArray bytes, qint64 bytesTotal)
{
    if (index > 0 || m_ctx.unloading)
        return;
    if (bytesTotal < 0)
        bytesTotal = bytes.size();
    joinLoneAmpersand(bytes);
    QList<QByteArray> parts;
    if (joinArrival && joinArrival(bytes, parts)) {
        for (QByteArray& part : parts)
            dispatchArrival(index, std::move(part), bytesTotal);
        return;
    }
    dispatchArrival(index, std::move(bytes), bytesTotal);
}

void Receiver::dispatchArrival(int index, QByteArray bytes, qint64 bytesTotal)
{
    if (m_ctx.unloading)
        return;
    m_model.controls.setEnabled(toolbarButton(kRefreshButton), true);
    m_model.controls.setEnabled(Control::mnuRefresh, true);
    if (testDelay != 0)
        m_session.idleDelay(testDelay);

    m_session.PasteInProgress = false;
    m_ctx.cursor().setNormal();
    m_model.stStatusbar.setPicture(1, StatePicture::picRec);
    m_model.stStatusbar.setText(2, QString());
    m_model.stStatusbar.setText(4, m_session.minutesText());
    m_session.showByteCount(10, bytesTotal);

    m_session.RemoteResponded = true;
    m_session.arrivedLength = bytes.size();
    if (bytes.isEmpty())
        return;
    m_model.txtClient(0).setEnabled(true);
    m_keyPosition = 0;

    QString text;
    if (frameArrival && bytes.startsWith(wire::kDataOpen)) {
        // A data frame at the head of the read: no test ahead of the file
        // dispatcher matches it and its payload is taken from the bytes,
        // so only what may follow its end is made text.
        m_model.txtClient(index).caretToEnd();
        text = frameArrival(bytes);
        m_faults.reportStage(QStringLiteral("File Fransfer "));
    } else {
        text = fromCp1252(bytes);
    }

    // At most min(Overflow + 1, 100) passes; what is left after them is lost.
    int pass = 0;
    if (!text.isEmpty()) do {
        if (!runPass(index, text, bytes))
            break;
        if (text.isEmpty())
            break;
        ++pass;
    } while (pass <= overflowLimit && pass >= 1 && pass < 100);
    // Whatever the passes left is lost; the pane may have missed a frame.
    if (!text.isEmpty())
        m_pane->lost();
    m_faults.reportArrival(text);

    m_session.PasteInProgress = false;
    m_ctx.cursor().setNormal();
    refreshLengths();
    m_model.stStatusbar.setPicture(1, StatePicture::picReady);
    m_session.checkStatus();
}

// --- control codes ------------------------------------------------------------

QString Receiver::cControlCheck(QString& data)
{
    TextPane& pane = m_model.txtClient(m_session.sIdx);
    int n = 0;

    if (data.startsWith(wire::text(wire::kRingOpen))) {
        const QString name = getBetween(data, wire::text(wire::kRingOpen), wire::text(wire::kRingClose));
        data = stripThrough(data, wire::text(wire::kRingClose));
        Q_EMIT ringReceived(name);
    }
    if (data.startsWith(wire::text(wire::kRingWanted))) {
        data = data.mid(3);
        Q_EMIT ringFileRequested();
    }
    if (data.startsWith(wire::text(wire::kRingSize))) {
        double size = 0;
        const QString sizeText = getBetween(data, wire::text(wire::kRingSize), ringWanted);
        size = iniNumber(sizeText);
        data = stripThrough(data, ringWanted);
        m_model.controls.setEnabled(Control::mnuSendFile, false);
        Q_EMIT ringFileAnnounced(ringWanted, qint64(size));
    }
    if (data.startsWith(wire::text(wire::kRefresh))) {
        answerRefresh();
        data = data.mid(8);
    }
    if (data.startsWith(wire::text(wire::kClear))) {
        keepCleared(remoteHistory, kCrLf + pane.text());
        pane.clear();
        m_pane->cleared();
        data = data.mid(4);
    }
    if (data.startsWith(wire::text(wire::words(wire::Numbered::Deletion).open))) {
        readPosition(getBetween(data, wire::text(wire::words(wire::Numbered::Deletion).open), wire::text(wire::words(wire::Numbered::Deletion).close)), n);
        data = stripThrough(data, wire::text(wire::words(wire::Numbered::Deletion).close));
        m_pane->deletion(n, data.startsWith(wire::text(wire::kPasteOpen)));
    }
    if (data.startsWith(wire::text(wire::kCarriageReturn))) {
        pane.append(kCrLf);
        pane.caretToEnd();
        data = data.mid(3);
    }
    if (data.startsWith(wire::text(wire::words(wire::Numbered::LineBreak).open))) {
        const bool counted =
            readPosition(getBetween(data, wire::text(wire::words(wire::Numbered::LineBreak).open), wire::text(wire::words(wire::Numbered::LineBreak).close)), n);
        data = stripThrough(data, wire::text(wire::words(wire::Numbered::LineBreak).close));
        m_pane->lineBreak(n, counted);
    }
    if (data.startsWith(wire::text(wire::kUrlOpen))) {
        const QString inner = getBetween(data, wire::text(wire::kUrlOpen), wire::text(wire::kUrlClose));
        data = stripThrough(data, wire::text(wire::kUrlClose));
        Q_EMIT webCheck(decipher(inner));
    }
    if (data.startsWith(wire::text(wire::kSpeakOpen))) {
        const QString inner = getBetween(data, wire::text(wire::kSpeakOpen), wire::text(wire::kSpeakClose));
        data = stripThrough(data, wire::text(wire::kSpeakClose));
        Q_EMIT speakReceived(decipherInStage(inner), true);
        m_faults.reportStage(QStringLiteral("NEW SPK "));
    }
    if (data.startsWith(wire::text(wire::kMessageOpen))) {
        const QString inner = getBetween(data, wire::text(wire::kMessageOpen), wire::text(wire::kMessageClose));
        data = stripThrough(data, wire::text(wire::kMessageClose));
        takeRecordLine(decipherInStage(inner));
        m_faults.reportStage(QStringLiteral("NEW MSG "));
    }
    if (data.startsWith(wire::text(wire::words(wire::Numbered::Space).open))) {
        readPosition(getBetween(data, wire::text(wire::words(wire::Numbered::Space).open), wire::text(wire::words(wire::Numbered::Space).close)), n);
        data = stripThrough(data, wire::text(wire::words(wire::Numbered::Space).close));
        m_pane->space(n);
    }
    while (data.startsWith(wire::text(wire::kTab))) {
        pane.append(QStringLiteral("\t"));
        pane.caretToEnd();
        data = data.mid(4);
    }
    if (data.startsWith(wire::text(wire::kFormatOpen))) {
        // Through the first "^>"; without one, only the caret goes.
        const qsizetype p = data.indexOf(wire::text(wire::kFormatClose));
        const qsizetype through = p < 0 ? 1 : p + 2;
        const QString format = data.left(through);
        data = data.mid(through);
        if (m_session.IsConnected())
            m_session.RemoteResponded = true;
        Q_EMIT formatReceived(format);
    }
    if (data == wire::text(wire::kShutDown)) {
        remoteShutDown();
        data.clear();
    }
    return data;
}

void Receiver::cFinishCheck(const QString& text)
{
    TextPane& pane = m_model.txtClient(m_session.sIdx);
    pane.append(text);
    pane.caretToEnd();
    refreshLengths();
}

void Receiver::refreshLengths()
{
    m_model.stStatusbar.setText(
        3, m_lengthsText.of(m_model.txtServer.length(), m_model.txtClient(m_session.sIdx).length()));
}

// --- repair and its answer ------------------------------------------------------

void Receiver::answerRefresh()
{
    resendWholeText();
    refreshAnswered = true;
}

void Receiver::resendWholeText()
{
    // This covers any resend our typing side had planned.
    Q_EMIT refreshAnswerStarts();
    m_cipher.sendKeyForRefresh(keySent());
    m_sender.sendRaw(wire::text(wire::kClear));
    Q_EMIT refreshAnswerNeedsSettings();
    m_sender.xSendData(wire::text(wire::kPasteOpen) + m_model.txtServer.text() + wire::text(wire::kPasteClose));
    m_model.txtClient(m_session.sIdx).caretToEnd();
    m_session.PasteInProgress = false;
    m_ctx.cursor().setNormal();
}

// --- remote shut-down ------------------------------------------------------------

void Receiver::remoteShutDown()
{
    m_session.RemoteResponded = false;
    m_model.controls.setEnabled(Control::mnuSave, true);
    Q_EMIT playRing(QStringLiteral("Ring2"));
    m_session.endedNow();

    TextPane& pane = m_model.txtClient(m_session.sIdx);
    pane.append(kCrLf + QStringLiteral("[  ") + m_ctx.translate(QStringLiteral("Closed")) +
                QStringLiteral("  ]"));
    pane.caretToEnd();

    m_model.stStatusbar.setText(2, QStringLiteral("Disconecting..."));
    m_model.setCaption(m_ctx.VersionString.isEmpty() ? MainModel::kTitle : m_ctx.VersionString);

    pane.setEnabled(false);
    m_connection.closeAfterPeerShutDown();
    m_model.controls.setEnabled(Control::mnuDraw, true);
}

// --- keys, records, deciphering ------------------------------------------------------

QString Receiver::decipher(const QString& inner) const
{
    return m_cipher.decipher(inner);
}

QString Receiver::decipherInStage(const QString& inner)
{
    QString error;
    const QString plain = m_cipher.decipher(inner, &error);
    if (!error.isEmpty())
        m_faults.raise(fault::kInvalidCall, error);
    return plain;
}

QString Receiver::remoteName() const
{
    if (!m_session.PeerHostName.isEmpty())
        return m_session.PeerHostName;
    Winsock& ws = m_session.winsock(m_session.sIdx);
    if (!ws.RemoteHost().isEmpty())
        return ws.RemoteHost();
    return ws.RemoteHostIP();
}

void Receiver::takeRecordLine(const QString& line)
{
    m_model.txtTextMsg.append(remoteName().toUpper() + QLatin1Char(' ') +
                        m_ctx.clock().timeOfDay().toString(QStringLiteral("h:mm:ss AP")) +
                        QStringLiteral(": ") + line + kCrLf);
}

// --- file messages ---------------------------------------------------------------------

QString Receiver::consumeFileMessage(const QString& data)
{
    const QByteArray bytes = toCp1252(data);
    const std::optional<qsizetype> length = wire::fileMessageLength(bytes);
    return length ? data.mid(*length) : data;
}

}  // namespace vonnel
