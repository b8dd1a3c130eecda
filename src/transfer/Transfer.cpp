#include "transfer/Transfer.h"

#include "core/IniStore.h"
#include "core/Logs.h"
#include "platform/Desktop.h"
#include "platform/Prompter.h"
#include "shell/FrmMain.h"
#include "shell/Views.h"
#include "transfer/TransferText.h"
#include "wire/Receiver.h"

#include <QCoreApplication>
#include <cstring>
#include <QFileInfo>
#include <QRegularExpression>

namespace vonnel {

namespace {

const QString kCrLf = QStringLiteral("\r\n");
const QByteArray kFrameHead = QByteArrayLiteral("<*> ");
const QByteArray kFrameEnd = QByteArrayLiteral(" </*>");

const char* const kFileFilter =
    "All Files (*.*)|*.*|Text Files (*.txt)|*.txt|Documents (*.doc *.pdf)|*.doc;*.pdf|"
    "Picture Files (*.jpg)|*.jpg|MP3 Files (*.mp3)|*.mp3|"
    "Compressed Files (*.zip *.rar)|*.zip;*.rar";

// The openings the receive loop knows; a frame end with one of them behind
// it is where a frame ends inside a read.
const QList<QByteArray>& loopHeads()
{
    static const QList<QByteArray> heads = {
        "<KEY> ", "<Paste> ", "<e#", "<URL> ", "<SPKSET> ", "<SPK> ", "<MSG> ",
        "%%",     "&&",       "^",   "!ver.", "tt:=",       "<*> "};
    return heads;
}

// "*" + name + "*" as a pattern match: the name anywhere in the path, with
// the pattern's own wild cards in the name taking part. The path is taken
// in its wire form, so that "/" can only match inside a name, as on the
// system the rule was made for ("n/a" never matches a folder "n" and a
// file "a...").
bool likeAnywhere(const QString& path, const QString& name)
{
    const QString text = wirePath(path);
    if (name.isEmpty())
        return true;
    QString rx;
    for (QChar c : name) {
        if (c == QLatin1Char('*'))
            rx += QStringLiteral(".*");
        else if (c == QLatin1Char('?'))
            rx += QLatin1Char('.');
        else if (c == QLatin1Char('#'))
            rx += QStringLiteral("\\d");
        else
            rx += QRegularExpression::escape(QString(c));
    }
    return QRegularExpression(rx, QRegularExpression::CaseInsensitiveOption |
                                      QRegularExpression::DotMatchesEverythingOption)
        .match(text)
        .hasMatch();
}

// Int(a / b * 100) in single precision.
int percentOf(qint64 a, qint64 b)
{
    if (b <= 0)
        return 100;
    return int(float(a) / float(b) * 100.0f);
}

}  // namespace

qsizetype findInnerFrameEnd(const QByteArray& c, qsizetype from, qsizetype* undecided)
{
    if (undecided)
        *undecided = -1;
    qsizetype e = c.indexOf(kFrameEnd, qMax<qsizetype>(from, 4));
    while (e >= 0) {
        const qsizetype restAt = e + kFrameEnd.size();
        const qsizetype restLen = c.size() - restAt;
        if (restLen > 0) {
            bool possible = false;
            for (const QByteArray& h : loopHeads()) {
                const qsizetype n = qMin(restLen, h.size());
                if (std::memcmp(c.constData() + restAt, h.constData(), size_t(n)) != 0)
                    continue;
                if (n == h.size())
                    return e;
                possible = true;  // the rest so far is the start of a head
            }
            if (possible && undecided && *undecided < 0)
                *undecided = e;
        }
        e = c.indexOf(kFrameEnd, e + 1);
    }
    return -1;
}

Transfer::Transfer(FrmMain& frm) : QObject(&frm), m_frm(frm), m_progress(this)
{
    connect(&frm, &FrmMain::closeOpenFiles, this, &Transfer::closeAllFiles);
    // A frame held across reads belongs to one connection only.
    connect(&frm.winsock(0), &Winsock::stateChanged, this, [this](int, int state) {
        if (state != Winsock::sckConnected)
            clearHeldFrame();
    });
}

Transfer::~Transfer() = default;

bool Transfer::drawVisible() const
{
    return m_frm.views().isVisible(QStringLiteral("frmDraw"));
}

bool Transfer::connected() const
{
    return m_frm.IsConnected();
}

QString Transfer::lookup(const char* text) const
{
    return m_frm.translate(QLatin1String(text), QLatin1String(text));
}

QString Transfer::lookup(const char* key, const char* fallback) const
{
    return m_frm.translate(QLatin1String(key), QLatin1String(fallback));
}

void Transfer::closeAllFiles()
{
    m_sendFile.close();
    m_picSendFile.close();
    m_recvFile.close();
    m_picRecvFile.close();
}

void Transfer::clearHeldFrame()
{
    m_pendingFrame.clear();
    m_pendingScanned = 0;
}

// --- the dispatcher ------------------------------------------------------------------

QString Transfer::protocolFault(const QString& description, const QString& message,
                                const QString& data)
{
    const QString text = QStringLiteral("File Receiving - cSendFileCheck Protocol Error\r") +
                         description + QStringLiteral("\rProtocol: ") + message +
                         QStringLiteral("\rData causing problem:  ") + data.left(100);
    m_frm.logs().failure(QStringLiteral("cSendFileCheck"), description);
    m_frm.stStatusbar.setText(1, text);
    m_frm.prompter().msgBox(text, MsgStyle::Exclamation);
    return QString();
}

QString Transfer::acceptOffer(QString& data, qsizetype headLength, const QString& head,
                              QString& text)
{
    const qsizetype p = data.indexOf(QLatin1String("*fs*"), headLength);
    if (p >= 0) {
        text = data.mid(headLength, p - headLength);
        return data.mid(p + 4);
    }
    // No terminator: said, and taken as if it stood behind the text less
    // its last character.
    m_frm.prompter().msgBox(QStringLiteral("Protocol Error: ") + head + kCrLf +
                                QStringLiteral("Data: ") + data.mid(headLength),
                            MsgStyle::Exclamation);
    text = data.mid(headLength);
    text.chop(1);
    return data.mid(3);
}

QString Transfer::cSendFileCheck(QString& data, QByteArray& bytes)
{
    FrmMain& f = m_frm;
    if (data.startsWith(QLatin1String("%%File Sending Request%%"))) {
        QString offer;
        const QString rest = acceptOffer(data, 24, QStringLiteral("%%File Sending Request%%"), offer);
        getSaveFileName(offer);
        return rest;
    }
    if (data.startsWith(QLatin1String("%%FS Request OK%%"))) {
        QString path;
        const QString rest = acceptOffer(data, 17, QStringLiteral("%%FS Request OK%%"), path);
        if (drawVisible()) {
            beginSendFile(path);
        } else if (m_offered &&
                   path.contains(fromCp1252(toCp1252(wirePath(sendFilePath))))) {
            // Only an offer that is out is started: a late or unasked
            // acceptance never sends a file.
            beginSendFile(sendFilePath);
        }
        return rest;
    }
    if (data.startsWith(QLatin1String("%%FS Request Rejected%%"))) {
        const QString rest = data.mid(23);
        m_offered = false;
        f.prompter().msgBox(lookup("File sending request Rejected"), MsgStyle::Exclamation,
                            lookup("Sending Request Response"));
        f.controls.setEnabled(QStringLiteral("mnuSendFile"), true);
        f.controls.setEnabled(QStringLiteral("mnuDraw"), drawMenuAllowed);
        return rest;
    }
    if (data.startsWith(QLatin1String("%%Sending Cancel%%"))) {
        updateProgress(QStringLiteral("File sending cancelled"));
        f.controls.setEnabled(QStringLiteral("mnuSendFile"), true);
        f.controls.setEnabled(QStringLiteral("mnuDraw"), drawMenuAllowed);
        return QString();
    }
    if (data.startsWith(QLatin1String("%%Pause Sending%%"))) {
        const QString rest = data.mid(17);
        transferPaused = true;
        updateProgress(QStringLiteral("Pause"));
        return rest;
    }
    if (data.startsWith(QLatin1String("%%Continue Sending File%%"))) {
        const QString rest = data.mid(25);
        transferPaused = false;
        updateProgress(QStringLiteral("Continue Send"));
        return rest;
    }
    if (data.startsWith(QLatin1String("%%Continue Receiving File%%"))) {
        const QString rest = data.mid(27);
        transferPaused = false;
        updateProgress(QStringLiteral("Continue Receive"));
        return rest;
    }
    if (data.startsWith(QLatin1String("<*> "))) {
        // The frame starts where the rest of the read starts; the first
        // "<*> " of the read is only taken when the two disagree, which a
        // "<*> " inside text ahead of the frame would otherwise cause.
        qsizetype s = bytes.size() - data.size();
        if (s < 0 || s > bytes.size() - kFrameHead.size() ||
            std::memcmp(bytes.constData() + s, kFrameHead.constData(), 4) != 0)
            s = bytes.indexOf(kFrameHead);
        data.clear();
        return s < 0 ? QString() : dataFrame(bytes, s);
    }
    if (data.startsWith(QLatin1String("%%Data Received-")))
        return acknowledgement(data);
    if (data.startsWith(QLatin1String("%%Open Pause Window%%"))) {
        const QString rest = data.mid(21);
        restorePauseWindow();
        return rest;
    }
    if (data.startsWith(QLatin1String("%%Unload%%"))) {
        const QString rest = data.mid(10);
        pauseSendFile(true);
        savePauseSetting(m_progress.lblProgress.text, m_progress.txtSendRec, m_progress.prbProgress,
                         m_progress.lblFilename, m_progress.lblFilesize);
        unloadProgress();
        return rest;
    }
    if (data.startsWith(QLatin1String("%%Error%%"))) {
        updateProgress(QStringLiteral("File sending fails"));
        Q_EMIT beep();
        m_progress.cmdPause.enabled = false;
        m_progress.refresh();
        return QString();
    }
    return data;
}

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
    if (frame.size() <= kMaxHeldFrame && (m_recvFile.isOpen() || m_picRecvFile.isOpen())) {
        // Torn: the rest of the frame is in the next read(s). Only a
        // transfer in progress has frames to wait for.
        m_pendingFrame = frame;
        m_pendingScanned = 4;
        return QString();
    }
    return receiveFrame(std::move(frame), QByteArray());
}

