#include "shell/dialogs/ProgressDialog.h"

#include "core/Form.h"
#include "shell/FrmMain.h"
#include "transfer/Transfer.h"
#include "core/CopyContext.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QPalette>
#include <QVBoxLayout>

namespace vonnel {

ProgressDialog::ProgressDialog(FrmMain& frm, QWidget* parent) : QDialog(parent), m_frm(frm)
{
    setObjectName(formName(Form::frmProgress));
    setModal(false);
    m_filename = new QLabel;
    m_filename->setObjectName(QStringLiteral("lblFilename"));
    m_filesize = new QLabel;
    m_filesize->setObjectName(QStringLiteral("lblFilesize"));
    m_progress = new QLabel;
    m_progress->setObjectName(QStringLiteral("lblProgress"));
    m_progress->setAlignment(Qt::AlignCenter);
    m_finished = new QLabel;
    m_finished->setObjectName(QStringLiteral("lblFinished"));
    m_bar = new QProgressBar;
    m_bar->setObjectName(QStringLiteral("prbProgress"));
    m_bar->setRange(0, 100);
    // The bar carries the percentage only while the label above it is
    // hidden (after a Continue, say): it stands once, wherever it is.
    m_bar->setFormat(QStringLiteral("%p%"));
    m_bar->setTextVisible(false);
    m_close = new QCheckBox(frm.ctx().translate(QStringLiteral("Close this window when it finishes")));
    m_close->setObjectName(QStringLiteral("chkCloseProgress"));
    m_pause = new QPushButton;
    m_pause->setObjectName(QStringLiteral("cmdPause"));
    m_cancel = new QPushButton;
    m_cancel->setObjectName(QStringLiteral("cmdCancel"));

    auto* form = new QFormLayout;
    form->addRow(frm.ctx().translate(QStringLiteral("File:")), m_filename);
    form->addRow(frm.ctx().translate(QStringLiteral("Size:")), m_filesize);
    auto* barRow = new QHBoxLayout;
    barRow->addWidget(m_bar, 1);
    barRow->addWidget(m_finished);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_close);
    buttons->addStretch();
    buttons->addWidget(m_pause);
    buttons->addWidget(m_cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_progress);
    layout->addLayout(barRow);
    layout->addLayout(buttons);
    setMinimumWidth(420);

    Transfer& t = frm.transfer();
    connect(m_pause, &QPushButton::clicked, &t, &Transfer::cmdPause_Click);
    connect(m_cancel, &QPushButton::clicked, &t, &Transfer::cmdCancel_Click);
    connect(m_close, &QCheckBox::clicked, &t, &Transfer::chkCloseProgress_Click);
    // A transfer changes the model with every frame, thousands of times a
    // second: the window shows it at most every few hundredths of a second,
    // which looks the same and leaves the time to the transfer.
    m_refreshTimer.setSingleShot(true);
    m_refreshTimer.setInterval(kRefreshMs);
    connect(&m_refreshTimer, &QTimer::timeout, this, &ProgressDialog::refresh);
    connect(&t.progress(), &ProgressModel::changed, this, [this] {
        // The end is drawn at once: what follows it (the end's bell, the
        // window's own close) may hold the thread before a timer runs, and
        // the window would stand at its last percentage meanwhile.
        const ProgressModel& w = m_frm.transfer().progress();
        if (w.prbProgress == 100 || w.cmdCancel.tag != QLatin1String("Cancel")) {
            refresh();
            if (isVisible())
                repaint();
            return;
        }
        if (!m_refreshTimer.isActive())
            m_refreshTimer.start();
    });
    connect(&t.progress(), &ProgressModel::loadedChanged, this, &ProgressDialog::loadedChanged);
    refresh();
}

void ProgressDialog::refresh()
{
    m_refreshTimer.stop();
    const ProgressModel& w = m_frm.transfer().progress();
    setWindowTitle(w.caption);
    m_filename->setText(w.lblFilename);
    m_filesize->setText(w.lblFilesize);
    m_finished->setText(w.lblFinished);
    m_progress->setText(w.lblProgress.text);
    m_progress->setVisible(w.lblProgress.visible);
    if (w.lblProgress.color != m_progressColor) {
        m_progressColor = w.lblProgress.color;
        QPalette p = m_progress->palette();
        p.setColor(QPalette::WindowText, m_progressColor);
        m_progress->setPalette(p);
    }
    m_bar->setValue(qBound(0, w.prbProgress.value(), 100));
    m_bar->setTextVisible(!w.lblProgress.visible);
    m_close->setChecked(w.chkCloseProgress);
    m_close->setVisible(w.chkCloseProgressVisible);
    for (const auto& [button, model] : {std::pair{m_pause, &w.cmdPause}, std::pair{m_cancel, &w.cmdCancel}}) {
        button->setText(model->caption);
        button->setToolTip(model->toolTip);
        button->setEnabled(model->enabled);
        button->setVisible(model->visible);
    }
}

void ProgressDialog::loadedChanged(bool loaded)
{
    if (loaded) {
        refresh();
        show();
        raise();
    } else {
        hide();
    }
}

QString ProgressDialog::finishedNotice(FrmMain& frm)
{
    const ProgressModel& w = frm.transfer().progress();
    if (w.cmdCancel.tag != QLatin1String("Finish"))
        return QString();
    const bool receiving = w.txtSendRec->contains(QLatin1String("Receiving"));
    return frm.ctx().translate(receiving ? QStringLiteral("File received") : QStringLiteral("File sent")) +
           QStringLiteral(": ") + QFileInfo(w.lblFilename).fileName();
}

void ProgressDialog::closeEvent(QCloseEvent* event)
{
    // The window leaves by its own close routine, which may put the
    // transfer on hold; the model's unload then hides it.
    event->ignore();
    m_frm.transfer().unloadProgress();
}

void ProgressDialog::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        m_frm.transfer().progress().minimized = isMinimized();
}

ProgressDialog* installProgressDialog(FrmMain& frm, QWidget* parent)
{
    auto* dlg = new ProgressDialog(frm, parent);
    dlg->hide();
    return dlg;
}

}  // namespace vonnel
