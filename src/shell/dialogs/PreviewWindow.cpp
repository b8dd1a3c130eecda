#include "shell/dialogs/PreviewWindow.h"

#include "board/Scrivet.h"
#include "core/CopyContext.h"

#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>

namespace vonnel {

PreviewWindow::PreviewWindow(Scrivet& board, QWidget* parent) : QDialog(parent), m_board(board)
{
    setObjectName(QStringLiteral("frmTmp"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    setWindowTitle(board.preview() ? board.preview()->title : QString());

    const auto tr = [&board](const char* key, const char* fallback = "") {
        return board.ctx().translate(QLatin1String(key), QLatin1String(fallback));
    };
    auto* menus = new QMenuBar;
    QMenu* fileMenu = menus->addMenu(tr("File", "&File"));
    fileMenu->setObjectName(QStringLiteral("mnuFile"));
    QAction* open = fileMenu->addAction(tr("Open", "&Open..."), this, [this] { m_board.openPreviewFile(); });
    open->setObjectName(QStringLiteral("mnuOpen"));
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
    QAction* fit = zoomMenu->addAction(tr("Fit Image"));
    fit->setObjectName(QStringLiteral("mnuFitImage"));
    connect(fit, &QAction::triggered, this, [this] {
        const QSize pic = m_board.preview() ? m_board.preview()->picture.size() : QSize(1, 1);
        const QSize room = m_scroll->viewport()->size();
        setZoom(std::max(1, int(100 * std::min(double(room.width()) / pic.width(),
                                               double(room.height()) / pic.height()))));
    });

    m_picture = new QLabel;
    m_picture->setObjectName(QStringLiteral("Picture1"));
    m_picture->installEventFilter(this);
    m_scroll = new QScrollArea;
    m_scroll->setWidget(m_picture);
    m_scroll->setAlignment(Qt::AlignCenter);
    m_hint = new QLabel(tr("Single Click (Preview), Double Click (Confirm)"));
    m_hint->setObjectName(QStringLiteral("lblTitle1"));

    auto* layout = new QVBoxLayout(this);
    layout->setMenuBar(menus);
    layout->addWidget(m_hint);
    layout->addWidget(m_scroll, 1);
    resize(900, 700);
    setZoom(100);
}

void PreviewWindow::setZoom(int percent)
{
    if (!m_board.preview())
        return;
    m_zoom = std::clamp(percent, 1, 400);
    const QImage& pic = m_board.preview()->picture;
    m_picture->setPixmap(QPixmap::fromImage(pic.scaled(pic.size() * m_zoom / 100)));
    m_picture->adjustSize();
}

QPoint PreviewWindow::pictureAt(QPoint viewPoint) const
{
    return viewPoint * 100 / m_zoom;
}

void PreviewWindow::showPart(QPoint at)
{
    // picCopy: the chosen part framed on the picture.
    const Scrivet::Preview& p = *m_board.preview();
    QImage shown = p.picture.scaled(p.picture.size() * m_zoom / 100);
    QPainter painter(&shown);
    painter.setPen(QPen(Qt::red, 2, Qt::DashLine));
    painter.drawRect(QRect(at * m_zoom / 100, p.frame * m_zoom / 100));
    painter.end();
    m_picture->setPixmap(QPixmap::fromImage(shown));
}

bool PreviewWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_picture || !m_board.preview())
        return QDialog::eventFilter(watched, event);
    if (event->type() == QEvent::MouseButtonPress) {
        auto* e = static_cast<QMouseEvent*>(event);
        if (e->button() == Qt::RightButton)
            setZoom(100);
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

void PreviewWindow::closeEvent(QCloseEvent* event)
{
    if (!m_confirmed)
        m_board.cancelPreview();
    QDialog::closeEvent(event);
}

}  // namespace vonnel