bool Transfer::joinArrival(const QByteArray& bytes, QList<QByteArray>& parts)
{
    if (m_pendingFrame.isEmpty())
        return false;
    m_pendingFrame += bytes;
    if (m_pendingFrame.endsWith(kFrameEnd)) {
        parts << m_pendingFrame;
        clearHeldFrame();
        return true;
    }
    qsizetype undecided = -1;
    const qsizetype end = findInnerFrameEnd(m_pendingFrame, m_pendingScanned, &undecided);
    if (end >= 0) {
        const qsizetype at = end + kFrameEnd.size();
        parts << m_pendingFrame.left(at) << m_pendingFrame.mid(at);
        clearHeldFrame();
        return true;
    }
    if (m_pendingFrame.size() > kMaxHeldFrame) {
        parts << m_pendingFrame;
        clearHeldFrame();
        return true;
    }
    // Look again from the first end marker that is still open, or from the
    // last bytes that could begin one.
    m_pendingScanned = undecided >= 0 ? undecided
                                      : qMax<qsizetype>(4, m_pendingFrame.size() - kFrameEnd.size());
    return true;
}

QString Transfer::receiveFrame(QByteArray frame, const QByteArray& restBytes)
{
    FrmMain& f = m_frm;
    const QString rest = restBytes.isEmpty() ? QString() : fromCp1252(restBytes);
    m_progress.caption = lookup("Receiving File");
    m_progress.txtSendRec = QStringLiteral("Receiving File");

    // The target and the flags are taken now: the copy below yields, and a
    // cancel may come in meanwhile.
    QFile* target;
    qint64 expected;
    if (drawVisible()) {
        if (picCancelled) {
            closeAllFiles();
            return rest;
        }
        target = &m_picRecvFile;
        expected = picRecvSize;
    } else {
        if (transferPaused)
            return rest;
        if (transferCancelled) {
            closeAllFiles();
            return rest;
        }
        target = &m_recvFile;
        expected = recvFileSize;
    }

    // The payload: from behind the head to the end less the five bytes of
    // the end marker, whatever those five are.
    const qsizetype payloadLength = qMax<qsizetype>(0, frame.size() - 4 - 5);

    // The copy is where the window's buttons may act in the middle of a
    // frame. It yields to the event loop (socket events wait) at most every
    // few milliseconds: between frames the loop runs anyway.
    Q_EMIT copyingFrame(payloadLength);
    if (!m_sinceYield.isValid() || m_sinceYield.elapsed() >= kYieldEveryMs) {
        m_sinceYield.start();
        QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    }
    if (f.ProgramExiting || f.unloading)
        return QString();

    const qint64 written =
        target->isOpen() ? target->write(frame.constData() + 4, payloadLength) : -1;
    if (written != payloadLength) {
        saveError(*target);
        return rest;
    }

    const qint64 n = target->size();
    if (n >= expected) {
        m_progress.lblProgress.text = QStringLiteral("100%");
        m_progress.prbProgress = 100;
        m_progress.lblFinished = QLatin1Char('<') + QString::number(n) + QLatin1Char('>');
        m_progress.cmdPause.enabled = false;
        m_progress.refresh();
        f.xSendData(QStringLiteral("%%Data Received-") + QString::number(n) + QStringLiteral("%%"));
        if (n == expected)
            updateProgress(QStringLiteral("File receiving success"));
        else
            updateProgress(QStringLiteral("Save Error"));
    } else {
        const int pct = percentOf(n, expected);
        m_progress.lblProgress.text = QString::number(pct) + QLatin1Char('%');
        m_progress.prbProgress = pct;
        f.xSendData(QStringLiteral("%%Data Received-") + singleText(n) + QStringLiteral("%%"));
        m_progress.refresh();
    }
    return rest;
}

