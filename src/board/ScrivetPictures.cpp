// Pictures on the board: the capture's frame, waits and screen, the image
// tool's frame and file, the preview
// waiting for the user's choice (frmTmp shows it), and PostCapture, which
// makes the object, writes captscr.jpg and offers it to the peer.

#include "board/Scrivet.h"

#include "board/PictureCheck.h"
#include "core/CopyContext.h"
#include "core/MainModel.h"
#include "core/Twips.h"
#include "platform/Prompter.h"
#include "platform/ScreenGrab.h"
#include "transfer/Transfer.h"

#include <QFile>
#include <QFileInfo>
#include <QEventLoop>
#include <QImageWriter>
#include <QTimer>

namespace vonnel {

namespace {

const QString kPictureFilter = QStringLiteral(
    "All Supported Format| *.jpg;*.gif;*.bmp;*.wmf;*.emf;*.ico;*.cur|JPEG Files (*.jpg)|*.jpg|"
    "Gif Files (*.gif)|*.gif|Windows Meta Files (*.wmf)|*.wmf|Enhanced Meta Files (*.emf)|*.emf|"
    "Bitmap (*.bmp)|*.bmp|Icon (*.ico)|*.ico|Cursor (*.cur)|*.cur|All (*.*)|*.*");

}  // namespace

bool Scrivet::frameLargeEnough(qint16 x, qint16 y) const
{
    return std::abs(x - m_tools.startX) >= 200 && std::abs(y - m_tools.startY) >= 200;
}

void Scrivet::writeFrameSize(qint16 x, qint16 y)
{
    m_txtX = x;
    m_txtY = y;
    m_ctx.writeSetting(QStringLiteral("Capture Width"),
                       QString::number(std::abs(m_tools.startX - x)));
    m_ctx.writeSetting(QStringLiteral("Capture Height"),
                       QString::number(std::abs(m_tools.startY - y)));
}

QImage Scrivet::checkedPicture(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists() || info.size() == 0) {
        m_ctx.prompter().msgBox(QStringLiteral("File does not exist or zero byte file."));
        return QImage();
    }
    PictureCheck check(m_ctx);
    if (!check.memoryIsEnough(info.size()) || !check.pictureIsValid(path))
        return QImage();
    const QImage picture = PictureCheck::load(path);
    if (picture.isNull()) {
        m_ctx.prompter().msgBox(info.fileName() + QStringLiteral(" or file cannot be opened."));
        m_sendingPicture = QStringLiteral("False");
    }
    return picture;
}

void Scrivet::openPreviewFile()
{
    if (!m_preview)
        return;
    FileRequest request;
    request.title = QStringLiteral("Open File");
    request.filter = kPictureFilter;
    const QString path = m_ctx.prompter().file(request);
    if (path.isEmpty())
        return;
    openPreviewPath(path);
}

bool Scrivet::openPreviewPath(const QString& path)
{
    if (!m_preview)
        return false;
    const QImage picture = checkedPicture(path);
    if (picture.isNull() || !m_preview)
        return false;
    m_preview->picture = picture;
    m_preview->title = QFileInfo(path).fileName() + QStringLiteral(" - Picture Preview");
    Q_EMIT previewRequested();
    return true;
}

QString Scrivet::savePreviewAs()
{
    if (!m_preview)
        return QString();
    FileRequest request;
    request.save = true;
    request.title = QStringLiteral("Save as");
    request.filter = QStringLiteral("JPEG Files *.jpg|*.jpg");
    QString path = m_ctx.prompter().file(request);
    if (path.isEmpty())
        return QString();
    if (!path.endsWith(QLatin1String(".jpg"), Qt::CaseInsensitive))
        path += QStringLiteral(".jpg");
    QImageWriter writer(path, "jpg");
    writer.setQuality(85);
    if (!writer.write(m_preview->picture)) {
        m_ctx.prompter().msgBox(QStringLiteral("Save Picture Error: : ") + writer.errorString(),
                                MsgStyle::Exclamation);
        return QString();
    }
    return path;
}

