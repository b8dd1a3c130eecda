#pragma once
// The board in a copy: its model, the reading of the peer's messages, the
// opening and closing on both sides and the senders. The window (frmDraw)
// is a view on this; without one (headless, tests) the board still keeps
// its objects and answers the peer.

#include "board/Board.h"
#include "board/BoardTools.h"
#include "board/DrawCheck.h"
#include "board/PictureCheck.h"
#include "board/ReceivedPictures.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QImage>
#include <functional>
#include <optional>

namespace vonnel {

class CopyContext;
class MainModel;
class Session;
class Sender;
class Encryption;
class Transfer;

class Scrivet : public QObject, private DrawTarget {
    Q_OBJECT
public:
    Scrivet(CopyContext& ctx, MainModel& model, Session& session, Sender& sender,
            Encryption& cipher, Transfer& transfer, QObject* parent = nullptr);

    Board& board() { return m_board; }
    const Board& board() const { return m_board; }
    const ReceivedPictures& receivedPictures() const { return m_received; }
    BoardTools& tools() { return m_tools; }
    DrawCheck& check() { return m_check; }

    // The receive loop's entry for "&&" messages.
    QString cDrawcheck(QString& data) { return m_check.cDrawcheck(data); }
    // A read behind one that ended inside a board message: the two as one
    // read when this one can be that message's rest; nothing when nothing
    // is held or the held part was given up and the read goes on alone.
    std::optional<QByteArray> joinHeld(const QByteArray& read);

    // Opens the board here and asks the peer to open it.
    void mnuDraw_Click();
    // The board's close: objects erased, the main window back, the peer told
    // unless it has left already.
    void cmdCloseDraw_Click();
    // The board's end however it comes (its close, the window's, the peer's).
    void Form_Unload();
    bool isOpen() const;
    // frmDraw shown and taken away, as the board itself knows it (a copy
    // without windows keeps its board all the same).
    bool visible() const { return m_shown; }
    void showWindow();
    // The board's start: the last colours and thickness, no peer's line.
    void Form_Load();
    void unloadWindow();
    // The window was taken away from outside (a new session unloads it):
    // the board ends as at its own close.
    void windowGone();

    // --- the local side's senders ---------------------------------------------------
    // frmDraw's raw write: straight to the session when it is connected.
    void sendDrawData(const QString& text);
    bool IsConnected() const;
    // The chat strip's Send (also Enter).
    void cmdSendText_Click(const QString& text);
    void mnuEraseAll_Click();
    // Takes back the last label.
    void cmdUndo_Click();
    void eraseLabelByUser(int n);
    // A new colour or thickness chosen here.
    void setForeColour(qint32 colour);
    void setBackColour(qint32 colour);
    void setThickness(int n);
    // The font of our labels (txtFont), sent to the peer.
    void setLabelFont(const BoardLabel& font);
    BoardLabel labelFont;
    // The font dialog's choice: the label font, kept in the DrawingBoard -
    // Font keys for the next Text selection and the next board.
    void cmdFontSetting_Click(const BoardLabel& font);
    // A line of the chat strip to be read aloud here (speech lives beside
    // the board, not under it).
    std::function<void(const QString&)> speakLocalLine;
    // Ctrl+G on the board: the ring here and at the peer.
    void ringPeer();

    // --- the mouse, in twips on the surface ------------------------------------------
    void selectTool(BoardTool tool);
    void mouseDown(int x, int y, bool rightButton = false);
    void mouseMove(int x, int y, bool leftDown);
    void mouseUp(int x, int y, bool rightButton = false);

    // --- pictures ---------------------------------------------------------------------
    // A picture waiting in frmTmp for the user's choice: the whole picture
    // and the frame's size in pixels.
    struct Preview {
        QImage picture;
        QString title;
        QSize frame;
    };
    const std::optional<Preview>& preview() const { return m_preview; }
    // The image tool at the release: frame, file, checks, then the preview.
    void pictureRoutine(qint16 x, qint16 y);
    // The capture tool at the release: frame, the waits (2 seconds, then
    // Capture Time, at least 3) with the board put away, the screen, the
    // preview.
    void captureRoutine(qint16 x, qint16 y);
    // How the capture waits, yielding to events (false when the copy is
    // ending) and takes the screen; the system's unless a test sets them.
    std::function<bool(int ms)> waitFor;
    std::function<QImage(QString* why)> grabScreen;
    // frmTmp's choice: the part at the frame's size from this point of the
    // picture goes on the board; or nothing does.
    void confirmPreview(QPoint at);
    void cancelPreview();
    // frmTmp's mnuOpen: another file in the preview, through the same
    // checks; mnuSaveAs: the previewed picture as a JPEG at quality 85.
    // Returns the file written, empty when none.
    void openPreviewFile();
    QString savePreviewAs();
    // A named file (dropped on frmTmp, picked in frmDlg) into the preview,
    // through the same checks; false when none of it was shown.
    bool openPreviewPath(const QString& path);
    // The chosen picture becomes an object, captscr.jpg and the peer's.
    void PostCapture(const QImage& picture);

