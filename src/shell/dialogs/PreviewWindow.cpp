#include "shell/dialogs/PreviewWindow.h"

#include "board/PreviewZoom.h"
#include "board/Scrivet.h"
#include "core/CopyContext.h"
#include "core/Twips.h"
#include "platform/Desktop.h"
#include "platform/Prompter.h"
#include "shell/dialogs/PictureBrowser.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QVBoxLayout>

namespace vonnel {

PreviewWindow::PreviewWindow(Scrivet& board, QWidget* parent) : QDialog(parent), m_board(board)
{
    setObjectName(QStringLiteral("frmTmp"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    setWindowTitle(board.preview() ? board.preview()->title : QString());
    setAcceptDrops(true);

    const auto tr = [&board](const char* key, const char* fallback = "") {
        return board.ctx().translate(QLatin1String(key), QLatin1String(fallback));
    };
    auto* menus = new QMenuBar;
    QMenu* fileMenu = menus->addMenu(tr("File", "&File"));
    fileMenu->setObjectName(QStringLiteral("mnuFile"));
    QAction* open = fileMenu->addAction(tr("Open", "&Open..."), this, [this] { m_board.openPreviewFile(); });
    open->setObjectName(QStringLiteral("mnuOpen"));
    QAction* browseFiles = fileMenu->addAction(tr("Browse", "&Browse..."), this, &PreviewWindow::browse);
    browseFiles->setObjectName(QStringLiteral("mnuBrowse"));
    QAction* saveAs = fileMenu->addAction(tr("Save As", "Save &As..."), this, [this] { m_board.savePreviewAs(); });
    saveAs->setObjectName(QStringLiteral("mnuSaveAs"));
    QAction* exit = fileMenu->addAction(tr("Exit", "E&xit"), this, &QWidget::close);
    exit->setObjectName(QStringLiteral("mnuExit"));
    connect(&board, &Scrivet::previewRequested, this, [this] {
        setWindowTitle(m_board.preview()->title);
        setZoom(m_zoom);
    });
    QMenu* zoomMenu = menus->addMenu(tr("Zoom", "&Zoom"));
    zoomMenu->setObjectName(QStringLiteral("mnuZoom"));
    for (int percent : {25, 50, 75, 100, 150, 200, 400}) {
        QAction* a = zoomMenu->addAction(percent == 100 ? tr("Actual Size") : QString::number(percent) + u'%');
        a->setObjectName(percent == 100 ? QStringLiteral("mnuActual") : QStringLiteral("mnu") + QString::number(percent));
        connect(a, &QAction::triggered, this, [this, percent] { setZoom(percent); });
    }
    zoomMenu->addSeparator();
    QAction* fit = zoomMenu->addAction(tr("Fit Image"), this, &PreviewWindow::mnuFitImage_Click);
    fit->setObjectName(QStringLiteral("mnuFitImage"));
    QAction* fitScreen = zoomMenu->addAction(tr("Fit Screen"), this, &PreviewWindow::mnuFitScreen_Click);
    fitScreen->setObjectName(QStringLiteral("mnuFitScreen"));
    QMenu* helpMenu = menus->addMenu(tr("Help", "&Help"));
    QAction* help = helpMenu->addAction(tr("Help", "&Help"), this, [this] {
        m_board.ctx().desktop().openFile(m_board.ctx().HelpPath + QStringLiteral("preview.htm"));
    });
    help->setObjectName(QStringLiteral("mnuHelp"));

    m_picture = new QLabel;
    m_picture->setObjectName(QStringLiteral("Picture1"));
    m_picture->setMouseTracking(true);
    m_picture->installEventFilter(this);
    m_scroll = new QScrollArea;
    m_scroll->setWidget(m_picture);

    m_slider = new QSlider(Qt::Horizontal);
    m_slider->setObjectName(QStringLiteral("slidResize"));
    m_slider->setRange(PreviewZoom::kMin, PreviewZoom::kMax);
    m_slider->setValue(m_zoom);
    m_slider->setToolTip(tr("Zoom"));
    connect(m_slider, &QSlider::valueChanged, this, [this](int v) {
        if (v != m_zoom)
            setZoom(v);
    });
    auto* zoomLabel = new QLabel(tr("Zoom"));

    // lblTitle1: the hint that follows the mouse over the picture.
    m_hint = new QLabel(tr("Single Click (Preview), Double Click (Confirm)"), this);
    m_hint->setObjectName(QStringLiteral("lblTitle1"));
    m_hint->setStyleSheet(QStringLiteral("background:#ffffe1;border:1px solid #888;padding:1px 3px;"));
    m_hint->adjustSize();
    m_hint->setAttribute(Qt::WA_TransparentForMouseEvents);

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(zoomLabel);
    bottom->addWidget(m_slider, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setMenuBar(menus);
    layout->addWidget(m_scroll, 1);
    layout->addLayout(bottom);
    resize(900, 700);
    setZoom(100);
    m_hint->move(12, menus->sizeHint().height() + 4);
    m_hint->raise();
}

bool PreviewWindow::centred() const
{
    const QString title = m_board.preview() ? m_board.preview()->title : QString();
    return PreviewZoom::centres(m_board.ctx().settingFlag(QStringLiteral("No Move Pic To Center")), title);
}

void PreviewWindow::setZoom(int percent)
{
    if (!m_board.preview())
        return;
    m_zoom = PreviewZoom::clamp(percent);
    const QImage& pic = m_board.preview()->picture;
    m_picture->setPixmap(QPixmap::fromImage(
        pic.scaled(PreviewZoom::shown(pic.size(), m_zoom), Qt::IgnoreAspectRatio, Qt::SmoothTransformation)));
    m_picture->adjustSize();
    // After each zoom the picture goes to the middle, unless it is to stay.
    m_scroll->setAlignment(centred() ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignTop);
    // A picture larger than the view shows its middle.
    if (centred()) {
        for (QScrollBar* bar : {m_scroll->horizontalScrollBar(), m_scroll->verticalScrollBar()})
            bar->setValue((bar->maximum() + bar->minimum()) / 2);
    }
    const QSignalBlocker block(m_slider);
    m_slider->setValue(m_zoom);
}

void PreviewWindow::mnuFitImage_Click()
{
    if (!m_board.preview())
        return;
    // The room less the frame, so no scroll bar comes up.
    const QSize room = m_scroll->viewport()->size() - QSize(4, 4);
    setZoom(PreviewZoom::fitImage(m_board.preview()->picture.size(), room));
}

void PreviewWindow::mnuFitScreen_Click()
{
    if (!m_board.preview())
        return;
    const QSize room = m_scroll->viewport()->size() - QSize(4, 4);
    setZoom(PreviewZoom::fitScreen(m_board.preview()->picture.size(), room));
}

void PreviewWindow::fitToScreen()
{
    const QScreen* screen = this->screen() ? this->screen() : QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect g = screen->availableGeometry();
    resize(g.width(), std::max(100, g.height() - 600 / kTwipsPerPixel));
}

QPoint PreviewWindow::pictureAt(QPoint viewPoint) const
{
    return PreviewZoom::pictureAt(viewPoint, m_zoom);
}

void PreviewWindow::showPart(QPoint at)
{
    // picCopy: the chosen part framed on the picture.
    const Scrivet::Preview& p = *m_board.preview();
    QImage shown = p.picture.scaled(PreviewZoom::shown(p.picture.size(), m_zoom));
    QPainter painter(&shown);
    painter.setPen(QPen(Qt::red, 2, Qt::DashLine));
    painter.drawRect(QRect(at * m_zoom / 100, p.frame * m_zoom / 100));
    painter.end();
    m_picture->setPixmap(QPixmap::fromImage(shown));
}

void PreviewWindow::placeHint(QPoint inPicture)
{
    m_hint->move(m_picture->mapTo(this, inPicture) + QPoint(10, 10));
    m_hint->raise();
}

bool PreviewWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_picture || !m_board.preview())
        return QDialog::eventFilter(watched, event);
    if (event->type() == QEvent::MouseMove) {
        placeHint(static_cast<QMouseEvent*>(event)->position().toPoint());
        return false;
    }
    if (event->type() == QEvent::MouseButtonPress) {
        auto* e = static_cast<QMouseEvent*>(event);
        if (e->button() == Qt::RightButton)
            mnuFitImage_Click();
        else
            showPart(pictureAt(e->position().toPoint()));
        return true;
    }
    if (event->type() == QEvent::MouseButtonDblClick) {
        m_confirmed = true;
        m_board.confirmPreview(pictureAt(static_cast<QMouseEvent*>(event)->position().toPoint()));
        close();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void PreviewWindow::keyPressEvent(QKeyEvent* event)
{
    // Esc puts the window away; the picture still waits in it.
    if (event->key() == Qt::Key_Escape) {
        showMinimized();
        event->accept();
        return;
    }
    QDialog::keyPressEvent(event);
}

void PreviewWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls() && event->mimeData()->urls().value(0).isLocalFile())
        event->acceptProposedAction();
}

void PreviewWindow::dropEvent(QDropEvent* event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.isEmpty())
        return;
    event->acceptProposedAction();
    openDropped(urls.first().toLocalFile());
}

void PreviewWindow::openDropped(const QString& path)
{
    if (!QFileInfo(path).isFile()) {
        m_board.ctx().prompter().msgBox(QStringLiteral("File Open Error: ") + path, MsgStyle::Exclamation,
                                        QStringLiteral("File Open Error"));
        return;
    }
    m_board.openPreviewPath(path);
}

void PreviewWindow::browse()
{
    auto* dlg = new PictureBrowser(m_board.ctx(), this);
    dlg->setAttribute(Qt::WA_DeleteOnClose);
    connect(dlg, &PictureBrowser::picked, this, &PreviewWindow::openDropped);
    dlg->show();
}

void PreviewWindow::closeEvent(QCloseEvent* event)
{
    if (!m_confirmed)
        m_board.cancelPreview();
    QDialog::closeEvent(event);
}

}  // namespace vonnel
