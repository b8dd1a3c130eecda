#include "core/Cp1252.h"
#include "transfer/Transfer.h"

#include "core/IniStore.h"
#include "core/Logs.h"
#include "platform/Desktop.h"
#include "platform/Prompter.h"
#include "connection/Session.h"
#include "core/CopyContext.h"
#include "platform/Clock.h"
#include "platform/FileLength.h"
#include "core/Sender.h"
#include "core/MainModel.h"
#include "core/Views.h"
#include "transfer/TransferText.h"
#include "wire/Receiver.h"
#include "core/WireCodec.h"

#include <QCoreApplication>
#include <QFileInfo>

// The receiving side: the accept procedure, the target file, and each data
// frame written and acknowledged.

namespace vonnel {

QString Transfer::dataFrame(const QByteArray& bytes, qsizetype s)
{
    QByteArray frame = s == 0 ? bytes : bytes.mid(s);
    if (frame.endsWith(kFrameEnd))
        return receiveFrame(std::move(frame), QByteArray());
    const qsizetype end = findInnerFrameEnd(frame, 4);
    if (end >= 0) {
        // The frame ends inside the read: what came behind it (the sender's
        // typing, a message) goes back to the receive loop.
        const QByteArray rest = frame.mid(end + kFrameEnd.size());
        frame.truncate(end + kFrameEnd.size());
        return receiveFrame(std::move(frame), rest);
    }
    if (frame.size() <= FrameJoiner::kMaxHeldFrame && (m_receiving || m_picReceiving)) {
        // Torn: the rest of the frame is in the next read(s). Only a
        // transfer in progress has frames to wait for.
        m_joiner.hold(frame);
        return QString();
    }
    return receiveFrame(std::move(frame), QByteArray());
}

bool Transfer::joinArrival(const QByteArray& bytes, QList<QByteArray>& parts)
{
    return m_joiner.join(bytes, parts);
}

QString Transfer::receiveFrame(QByteArray frame, const QByteArray& restBytes)
{
    const QString rest = restBytes.isEmpty() ? QString() : fromCp1252(restBytes);
    // The payload: from behind the head to the end less the five bytes of
    // the end marker, whatever those five are.
    const qsizetype payloadLength = qMax<qsizetype>(0, frame.size() - 4 - 5);

    // The target and the flags are taken now: the copy below yields, and a
    // cancel may come in meanwhile.
    const bool board = drawVisible();
    if (!(board ? m_picReceiving : m_receiving)) {
        strayFrame(payloadLength);
        return rest;
    }
    QFile* target;
    qint64 expected;
    if (board) {
        if (picCancelled) {
            closeAllFiles();
            return rest;
        }
        target = &m_picRecvFile;
        expected = picRecvSize;
    } else {
        if (transferCancelled) {
            closeAllFiles();
            return rest;
        }
        target = &m_recvFile;
        expected = recvFileSize;
    }
    frameCaption("Receiving File");

    // The copy is where the window's buttons may act in the middle of a
    // frame. It yields to the event loop (socket events wait) at most every
    // few milliseconds: between frames the loop runs anyway.
    Q_EMIT copyingFrame(payloadLength);
    const qint64 nowMs = m_ctx.clock().steadyMs();
    if (m_lastYieldMs < 0 || nowMs - m_lastYieldMs >= kYieldEveryMs) {
        m_lastYieldMs = nowMs;
        QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    }
    if (m_ctx.ProgramExiting || m_ctx.unloading)
        return QString();

    if (!board && m_resumeStep != ResumeStep::None)
        return resumeFrame(*target, frame.mid(4, payloadLength), expected, rest);

    if (!board && m_recvLimit >= 0) {
        qint64 have = bufferedFileLength(*target);
        if (have < 0)
            have = target->size();
        if (have + payloadLength > m_recvLimit) {
            refuseRing(QFileInfo(recvFilePath).fileName(), have + payloadLength, m_recvLimit);
            return rest;
        }
    }

    const qint64 written =
        target->isOpen() ? target->write(frame.constData() + 4, payloadLength) : -1;
    if (written != payloadLength) {
        saveError(*target);
        return rest;
    }
    return acknowledgeFrame(*target, expected, board, rest);
}

QString Transfer::acknowledgeFrame(QFile& target, qint64 expected, bool board, const QString& rest)
{
    // A frame that comes while this transfer is paused was on its way when
    // the pause was pressed: its bytes are where the sender's position
    // already stands, so they are kept and acknowledged like any other (a
    // paused sender takes the count as its position and sends nothing).
    if (transferPaused)
        target.flush();  // a paused part is whole on disk
    // The length is asked of the file once a frame, and handed on: what
    // the file system holds and what waits in the write buffer.
    qint64 n = bufferedFileLength(target);
    if (n < 0)
        n = target.size();
    if (!board && transferPaused && n >= expected) {
        // The whole file is in: the pause has nothing left to hold, and
        // the sender must hear that before its last count.
        pauseSendFile(false);
        m_sender.xSendData(wire::text(wire::word(wire::FileMessage::ContinueSending)));
        windowBack();
    }
    if (n >= expected) {
        target.flush();  // on disk before the last count goes out
        m_progress.lblProgress.text = QStringLiteral("100%");
        m_progress.prbProgress = 100;
        m_progress.lblFinished = QLatin1Char('<') + QString::number(n) + QLatin1Char('>');
        m_progress.cmdPause.enabled = false;
        m_sender.xSendData(wire::text(wire::word(wire::FileMessage::DataReceived)) + QString::number(n) + QStringLiteral("%%"));
        if (n == expected)
            updateProgress(QStringLiteral("File receiving success"));
        else
            updateProgress(QStringLiteral("Save Error"));
    } else {
        const qint64 before = n;
        n = acknowledgedLength(target, n);
        if (n < before && n <= m_lastAck) {
            // Frames smaller than the rounding of the count at this length
            // could never move the transfer on.
            m_sender.xSendData(wire::text(wire::word(wire::FileMessage::SendingCancel)));
            updateProgress(QStringLiteral("File sending cancelled"));
            m_progress.lblProgress.text =
                lookup("The sending side's frames are too small for a file of this size");
            return rest;
        }
        const int pct = percentOf(n, expected);
        m_progress.lblProgress.text = QString::number(pct) + QLatin1Char('%');
        m_progress.prbProgress = pct;
        sendCount(n);
    }
    return rest;
}

void Transfer::sendCount(qint64 n)
{
    m_lastAck = n;
    m_sender.xSendData(wire::text(wire::word(wire::FileMessage::DataReceived)) + singleText(n) + QStringLiteral("%%"));
}

qint64 Transfer::acknowledgedLength(QFile& target, qint64 n)
{
    // The count travels in a form that keeps seven digits: the file is cut
    // back to a length the count carries exactly, and the sender sends the
    // cut bytes again from there.
    const qint64 exact = exactAckLength(n);
    if (exact < n && !target.resize(exact))
        return n;
    return exact;
}

void Transfer::saveError(const QFile& target)
{
    const QString text = target.isOpen() ? target.errorString() : QStringLiteral("Bad file name or number");
    const int number = target.isOpen() ? int(target.error()) : 52;
    const bool wasOpen = target.isOpen();
    const QString name = target.fileName();
    closeAllFiles();
    m_receiving = m_picReceiving = false;
    ++recvHandleCounter;
    m_sender.xSendData(wire::text(wire::word(wire::FileMessage::SendingCancel)));
    m_ctx.logs().failure(QStringLiteral("SendFileCheck-Save Error"),
                     text + QStringLiteral(" (") + QString::number(number) + QLatin1Char(')'));
    // The receive loop tells the user, as "File Fransfer " + number: the
    // peer has been told to stop, and the file holds what came before.
    m_receiver.faults().raise(wasOpen ? fault::kFileAccess : fault::kBadFile,
                                text + QStringLiteral(" (") + name + QLatin1Char(')'));
}

bool Transfer::chooseSavePath(const QString& name)
{
    FileRequest req;
    req.save = true;
    req.title = QStringLiteral("Save File As");
    // The peer's name is only a proposal, and only its last part.
    req.proposedName = proposedSaveName(name);
    req.folder = downloadFolder();
    const QString chosen = m_ctx.prompter().file(req);
    if (chosen.isEmpty()) {
        m_sender.xSendData(wire::text(wire::word(wire::FileMessage::RequestRejected)));
        return false;
    }
    recvFilePath = chosen;
    m_partials.forget(chosen);  // deleted below: nothing is left to go on with
    if (QFileInfo::exists(chosen)) {
        QFile::setPermissions(chosen, QFile::permissions(chosen) | QFileDevice::WriteOwner);
        QFile::remove(chosen);
    }
    return true;
}

void Transfer::getSaveFileName(QString offer)
{
    bool picture = false;
    if (offer.startsWith(QLatin1String("pic"))) {
        offer = offer.mid(3);
        picture = true;
    }
    const OfferName o = deriveOfferName(offer);
    bool resume = false;
    if (!o.size) {
        m_ctx.prompter().msgBox(QStringLiteral("File Receiving - getSaveFileName Error (Filename") +
                                o.name + QStringLiteral(")\rType mismatch"),
                            MsgStyle::Exclamation, MainModel::kTitle + QStringLiteral(" Error"));
        // Answered, so the peer does not wait for ever.
        m_sender.xSendData(wire::text(wire::word(wire::FileMessage::RequestRejected)));
        return;
    }
    if (picture) {
        // A picture is always the board's file; without the board there is
        // nothing to receive it into, and the file is left alone.
        if (!drawVisible())
            return;
        picRecvSize = *o.size;
        QFile::remove(m_ctx.appFile(QStringLiteral("captscr.jpg")));
    } else {
        recvFileSize = *o.size;
        m_ctx.wantNotice(NoticeKind::FileOffer, o.name + QStringLiteral("  ") + questionSizeText(*o.size));
        const QString question = lookup("Would you like to accept it?") + kCrLf + kCrLf +
                                 QStringLiteral("  ") + o.name + QStringLiteral("  ") +
                                 questionSizeText(*o.size);
        const Answer a = m_ctx.prompter().msgBox(question, MsgStyle::YesNo | MsgStyle::Information,
                                             lookup("File Receiving Request"));
        if (a != Answer::Yes) {
            m_sender.xSendData(wire::text(wire::word(wire::FileMessage::RequestRejected)));
            return;
        }
        m_recvLimit = -1;
        m_recvPeer = m_session.winsock(0).RemoteHostIP();
        m_recvOffer = offer.left(offer.lastIndexOf(QLatin1Char('>')));
        const ResumeAnswer r = askResume(o.name, m_recvOffer, *o.size);
        if (r == ResumeAnswer::Refuse) {
            m_sender.xSendData(wire::text(wire::word(wire::FileMessage::RequestRejected)));
            return;
        }
        resume = r == ResumeAnswer::Resume;
        if (!resume && !chooseSavePath(o.name))
            return;
    }
    m_model.controls.setEnabled(Control::mnuSendFile, false);
    m_sender.xSendData(wire::text(wire::word(wire::FileMessage::RequestOk)) + o.okPath + wire::text(wire::kRequestEnd));
    beginGetFile();
    if (resume)
        startResume();
}

bool Transfer::receiveRingFile(const QString& name, qint64 size, qint64 limit)
{
    if (!isBareFileName(name))
        return false;
    if (size > limit) {
        refuseRing(name, size, limit);
        return false;
    }
    m_recvLimit = limit;
    recvFilePath = m_ctx.appFile(name);
    recvFileSize = size;
    // A ring is never gone on with: it is small, and its name is ours.
    m_recvPeer.clear();
    m_recvOffer.clear();
    beginGetFile();
    return true;
}

void Transfer::refuseRing(const QString& name, qint64 length, qint64 limit)
{
    m_sender.xSendData(wire::text(wire::word(wire::FileMessage::SendingCancel)));
    if (m_receiving) {
        const QString path = recvFilePath;
        m_recvFile.close();
        m_receiving = false;
        transferCancelled = true;
        ++recvHandleCounter;
        unloadProgress();
        QFile::remove(path);
    }
    m_ringRefused = true;
    m_recvLimit = -1;
    m_model.controls.setEnabled(Control::mnuSendFile, true);
    m_ctx.logs().failure(QStringLiteral("Ring Fetch Refused"),
                         name + QStringLiteral(": ") + QString::number(length) +
                             QStringLiteral(" bytes, more than the sound size limit of ") +
                             QString::number(limit));
}

void Transfer::beginGetFile()
{
    m_ringRefused = false;
    transferCancelled = false;
    picCancelled = false;
    recvHandleCounter = nextHandle(recvHandleCounter, sendFileHandle, picSendHandle);
    const bool board = drawVisible();
    QString path;
    QFile* target;
    qint64 size;
    if (board) {
        picRecvHandle = recvHandleCounter;
        path = m_ctx.appFile(QStringLiteral("captscr.jpg"));
        target = &m_picRecvFile;
        size = picRecvSize;
    } else {
        if (recvFilePath.isEmpty())
            return;
        recvFileHandle = recvHandleCounter;
        path = recvFilePath;
        target = &m_recvFile;
        size = recvFileSize;
    }
    if (QFileInfo::exists(path))
        QFile::setPermissions(path, QFile::permissions(path) | QFileDevice::WriteOwner);
    clearHeldFrame();
    target->close();
    target->setFileName(path);
    // Appended to, never truncated here. Frames go through the file's write
    // buffer, a write to the disk every few frames rather than one each;
    // whatever reads the file on disk (the end, a pause, a part kept)
    // flushes or closes it first.
    if (!target->open(QIODevice::WriteOnly | QIODevice::Append)) {
        m_ctx.prompter().msgBox(QStringLiteral("File Receiving - beginGetFile Error (Filename") + path +
                                QStringLiteral(")\r") + target->errorString(),
                            MsgStyle::Exclamation);
        return;
    }
    (board ? m_picReceiving : m_receiving) = true;
    m_lastAck = 0;
    m_resumeStep = ResumeStep::None;
    loadProgress();
    m_progress.lblFilename = shortenedPath(path);
    m_progress.lblFilesize = labelSizeText(size);
    const bool quiet = board || likeAnywhere(recvFilePath, m_receiver.ringWanted);
    m_progress.cmdPause.visible = !quiet;
    m_progress.chkCloseProgressVisible = !quiet;
    if (quiet)
        m_progress.chkCloseProgress = true;
    m_progress.lblProgress.text = QStringLiteral("0%");
    m_progress.txtSendRec = QStringLiteral("Receiving File");
    m_progress.caption = m_ctx.translate(m_progress.txtSendRec, m_progress.txtSendRec);
    if (!m_session.NotReadySent)
        showProgress();
}

}  // namespace vonnel