    // txtFont's colours: ours, and the peer's as its "&&fc" and "&&bc" say.
    qint32 sampleFore = 0;
    qint32 sampleBack = 0xFFFFFF;

    // The peer's line on the board ("<Close>" once it has left) and the
    // histories of the strip, each kept to kHistoryLimit characters.
    static constexpr qsizetype kHistoryLimit = 65536;
    QString txtClient;
    QString txtClientHist;
    QString txtServerHist;
    bool seeThrough = false;
    // The board's caption.
    QString caption() const { return m_caption; }
    // The copy the board belongs to (its windows translate through it).
    CopyContext& ctx() const { return m_ctx; }

    // lblSending: "True" while a picture of ours is on its way.
    void setSendingPicture(const QString& caption) { m_sendingPicture = caption; }

Q_SIGNALS:
    void clientLineChanged(const QString& text);
    // txtFont shows another font or colours.
    void labelFontChanged();
    // On top: the board comes to the front (topmost and back again).
    void raiseBoard();
    // A preview window up and not maximised takes the screen's width and
    // its height less 600 twips.
    void fitPreviewToScreen();
    // The mouse moved over the surface: a user who was away is back.
    void userBack();
    void captionChanged(const QString& caption);
    void hintChanged(const QString& hint);
    void toolChanged(BoardTool tool);
    // The frame of a shape under way moved or went away.
    void bandChanged();
    void undoVisible(bool visible);
    // The right button's menu: the erase menu, or the board's own.
    void popupRequested(bool eraseMenu);
    // frmTmp is to show preview().
    void previewRequested();
    // The board's window goes out of the way of the capture, and back.
    void minimiseBoard(bool minimised);
    // Buttons 7 and 8 (Capture, Image) follow the peer's ready state.
    void pictureToolsEnabled(bool enabled);
    void seeThroughChanged(bool on);
    // The chat line of the peer for the address scan.
    void webCheck(const QString& text);
    // The main window is to hide (board only) or come back.
    void hideMain();
    void showMainNormal();

private:
    // DrawTarget
    void beforeTests() override;
    qint32 localForeColour() const override { return m_board.lblForeColour; }
    qint32 localBackColour() const override { return m_board.lblBackColour; }
    QString decipher(const QString& text) const override;
    qint64 nowMs() const override;
    void request() override;
    void ring(const QString& name) override;
    void notReady() override;
    void ready() override;
    void chat(const QString& line) override;
    void foreColor(const RemoteParams& r) override;
    void backColor(const RemoteParams& r) override;
    void label(const QString& text, const RemoteParams& r) override;
    void rect(const RemoteParams& r) override;
    void circle(const RemoteParams& r) override;
    void line(const RemoteParams& r) override;
    void strokePoint(qint16 x, qint16 y, const RemoteParams& r,
                     std::optional<QPoint> from) override;
    void erasePoint(qint16 x, qint16 y, const RemoteParams& r) override;
    void erasePic(qint16 n) override;
    void eraseLabel(qint16 n) override;
    void eraseAll() override;
    void showPic(const RemoteParams& r) override;
    void closed() override;
    void protocolError(const QString& text) override;

    void setCaption();
    void hideMainForBoard();
    bool peerLeft() const;
    void sendText(const QString& text);
    // A dot or an erase patch at the mouse, kept in the stroke.
    void markHere(const char* where);
    void textTool();
    bool frameLargeEnough(qint16 x, qint16 y) const;
    // A picture file through the file, memory and byte checks; null when
    // one of them refused it (and has said so).
    QImage checkedPicture(const QString& path);
    bool waitYielding(int ms);
    void writeFrameSize(qint16 x, qint16 y);

    CopyContext& m_ctx;
    MainModel& m_model;
    Session& m_session;
    Sender& m_sender;
    Encryption& m_cipher;
    Transfer& m_transfer;
    Board m_board;
    BoardTools m_tools;
    DrawCheck m_check{*this};
    QString m_caption;
    QString m_hint;
    bool m_shown = false;
    std::optional<Preview> m_preview;
    // The frame's end until the picture is placed (txtX, txtY).
    qint16 m_txtX = 0, m_txtY = 0;
    QString m_sendingPicture = QStringLiteral("False");
    // The peer's picture file, decoded once per file off this thread.
    ReceivedPictures m_received;
};

}  // namespace vonnel