void Scrivet::pictureRoutine(qint16 x, qint16 y)
{
    if (!frameLargeEnough(x, y) || m_tools.imagePending)
        return;
    m_tools.imagePending = true;
    FileRequest request;
    request.title = QStringLiteral("Open File");
    request.filter = kPictureFilter;
    request.proposedName = QStringLiteral("*.jpg;*.gif;*.bmp;*.wmf;*.emf;*.ico;*.cur");
    const QString path = m_ctx.prompter().file(request);
    auto done = [this] { m_tools.imagePending = false; };
    if (path.isEmpty() || peerLeft())
        return done();
    const QFileInfo info(path);
    if (!info.exists() || info.size() == 0) {
        m_ctx.prompter().msgBox(QStringLiteral("File does not exist or zero byte file."));
        return done();
    }
    writeFrameSize(x, y);
    const QImage picture = checkedPicture(path);
    if (picture.isNull())
        return done();
    m_preview = Preview{picture, info.fileName() + QStringLiteral(" - Picture Preview"),
                        QSize(std::abs(m_tools.startX - x) / kTwipsPerPixel,
                              std::abs(m_tools.startY - y) / kTwipsPerPixel)};
    Q_EMIT previewRequested();
}

bool Scrivet::waitYielding(int ms)
{
    if (waitFor)
        return waitFor(ms);
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
    return !m_ctx.ProgramExiting;
}

void Scrivet::captureRoutine(qint16 x, qint16 y)
{
    if (!frameLargeEnough(x, y) || m_tools.capturePending)
        return;
    writeFrameSize(x, y);
    m_tools.capturePending = true;
    auto done = [this] { m_tools.capturePending = false; };
    Q_EMIT minimiseBoard(true);
    const int seconds = std::max(3, m_ctx.settingInt(QStringLiteral("Capture Time")));
    if (!waitYielding(2000))
        return done();
    // The peer may have left the board meanwhile.
    if (peerLeft()) {
        Q_EMIT minimiseBoard(false);
        return done();
    }
    // The time the user has to bring the wanted window to the front; the
    // screen is taken after it.
    if (!waitYielding(seconds * 1000))
        return done();
    QString why;
    const QImage screen = grabScreen ? grabScreen(&why) : vonnel::grabScreen(&why);
    Q_EMIT minimiseBoard(false);
    if (screen.isNull()) {
        m_ctx.prompter().msgBox(QStringLiteral("Scren capture Error: ") + why + QStringLiteral("\r\n"),
                                MsgStyle::Exclamation);
        m_sendingPicture = QStringLiteral("False");
        return done();
    }
    if (!PictureCheck(m_ctx).memoryIsEnough(screen.sizeInBytes()))
        return done();
    m_preview = Preview{screen, QStringLiteral("Screen Capture"),
                        QSize(std::abs(m_tools.startX - x) / kTwipsPerPixel,
                              std::abs(m_tools.startY - y) / kTwipsPerPixel)};
    Q_EMIT previewRequested();
}

void Scrivet::confirmPreview(QPoint at)
{
    if (!m_preview)
        return;
    const Preview p = *m_preview;
    m_preview.reset();
    m_tools.imagePending = m_tools.capturePending = false;
    // The part under the cursor at the frame's size, kept inside the picture.
    QRect part(at, p.frame);
    part.moveLeft(std::clamp(part.left(), 0, std::max(0, p.picture.width() - part.width())));
    part.moveTop(std::clamp(part.top(), 0, std::max(0, p.picture.height() - part.height())));
    PostCapture(p.picture.copy(part));
}

void Scrivet::cancelPreview()
{
    m_preview.reset();
    m_tools.imagePending = m_tools.capturePending = false;
    // The frame waited for the picture; none comes.
    m_tools.band.reset();
    Q_EMIT bandChanged();
}

void Scrivet::PostCapture(const QImage& picture)
{
    if (peerLeft())
        return;
    const QRect frame(QPoint(std::min(m_tools.startX, m_txtX), std::min(m_tools.startY, m_txtY)),
                      QSize(std::abs(m_txtX - m_tools.startX), std::abs(m_txtY - m_tools.startY)));
    const QString path = m_ctx.appFile(QStringLiteral("captscr.jpg"));
    QFile::remove(path);
    QImageWriter writer(path, "jpg");
    writer.setQuality(85);
    if (!writer.write(picture)) {
        m_ctx.prompter().msgBox(QStringLiteral("Save Picture Error: : ") + writer.errorString(),
                                MsgStyle::Exclamation);
        return;
    }
    // Our object shows the picture as the peer will: decoded from the file.
    m_board.addPicture(frame, PictureCheck::load(path));
    m_tools.band.reset();
    Q_EMIT bandChanged();
    if (!IsConnected())
        return;
    m_transfer.sendFileRequest(QStringLiteral("pic") + path, QFileInfo(path).size());
    m_model.stStatusbar.setText(
        2, m_ctx.translate(QStringLiteral("Picture sending. Please wait..."),
                           QStringLiteral("Picture sending. Please wait...")));
    m_sendingPicture = QStringLiteral("True");
}

}  // namespace vonnel
