#include "transfer/Transfer.h"

#include "connection/Session.h"
#include "core/CopyContext.h"
#include "core/Logs.h"
#include "platform/Prompter.h"
#include "transfer/TransferText.h"
#include "wire/Receiver.h"

#include <QFile>
#include <QTimer>

// Going on with a receive that a broken session left half way. Nothing of
// it is on the wire: the sender offers the file as always and sends its
// first frame; we take the part's head from that frame, and acknowledge
// the part's length, which the sender takes as its next position.

namespace vonnel {

namespace {

// Whether the file holds these bytes at this position.
bool holds(const QString& path, qint64 at, const QByteArray& bytes)
{
    if (bytes.isEmpty())
        return true;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly) || !f.seek(at))
        return false;
    return f.read(bytes.size()) == bytes;
}

}  // namespace

void Transfer::keepPartial()
{
    if (!m_receiving || m_recvOffer.isEmpty() || !m_recvFile.isOpen() ||
        likeAnywhere(recvFilePath, m_receiver.ringWanted))
        return;
    // The part must end where a count can say it ends: a count the text
    // would round would put the sender beside the part's end.
    const qint64 n = m_recvFile.size();
    const qint64 exact = exactAckLength(n);
    if (exact < n)
        m_recvFile.resize(exact);
    m_recvFile.close();
    m_partials.keep(m_recvPeer, m_recvOffer, recvFileSize, recvFilePath);
}

Transfer::ResumeAnswer Transfer::askResume(const QString& name, const QString& offeredPath,
                                           qint64 size)
{
    const std::optional<PartialFile> kept = m_partials.match(m_recvPeer, offeredPath, size);
    if (!kept)
        return ResumeAnswer::Fresh;
    const QString text = lookup("Resume") + QLatin1Char(' ') + name + QLatin1Char(' ') +
                         lookup("from") + QLatin1Char(' ') + groupedNumber(kept->length) +
                         QLatin1Char(' ') + lookup("bytes?") + kCrLf + kCrLf +
                         lookup("Yes: go on with the part kept in") + QLatin1Char(' ') +
                         kept->path + kCrLf +
                         lookup("No: receive it again from the start") + kCrLf +
                         lookup("Cancel: refuse the file");
    const Answer a = m_ctx.prompter().msgBox(text, MsgStyle::YesNoCancel | MsgStyle::Question,
                                             lookup("File Receiving Request"));
    if (a == Answer::Cancel)
        return ResumeAnswer::Refuse;
    // Either way the record is done with: a resume that breaks again keeps
    // the part anew, and No saves a new file.
    m_partials.forget(kept->path);
    if (a != Answer::Yes)
        return ResumeAnswer::Fresh;
    recvFilePath = kept->path;
    m_lastResume = ResumeReport{};
    m_lastResume.keptLength = kept->length;
    return ResumeAnswer::Resume;
}

void Transfer::startResume()
{
    if (!m_receiving)
        return;  // the part could not be opened: said there
    const qint64 kept = m_recvFile.size();
    m_lastResume.keptLength = kept;
    m_resumeStep = ResumeStep::FirstFrame;
    m_resumeFrom = 0;
    m_resumeHead.clear();
    const int pct = percentOf(kept, recvFileSize);
    m_progress.lblProgress.text = QString::number(pct) + QLatin1Char('%');
    m_progress.prbProgress = pct;
}

QString Transfer::resumeFrame(QFile& target, const QByteArray& payload, qint64 expected,
                              const QString& rest)
{
    const qint64 kept = target.size();
    const QString path = target.fileName();
    if (m_resumeStep == ResumeStep::FirstFrame) {
        // The first frame is the head of the peer's file.
        m_resumeHead = payload;
        const qint64 k = qMin<qint64>(payload.size(), kept);
        if (!holds(path, 0, payload.left(k)))
            return peerFileChanged(target, expected, rest);
        m_lastResume.headCompared = k;
        if (payload.size() >= kept) {
            // The frame covers the whole part: only what lies beyond it is new.
            m_lastResume.askedFrom = payload.size();
            return resumeDone(target, payload.mid(kept), expected, rest);
        }
        // The peer is asked to go on half a frame before the part's end, so
        // that the bytes on both sides of the break are compared as well.
        qint64 from = exactAckLength(kept - payload.size() / 2);
        if (from <= 0 || from >= kept)
            from = kept;
        m_resumeFrom = from;
        m_resumeStep = from < kept ? ResumeStep::Overlap : ResumeStep::None;
        m_lastResume.askedFrom = from;
        sendCount(from);
        return rest;
    }

    // A frame that starts inside the part, at the position last counted.
    const qint64 from = m_resumeFrom;
    const qint64 k = qMin<qint64>(payload.size(), kept - from);
    if (!holds(path, from, payload.left(k)))
        return peerFileChanged(target, expected, rest);
    m_lastResume.tailCompared += k;
    if (payload.size() > kept - from)
        return resumeDone(target, payload.mid(kept - from), expected, rest);
    // The frame ended inside the part (the peer's frames are small): on
    // from its end, or from the part's end when the count cannot say it.
    qint64 next = exactAckLength(from + k);
    if (next <= from)
        next = kept;
    m_resumeFrom = next;
    if (next >= kept)
        m_resumeStep = ResumeStep::None;
    sendCount(next);
    return rest;
}

QString Transfer::resumeDone(QFile& target, const QByteArray& beyond, qint64 expected,
                             const QString& rest)
{
    m_resumeStep = ResumeStep::None;
    if (target.write(beyond) != beyond.size()) {
        saveError(target);
        return rest;
    }
    return acknowledgeFrame(target, expected, false, rest);
}

QString Transfer::peerFileChanged(QFile& target, qint64 expected, const QString& rest)
{
    // The peer's file is not the one the part was taken from. The part is
    // dropped and the file taken again from the start: the first frame is
    // its head, and the sender goes on from the end of that.
    m_resumeStep = ResumeStep::None;
    m_lastResume.peerChanged = true;
    m_lastAck = 0;
    if (!target.resize(0) || target.write(m_resumeHead) != m_resumeHead.size()) {
        saveError(target);
        return rest;
    }
    const QString said =
        lookup("The file on the other side is not the one the part kept here came from:") +
        kCrLf + recvFilePath + kCrLf + lookup("It is received again from the start.");
    m_ctx.logs().failure(QStringLiteral("SendFileCheck-Resume"),
                         QStringLiteral("the peer's file changed: ") + recvFilePath);
    // Said once the frame is done with, not in the middle of it.
    QTimer::singleShot(0, this, [this, said] {
        m_ctx.prompter().msgBox(said, MsgStyle::Exclamation, lookup("File Receiving Request"));
    });
    return acknowledgeFrame(target, expected, false, rest);
}

}  // namespace vonnel
