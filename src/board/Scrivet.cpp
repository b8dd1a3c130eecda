// The board in a copy: the peer's messages as actions on the model, the
// opening and closing on both sides.

#include "board/Scrivet.h"

#include "access/CipherText.h"
#include "access/Encryption.h"
#include "board/PictureCheck.h"
#include "connection/Session.h"
#include "core/CopyContext.h"
#include "core/Cp1252.h"
#include "core/MainModel.h"
#include "core/Sender.h"
#include "core/Views.h"
#include "platform/Clock.h"
#include "platform/Prompter.h"
#include "transfer/Transfer.h"

#include <QFileInfo>

namespace vonnel {

using namespace board;

Scrivet::Scrivet(CopyContext& ctx, MainModel& model, Session& session, Sender& sender,
                 Encryption& cipher, Transfer& transfer, QObject* parent)
    : QObject(parent), m_ctx(ctx), m_model(model), m_session(session), m_sender(sender),
      m_cipher(cipher), m_transfer(transfer), m_received(m_board, PictureCheck(ctx))
{
    connect(&m_received, &ReceivedPictures::loadFailed, this, [this](const QString& error) {
        m_ctx.prompter().msgBox(QStringLiteral("Load Picture Error: ") + error,
                                MsgStyle::Exclamation);
    });
}

bool Scrivet::isOpen() const
{
    return m_transfer.transferMode == QLatin1String("Scrivet") && m_shown;
}

void Scrivet::Form_Load()
{
    // The colours and the thickness of the last board.
    auto number = [this](const char* key, qint32& value) {
        bool ok = false;
        const qint32 v = m_ctx.setting(QLatin1String(key)).trimmed().toInt(&ok);
        if (ok)
            value = v;
    };
    number("DrawingBoard - ForeColor", m_board.lblForeColour);
    number("DrawingBoard - BackColor", m_board.lblBackColour);
    if (const int t = m_ctx.settingInt(QStringLiteral("DrawingBoard - Thickness")); t > 0)
        m_board.txtThick = t;
    m_board.eraseBkCol(m_board.lblBackColour);
    sampleFore = m_board.lblForeColour;
    sampleBack = m_board.lblBackColour;
    txtClient.clear();
}

void Scrivet::showWindow()
{
    if (!m_shown)
        Form_Load();
    m_shown = true;
    m_ctx.views().showModeless(Form::frmDraw);
}

void Scrivet::windowGone()
{
    m_shown = false;
    Form_Unload();
}

void Scrivet::unloadWindow()
{
    if (!m_shown)
        return;
    m_shown = false;
    m_ctx.views().unload(Form::frmDraw);
}

bool Scrivet::IsConnected() const
{
    return m_sender.IsConnected();
}

bool Scrivet::peerLeft() const
{
    return m_transfer.transferMode == QLatin1String("Vonnel") || txtClient == text(kCloseMark);
}

void Scrivet::sendDrawData(const QString& data)
{
    if (IsConnected())
        m_sender.sendRaw(data);
}

void Scrivet::sendText(const QString& data)
{
    if (IsConnected())
        m_sender.xSendData(data);
}

void Scrivet::setCaption()
{
    const QString name = m_ctx.translate(QStringLiteral("Scrivet"), QStringLiteral("Scrivet"));
    m_caption = IsConnected() ? m_session.PeerHostName + QStringLiteral(" - ") + name : name;
    Q_EMIT captionChanged(m_caption);
}

void Scrivet::hideMainForBoard()
{
    if (m_ctx.settingInt(QStringLiteral("MainVisibleOnDrawMode")) != 0)
        return;
    m_model.setVisible(false);
    m_model.setWindowState(MainModel::vbMinimized);
    Q_EMIT hideMain();
}

void Scrivet::mnuDraw_Click()
{
    if (IsConnected())
        m_sender.xSendData(text(kRequest));
    m_transfer.transferMode = QStringLiteral("Scrivet");
    // A preview up and not maximised takes the screen's width, and its
    // height less the board's strip.
    Q_EMIT fitPreviewToScreen();
    showWindow();
    // On top: the board is what comes to the front.
    if (m_model.controls.checked(Control::mnuViewontop))
        Q_EMIT raiseBoard();
    setCaption();
    m_model.controls.setEnabled(Control::mnuSendFile, false);
    hideMainForBoard();
}

void Scrivet::cmdCloseDraw_Click()
{
    if (m_ctx.views().isVisible(Form::frmProgress))
        return;
    unloadWindow();
    Form_Unload();
}

void Scrivet::Form_Unload()
{
    if (m_transfer.transferMode != QLatin1String("Scrivet"))
        return;
    m_transfer.transferMode = QStringLiteral("Vonnel");
    m_ctx.writeSetting(QStringLiteral("DrawingBoard - ForeColor"),
                       QString::number(m_board.lblForeColour));
    m_ctx.writeSetting(QStringLiteral("DrawingBoard - BackColor"),
                       QString::number(m_board.lblBackColour));
    m_ctx.writeSetting(QStringLiteral("DrawingBoard - Thickness"),
                       QString::number(m_board.txtThick));
    m_board.eraseAll();
    m_received.forget();
    m_tools.reset();
    m_tools.clearStroke();
    m_model.setVisible(true);
    m_model.setWindowState(MainModel::vbNormal);
    m_model.controls.setEnabled(Control::mnuSendFile, true);
    Q_EMIT showMainNormal();
    if (txtClient != text(kCloseMark))
        sendText(text(kClosed));
}

// --- the peer's messages -------------------------------------------------------------

void Scrivet::beforeTests()
{
    m_model.stStatusbar.setPicture(1, StatePicture::picRec);
}

QString Scrivet::decipher(const QString& t) const
{
    if (!m_cipher.remoteEncrypted)
        return t;
    return fromCp1252(getEPass(toCp1252(t), toCp1252(m_cipher.remoteKey)));
}

qint64 Scrivet::nowMs() const
{
    return m_ctx.clock().nowMs();
}

std::optional<QByteArray> Scrivet::joinHeld(const QByteArray& read)
{
    if (!m_check.hasPending())
        return std::nullopt;
    const QString text = fromCp1252(read);
    const QString joined = m_check.joinHeld(text);
    if (joined.size() == text.size())
        return std::nullopt;
    return toCp1252(joined);
}

void Scrivet::request()
{
    m_ctx.requestRing(m_ctx.setting(QStringLiteral("Ring5")));
    m_transfer.transferMode = QStringLiteral("Scrivet");
    hideMainForBoard();
    // The options dialog would stand over the board the peer opened.
    if (m_ctx.views().isVisible(Form::frmOptions))
        m_ctx.views().unload(Form::frmOptions);
    // The ready reset: shows the board and tells the peer it may draw.
    m_session.cmdHiddenNotReady_Click();
    showWindow();
    m_session.cmdHiddenReady_Click();
    setCaption();
}

void Scrivet::ring(const QString& name)
{
    // Only a bare name of a file in the application folder; anything else
    // rings the default.
    QString t = name;
    const bool bare = !t.isEmpty() && !t.contains(u'/') && !t.contains(u'\\') &&
                      !t.contains(QLatin1String(".."));
    if (!bare || !QFileInfo::exists(m_ctx.appFile(t)))
        t = m_ctx.setting(QStringLiteral("Ring5"));
    m_ctx.requestRing(t);
}

void Scrivet::notReady()
{
    m_transfer.drawMenuAllowed = false;
    m_model.controls.setEnabled(Control::mnuDraw, false);
    Q_EMIT pictureToolsEnabled(false);
}

void Scrivet::ready()
{
    m_transfer.drawMenuAllowed = true;
    if (!m_ctx.views().isVisible(Form::frmProgress))
        m_model.controls.setEnabled(Control::mnuDraw, true);
    Q_EMIT pictureToolsEnabled(true);
}

void Scrivet::chat(const QString& line)
{
    if (m_shown) {
        txtClient = line;
        // Newest first; the oldest lines go once the history is full.
        txtClientHist = (line + QStringLiteral("\r\n") + txtClientHist).left(kHistoryLimit);
        m_ctx.showDrawStatus(1, QString(), StatePicture::picRec);
        Q_EMIT clientLineChanged(txtClient);
    }
    Q_EMIT webCheck(line);
}

void Scrivet::foreColor(const RemoteParams& r)
{
    sampleFore = toLong(r.remoteForeColor);
    Q_EMIT labelFontChanged();
}

void Scrivet::backColor(const RemoteParams& r)
{
    const qint32 c = toLong(r.remoteBackColor);
    m_board.lblBackColour = c;
    m_board.eraseBkCol(c);
    sampleBack = c;
    Q_EMIT labelFontChanged();
}

void Scrivet::label(const QString& t, const RemoteParams& r)
{
    BoardLabel font{QString(), r.remoteFontName, r.remoteFontSize, r.remoteBold,
                    r.remoteItalic, r.remoteUnderline, r.remoteStrikethrough};
    m_board.remoteLabel(r.remoteEndX, r.remoteEndY, t, font, toLong(r.remoteForeColor));
}

void Scrivet::rect(const RemoteParams& r)
{
    m_board.drawRect(r.remoteEndX, r.remoteEndY, r.remoteThickness, toLong(r.remoteForeColor),
                     r.remoteStartX, r.remoteStartY);
}

void Scrivet::circle(const RemoteParams& r)
{
    m_board.drawCircle(r.remoteEndX, r.remoteEndY, r.remoteThickness, toLong(r.remoteForeColor),
                       r.remoteStartX, r.remoteStartY);
}

void Scrivet::line(const RemoteParams& r)
{
    m_board.drawLine(r.remoteEndX, r.remoteEndY, r.remoteThickness, toLong(r.remoteForeColor),
                     r.remoteStartX, r.remoteStartY);
}

void Scrivet::strokePoint(qint16 x, qint16 y, const RemoteParams& r, std::optional<QPoint> from)
{
    m_board.drawPoint(x, y, toLong(r.remoteForeColor), r.remoteThickness, from);
}

void Scrivet::erasePoint(qint16 x, qint16 y, const RemoteParams& r)
{
    m_board.erasePoint(x, y, toLong(r.remoteBackColor));
}

void Scrivet::erasePic(qint16 n)
{
    if (!m_board.erasePic(n))
        m_ctx.prompter().msgBox(QStringLiteral("Erase Picture Error: Control array element '") +
                                    QString::number(n) + QStringLiteral("' doesn't exist"),
                                MsgStyle::Exclamation);
}

void Scrivet::eraseLabel(qint16 n)
{
    m_board.eraseLabel(n);
}

void Scrivet::eraseAll()
{
    m_board.eraseAll();
}

void Scrivet::showPic(const RemoteParams& r)
{
    m_board.startX = r.remoteStartX;
    m_board.startY = r.remoteStartY;
    const QRect frame(QPoint(std::min(r.remoteStartX, r.remoteEndX),
                             std::min(r.remoteStartY, r.remoteEndY)),
                      QSize(std::abs(r.remoteEndX - r.remoteStartX),
                            std::abs(r.remoteEndY - r.remoteStartY)));
    const QString path = m_ctx.appFile(QStringLiteral("captscr.jpg"));
    const QFileInfo file(path);
    if (!file.exists()) {
        // The number is taken all the same, so both sides stay in step.
        m_board.addPicture(frame, QImage());
        m_ctx.prompter().msgBox(QStringLiteral("Cannot find captscr.jpg for display"),
                                MsgStyle::Exclamation, QStringLiteral("File Error"));
        return;
    }
    // Loaded as it is, with no byte check of its own: each new file once,
    // within the decoding limits and off this thread; a show of the same
    // file again takes what that gave, and a failure is told once per file.
    m_received.show(path, frame);
}

void Scrivet::closed()
{
    // The peer leaving the board is the internal bell, as its request is.
    m_ctx.requestRing(m_ctx.setting(QStringLiteral("Ring5")));
    txtClient = text(kCloseMark);
    Q_EMIT clientLineChanged(txtClient);
    if (m_shown) {
        unloadWindow();
        Form_Unload();
    }
}

void Scrivet::protocolError(const QString& t)
{
    m_ctx.prompter().msgBox(t, MsgStyle::Exclamation);
    showWindow();
}

}  // namespace vonnel
