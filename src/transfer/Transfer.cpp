#include "transfer/Transfer.h"

#include "core/Cp1252.h"
#include "core/IniStore.h"
#include "core/Logs.h"
#include "platform/Desktop.h"
#include "platform/Prompter.h"
#include "connection/Session.h"
#include "core/CopyContext.h"
#include "core/Sender.h"
#include "core/MainModel.h"
#include "core/Views.h"
#include "transfer/TransferText.h"
#include "wire/Receiver.h"
#include "core/WireCodec.h"

#include <cstring>

namespace vonnel {

Transfer::Transfer(CopyContext& ctx, MainModel& model, Session& session, Sender& sender,
                   Receiver& receiver, QObject* parent)
    : QObject(parent),
      m_ctx(ctx),
      m_model(model),
      m_session(session),
      m_sender(sender),
      m_receiver(receiver),
      m_progress(this)
{
    connect(&ctx, &CopyContext::closeOpenFiles, this, &Transfer::closeAllFiles);
    // Transfers belong to the session that started them: whichever way it
    // ends, and when a new one begins, nothing of them is left.
    connect(&m_session.winsock(0), &Winsock::stateChanged, this, [this](int, int state) {
        const bool nowConnected = state == Winsock::sckConnected;
        if (nowConnected != m_sessionUp || nowConnected)
            endSession();
        m_sessionUp = nowConnected;
    });
}

Transfer::~Transfer() = default;

bool Transfer::drawVisible() const
{
    if (boardShown)
        return boardShown();
    return m_ctx.views().isVisible(Form::frmDraw);
}

bool Transfer::connected() const
{
    return m_session.IsConnected();
}

QString Transfer::lookup(const char* text) const
{
    return m_ctx.translate(QLatin1String(text), QLatin1String(text));
}

QString Transfer::lookup(const char* key, const char* fallback) const
{
    return m_ctx.translate(QLatin1String(key), QLatin1String(fallback));
}

void Transfer::closeAllFiles()
{
    m_sendFile.close();
    m_picSendFile.close();
    m_recvFile.close();
    m_picRecvFile.close();
}

bool Transfer::anyUnderWay() const
{
    return m_offered || m_picOffered || m_sending || m_picSending || m_receiving ||
           m_picReceiving;
}

void Transfer::endSession()
{
    const bool wasReceiving = m_receiving;
    const bool wasSending = m_sending;
    const bool onHold = m_session.TransferOnHold;
    const bool anything = anyUnderWay() || onHold;
    // A part received is remembered, so that the peer's next offer of the
    // same file can go on from its end.
    keepPartial();
    m_resumeStep = ResumeStep::None;
    m_resumeHead.clear();
    closeAllFiles();
    clearHeldFrame();
    m_offered = m_picOffered = false;
    m_sending = m_picSending = m_receiving = m_picReceiving = false;
    m_frameOut = false;
    m_lastAck = 0;
    m_recvLimit = -1;
    m_ringRefused = false;
    sendFilePath.clear();
    recvFilePath.clear();
    sendFileSize = sendFileSent = picSendSent = 0;
    recvFileSize = picRecvSize = 0;
    transferPaused = transferCancelled = picCancelled = false;
    holdPosition = 0;
    holdProgressText.clear();
    holdDirection.clear();
    holdPercent = 0;
    holdFileName.clear();
    holdFileSize.clear();
    if (onHold) {
        m_session.TransferOnHold = false;
        m_model.controls.setCaption(Control::mnuSendFile, lookup("Send File", "Send &File"));
    }
    if (anything && !m_ctx.ProgramExiting) {
        m_model.controls.setEnabled(Control::mnuSendFile, true);
        m_model.controls.setEnabled(Control::mnuDraw, drawMenuAllowed);
    }
    if ((!wasReceiving && !wasSending) || !m_progress.loaded)
        return;
    ProgressModel& w = m_progress;
    w.lblProgress.visible = true;
    w.lblProgress.color = QColor(0, 0, 255);
    w.lblProgress.text = wasReceiving
                             ? lookup("Connection closed: the partial file is kept")
                             : lookup("Connection closed: the file was not sent whole");
    w.cmdPause.enabled = false;
    const QString tail = lookup(" (Cancelled)");
    if (!w.caption->contains(tail))
        w.caption += tail;
}

void Transfer::strayFrame(qsizetype bytes)
{
    if (m_ringRefused)
        return;
    // Nothing of this session is being received: the frame is dropped
    // whole, with no file touched.
    m_ctx.logs().failure(QStringLiteral("SendFileCheck-Stray Frame"),
                         QString::number(bytes) + QStringLiteral(" bytes dropped"));
}

void Transfer::clearHeldFrame()
{
    m_joiner.clear();
}

// --- the dispatcher ------------------------------------------------------------------

QString Transfer::protocolFault(const QString& description, const QString& message,
                                const QString& data)
{
    const QString text = QStringLiteral("File Receiving - cSendFileCheck Protocol Error\r") +
                         description + QStringLiteral("\rProtocol: ") + message +
                         QStringLiteral("\rData causing problem:  ") + data.left(100);
    m_ctx.logs().failure(QStringLiteral("cSendFileCheck"), description);
    m_model.stStatusbar.setText(1, text);
    m_ctx.prompter().msgBox(text, MsgStyle::Exclamation);
    return QString();
}

QString Transfer::acceptOffer(QString& data, qsizetype headLength, const QString& head,
                              QString& text)
{
    const qsizetype p = data.indexOf(wire::text(wire::kRequestEnd), headLength);
    if (p >= 0) {
        text = data.mid(headLength, p - headLength);
        return data.mid(p + 4);
    }
    // No terminator: said, and taken as if it stood behind the text less
    // its last character.
    m_ctx.prompter().msgBox(QStringLiteral("Protocol Error: ") + head + kCrLf +
                                QStringLiteral("Data: ") + data.mid(headLength),
                            MsgStyle::Exclamation);
    text = data.mid(headLength);
    text.chop(1);
    return data.mid(3);
}

QString Transfer::cSendFileCheck(QString& data, QByteArray& bytes)
{
    using wire::FileMessage;
    // The longest file word decides; what follows it plays no part.
    const std::optional<FileMessage> message = wire::fileMessageAt(QStringView(data));
    if (!message)
        return data;
    const QLatin1StringView word = wire::text(wire::word(*message));
    switch (*message) {
    case FileMessage::SendingRequest: {
        QString offer;
        const QString rest = acceptOffer(data, word.size(), word, offer);
        getSaveFileName(offer);
        return rest;
    }
    case FileMessage::RequestOk: {
        QString path;
        const QString rest = acceptOffer(data, word.size(), word, path);
        if (drawVisible()) {
            if (m_picOffered)
                beginSendFile(path);
        } else if (m_offered &&
                   path.contains(fromCp1252(toCp1252(wirePath(sendFilePath))))) {
            // Only an offer that is out is started: a late or unasked
            // acceptance never sends a file.
            beginSendFile(sendFilePath);
        }
        return rest;
    }
    case FileMessage::RequestRejected: {
        const QString rest = data.mid(word.size());
        if (!m_offered && !m_picOffered)
            return rest;  // nothing was offered: nothing to say
        m_offered = m_picOffered = false;
        m_ctx.prompter().msgBox(lookup("File sending request Rejected"), MsgStyle::Exclamation,
                            lookup("Sending Request Response"));
        m_model.controls.setEnabled(Control::mnuSendFile, true);
        m_model.controls.setEnabled(Control::mnuDraw, drawMenuAllowed);
        return rest;
    }
    case FileMessage::SendingCancel: {
        if (!anyUnderWay())
            return QString();
        updateProgress(QStringLiteral("File sending cancelled"));
        m_model.controls.setEnabled(Control::mnuSendFile, true);
        m_model.controls.setEnabled(Control::mnuDraw, drawMenuAllowed);
        return QString();
    }
    case FileMessage::PauseSending: {
        const QString rest = data.mid(word.size());
        if (!fileUnderWay())
            return rest;
        transferPaused = true;
        updateProgress(QStringLiteral("Pause"));
        return rest;
    }
    case FileMessage::ContinueSending: {
        const QString rest = data.mid(word.size());
        if (!fileUnderWay())
            return rest;
        transferPaused = false;
        updateProgress(QStringLiteral("Continue Send"));
        return rest;
    }
    case FileMessage::ContinueReceiving: {
        const QString rest = data.mid(word.size());
        if (!fileUnderWay())
            return rest;
        transferPaused = false;
        updateProgress(QStringLiteral("Continue Receive"));
        return rest;
    }
    case FileMessage::Data: {
        // The frame starts where the rest of the read starts; the first
        // "<*> " of the read is only taken when the two disagree, which a
        // "<*> " inside text ahead of the frame would otherwise cause.
        qsizetype s = bytes.size() - data.size();
        if (s < 0 || s > bytes.size() - kFrameHead.size() ||
            std::memcmp(bytes.constData() + s, kFrameHead.constData(), size_t(kFrameHead.size())) != 0)
            s = bytes.indexOf(kFrameHead);
        data.clear();
        return s < 0 ? QString() : dataFrame(bytes, s);
    }
    case FileMessage::DataReceived: {
        return acknowledgement(data);
    }
    case FileMessage::OpenPauseWindow: {
        const QString rest = data.mid(word.size());
        if (fileUnderWay() && transferPaused)
            restorePauseWindow();
        return rest;
    }
    case FileMessage::Unload: {
        const QString rest = data.mid(word.size());
        if (!fileUnderWay())
            return rest;
        pauseSendFile(true);
        savePauseSetting(m_progress.lblProgress.text, m_progress.txtSendRec, m_progress.prbProgress,
                         m_progress.lblFilename, m_progress.lblFilesize);
        unloadProgress();
        return rest;
    }
    case FileMessage::Error: {
        if (!m_receiving && !m_picReceiving)
            return QString();
        updateProgress(QStringLiteral("File sending fails"));
        Q_EMIT beep();
        m_progress.cmdPause.enabled = false;
        return QString();
    }
    }
    return data;
}

QString Transfer::acknowledgement(QString& data)
{
    const qsizetype p = data.indexOf(QLatin1String("%%"), 16);
    const QString rest = p < 0 ? data.mid(16) : data.mid(p + 2);
    if (transferCancelled || picCancelled)
        return rest;
    // Only a send of this session takes acknowledgements.
    if (!(drawVisible() ? m_picSending : m_sending))
        return p > 16 ? rest : data.mid(16);
    const QStringView number = p < 0 ? QStringView() : QStringView(data).mid(16, p - 16);
    if (number.isEmpty()) {
        // The bare form: go on from the stored position. A closing "%%"
        // right behind it is the next message's opening.
        const QString bareRest = data.mid(16);
        goOn();
        return bareRest;
    }
    const std::optional<qint64> count = parseAckCount(number);
    if (!count)
        return protocolFault(QStringLiteral("Type mismatch"), wire::text(wire::word(wire::FileMessage::DataReceived)), data);
    m_frameOut = false;
    if (drawVisible() || !transferPaused)
        ContSendFile(*count);
    else
        sendFileSent = *count;  // held, but the position follows the receiver's file
    return rest;
}

}  // namespace vonnel
