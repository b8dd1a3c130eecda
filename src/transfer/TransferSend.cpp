#include "transfer/Transfer.h"

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

#include <QFileInfo>
#include <QTimer>

// The sending side: the Send File command, the offer, and one frame per
// acknowledgement until the end of the file.

namespace vonnel {

namespace {

// Lang.txt key: the text below
const char* const kFileFilter =
    "All Files (*.*)|*.*|Text Files (*.txt)|*.txt|Documents (*.doc *.pdf)|*.doc;*.pdf|"
    "Picture Files (*.jpg)|*.jpg|MP3 Files (*.mp3)|*.mp3|"
    "Compressed Files (*.zip *.rar)|*.zip;*.rar";

}  // namespace

void Transfer::mnuSendFile_Click()
{
    readBytesPerSend();

    if (connected() && transferPaused) {
        // On hold: both sides bring their windows back.
        m_sender.xSendData(wire::text(wire::word(wire::FileMessage::OpenPauseWindow)));
        restorePauseWindow();
        return;
    }
    if (m_progress.loaded)
        unloadProgress();

    qint64 length = 0;
    for (;;) {
        FileRequest req;
        req.title = lookup("Open");
        req.filter = lookup(kFileFilter);
        const QString path = m_ctx.prompter().file(req);
        if (path.isEmpty())
            return;  // cancelled: nothing said
        sendFilePath = path;
        const QFileInfo info(path);
        if (info.exists() && info.isFile() && info.size() > 0) {
            length = info.size();
            if (!refusedForSize(length))
                break;
            continue;
        }
        m_ctx.prompter().msgBox(lookup("File does not exist or zero byte file."));
    }
    if (connected()) {
        m_model.stStatusbar.setText(2, lookup("Please wait for remote user's response..."));
        sendFileRequest(sendFilePath, length);
        m_offered = true;
        m_model.controls.setEnabled(Control::mnuSendFile, false);
        m_model.controls.setEnabled(Control::mnuDraw, false);
    }
}

bool Transfer::readBytesPerSend()
{
    bytesPerSend = m_ctx.settingInt(QStringLiteral("Byte Per Send"));
    if (bytesPerSend >= 1)
        return false;
    // 0, text that is no number, and a negative count alike.
    bytesPerSend = 2000;
    return true;
}

bool Transfer::refusedForSize(qint64 length)
{
    // The receiver's count reaches the sender as a 32-bit number with seven
    // significant digits. A larger file could not be acknowledged, and
    // frames smaller than the count's rounding would not move it on: such a
    // file is refused here rather than broken half-way.
    if (length > kMaxSendSize) {
        m_ctx.prompter().msgBox(
            lookup("This file is too large to send: the largest file that can be sent is") +
                QLatin1Char(' ') + groupedNumber(kMaxSendSize) + QStringLiteral(" bytes."),
            MsgStyle::Exclamation);
        return true;
    }
    const qint64 step = ackStep(length);
    if (step > bytesPerSend) {
        m_ctx.prompter().msgBox(lookup("Byte Per Send is too small for this file: a file of this size "
                                   "needs at least") +
                                QLatin1Char(' ') + groupedNumber(step) +
                                QStringLiteral(" bytes per send."),
                            MsgStyle::Exclamation);
        return true;
    }
    return false;
}

void Transfer::sendFileRequest(const QString& name, qint64 size)
{
    if (!connected())
        return;
    if (name.startsWith(QLatin1String("pic")))
        m_picOffered = true;
    m_sender.sendRaw(wire::text(wire::word(wire::FileMessage::SendingRequest)) + wirePath(name) + QLatin1Char('>') +
                  QString::number(size) + wire::text(wire::kRequestEnd));
}

void Transfer::goOn(qint64 position)
{
    // Stop and wait: while a frame is out, its count is what sends the
    // next one. Sending now as well would put two frames on the way, and
    // the count of the first would then send the second again. A receiver
    // that dropped the frame (one paused as the protocol first had it) never
    // answers it: after a while the stored position is taken after all.
    if (!m_frameOut) {
        ContSendFile(position);
        return;
    }
    const quint64 frame = m_framesSent;
    QTimer::singleShot(kUnansweredFrameMs, this, [this, frame, position] {
        if (m_frameOut && m_framesSent == frame && !transferPaused) {
            m_frameOut = false;
            ContSendFile(position);
        }
    });
}

void Transfer::sendFrame(const QByteArray& payload)
{
    // Head, payload and end marker, in this order with nothing between
    // them, handed to the socket as one buffer: the peer sees the same
    // bytes as from three writes, and the frame leaves in one piece rather
    // than as a lone head that the rest then waits behind.
    QByteArray frame;
    frame.reserve(kFrameHead.size() + payload.size() + kFrameEnd.size());
    frame += kFrameHead;
    frame += payload;
    frame += kFrameEnd;
    m_sender.sendRawBytes(frame);
    m_frameOut = true;
    ++m_framesSent;
    m_payloadSent += payload.size();
}

bool Transfer::readChunk(QFile& file, qint64 at, qint64 size, QByteArray& out)
{
    // Frames follow each other: the file usually stands where the next
    // chunk begins already.
    if (!file.isOpen() || (file.pos() != at && !file.seek(at)))
        return false;
    out = file.read(size);
    return out.size() == size;
}

void Transfer::beginSendFile(QString path)
{
    transferCancelled = false;
    picCancelled = false;
    holdPosition = 0;
    m_payloadSent = 0;
    fileHandleCounter = nextHandle(fileHandleCounter, recvFileHandle, picRecvHandle);
    const int counter = fileHandleCounter;
    const bool board = drawVisible();

    auto cannotOpen = [&](QFile& file, const char* which) {
        m_ctx.prompter().msgBox(QStringLiteral("Error opening ") + path + kCrLf + file.errorString() +
                                QLatin1String(which) + QString::number(counter),
                            MsgStyle::Exclamation);
        closeAllFiles();
        m_sender.sendRaw(wire::text(wire::word(wire::FileMessage::Error)));
    };

    if (board) {
        picSendSent = 0;
        picSendHandle = counter + 1;
        path = m_ctx.appFile(QStringLiteral("captscr.jpg"));
        m_picSendFile.close();
        m_picSendFile.setFileName(path);
        if (!m_picSendFile.open(QIODevice::ReadOnly)) {
            cannotOpen(m_picSendFile, ": begin send pic no. ");
            return;
        }
    } else {
        sendFileHandle = counter;
        sendFilePath = path;
        if (!QFileInfo(path).isFile()) {
            m_sender.sendRaw(wire::text(wire::word(wire::FileMessage::Error)));
            return;
        }
        m_sendFile.close();
        m_sendFile.setFileName(path);
        if (!m_sendFile.open(QIODevice::ReadOnly)) {
            cannotOpen(m_sendFile, ": begin send file no. ");
            return;
        }
    }
    (board ? m_picOffered : m_offered) = false;
    (board ? m_picSending : m_sending) = true;
    loadProgress();

    const bool picBranch = board && transferMode != QLatin1String("Vonnel");
    QFile& file = picBranch ? m_picSendFile : m_sendFile;
    const qint64 length = (board ? m_picSendFile : m_sendFile).size();
    m_sendLength = m_picSendLength = -1;
    const qint64 chunk = length >= bytesPerSend ? bytesPerSend : length;
    m_progress.lblProgress.text =
        length >= bytesPerSend ? QString::number(percentOf(chunk, length)) + QLatin1Char('%')
                                 : QStringLiteral("100%");
    QByteArray payload;
    if (!readChunk(file, 0, chunk, payload)) {
        m_ctx.prompter().msgBox(QStringLiteral("Error at the begining of file sending (File#") +
                                QString::number(counter) + QStringLiteral(")\r") + file.errorString(),
                            MsgStyle::Exclamation);
        return;
    }
    if (picBranch)
        picSendSent = chunk;
    else
        sendFileSent = chunk;
    m_model.stStatusbar.setPicture(1, StatePicture::picSend);
    sendFrame(payload);
    if (!board)
        sendFileSize = length;

    m_progress.lblFilesize = labelSizeText(length);
    m_progress.lblFilename = shortenedPath(path);
    const bool quiet = board || likeAnywhere(path, m_ctx.rings.Ring);
    m_progress.cmdPause.visible = !quiet;
    m_progress.chkCloseProgressVisible = !quiet;
    if (quiet)
        m_progress.chkCloseProgress = true;
    m_progress.caption = lookup("Sending File");
    m_progress.txtSendRec = QStringLiteral("Sending File");
    showProgress();
}

void Transfer::ContSendFile(qint64 position)
{
    const bool picBranch = drawVisible() && transferMode != QLatin1String("Vonnel");
    QString path;
    QFile* file;
    qint64* sent;
    // Only a send of this session goes on; a file whose send ended is never
    // opened again.
    if (!(picBranch ? m_picSending : m_sending))
        return;
    if (picBranch) {
        if (picCancelled)
            return;
        path = m_ctx.appFile(QStringLiteral("captscr.jpg"));
        file = &m_picSendFile;
        sent = &picSendSent;
    } else {
        if (transferPaused || transferCancelled)
            return;
        path = sendFilePath;
        file = &m_sendFile;
        sent = &sendFileSent;
    }
    qint64 p = *sent;
    if (position != 0)
        p = position;  // the receiver's file length is the only authority

    // A file that was closed behind the transfer is picked up again.
    qint64& knownLength = picBranch ? m_picSendLength : m_sendLength;
    if (!file->isOpen()) {
        file->setFileName(path);
        file->open(QIODevice::ReadOnly);
        knownLength = -1;
    }
    // The length is asked of the file system once per open, not per frame:
    // a file that grows meanwhile still goes out at the size offered, one
    // that shrinks fails its read below.
    if (file->isOpen() && knownLength < 0)
        knownLength = file->size();
    frameCaption("Sending File");

    const int handle = picBranch ? picSendHandle : sendFileHandle;
    const qint64 length = file->isOpen() ? knownLength : 0;
    if (!file->isOpen()) {
        m_model.stStatusbar.setText(1, QStringLiteral("File Sending - contSentFile Error (File#") +
                                     QString::number(handle) + QStringLiteral(")\r") +
                                     file->errorString() + QStringLiteral(": & attrMsg"));
        Q_EMIT drawSendingLabel(QStringLiteral("False"));
        *sent = p;
        return;
    }
    if (p < length) {
        const qint64 chunk = qMin<qint64>(bytesPerSend, length - p);
        m_model.stStatusbar.setPicture(1, StatePicture::picSend);
        QByteArray payload;
        if (!readChunk(*file, p, chunk, payload)) {
            m_model.stStatusbar.setText(1, QStringLiteral("File Sending - contSentFile Error (File#") +
                                         QString::number(handle) + QStringLiteral(")\r") +
                                         file->errorString() + QStringLiteral(": & attrMsg"));
            Q_EMIT drawSendingLabel(QStringLiteral("False"));
            *sent = p;
            return;
        }
        sendFrame(payload);
        p += chunk;
        const int pct = percentOf(p, length);
        m_progress.lblProgress.text = QString::number(pct) + QLatin1Char('%');
        m_progress.prbProgress = pct;
        *sent = p;
        return;
    }

    // The last acknowledgement came: the transfer has ended.
    (picBranch ? m_picSending : m_sending) = false;
    if (p > length) {
        // The receiver counts more bytes than the file has: its copy is
        // not this file, and the send is not reported as a success.
        setCancelButton("Error");
        m_progress.cmdPause.enabled = false;
        m_progress.lblProgress.visible = true;
        m_progress.lblProgress.text = lookup("Save Error");
        file->close();
        *sent = 0;
        return;
    }
    setCancelButton("Finish");
    m_progress.cmdPause.enabled = false;
    m_progress.lblProgress.text = QStringLiteral("100%");
    m_progress.prbProgress = 100;
    if (!likeAnywhere(path, ringSent)) {
        m_ctx.requestRing(m_ctx.setting(QStringLiteral("Ring5")));
    } else {
        unloadProgress();
        ringSent = QStringLiteral("n/a");
    }
    if (!drawVisible()) {
        if (m_progress.chkCloseProgress && m_progress.loaded)
            unloadProgress();
    } else {
        unloadProgress();
        m_model.stStatusbar.setPicture(1, StatePicture::picSend);
        m_sender.sendRaw(wire::text(wire::kBoardShowPic));
        Q_EMIT drawSendingLabel(QStringLiteral("False"));
    }
    m_session.TransferOnHold = false;
    p = 0;
    m_session.idleDelayFor(0.2);
    file->close();
    *sent = p;
}

}  // namespace vonnel
