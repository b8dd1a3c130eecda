#include "shell/dialogs/AutoIPWindow.h"

#include "core/CopyContext.h"
#include "core/Form.h"
#include "core/Twips.h"
#include "nettools/AutoConnect.h"
#include "nettools/AutoNotify.h"
#include "platform/Desktop.h"
#include "shell/FrmMain.h"
#include "shell/NetTools.h"
#include "shell/dialogs/ToolWindowPlace.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace vonnel {

AutoIPWindow::AutoIPWindow(FrmMain& frm, QWidget* parent)
    : QDialog(parent), m_frm(frm), m_model(frm.netTools().autoNotify()),
      m_list(new QListWidget(this)), m_time(new QLabel(this))
{
    CopyContext& c = frm.ctx();
    const auto tr = [&c](const char* key, const char* fallback) {
        return c.translate(QLatin1String(key), QLatin1String(fallback));
    };
    setObjectName(formName(Form::frmAutoIP));
    setWindowTitle(tr("AutoNotify", "AutoNotify"));
    m_list->setObjectName(QStringLiteral("lstOnlineIP"));
    m_time->setObjectName(QStringLiteral("stbTime"));
    m_time->setFrameShape(QFrame::StyledPanel);
    m_time->setFrameShadow(QFrame::Sunken);

    auto* bar = new QMenuBar(this);
    QMenu* online = bar->addMenu(tr("Online Station", "&Online Station"));
    online->setObjectName(QStringLiteral("mnuOnline"));
    online->addAction(tr("Chat", "Chat"), this, &AutoIPWindow::chat)
        ->setObjectName(QStringLiteral("mnuChat"));
    online->addAction(tr("Setting", "&Setting"), this, &AutoIPWindow::settingRequested)
        ->setObjectName(QStringLiteral("mnuSetting"));
    online->addAction(tr("Help", "&Help"), this, [this] {
        m_frm.ctx().desktop().openFile(m_frm.ctx().HelpPath + QStringLiteral("autoIP.htm"));
    })->setObjectName(QStringLiteral("mnuHelp"));
    m_pop = new QMenu(this);
    m_pop->setObjectName(QStringLiteral("popOnline"));
    m_pop->addAction(tr("Chat", "Chat"), this, &AutoIPWindow::chat)
        ->setObjectName(QStringLiteral("popChat"));
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_list, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        if (m_model.popOnlineAllowed())
            m_pop->popup(m_list->viewport()->mapToGlobal(at));
    });

    auto* ok = new QPushButton(tr("Chat", "Chat"), this);
    ok->setObjectName(QStringLiteral("OKButton"));
    ok->setDefault(true);
    auto* cancel = new QPushButton(tr("Cancel", "Cancel"), this);
    cancel->setObjectName(QStringLiteral("CancelButton"));
    connect(ok, &QPushButton::clicked, this, &AutoIPWindow::chat);
    connect(cancel, &QPushButton::clicked, this, &QWidget::close);
    connect(m_list, &QListWidget::itemDoubleClicked, this, &AutoIPWindow::chat);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->setMenuBar(bar);
    layout->addWidget(m_list, 1);
    layout->addLayout(buttons);
    layout->addWidget(m_time);

    connect(&m_model, &AutoNotify::lstOnlineIPChanged, this, &AutoIPWindow::refreshList);
    connect(&m_model, &AutoNotify::stbTimeChanged, m_time, &QLabel::setText);
    m_time->setText(m_model.stbTime());
    refreshList();

    applyColours(c, QStringLiteral("AutoCheck"), {m_list});
    // The place is read under one family of keys and written under another,
    // so the window comes back where it was first put, not where it was left.
    placeFromSettings(this, c,
                      {AutoConnectKeys::ReadLeft, AutoConnectKeys::ReadTop,
                       AutoConnectKeys::ReadWidth, AutoConnectKeys::ReadHeight},
                      QSize(300, 260));
}

void AutoIPWindow::refreshList()
{
    m_list->clear();
    m_list->addItems(m_model.lstOnlineIP());
    if (m_list->count() > 0)
        m_list->setCurrentRow(0);
}

void AutoIPWindow::chat()
{
    m_model.OKButton_Click(m_list->currentRow());
}

void AutoIPWindow::closeEvent(QCloseEvent* event)
{
    writePlace(this, m_frm.ctx(),
               {AutoConnectKeys::WriteLeft, AutoConnectKeys::WriteTop, AutoConnectKeys::WriteWidth,
                AutoConnectKeys::WriteHeight});
    event->accept();
}

}  // namespace vonnel