void Transfer::saveError(const QFile& target)
{
    FrmMain& f = m_frm;
    const QString text = target.isOpen() ? target.errorString() : QStringLiteral("Bad file name or number");
    const int number = target.isOpen() ? int(target.error()) : 52;
    closeAllFiles();
    ++recvHandleCounter;
    f.xSendData(QStringLiteral("%%Sending Cancel%%"));
    f.logs().failure(QStringLiteral("SendFileCheck-Save Error"),
                     text + QStringLiteral(" (") + QString::number(number) + QLatin1Char(')'));
}

QString Transfer::acknowledgement(QString& data)
{
    const qsizetype p = data.indexOf(QLatin1String("%%"), 16);
    const QString rest = p < 0 ? data.mid(16) : data.mid(p + 2);
    if (transferCancelled || picCancelled)
        return rest;
    const QString number = p < 0 ? QString() : data.mid(16, p - 16);
    if (number.isEmpty()) {
        // The bare form: go on from the stored position. A closing "%%"
        // right behind it is the next message's opening.
        const QString bareRest = data.mid(16);
        ContSendFile(0);
        return bareRest;
    }
    const std::optional<qint64> count = parseAckCount(number);
    if (!count)
        return protocolFault(QStringLiteral("Type mismatch"), QStringLiteral("%%Data Received-"), data);
    if (drawVisible() || !transferPaused)
        ContSendFile(*count);
    return rest;
}

