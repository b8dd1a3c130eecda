#include "wire/Receiver.h"

#include "access/Encryption.h"

#include "access/CipherText.h"
#include "connection/Connection.h"
#include "core/IniStore.h"
#include "platform/Cursor.h"
#include "platform/Prompter.h"
#include "shell/FrmMain.h"
#include "shell/Views.h"
#include "wire/FrameText.h"
#include "wire/LiveTyping.h"
#include "wire/RemotePane.h"

#include <cstring>

namespace vonnel {

namespace {

const QString kCrLf = QStringLiteral("\r\n");

// Toolbar1 button 3 is Refresh.
constexpr int kRefreshButton = 3;

QString trimControl(const QString& s)
{
    qsizetype b = 0, e = s.size();
    while (b < e && s.at(b).unicode() < 33)
        ++b;
    while (e > b && s.at(e - 1).unicode() < 33)
        --e;
    return s.mid(b, e - b);
}

}  // namespace

Receiver::Receiver(FrmMain& frm)
    : QObject(&frm), m_frm(frm), m_pane(new RemotePane(frm, this)), m_faults(frm.prompter(), frm.logs())
{
    connect(&frm, &FrmMain::sessionOpened, m_pane, &RemotePane::beginSession);
    connect(&frm, &FrmMain::sessionOpened, this, [this] { m_faults.beginSession(); });
    cSendFileCheck = [](QString& data, QByteArray&) { return consumeFileMessage(data); };
    keySent = [] { return false; };
    connect(&frm.winsock(0), &Winsock::DataArrival, this, &Receiver::Winsock_DataArrival);
}

// --- the receive event --------------------------------------------------------

void Receiver::Winsock_DataArrival(int index, qint64 bytesTotal)
{
    if (index > 0 || m_frm.unloading)
        return;
    handleArrival(index, m_frm.winsock(m_frm.sIdx).GetData(), bytesTotal);
}

void Receiver::handleArrival(int index, QByteArray bytes, qint64 bytesTotal)
{
    FrmMain& f = m_frm;
    if (index > 0 || f.unloading)
        return;
    if (bytesTotal < 0)
        bytesTotal = bytes.size();
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
    FrmMain& f = m_frm;
    if (f.unloading)
        return;
    f.controls.setEnabled(toolbarButton(kRefreshButton), true);
    f.controls.setEnabled(QStringLiteral("mnuRefresh"), true);
    double testDelay = f.settingNumber(QStringLiteral("Test"));
    if (testDelay != 0)
        f.idleDelay(testDelay);

    f.PasteInProgress = false;
    f.cursor().setNormal();
    f.stStatusbar.setPicture(1, StatePicture::picRec);
    f.stStatusbar.setText(2, QString());
    const qint64 mins =
        f.SessionDateStart.isValid() ? f.SessionDateStart.secsTo(f.clock().now()) / 60 : 0;
    f.stStatusbar.setText(4, QString::number(mins) + QLatin1Char(' ') +
                                 f.translate(QStringLiteral("Minute"), QStringLiteral("min")));
    f.stStatusbar.setText(10, FrmMain::byteCountText(bytesTotal));

    f.RemoteResponded = true;
    f.arrivedLength = bytes.size();
    if (bytes.isEmpty())
        return;
    f.txtClient(0).setEnabled(true);
    m_keyPosition = 0;

    QString text;
    if (frameArrival && bytes.startsWith("<*> ")) {
        // A data frame at the head of the read: no test ahead of the file
        // dispatcher matches it and its payload is taken from the bytes,
        // so only what may follow its end is made text.
        f.txtClient(index).caretToEnd();
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
    } while (pass <= f.overflowLimit && pass >= 1 && pass < 100);
    // Whatever the passes left is lost; the pane may have missed a frame.
    if (!text.isEmpty())
        m_pane->lost();
    m_faults.reportArrival(text);

    f.PasteInProgress = false;
    f.cursor().setNormal();
    refreshLengths();
    f.stStatusbar.setPicture(1, StatePicture::picReady);
    f.checkStatus();
}

bool Receiver::runPass(int index, QString& text, QByteArray& bytes)
{
    FrmMain& f = m_frm;
    TextPane& pane = f.txtClient();

    if (text.startsWith(QLatin1String("!ver."))) {
        if (f.settingInt(QStringLiteral("Version Check")) == 1) {
            const QString theirs = trimControl(getBetween(text, QStringLiteral("!ver."),
                                                          QStringLiteral("ver!")));
            const QString ours = trimControl(f.VersionString);
            if (theirs != ours) {
                f.prompter().msgBox(
                    f.translate(QStringLiteral("Warning: Incompatible version of Vonnel:: it may "
                                               "cause strange characters and/or unexpected error.")) +
                        QLatin1Char('\r') +
                        f.translate(QStringLiteral("Remote user's version - ")) + theirs +
                        QLatin1Char('\r') + f.translate(QStringLiteral(" Your version - ")) + ours,
                    MsgStyle::Exclamation, f.translate(QStringLiteral("Version Conflict")));
                Q_EMIT updateRequested();
                f.connection().mnuDisconnect_Click();
            }
        }
        text = stripThrough(text, QStringLiteral("ver!"));
        f.txtServer.setEnabled(true);
    }

    if (text.startsWith(QLatin1String("tt:=")))
        f.encryption().takeRemoteKey(text);

    f.txtClient(index).caretToEnd();

    if (text.size() == 1) {
        if (f.acceptIncompatible)
            cFinishCheck(text);
        text.clear();
        return false;
    }

    if (text.startsWith(QLatin1String("<e#"))) {
        const QString inner = getBetween(text, QStringLiteral("<e#"), QStringLiteral("#e>"));
        text = stripThrough(text, QStringLiteral("#e>"));
        // Taken apart with the peer's key whatever the encryption state.
        cFinishCheck(f.encryption().decipherOld(inner));
    }

    if (text.startsWith(QLatin1String("<KEY> "))) {
        QString c = getBetween(text, QStringLiteral("<KEY> "), QStringLiteral(" <:KEY>"));
        text = stripThrough(text, QStringLiteral(" <:KEY>"));
        c = decipher(c);
        const QString position = getBetween(text, QString(), QStringLiteral("</KEY>"));
        // A split frame leaves no position, which is no failure; one that
        // is there and is no number is. The previous position stays.
        if (!readPosition(position, m_keyPosition) && !position.trimmed().isEmpty())
            m_faults.raise(fault::kTypeMismatch, QStringLiteral("Type mismatch"));
        text = stripThrough(text, QStringLiteral("</KEY>"));
        m_pane->typedCharacter(c, m_keyPosition);
        refreshLengths();
    }

    if (text.startsWith(QLatin1Char('^'))) {
        if (text.size() < 2 || text.at(1) != QLatin1Char('^')) {
            text = cControlCheck(text);
        } else {
            cFinishCheck(QStringLiteral("^"));
            text = text.mid(1);
        }
    }

    if (text.startsWith(QLatin1String("<Paste> "))) {
        const QString inner = getBetween(text, QStringLiteral("<Paste> "), QStringLiteral("</Paste>"));
        text = stripThrough(text, QStringLiteral("</Paste>"));
        cFinishCheck(decipher(inner));
    }

    if (text.startsWith(QLatin1String("<URL> "))) {
        const QString inner = getBetween(text, QStringLiteral("<URL> "), QStringLiteral(" </URL>"));
        text = stripThrough(text, QStringLiteral(" </URL>"));
        Q_EMIT webCheck(decipher(inner));
    }

    if (text.startsWith(QLatin1String("<SPKSET> "))) {
        const QString inner =
            getBetween(text, QStringLiteral("<SPKSET> "), QStringLiteral(" </SPKSET>"));
        const bool closed = text.contains(QLatin1String(" </SPKSET>"));
        text = stripThrough(text, QStringLiteral(" </SPKSET>"));
        // What was set before stays when the fields are not whole; a frame
        // cut short by the read is no failure and is not taken either.
        if (closed && checkSpeakerSetting(inner))
            Q_EMIT speakerSettingReceived(inner);
        m_faults.reportStage(QStringLiteral("SPKSET "));
    }

    if (text.startsWith(QLatin1String("<SPK> "))) {
        const QString inner = getBetween(text, QStringLiteral("<SPK> "), QStringLiteral(" </SPK>"));
        text = stripThrough(text, QStringLiteral(" </SPK>"));
        Q_EMIT speakReceived(decipherInStage(inner));
        m_faults.reportStage(QStringLiteral("SPK "));
    }

    if (text.startsWith(QLatin1String("<MSG> "))) {
        const QString inner = getBetween(text, QStringLiteral("<MSG> "), QStringLiteral(" </MSG>"));
        text = stripThrough(text, QStringLiteral(" </MSG>"));
        takeRecordLine(decipherInStage(inner));
        m_faults.reportStage(QStringLiteral("MSG "));
    }

    if (text.startsWith(QLatin1String("%%"))) {
        if (text.size() < 3 || text.at(2) != QLatin1Char('%')) {
            text = cSendFileCheck(text, bytes);
        } else {
            cFinishCheck(QStringLiteral("%%"));
            text = text.mid(2);
        }
    }

    if (text.startsWith(QLatin1String("<*> "))) {
        text = cSendFileCheck(text, bytes);
        m_faults.reportStage(QStringLiteral("File Fransfer "));
    }

    if (text.startsWith(QLatin1String("&&"))) {
        if (text.size() < 3 || text.at(2) != QLatin1Char('&')) {
            text = cDrawcheck(text);
        } else {
            cFinishCheck(QStringLiteral("&&"));
            text = text.mid(2);
        }
    }
    return true;
}

// --- control codes ------------------------------------------------------------

QString Receiver::cControlCheck(QString& data)
{
    FrmMain& f = m_frm;
    TextPane& pane = f.txtClient();
    int n = 0;

    if (data.startsWith(QLatin1String("^g"))) {
        const QString name = getBetween(data, QStringLiteral("^g"), QStringLiteral("^G^"));
        data = stripThrough(data, QStringLiteral("^G^"));
        Q_EMIT ringReceived(name);
    }
    if (data.startsWith(QLatin1String("^rW"))) {
        data = data.mid(3);
        Q_EMIT ringFileRequested();
    }
    if (data.startsWith(QLatin1String("^s>"))) {
        double size = 0;
        const QString sizeText = getBetween(data, QStringLiteral("^s>"), ringWanted);
        size = iniNumber(sizeText);
        data = stripThrough(data, ringWanted);
        f.controls.setEnabled(QStringLiteral("mnuSendFile"), false);
        Q_EMIT ringFileAnnounced(ringWanted, qint64(size));
    }
    if (data.startsWith(QLatin1String("^reFresh"))) {
        answerRefresh();
        data = data.mid(8);
    }
    if (data.startsWith(QLatin1String("^Clr"))) {
        remoteHistory += kCrLf + pane.text();
        pane.clear();
        m_pane->cleared();
        data = data.mid(4);
    }
    if (data.startsWith(QLatin1String("^BK"))) {
        readPosition(getBetween(data, QStringLiteral("^BK"), QStringLiteral("#BK")), n);
        data = stripThrough(data, QStringLiteral("#BK"));
        m_pane->deletion(n, data.startsWith(QLatin1String("<Paste> ")));
    }
    if (data.startsWith(QLatin1String("^Cr"))) {
        pane.append(kCrLf);
        pane.caretToEnd();
        data = data.mid(3);
    }
    if (data.startsWith(QLatin1String("^RETURN"))) {
        const bool counted =
            readPosition(getBetween(data, QStringLiteral("^RETURN"), QStringLiteral("#RETURN")), n);
        data = stripThrough(data, QStringLiteral("#RETURN"));
        m_pane->lineBreak(n, counted);
    }
    if (data.startsWith(QLatin1String("<URL> "))) {
        const QString inner = getBetween(data, QStringLiteral("<URL> "), QStringLiteral(" </URL>"));
        data = stripThrough(data, QStringLiteral(" </URL>"));
        Q_EMIT webCheck(decipher(inner));
    }
    if (data.startsWith(QLatin1String("<SPK> "))) {
        const QString inner = getBetween(data, QStringLiteral("<SPK> "), QStringLiteral(" </SPK>"));
        data = stripThrough(data, QStringLiteral(" </SPK>"));
        Q_EMIT speakReceived(decipherInStage(inner));
        m_faults.reportStage(QStringLiteral("NEW SPK "));
    }
    if (data.startsWith(QLatin1String("<MSG> "))) {
        const QString inner = getBetween(data, QStringLiteral("<MSG> "), QStringLiteral(" </MSG>"));
        data = stripThrough(data, QStringLiteral(" </MSG>"));
        takeRecordLine(decipherInStage(inner));
        m_faults.reportStage(QStringLiteral("NEW MSG "));
    }
    if (data.startsWith(QLatin1String("^SPC"))) {
        readPosition(getBetween(data, QStringLiteral("^SPC"), QStringLiteral("#SPC")), n);
        data = stripThrough(data, QStringLiteral("#SPC"));
        m_pane->space(n);
    }
    while (data.startsWith(QLatin1String("^TAB"))) {
        pane.append(QStringLiteral("\t"));
        pane.caretToEnd();
        data = data.mid(4);
    }
    if (data.startsWith(QLatin1String("^ff"))) {
        // Through the first "^>"; without one, only the caret goes.
        const qsizetype p = data.indexOf(QLatin1String("^>"));
        const qsizetype through = p < 0 ? 1 : p + 2;
        const QString format = data.left(through);
        data = data.mid(through);
        if (f.IsConnected())
            f.RemoteResponded = true;
        Q_EMIT formatReceived(format);
    }
    if (data == QLatin1String("^SD")) {
        remoteShutDown();
        data.clear();
    }
    return data;
}

void Receiver::cFinishCheck(const QString& text)
{
    TextPane& pane = m_frm.txtClient();
    pane.append(text);
    pane.caretToEnd();
    refreshLengths();
}

void Receiver::refreshLengths()
{
    m_frm.stStatusbar.setText(3, QString::number(m_frm.txtServer.length()) +
                                     QStringLiteral(" - ") +
                                     QString::number(m_frm.txtClient().length()));
}

// --- repair and its answer ------------------------------------------------------

void Receiver::answerRefresh()
{
    resendWholeText();
    refreshAnswered = true;
}

void Receiver::resendWholeText()
{
    FrmMain& f = m_frm;
    // This covers any resend our typing side had planned.
    f.typing().cancelFollowUp();
    f.encryption().sendKeyForRefresh(keySent());
    f.sendRaw(QStringLiteral("^Clr"));
    Q_EMIT refreshAnswerNeedsSettings();
    f.xSendData(QStringLiteral("<Paste> ") + f.txtServer.text() + QStringLiteral("</Paste>"));
    f.txtClient().caretToEnd();
    f.PasteInProgress = false;
    f.cursor().setNormal();
}

// --- remote shut-down ------------------------------------------------------------

void Receiver::remoteShutDown()
{
    FrmMain& f = m_frm;
    f.RemoteResponded = false;
    f.SessionEndTime = f.clock().timeOfDay();

    f.controls.setEnabled(QStringLiteral("mnuSave"), true);
    Q_EMIT playRing(QStringLiteral("Ring2"));
    Q_EMIT f.sessionEnded();

    TextPane& pane = f.txtClient();
    pane.append(kCrLf + QStringLiteral("[  ") + f.translate(QStringLiteral("Closed")) +
                QStringLiteral("  ]"));
    pane.caretToEnd();

    f.stStatusbar.setText(2, QStringLiteral("Disconecting..."));
    f.setCaption(f.VersionString.isEmpty() ? FrmMain::kTitle : f.VersionString);

    pane.setEnabled(false);
    Winsock& ws = f.winsock(f.sIdx);
    ws.Close();
    f.stStatusbar.setPicture(1, StatePicture::picOff);
    f.checkStatus();

    ws.setLocalPort(quint16(f.settingInt(QStringLiteral("LocalPort"))));
    f.idleDelay0();
    ws.Listen();
    f.checkStatus();
    f.controls.setEnabled(QStringLiteral("mnuDraw"), true);
}

// --- keys, records, deciphering ------------------------------------------------------

QString Receiver::decipher(const QString& inner) const
{
    return m_frm.encryption().decipher(inner);
}

QString Receiver::decipherInStage(const QString& inner)
{
    QString error;
    const QString plain = m_frm.encryption().decipher(inner, &error);
    if (!error.isEmpty())
        m_faults.raise(fault::kInvalidCall, error);
    return plain;
}

bool Receiver::checkSpeakerSetting(const QString& fields)
{
    static const char* const kTags[] = {"L", "PN", "E", "N", "S", "P"};
    for (const char* tag : kTags) {
        const QString open = QStringLiteral("<%1>").arg(QLatin1String(tag));
        const QString close = QStringLiteral("</%1>").arg(QLatin1String(tag));
        const qsizetype a = fields.indexOf(open);
        const qsizetype b = a < 0 ? -1 : fields.indexOf(close, a + open.size());
        if (b < 0) {
            m_faults.raise(fault::kInvalidCall,
                           QStringLiteral("The speech settings lack the field ") + open);
            return false;
        }
        const bool number = std::strchr("LSP", tag[0]) && tag[1] == '\0';
        bool ok = true;
        if (number)
            fields.mid(a + open.size(), b - a - open.size()).trimmed().toInt(&ok);
        if (!ok) {
            m_faults.raise(fault::kTypeMismatch, QStringLiteral("Type mismatch"));
            return false;
        }
    }
    return true;
}

QString Receiver::remoteName() const
{
    FrmMain& f = m_frm;
    if (!f.PeerHostName.isEmpty())
        return f.PeerHostName;
    Winsock& ws = f.winsock(f.sIdx);
    if (!ws.RemoteHost().isEmpty())
        return ws.RemoteHost();
    return ws.RemoteHostIP();
}

void Receiver::takeRecordLine(const QString& line)
{
    FrmMain& f = m_frm;
    f.txtTextMsg.append(remoteName().toUpper() + QLatin1Char(' ') +
                        f.clock().timeOfDay().toString(QStringLiteral("h:mm:ss AP")) +
                        QStringLiteral(": ") + line + kCrLf);
}

// --- file messages ---------------------------------------------------------------------

QString Receiver::consumeFileMessage(const QString& data)
{
    auto through = [&](qsizetype headLength) {
        const qsizetype p = data.indexOf(QLatin1String("*fs*"), headLength);
        return p < 0 ? data.mid(3) : data.mid(p + 4);
    };
    if (data.startsWith(QLatin1String("%%File Sending Request%%")))
        return through(24);
    if (data.startsWith(QLatin1String("%%FS Request OK%%")))
        return through(17);
    if (data.startsWith(QLatin1String("%%FS Request Rejected%%")))
        return data.mid(23);
    if (data.startsWith(QLatin1String("%%Sending Cancel%%")))
        return QString();
    if (data.startsWith(QLatin1String("%%Pause Sending%%")))
        return data.mid(17);
    if (data.startsWith(QLatin1String("%%Continue Sending File%%")))
        return data.mid(25);
    if (data.startsWith(QLatin1String("%%Continue Receiving File%%")))
        return data.mid(27);
    if (data.startsWith(QLatin1String("<*> ")))
        return QString();
    if (data.startsWith(QLatin1String("%%Data Received-"))) {
        const qsizetype p = data.indexOf(QLatin1String("%%"), 16);
        return p < 0 ? data.mid(16) : data.mid(p + 2);
    }
    if (data.startsWith(QLatin1String("%%Open Pause Window%%")))
        return data.mid(21);
    if (data.startsWith(QLatin1String("%%Unload%%")))
        return data.mid(10);
    if (data.startsWith(QLatin1String("%%Error%%")))
        return QString();
    return data;
}

}  // namespace vonnel
