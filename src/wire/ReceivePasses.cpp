// One pass of the receive loop: the stages in their fixed order, each
// taking the frame it knows off the start of what the previous left. The
// frames are cut on the bytes with the wire codec; the stages that hand
// text on to the control, file and board checks give them text.

#include "wire/Receiver.h"

#include "connection/PrivateLink.h"

#include "access/Encryption.h"
#include "connection/Connection.h"
#include "connection/Session.h"
#include "core/CopyContext.h"
#include "core/Cp1252.h"
#include "core/MainModel.h"
#include "core/WireCodec.h"
#include "platform/Prompter.h"
#include "wire/FrameText.h"
#include "wire/RemotePane.h"

#include <array>

namespace vonnel {

namespace {
// The peer's version text: control characters around it do not count.
QString trimControl(const QString& s)
{
    qsizetype b = 0, e = s.size();
    while (b < e && s.at(b).unicode() <= 0x20)
        ++b;
    while (e > b && s.at(e - 1).unicode() <= 0x20)
        --e;
    return s.mid(b, e - b);
}
}  // namespace

// What a pass has left of the arrival's text, as bytes with a read position.
struct Receiver::Pass {
    int index;
    QByteArray buf;
    qsizetype pos = 0;
    QByteArray& bytes;  // the whole read, for the file dispatcher