// --- sending side ---------------------------------------------------------------------

void Transfer::mnuSendFile_Click()
{
    FrmMain& f = m_frm;
    f.bytesPerSend = f.settingInt(QStringLiteral("Byte Per Send"));
    if (f.bytesPerSend == 0)
        f.bytesPerSend = 2000;

    if (connected() && transferPaused) {
        // On hold: both sides bring their windows back.
        f.xSendData(QStringLiteral("%%Open Pause Window%%"));
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
        const QString path = f.prompter().file(req);
        if (path.isEmpty())
            return;  // cancelled: nothing said
        sendFilePath = path;
        const QFileInfo info(path);
        if (info.exists() && info.isFile() && info.size() > 0) {
            length = info.size();
            break;
        }
        f.prompter().msgBox(lookup("File does not exist or zero byte file."));
    }
    if (connected()) {
        f.stStatusbar.setText(2, lookup("Please wait for remote user's response..."));
        sendFileRequest(sendFilePath, length);
        m_offered = true;
        f.controls.setEnabled(QStringLiteral("mnuSendFile"), false);
        f.controls.setEnabled(QStringLiteral("mnuDraw"), false);
    }
}

void Transfer::sendFileRequest(const QString& name, qint64 size)
{
    if (!connected())
        return;
    m_frm.sendRaw(QStringLiteral("%%File Sending Request%%") + wirePath(name) + QLatin1Char('>') +
                  QString::number(size) + QStringLiteral("*fs*"));
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
    m_frm.sendRawBytes(frame);
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
    FrmMain& f = m_frm;
    transferCancelled = false;
    picCancelled = false;
    m_offered = false;
    holdPosition = 0;
    fileHandleCounter = fileHandleCounter + recvFileHandle + picRecvHandle + 1;
    const int counter = fileHandleCounter;
    const bool board = drawVisible();

    auto cannotOpen = [&](QFile& file, const char* which) {
        f.prompter().msgBox(QStringLiteral("Error opening ") + path + kCrLf + file.errorString() +
                                QLatin1String(which) + QString::number(counter),
                            MsgStyle::Exclamation);
        closeAllFiles();
        f.sendRaw(QStringLiteral("%%Error%%"));
    };

    if (board) {
        picSendSent = 0;
        picSendHandle = counter + 1;
        path = f.appFile(QStringLiteral("captscr.jpg"));
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
            f.sendRaw(QStringLiteral("%%Error%%"));
            return;
        }
        m_sendFile.close();
        m_sendFile.setFileName(path);
        if (!m_sendFile.open(QIODevice::ReadOnly)) {
            cannotOpen(m_sendFile, ": begin send file no. ");
            return;
        }
    }
    loadProgress();

    const bool picBranch = board && f.transferMode != QLatin1String("Vonnel");
    QFile& file = picBranch ? m_picSendFile : m_sendFile;
    const qint64 length = (board ? m_picSendFile : m_sendFile).size();
    const qint64 chunk = length >= f.bytesPerSend ? f.bytesPerSend : length;
    m_progress.lblProgress.text =
        length >= f.bytesPerSend ? QString::number(percentOf(chunk, length)) + QLatin1Char('%')
                                 : QStringLiteral("100%");
    QByteArray payload;
    if (!readChunk(file, 0, chunk, payload)) {
        f.prompter().msgBox(QStringLiteral("Error at the begining of file sending (File#") +
                                QString::number(counter) + QStringLiteral(")\r") + file.errorString(),
                            MsgStyle::Exclamation);
        return;
    }
    if (picBranch)
        picSendSent = chunk;
    else
        sendFileSent = chunk;
    f.stStatusbar.setPicture(1, StatePicture::picSend);
    sendFrame(payload);
    if (!board)
        sendFileSize = length;

    m_progress.lblFilesize = labelSizeText(length);
    m_progress.lblFilename = shortenedPath(path);
    const bool quiet = board || likeAnywhere(path, f.Ring);
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
    FrmMain& f = m_frm;
    const bool picBranch = drawVisible() && f.transferMode != QLatin1String("Vonnel");
    QString path;
    QFile* file;
    qint64* sent;
    if (picBranch) {
        if (picCancelled)
            return;
        path = f.appFile(QStringLiteral("captscr.jpg"));
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
    if (!file->isOpen()) {
        file->setFileName(path);
        file->open(QIODevice::ReadOnly);
    }
    m_progress.caption = lookup("Sending File");
    m_progress.txtSendRec = QStringLiteral("Sending File");

    const int handle = picBranch ? picSendHandle : sendFileHandle;
    const qint64 length = file->isOpen() ? file->size() : 0;
    if (!file->isOpen()) {
        f.stStatusbar.setText(1, QStringLiteral("File Sending - contSentFile Error (File#") +
                                     QString::number(handle) + QStringLiteral(")\r") +
                                     file->errorString() + QStringLiteral(": & attrMsg"));
        Q_EMIT drawSendingLabel(QStringLiteral("False"));
        *sent = p;
        return;
    }
    if (p < length) {
        const qint64 chunk = qMin<qint64>(f.bytesPerSend, length - p);
        f.stStatusbar.setPicture(1, StatePicture::picSend);
        QByteArray payload;
        if (!readChunk(*file, p, chunk, payload)) {
            f.stStatusbar.setText(1, QStringLiteral("File Sending - contSentFile Error (File#") +
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
        m_progress.refresh();
        *sent = p;
        return;
    }

    // The last acknowledgement came: the transfer has ended.
    setCancelButton("Finish");
    m_progress.cmdPause.enabled = false;
    m_progress.lblProgress.text = QStringLiteral("100%");
    m_progress.prbProgress = 100;
    m_progress.refresh();
    if (!likeAnywhere(path, ringSent)) {
        Q_EMIT f.ringRequested(f.setting(QStringLiteral("Ring5")));
    } else {
        unloadProgress();
        ringSent = QStringLiteral("n/a");
    }
    if (!drawVisible()) {
        if (m_progress.chkCloseProgress && m_progress.loaded)
            unloadProgress();
    } else {
        unloadProgress();
        f.stStatusbar.setPicture(1, StatePicture::picSend);
        f.sendRaw(QStringLiteral("&&showPic$"));
        Q_EMIT drawSendingLabel(QStringLiteral("False"));
    }
    f.TransferOnHold = false;
    p = 0;
    f.idleDelayFor(0.2);
    file->close();
    *sent = p;
}

// --- receiving side ---------------------------------------------------------------------

void Transfer::getSaveFileName(QString offer)
{
    FrmMain& f = m_frm;
    bool picture = false;
    if (offer.startsWith(QLatin1String("pic"))) {
        offer = offer.mid(3);
        picture = true;
        QFile::remove(f.appFile(QStringLiteral("captscr.jpg")));
    }
    const OfferName o = deriveOfferName(offer);
    if (!o.size) {
        f.prompter().msgBox(QStringLiteral("File Receiving - getSaveFileName Error (Filename") +
                                o.name + QStringLiteral(")\rType mismatch"),
                            MsgStyle::Exclamation, FrmMain::kTitle + QStringLiteral(" Error"));
        return;
    }
    if (picture) {
        picRecvSize = *o.size;
        // A picture is always the board's file; without the board there is
        // nothing to receive it into.
        if (!drawVisible())
            return;
    } else {
        recvFileSize = *o.size;
        const QString question = lookup("Would you like to accept it?") + kCrLf + kCrLf +
                                 QStringLiteral("  ") + o.name + QStringLiteral("  ") +
                                 questionSizeText(*o.size);
        const Answer a = f.prompter().msgBox(question, MsgStyle::YesNo | MsgStyle::Information,
                                             lookup("File Receiving Request"));
        if (a != Answer::Yes) {
            f.xSendData(QStringLiteral("%%FS Request Rejected%%"));
            return;
        }
        FileRequest req;
        req.save = true;
        req.title = QStringLiteral("Save File As");
        // The peer's name is only a proposal, and only its last part.
        req.proposedName = proposedSaveName(o.name);
        const QString chosen = f.prompter().file(req);
        if (chosen.isEmpty()) {
            f.xSendData(QStringLiteral("%%FS Request Rejected%%"));
            return;
        }
        recvFilePath = chosen;
        if (QFileInfo::exists(chosen)) {
            QFile::setPermissions(chosen, QFile::permissions(chosen) | QFileDevice::WriteOwner);
            QFile::remove(chosen);
        }
    }
    f.controls.setEnabled(QStringLiteral("mnuSendFile"), false);
    f.xSendData(QStringLiteral("%%FS Request OK%%") + o.okPath + QStringLiteral("*fs*"));
    beginGetFile();
}

bool Transfer::receiveRingFile(const QString& name, qint64 size)
{
    if (!isBareFileName(name))
        return false;
    recvFilePath = m_frm.appFile(name);
    recvFileSize = size;
    beginGetFile();
    return true;
}

void Transfer::beginGetFile()
{
    FrmMain& f = m_frm;
    transferCancelled = false;
    picCancelled = false;
    recvHandleCounter = recvHandleCounter + sendFileHandle + picSendHandle + 1;
    const bool board = drawVisible();
    QString path;
    QFile* target;
    qint64 size;
    if (board) {
        picRecvHandle = recvHandleCounter;
        path = f.appFile(QStringLiteral("captscr.jpg"));
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
    // Appended to, never truncated here; one write per frame goes straight
    // to the disk, so the file's length is always the true count.
    if (!target->open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) {
        f.prompter().msgBox(QStringLiteral("File Receiving - beginGetFile Error (Filename") + path +
                                QStringLiteral(")\r") + target->errorString(),
                            MsgStyle::Exclamation);
        return;
    }
    loadProgress();
    m_progress.lblFilename = shortenedPath(path);
    m_progress.lblFilesize = labelSizeText(size);
    const bool quiet = board || likeAnywhere(recvFilePath, f.receiver().ringWanted);
    m_progress.cmdPause.visible = !quiet;
    m_progress.chkCloseProgressVisible = !quiet;
    if (quiet)
        m_progress.chkCloseProgress = true;
    m_progress.lblProgress.text = QStringLiteral("0%");
    m_progress.txtSendRec = QStringLiteral("Receiving File");
    m_progress.caption = m_frm.translate(m_progress.txtSendRec, m_progress.txtSendRec);
    if (!f.NotReadySent)
        showProgress();
    else
        m_progress.refresh();
}

void Transfer::updateProgress(const QString& what)
{
    FrmMain& f = m_frm;
    ProgressModel& w = m_progress;
    if (what == QLatin1String("File receiving success")) {
        w.lblProgress.text = QStringLiteral("100%");
        w.prbProgress = 100;
        setCancelButton("Finish");
        w.refresh();
        Receiver& r = f.receiver();
        if (likeAnywhere(recvFilePath, r.ringWanted)) {
            unloadProgress();
            closeAllFiles();
            Q_EMIT f.ringRequested(f.appFile(r.ringWanted));
            r.ringWanted = QStringLiteral("n/a");
        } else {
            Q_EMIT f.ringRequested(f.setting(QStringLiteral("Ring5")));
        }
        w.lblProgress.color = Qt::black;
        w.lblProgress.visible = false;
        setPauseButton("Open");
        w.cmdPause.enabled = true;
        w.refresh();
        if (w.chkCloseProgress && w.loaded)
            unloadProgress();
        if (!drawVisible()) {
            transferPaused = false;
            m_recvFile.close();
        } else {
            m_picRecvFile.close();
        }
        f.TransferOnHold = false;
    } else if (what == QLatin1String("Save Error")) {
        w.lblProgress.text = QStringLiteral("100%");
        w.prbProgress = 100;
        setCancelButton("Error");
        m_recvFile.close();
        f.TransferOnHold = false;
        w.refresh();
    } else if (what == QLatin1String("File sending cancelled")) {
        w.lblProgress.color = QColor(0, 0, 255);
        w.lblProgress.visible = true;
        w.lblProgress.text = lookup("File sending/receiving cancelled");
        const bool receiving = w.txtSendRec == QLatin1String("Receiving File");
        if (drawVisible()) {
            picCancelled = true;
            (receiving ? m_picRecvFile : m_picSendFile).close();
        } else {
            transferCancelled = true;
            (receiving ? m_recvFile : m_sendFile).close();
            transferPaused = false;
        }
        m_offered = false;
        f.TransferOnHold = false;
        const QString tail = lookup(" (Cancelled)");
        if (!w.caption.contains(tail))
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
        w.refresh();
    } else if (what == QLatin1String("Pause")) {
        w.lblProgress.visible = true;
        w.caption = lookup("Pause") + QStringLiteral(" - ") + f.translate(w.txtSendRec, w.txtSendRec);
        w.lblProgress.text = QString::number(w.prbProgress) + QLatin1Char('%');
        // The alarm at this end: the bell twice in a row.
        const QString bell = f.setting(QStringLiteral("Ring5"));
        Q_EMIT f.ringRequested(bell);
        Q_EMIT f.ringRequested(bell);
        setPauseButton("Continue");
        w.cmdPause.enabled = false;
        w.cmdPause.toolTip = lookup("You have no right to contine to send/receive file");
        setCancelButton("Unload");
        w.refresh();
        if (w.minimized) {
            f.setVisible(true);
            f.views().raiseMain();
        }
    } else if (what == QLatin1String("Continue Send")) {
        windowBack();
        w.cmdPause.enabled = true;
        w.refresh();
        ContSendFile(holdPosition);
    } else if (what == QLatin1String("Continue Receive")) {
        windowBack();
        w.cmdPause.enabled = true;
        w.refresh();
        f.xSendData(QStringLiteral("%%Data Received-"));
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
    FrmMain& f = m_frm;
    holdProgressText = progressText;
    holdDirection = direction;
    holdPercent = percent;
    holdFileName = fileName;
    holdFileSize = fileSize;
    f.TransferOnHold = true;
    if (direction.contains(QLatin1String("Receiving")))
        f.controls.setCaption(QStringLiteral("mnuSendFile"), lookup("Receive File", "&Receive File"));
    else
        f.controls.setCaption(QStringLiteral("mnuSendFile"), lookup("Send File", "Send &File"));
}

void Transfer::restorePauseWindow()
{
    FrmMain& f = m_frm;
    loadProgress();
    ProgressModel& w = m_progress;
    w.lblProgress.text = holdProgressText;
    w.lblProgress.visible = true;
    w.txtSendRec = holdDirection;
    w.prbProgress = holdPercent;
    w.lblFilename = holdFileName;
    w.lblFilesize = holdFileSize;
    w.caption = lookup("Pause") + QStringLiteral(" - ") + f.translate(holdDirection, holdDirection);
    setPauseButton("Continue");
    w.cmdPause.toolTip = lookup("Continue sending/receiving file");
    setCancelButton("Unload");
    w.cmdCancel.toolTip = lookup("Back to chat and continue later");
    f.TransferOnHold = false;
    f.controls.setCaption(QStringLiteral("mnuSendFile"), lookup("Send File", "Send &File"));
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
    w.caption = m_frm.translate(w.txtSendRec, w.txtSendRec);
}

void Transfer::loadProgress()
{
    ProgressModel& w = m_progress;
    if (w.loaded)
        return;
    w.reset();
    setPauseButton("Pause");
    setCancelButton("Cancel");
    w.cmdPause.enabled = m_frm.bytesPerSend <= 3200;
    w.chkCloseProgress = m_frm.settingFlag(QStringLiteral("Close Progress"));
    w.loaded = true;
    Q_EMIT w.loadedChanged(true);
}

void Transfer::showProgress()
{
    loadProgress();
    // The window's activation: no second transfer, and the board stays open.
    m_frm.controls.setEnabled(QStringLiteral("mnuSendFile"), false);
    Q_EMIT closeDrawEnabled(false);
    m_progress.refresh();
}

void Transfer::unloadProgress()
{
    FrmMain& f = m_frm;
    ProgressModel& w = m_progress;
    if (!w.loaded)
        return;
    if (f.transferMode == QLatin1String("Vonnel") && transferPaused) {
        savePauseSetting(w.lblProgress.text, w.txtSendRec, w.prbProgress, w.lblFilename,
                         w.lblFilesize);
        holdPosition = sendFileSent;
    }
    if (!f.ProgramExiting) {
        f.controls.setEnabled(QStringLiteral("mnuSendFile"), true);
        f.controls.setEnabled(QStringLiteral("mnuDraw"), drawMenuAllowed);
        Q_EMIT closeDrawEnabled(true);
    }
    w.loaded = false;
    Q_EMIT w.loadedChanged(false);
}

void Transfer::cmdPause_Click()
{
    FrmMain& f = m_frm;
    ProgressModel& w = m_progress;
    if (!w.loaded || !w.cmdPause.enabled || !w.cmdPause.visible)
        return;
    const QString tag = w.cmdPause.tag;
    if (tag == QLatin1String("Pause")) {
        if (!connected())
            return;
        f.xSendData(QStringLiteral("%%Pause Sending%%"));
        pauseSendFile(true);
        setPauseButton("Continue");
        w.cmdPause.toolTip = lookup("Continue sending/receiving file");
        setCancelButton("Unload");
        w.cmdCancel.toolTip = lookup("Back to chat and continue later");
        w.lblProgress.visible = true;
        w.lblProgress.text = QString::number(w.prbProgress) + QLatin1Char('%');
        w.caption = lookup("Pause") + QStringLiteral(" - ") + f.translate(w.txtSendRec, w.txtSendRec);
        w.refresh();
    } else if (tag == QLatin1String("Continue")) {
        pauseSendFile(false);
        // The message names what the peer is to do.
        if (w.txtSendRec.contains(QLatin1String("Sending")))
            f.xSendData(QStringLiteral("%%Continue Receiving File%%"));
        else
            f.xSendData(QStringLiteral("%%Continue Sending File%%"));
        windowBack();
        w.refresh();
    } else if (tag == QLatin1String("Open")) {
        f.desktop().openFile(recvFilePath);
    }
}

void Transfer::cmdCancel_Click()
{
    FrmMain& f = m_frm;
    ProgressModel& w = m_progress;
    if (!w.loaded)
        return;
    const QString tag = w.cmdCancel.tag;
    if (tag == QLatin1String("Unload") && connected()) {
        f.xSendData(QStringLiteral("%%Unload%%"));
        pauseSendFile(true);
        savePauseSetting(w.lblProgress.text, w.txtSendRec, w.prbProgress, w.lblFilename,
                         w.lblFilesize);
        unloadProgress();
    } else if (tag == QLatin1String("Cancel") && connected()) {
        f.xSendData(QStringLiteral("%%Sending Cancel%%"));
        cancelSendFiles();
        f.idleDelayFor(0.2);
        updateProgress(QStringLiteral("File sending cancelled"));
        unloadProgress();
    } else {
        unloadProgress();
    }
}

void Transfer::chkCloseProgress_Click(bool checked)
{
    m_progress.chkCloseProgress = checked;
    m_frm.writeSetting(QStringLiteral("Close Progress"), checked ? QStringLiteral("1")
                                                                 : QStringLiteral("0"));
}

}  // namespace vonnel
