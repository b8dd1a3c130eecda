#include "transfer/Transfer.h"

#include "core/IniStore.h"
#include "core/Logs.h"
#include "platform/Desktop.h"
#include "platform/Prompter.h"
#include "connection/Session.h"
#include "core/CopyContext.h"
#include "platform/Clock.h"
#include "core/Sender.h"
#include "core/MainModel.h"
#include "core/Views.h"
#include "transfer/TransferText.h"
#include "wire/Receiver.h"
#include "core/WireCodec.h"

// The outcome of a transfer and the progress window's buttons: pause,
// continue, hold, cancel.

namespace vonnel {

void Transfer::frameCaption(const char* direction)
{
    // Put back as every frame would put it back, unless this very caption
    // was put there a moment ago and nothing has changed it since.
    const qint64 now = m_ctx.clock().steadyMs();
    if (m_frameCaptionAtMs >= 0 && now >= m_frameCaptionAtMs &&
        now - m_frameCaptionAtMs < kFrameCaptionEveryMs && m_progress.caption == m_frameCaption &&
        m_progress.txtSendRec == QLatin1String(direction))
        return;
    m_frameCaptionAtMs = now;
    m_frameCaption = lookup(direction);
    m_progress.caption = m_frameCaption;
    m_progress.txtSendRec = QString::fromLatin1(direction);
}

void Transfer::updateProgress(const QString& what)
{
    ProgressModel& w = m_progress;
    if (what == QLatin1String("File receiving success")) {
        w.lblProgress.text = QStringLiteral("100%");
        w.prbProgress = 100;
        setCancelButton("Finish");
        (drawVisible() ? m_picReceiving : m_receiving) = false;
        m_receivedPath = recvFilePath;
        Receiver& r = m_receiver;
        if (likeAnywhere(recvFilePath, r.ringWanted)) {
            unloadProgress();
            closeAllFiles();
            m_ctx.requestRing(m_ctx.appFile(r.ringWanted));
            r.ringWanted = QStringLiteral("n/a");
        } else {
            m_ctx.requestRing(m_ctx.setting(QStringLiteral("Ring5")));
        }
        w.lblProgress.color = Qt::black;
        w.lblProgress.visible = false;
        setPauseButton("Open");
        w.cmdPause.enabled = true;
        if (w.chkCloseProgress && w.loaded)
            unloadProgress();
        if (!drawVisible()) {
            transferPaused = false;
            m_recvFile.close();
        } else {
            m_picRecvFile.close();
        }
        m_session.TransferOnHold = false;
    } else if (what == QLatin1String("Save Error")) {
        w.lblProgress.text = QStringLiteral("100%");
        w.prbProgress = 100;
        setCancelButton("Error");
        m_receiving = false;
        m_recvFile.close();
        m_session.TransferOnHold = false;
    } else if (what == QLatin1String("File sending cancelled")) {
        w.lblProgress.color = QColor(0, 0, 255);
        w.lblProgress.visible = true;
        w.lblProgress.text = lookup("File sending/receiving cancelled");
        const bool receiving = w.txtSendRec == QLatin1String("Receiving File");
        if (drawVisible()) {
            picCancelled = true;
            (receiving ? m_picRecvFile : m_picSendFile).close();
            (receiving ? m_picReceiving : m_picSending) = false;
        } else {
            transferCancelled = true;
            (receiving ? m_recvFile : m_sendFile).close();
            (receiving ? m_receiving : m_sending) = false;
            transferPaused = false;
        }
        m_offered = false;
        m_frameOut = false;
        m_session.TransferOnHold = false;
        const QString tail = lookup(" (Cancelled)");
        if (!w.caption->contains(tail))
            w.caption += tail;
        w.lblProgress.color = Qt::black;
        // Nothing is left to cancel: the button closes the window, and the
        // receiving side is told what became of the part it has.
        setCancelButton("Close");
        if (receiving && !drawVisible())
            w.lblProgress.text += QStringLiteral("\n") + lookup("The part received is kept in") +
                                  QLatin1Char(' ') + recvFilePath;
        Q_EMIT beep();
        w.cmdPause.enabled = false;
    } else if (what == QLatin1String("Pause")) {
        w.lblProgress.visible = true;
        w.caption = lookup("Pause") + QStringLiteral(" - ") + m_ctx.translate(w.txtSendRec, w.txtSendRec);
        w.lblProgress.text = QString::number(w.prbProgress) + QLatin1Char('%');
        // The alarm at this end: the bell twice in a row.
        const QString bell = m_ctx.setting(QStringLiteral("Ring5"));
        m_ctx.requestRing(bell);
        m_ctx.requestRing(bell);
        setPauseButton("Continue");
        w.cmdPause.enabled = false;
        w.cmdPause.toolTip = lookup("You have no right to contine to send/receive file");
        setCancelButton("Unload");
        if (w.minimized) {
            m_model.setVisible(true);
            m_ctx.views().raiseMain();
        }
    } else if (what == QLatin1String("Continue Send")) {
        windowBack();
        w.cmdPause.enabled = true;
        goOn(holdPosition);
    } else if (what == QLatin1String("Continue Receive")) {
        windowBack();
        w.cmdPause.enabled = true;
        // While a resume compares the bytes before the part's end, the next
        // frame must start where the last count put it, not where a sender
        // that dropped that count while paused would go on from.
        if (m_resumeStep == ResumeStep::Overlap)
            sendCount(m_resumeFrom);
        else
            m_sender.xSendData(wire::text(wire::word(wire::FileMessage::DataReceived)));
    }
}

// --- pause, hold, cancel ------------------------------------------------------------------

void Transfer::cancelSendFiles()
{
    if (drawVisible())
        picCancelled = true;
    else
        transferCancelled = true;
}

void Transfer::savePauseSetting(const QString& progressText, const QString& direction, int percent,
                                const QString& fileName, const QString& fileSize)
{
    holdProgressText = progressText;
    holdDirection = direction;
    holdPercent = percent;
    holdFileName = fileName;
    holdFileSize = fileSize;
    m_session.TransferOnHold = true;
    if (direction.contains(QLatin1String("Receiving")))
        m_model.controls.setCaption(Control::mnuSendFile, lookup("Receive File", "&Receive File"));
    else
        m_model.controls.setCaption(Control::mnuSendFile, lookup("Send File", "Send &File"));
}

void Transfer::restorePauseWindow()
{
    loadProgress();
    ProgressModel& w = m_progress;
    w.lblProgress.text = holdProgressText;
    w.lblProgress.visible = true;
    w.txtSendRec = holdDirection;
    w.prbProgress = holdPercent;
    w.lblFilename = holdFileName;
    w.lblFilesize = holdFileSize;
    w.caption = lookup("Pause") + QStringLiteral(" - ") + m_ctx.translate(holdDirection, holdDirection);
    setPauseButton("Continue");
    w.cmdPause.toolTip = lookup("Continue sending/receiving file");
    setCancelButton("Unload");
    w.cmdCancel.toolTip = lookup("Back to chat and continue later");
    m_session.TransferOnHold = false;
    m_model.controls.setCaption(Control::mnuSendFile, lookup("Send File", "Send &File"));
    showProgress();
}

// --- the progress window ------------------------------------------------------------------

void Transfer::setPauseButton(const char* tag)
{
    m_progress.cmdPause.tag = QLatin1String(tag);
    m_progress.cmdPause.caption = lookup(tag);
}

void Transfer::setCancelButton(const char* tag)
{
    m_progress.cmdCancel.tag = QLatin1String(tag);
    m_progress.cmdCancel.caption = lookup(tag);
}

void Transfer::windowBack()
{
    ProgressModel& w = m_progress;
    setPauseButton("Pause");
    setCancelButton("Cancel");
    w.cmdCancel.toolTip = lookup("Cancel this sending/receiving");
    w.lblProgress.color = Qt::black;
    w.lblProgress.visible = false;
    w.caption = m_ctx.translate(w.txtSendRec, w.txtSendRec);
}

void Transfer::loadProgress()
{
    ProgressModel& w = m_progress;
    if (w.loaded)
        return;
    w.reset();
    setPauseButton("Pause");
    setCancelButton("Cancel");
    w.cmdPause.enabled = bytesPerSend <= 3200;
    w.chkCloseProgress = m_ctx.settingFlag(QStringLiteral("Close Progress"));
    w.loaded = true;
}

void Transfer::showProgress()
{
    loadProgress();
    // The window's activation: no second transfer, and the board stays open.
    m_model.controls.setEnabled(Control::mnuSendFile, false);
    Q_EMIT closeDrawEnabled(false);
}

void Transfer::unloadProgress()
{
    ProgressModel& w = m_progress;
    if (!w.loaded)
        return;
    if (transferMode == QLatin1String("Vonnel") && transferPaused) {
        savePauseSetting(w.lblProgress.text, w.txtSendRec, w.prbProgress, w.lblFilename,
                         w.lblFilesize);
        holdPosition = sendFileSent;
    }
    if (!m_ctx.ProgramExiting) {
        m_model.controls.setEnabled(Control::mnuSendFile, true);
        m_model.controls.setEnabled(Control::mnuDraw, drawMenuAllowed);
        Q_EMIT closeDrawEnabled(true);
    }
    w.loaded = false;
}

void Transfer::cmdPause_Click()
{
    ProgressModel& w = m_progress;
    if (!w.loaded || !w.cmdPause.enabled || !w.cmdPause.visible)
        return;
    const QString tag = w.cmdPause.tag;
    if (tag == QLatin1String("Pause")) {
        if (!connected())
            return;
        m_sender.xSendData(wire::text(wire::word(wire::FileMessage::PauseSending)));
        pauseSendFile(true);
        setPauseButton("Continue");
        w.cmdPause.toolTip = lookup("Continue sending/receiving file");
        setCancelButton("Unload");
        w.cmdCancel.toolTip = lookup("Back to chat and continue later");
        w.lblProgress.visible = true;
        w.lblProgress.text = QString::number(w.prbProgress) + QLatin1Char('%');
        w.caption = lookup("Pause") + QStringLiteral(" - ") + m_ctx.translate(w.txtSendRec, w.txtSendRec);
    } else if (tag == QLatin1String("Continue")) {
        pauseSendFile(false);
        // The message names what the peer is to do.
        if (w.txtSendRec->contains(QLatin1String("Sending")))
            m_sender.xSendData(wire::text(wire::word(wire::FileMessage::ContinueReceiving)));
        else
            m_sender.xSendData(wire::text(wire::word(wire::FileMessage::ContinueSending)));
        windowBack();
    } else if (tag == QLatin1String("Open")) {
        m_ctx.desktop().openFile(m_receivedPath);
    }
}

void Transfer::cmdCancel_Click()
{
    ProgressModel& w = m_progress;
    if (!w.loaded)
        return;
    const QString tag = w.cmdCancel.tag;
    if (tag == QLatin1String("Unload") && connected()) {
        m_sender.xSendData(wire::text(wire::word(wire::FileMessage::Unload)));
        pauseSendFile(true);
        savePauseSetting(w.lblProgress.text, w.txtSendRec, w.prbProgress, w.lblFilename,
                         w.lblFilesize);
        unloadProgress();
    } else if (tag == QLatin1String("Cancel") && connected()) {
        m_sender.xSendData(wire::text(wire::word(wire::FileMessage::SendingCancel)));
        cancelSendFiles();
        m_session.idleDelayFor(0.2);
        updateProgress(QStringLiteral("File sending cancelled"));
        unloadProgress();
    } else {
        unloadProgress();
    }
}

void Transfer::chkCloseProgress_Click(bool checked)
{
    m_progress.chkCloseProgress = checked;
    m_ctx.writeSetting(QStringLiteral("Close Progress"), checked ? QStringLiteral("1")
                                                                 : QStringLiteral("0"));
}

}  // namespace vonnel