    QByteArrayView rest() const { return QByteArrayView(buf).sliced(pos); }
    bool startsWith(QByteArrayView word) const { return rest().startsWith(word); }
    void take(qsizetype n) { pos += n; }
    QString restText() const { return fromCp1252(rest()); }
    void setRestText(const QString& text)
    {
        buf = toCp1252(text);
        pos = 0;
    }
    // Takes the frame between open and close off the start; its inner text.
    QString takeWrapped(QByteArrayView open, QByteArrayView close, bool* closed = nullptr)
    {
        const wire::Cut cut = wire::cutFrame(rest(), open, close);
        const QString inner = fromCp1252(cut.inner);
        if (closed)
            *closed = cut.closed;
        take(cut.consumed);
        return inner;
    }
};

bool Receiver::runPass(int index, QString& text, QByteArray& bytes)
{
    using Stage = bool (Receiver::*)(Pass&);
    // The order of the tests is the wire's: each sees what the one before
    // it left.
    static constexpr std::array<Stage, 14> kStages = {
        &Receiver::versionStage,  &Receiver::keyFrameStage, &Receiver::singleCharacterStage,
        &Receiver::oldCipherStage, &Receiver::keyStrokeStage, &Receiver::controlStage,
        &Receiver::pasteStage,    &Receiver::urlStage,      &Receiver::speakerSetStage,
        &Receiver::speakStage,    &Receiver::messageStage,  &Receiver::fileStage,
        &Receiver::dataStage,     &Receiver::boardStage};
    Pass pass{index, toCp1252(text), 0, bytes};
    bool goOn = true;
    for (Stage stage : kStages)
        if (!(this->*stage)(pass)) {
            goOn = false;
            break;
        }
    text = pass.restText();
    return goOn;
}

bool Receiver::versionStage(Pass& pass)
{
    if (!pass.startsWith(wire::kVersionOpen))
        return true;
    const wire::Cut cut = wire::cutFrame(pass.rest(), wire::kVersionOpen, wire::kVersionClose);
    m_connection.privateLink().peerVersion(trimControl(fromCp1252(cut.inner)));
    if (m_ctx.settingInt(QStringLiteral("Version Check")) == 1) {
        const QString theirs = trimControl(fromCp1252(cut.inner));
        const QString ours = trimControl(m_ctx.VersionString);
        if (theirs != ours) {
            m_ctx.prompter().msgBox(
                m_ctx.translate(QStringLiteral("Warning: Incompatible version of Vonnel:: it may "
                                               "cause strange characters and/or unexpected error.")) +
                    QLatin1Char('\r') + m_ctx.translate(QStringLiteral("Remote user's version - ")) +
                    theirs + QLatin1Char('\r') +
                    m_ctx.translate(QStringLiteral(" Your version - ")) + ours,
                MsgStyle::Exclamation, m_ctx.translate(QStringLiteral("Version Conflict")));
            Q_EMIT updateRequested();
            Q_EMIT versionConflict();
        }
    }
    pass.take(cut.consumed);
    m_model.txtServer.setEnabled(true);
    return true;
}

bool Receiver::keyFrameStage(Pass& pass)
{
    if (pass.startsWith(wire::kKeyFrameOpen)) {
        QString text = pass.restText();
        m_cipher.takeRemoteKey(text);
        pass.setRestText(text);
    }
    m_model.txtClient(pass.index).caretToEnd();
    return true;
}

bool Receiver::singleCharacterStage(Pass& pass)
{
    if (pass.rest().size() != 1)
        return true;
    // Only a read that is "&" and nothing else: a rest of one "&" behind
    // other frames of the read is the board's (see boardStage).
    if (pass.bytes == QByteArrayView("&")) {
        holdLoneAmpersand();
        pass.take(1);
        return false;
    }
    if (acceptIncompatible)
        cFinishCheck(pass.restText());
    pass.take(1);
    return false;
}

void Receiver::holdLoneAmpersand()
{
    releaseLoneAmpersand();  // one at a time: an earlier one goes first
    m_loneAmpersand = true;
    m_loneTimer.start();
}

void Receiver::joinLoneAmpersand(QByteArray& bytes)
{
    if (!m_loneAmpersand)
        return;
    // The rest of a board message is "&" and its word; "&&" behind it is
    // the doubled "&&" of the text, and a bare character is typed text.
    if (bytes.size() > 1 && bytes.at(0) == '&' && bytes.at(1) != '&') {
        m_loneTimer.stop();
        m_loneAmpersand = false;
        bytes.prepend('&');
        return;
    }
    releaseLoneAmpersand();
}

void Receiver::releaseLoneAmpersand()
{
    m_loneTimer.stop();
    if (!std::exchange(m_loneAmpersand, false))
        return;
    if (acceptIncompatible && !m_ctx.unloading)
        cFinishCheck(QStringLiteral("&"));
}

bool Receiver::oldCipherStage(Pass& pass)
{
    if (!pass.startsWith(wire::kOldCipherOpen))
        return true;
    const QString inner = pass.takeWrapped(wire::kOldCipherOpen, wire::kOldCipherClose);
    // Taken apart with the peer's key whatever the encryption state.
    cFinishCheck(m_cipher.decipherOld(inner));
    return true;
}

bool Receiver::keyStrokeStage(Pass& pass)
{
    if (!pass.startsWith(wire::kKeyOpen))
        return true;
    const wire::KeyStroke key = wire::cutKeyStroke(pass.rest());
    const QString c = decipher(fromCp1252(key.character));
    const QString position = fromCp1252(key.position);
    pass.take(key.consumed);
    // A split frame leaves no position, which is no failure; one that is
    // there and is no number is. The previous position stays.
    if (!readPosition(position, m_keyPosition) && !position.trimmed().isEmpty())
        m_faults.raise(fault::kTypeMismatch, QStringLiteral("Type mismatch"));
    m_pane->typedCharacter(c, m_keyPosition);
    refreshLengths();
    return true;
}

bool Receiver::controlStage(Pass& pass)
{
    if (!pass.startsWith(wire::kControl))
        return true;
    if (pass.rest().size() < 2 || pass.rest().at(1) != '^') {
        QString text = pass.restText();
        pass.setRestText(cControlCheck(text));
    } else {
        cFinishCheck(QStringLiteral("^"));
        pass.take(1);
    }
    return true;
}

bool Receiver::pasteStage(Pass& pass)
{
    if (!pass.startsWith(wire::kPasteOpen))
        return true;
    const QString inner = pass.takeWrapped(wire::kPasteOpen, wire::kPasteClose);
    cFinishCheck(decipher(inner));
    return true;
}

bool Receiver::urlStage(Pass& pass)
{
    if (!pass.startsWith(wire::kUrlOpen))
        return true;
    const QString inner = pass.takeWrapped(wire::kUrlOpen, wire::kUrlClose);
    Q_EMIT webCheck(decipher(inner));
    return true;
}

bool Receiver::speakerSetStage(Pass& pass)
{
    if (!pass.startsWith(wire::kSpeakerSetOpen))
        return true;
    bool closed = false;
    const QString inner =
        pass.takeWrapped(wire::kSpeakerSetOpen, wire::kSpeakerSetClose, &closed);
    // A frame cut short by the read is no failure and is not taken: the
    // voice as it was set before stays.
    if (closed)
        Q_EMIT speakerSettingReceived(inner);
    m_faults.reportStage(QStringLiteral("SPKSET "));
    return true;
}

bool Receiver::speakStage(Pass& pass)
{
    if (!pass.startsWith(wire::kSpeakOpen))
        return true;
    const QString inner = pass.takeWrapped(wire::kSpeakOpen, wire::kSpeakClose);
    Q_EMIT speakReceived(decipherInStage(inner), false);
    m_faults.reportStage(QStringLiteral("SPK "));
    return true;
}

bool Receiver::messageStage(Pass& pass)
{
    if (!pass.startsWith(wire::kMessageOpen))
        return true;
    const QString inner = pass.takeWrapped(wire::kMessageOpen, wire::kMessageClose);
    takeRecordLine(decipherInStage(inner));
    m_faults.reportStage(QStringLiteral("MSG "));
    return true;
}

bool Receiver::fileStage(Pass& pass)
{
    if (!pass.startsWith(wire::kFileHead))
        return true;
    if (pass.rest().size() < 3 || pass.rest().at(2) != '%') {
        QString text = pass.restText();
        pass.setRestText(cSendFileCheck(text, pass.bytes));
    } else {
        cFinishCheck(QStringLiteral("%%"));
        pass.take(2);
    }
    return true;
}

bool Receiver::dataStage(Pass& pass)
{
    if (!pass.startsWith(wire::kDataOpen))
        return true;
    QString text = pass.restText();
    pass.setRestText(cSendFileCheck(text, pass.bytes));
    m_faults.reportStage(QStringLiteral("File Fransfer "));
    return true;
}

bool Receiver::boardStage(Pass& pass)
{
    // One "&" left at the end of a read behind other frames is where the
    // read cut a board message after its first character: the board holds
    // it for the next read. (A read of "&" alone waits in the receiver.)
    const bool cutAfterFirst = pass.rest() == QByteArrayView("&");
    if (!pass.startsWith(wire::kBoardHead) && !cutAfterFirst)
        return true;
    if (pass.rest().size() < 3 || pass.rest().at(2) != '&') {
        QString text = pass.restText();
        pass.setRestText(cDrawcheck(text));
    } else {
        cFinishCheck(QStringLiteral("&&"));
        pass.take(2);
    }
    return true;
}

}  // namespace vonnel
