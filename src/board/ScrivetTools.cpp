// The local side of the board: the tools, the mouse and what each sends.
// Every object is made by the same routines the peer's messages use.

#include "board/Scrivet.h"

#include "connection/Session.h"
#include "access/Encryption.h"
#include "core/CopyContext.h"
#include "core/Sender.h"
#include "core/Views.h"
#include "core/WireCodec.h"
#include "platform/Prompter.h"
#include "wire/LiveTyping.h"

namespace vonnel {

using namespace board;

namespace {

ItemKind bandKind(const BoardTools& t)
{
    if (t.toolLine)
        return ItemKind::Line;
    if (t.toolCircle)
        return ItemKind::Oval;
    return ItemKind::Rect;
}

}  // namespace

void Scrivet::selectTool(BoardTool tool)
{
    m_caption = m_session.PeerHostName + QStringLiteral("  ") +
                m_ctx.translate(QStringLiteral("Scrivet"), QStringLiteral("Scrivet"));
    Q_EMIT captionChanged(m_caption);
    m_tools.reset();
    Q_EMIT undoVisible(false);
    sendText(board::foreColor(m_board.lblForeColour));
    if (tool == BoardTool::Capture || tool == BoardTool::Image) {
        if (m_ctx.views().isVisible(Form::frmProgress)) {
            m_ctx.prompter().msgBox(
                QStringLiteral("Please wait until the file trsanferring finished or unload the "
                               "file transfering window."),
                MsgStyle::Information, QStringLiteral("Info"));
            return;
        }
    }
    m_tools.select(tool);
    switch (tool) {
    case BoardTool::Draw:
    case BoardTool::Line:
    case BoardTool::Rect:
    case BoardTool::Circle:
        if (const int t = m_ctx.settingInt(QStringLiteral("DrawingBoard - Thickness")); t > 0)
            m_board.txtThick = t;
        // The thickness controls take the value and tell the peer.
        setThickness(m_board.txtThick);
        sendText(board::foreColor(m_board.lblForeColour));
        sendText(board::backColor(m_board.lblBackColour));
        break;
    case BoardTool::Text: {
        // The font of the last choice; a key never written leaves what
        // the sample shows.
        const auto flag = [this](const char* key, bool& value) {
            const QString v = m_ctx.setting(QLatin1String(key)).trimmed();
            if (!v.isEmpty())
                value = m_ctx.settingFlag(QLatin1String(key));
        };
        BoardLabel font = labelFont;
        if (const QString name = m_ctx.setting(QStringLiteral("DrawingBoard - Font")); !name.isEmpty())
            font.fontName = name;
        flag("DrawingBoard - FontBold", font.bold);
        flag("DrawingBoard - FontItalic", font.italic);
        flag("DrawingBoard - FontUnderline", font.underline);
        if (const int size = m_ctx.settingInt(QStringLiteral("DrawingBoard - FontSize")); size > 0)
            font.fontSize = size;
        labelFont = font;
        const auto colour = [this](const char* key, qint32& value) {
            bool ok = false;
            const qint32 v = m_ctx.setting(QLatin1String(key)).trimmed().toInt(&ok);
            if (ok)
                value = v;
        };
        colour("DrawingBoard - FontForeColor", sampleFore);
        colour("DrawingBoard - FontBackColor", sampleBack);
        // Only the font dialog tells the peer: a peer of the old wire hears
        // nothing at a tool selection but the colours.
        Q_EMIT labelFontChanged();
        break;
    }
    default:
        break;
    }
    Q_EMIT toolChanged(tool);
}

void Scrivet::markHere(const char* where)
{
    const qint16 x = m_tools.curX, y = m_tools.curY;
    // Joined to the point before it only where the peer gets both in the
    // same stroke message, so both boards paint the same band.
    const BoardTools& t = m_tools;
    std::optional<QPoint> from;
    if (t.strokeCount > 0 && t.strokeCount < BoardTools::kStrokeLimit)
        from = QPoint(t.strokeX[t.strokeCount], t.strokeY[t.strokeCount]);
    if (m_tools.toolDraw)
        m_board.drawPoint(x, y, m_board.lblForeColour, qint16(m_board.txtThick), from);
    else
        m_board.erasePoint(x, y, m_board.lblBackColour);
    // The 501st point does not fit the stroke; it is told once a stroke.
    if (!m_tools.addPoint(x, y) && m_tools.takeFirstFailure())
        m_ctx.prompter().msgBox(QStringLiteral("Draw On Object ") + QLatin1String(where) +
                                    QStringLiteral(" Error: Subscript out of range"),
                                MsgStyle::Exclamation);
}

void Scrivet::mouseDown(int x, int y, bool rightButton)
{
    (void)rightButton;
    m_tools.setCurrent(x, y);
    if (!m_tools.press())
        return;
    if ((m_tools.toolCapture && m_tools.capturePending) ||
        (m_tools.toolImage && m_tools.imagePending))
        return;
    if (m_tools.sendsEnds())
        sendText(board::start(m_tools.startX, m_tools.startY));
    m_board.startX = m_tools.startX;
    m_board.startY = m_tools.startY;
    if (m_tools.toolDraw || m_tools.toolErase)
        markHere("MD");
}

void Scrivet::mouseMove(int x, int y, bool leftDown)
{
    m_tools.setCurrent(x, y);
    m_tools.countMove();
    Q_EMIT userBack();
    if (const QString h = m_tools.hint(); h != m_hint) {
        m_hint = h;
        Q_EMIT hintChanged(m_ctx.translate(h));
    }
    if (!leftDown)
        return;
    const BoardTools& t = m_tools;
    if (t.toolDraw || t.toolErase) {
        markHere("MM");
    } else if (t.shapeTool()) {
        m_tools.band = Board::band(bandKind(t), t.curX, t.curY, t.startX, t.startY,
                                   t.toolLine ? m_board.txtThick * 3 : m_board.txtThick,
                                   boardColour(m_board.lblForeColour));
        Q_EMIT bandChanged();
    } else if (t.toolCapture || t.toolImage) {
        m_tools.band = Board::band(ItemKind::Rect, t.curX, t.curY, t.startX, t.startY, 1,
                                   boardColour(m_board.lblForeColour));
        Q_EMIT bandChanged();
    }
}

void Scrivet::mouseUp(int x, int y, bool rightButton)
{
    m_tools.setCurrent(x, y);
    BoardTools& t = m_tools;
    if (t.sendsEnds())
        sendText(board::end(t.curX, t.curY));
    if (t.toolText && !rightButton) {
        textTool();
    } else if (t.shapeTool()) {
        t.band.reset();
        Q_EMIT bandChanged();
        const qint16 thick = qint16(m_board.txtThick);
        if (t.toolRect) {
            m_board.drawRect(t.curX, t.curY, thick, m_board.lblForeColour, t.startX, t.startY);
            sendDrawData(text(kRect));
        } else if (t.toolCircle) {
            m_board.drawCircle(t.curX, t.curY, thick, m_board.lblForeColour, t.startX, t.startY);
            sendDrawData(text(kCircle));
        } else {
            m_board.drawLine(t.curX, t.curY, thick, m_board.lblForeColour, t.startX, t.startY);
            sendDrawData(text(kLine));
        }
    } else if (t.toolImage && !rightButton) {
        // The frame stays up while the picture is chosen.
        pictureRoutine(t.curX, t.curY);
        if (!m_preview) {
            t.band.reset();
            Q_EMIT bandChanged();
        }
    } else if (t.toolCapture && !rightButton) {
        captureRoutine(t.curX, t.curY);
        if (!m_preview) {
            t.band.reset();
            Q_EMIT bandChanged();
        }
    }
    if (t.toolDraw) {
        // The release's own point, when the mouse moved on after the last
        // one: made and sent like the others, so the peer has it too.
        const bool moved = t.strokeCount == 0 || t.strokeX[t.strokeCount] != t.curX ||
                           t.strokeY[t.strokeCount] != t.curY;
        if (moved)
            markHere("MU");
        sendDrawData(board::stroke(t.strokePoints()));
        t.clearStroke();
    }
    if (rightButton) {
        Q_EMIT popupRequested(t.toolErase && m_sendingPicture != QLatin1String("True"));
        return;
    }
    if (t.toolErase) {
        sendText(board::erase(t.strokePoints()));
        t.clearStroke();
    }
}

void Scrivet::textTool()
{
    const std::optional<QString> answer = m_ctx.prompter().input(
        QStringLiteral("Text"), QStringLiteral("Enter text here"), QString());
    // The label is made only once it is certain to go out, so the peer's
    // numbers stay the same as ours.
    if (peerLeft())
        return;
    const QString t = answer.value_or(QString());
    const int n = m_board.remoteLabel(m_tools.curX, m_tools.curY, t, labelFont,
                                      m_board.lblForeColour);
    sendText(board::label(t));
    m_tools.lastObjectKind = QStringLiteral("Label");
    m_tools.lastObjectNumber = n;
    Q_EMIT undoVisible(n > 0);
}

void Scrivet::cmdUndo_Click()
{
    if (m_tools.lastObjectKind != QLatin1String("Label"))
        return;
    eraseLabelByUser(m_tools.lastObjectNumber);
    m_tools.lastObjectKind.clear();
    Q_EMIT undoVisible(false);
}

void Scrivet::eraseLabelByUser(int n)
{
    m_board.eraseLabel(n);
    sendText(board::eraseLabel(n));
}

void Scrivet::mnuEraseAll_Click()
{
    m_board.eraseAll();
    sendText(text(kEraseAll));
}

void Scrivet::setForeColour(qint32 colour)
{
    m_board.lblForeColour = colour;
    sampleFore = colour;
    Q_EMIT labelFontChanged();
    sendText(board::foreColor(colour));
}

void Scrivet::setBackColour(qint32 colour)
{
    m_board.lblBackColour = colour;
    m_board.eraseBkCol(colour);
    sampleBack = colour;
    Q_EMIT labelFontChanged();
    sendText(board::backColor(colour));
}

void Scrivet::setThickness(int n)
{
    // Kept at once: the next drawing tool loads it from the key.
    if (n != m_board.txtThick || m_ctx.settingInt(QStringLiteral("DrawingBoard - Thickness")) != n)
        m_ctx.writeSetting(QStringLiteral("DrawingBoard - Thickness"), QString::number(n));
    m_board.txtThick = n;
    sendText(board::thickness(n));
}

void Scrivet::setLabelFont(const BoardLabel& font)
{
    if (peerLeft())
        return;
    labelFont = font;
    Q_EMIT labelFontChanged();
    if (!IsConnected())
        return;
    sendText(board::font({font.fontName, float(font.fontSize), font.bold, font.italic,
                          font.underline, font.strikethrough}));
}

void Scrivet::cmdFontSetting_Click(const BoardLabel& font)
{
    if (peerLeft())
        return;
    const auto flag = [](bool on) { return on ? QStringLiteral("1") : QStringLiteral("0"); };
    m_ctx.writeSetting(QStringLiteral("DrawingBoard - Font"), font.fontName);
    m_ctx.writeSetting(QStringLiteral("DrawingBoard - FontSize"), QString::number(font.fontSize));
    m_ctx.writeSetting(QStringLiteral("DrawingBoard - FontBold"), flag(font.bold));
    m_ctx.writeSetting(QStringLiteral("DrawingBoard - FontItalic"), flag(font.italic));
    m_ctx.writeSetting(QStringLiteral("DrawingBoard - FontUnderline"), flag(font.underline));
    // The sample's colours, as it shows the label.
    m_ctx.writeSetting(QStringLiteral("DrawingBoard - FontForeColor"),
                       QString::number(m_board.lblForeColour));
    m_ctx.writeSetting(QStringLiteral("DrawingBoard - FontBackColor"),
                       QString::number(m_board.lblBackColour));
    setLabelFont(font);
}

void Scrivet::ringPeer()
{
    const QString name = m_ctx.rings.Ring;
    m_ctx.requestRing(name);
    sendText(board::ring(name));
}

void Scrivet::cmdSendText_Click(const QString& line)
{
    if (line == QLatin1String("set transparent on") || line == QLatin1String("set transparent off")) {
        seeThrough = line.endsWith(QLatin1String("on"));
        Q_EMIT seeThroughChanged(seeThrough);
        return;
    }
    // Under encryption the cipher takes single-byte text only.
    if (m_cipher.encryptOn && IsConnected()) {
        for (const QChar c : line) {
            if (!LiveTyping::isDoubleByte(c))
                continue;
            m_ctx.prompter().msgBox(
                QStringLiteral("Encryption Error: generated by < ") + c + QStringLiteral(" >\r\n\r\n") +
                    QStringLiteral("Please note: Double bytes characters such as Chinese, Japenese, "
                                   "Korean are not supported for encryption.\r\n\r\n") +
                    QStringLiteral("Please disconnect, turn off encryption and reconnect again!"),
                MsgStyle::Exclamation);
            return;
        }
    }
    // Read aloud here, spoken at the peer, then the line itself: as a
    // finished line of the pane.
    if (!m_ctx.settingFlag(QStringLiteral("Local Speaker Off")) && speakLocalLine)
        speakLocalLine(line);
    if (!m_ctx.settingFlag(QStringLiteral("Disable Auto TTS Signal")))
        sendText(wire::text(wire::kSpeakOpen) + line + wire::text(wire::kSpeakClose));
    sendText(board::chatLine(line));
    txtServerHist += line + QStringLiteral("\r\n");
    if (txtServerHist.size() > kHistoryLimit)
        txtServerHist = txtServerHist.right(kHistoryLimit);
}

}  // namespace vonnel
