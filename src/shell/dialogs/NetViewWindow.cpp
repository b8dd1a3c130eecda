#include "shell/dialogs/NetViewWindow.h"

#include "connection/AddressServices.h"
#include "connection/Connection.h"
#include "core/CopyContext.h"
#include "core/Form.h"
#include "nettools/LikePattern.h"
#include "nettools/NetViewModel.h"
#include "nettools/NetViewSave.h"
#include "platform/Clipboard.h"
#include "platform/Desktop.h"
#include "shell/FrmMain.h"
#include "shell/NetTools.h"
#include "shell/dialogs/NetRangeDialog.h"
#include "shell/dialogs/ToolWindowPlace.h"

#include <QActionGroup>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace vonnel {

namespace {
const PlaceKeys kPlace{QStringLiteral("Settings-NetViewLeft"), QStringLiteral("Settings-NetViewTop"),
                       QStringLiteral("Settings-NetViewWidth"),
                       QStringLiteral("Settings-NetViewHeight")};
}

NetViewWindow::NetViewWindow(FrmMain& frm, QWidget* parent)
    : QDialog(parent), m_frm(frm), m_model(frm.netTools().netView()),
      m_ping(new QLineEdit(this)), m_info(new QLineEdit(this)), m_list(new QListWidget(this)),
      m_pingButton(new QPushButton(this)), m_check(new QPushButton(this)),
      m_abort(new QPushButton(this))
{
    CopyContext& c = frm.ctx();
    setObjectName(formName(Form::frmNetView));
    setWindowTitle(c.translate(QStringLiteral("Net View")));
    m_ping->setObjectName(QStringLiteral("txtPing"));
    m_info->setObjectName(QStringLiteral("txtInfo"));
    m_info->setReadOnly(true);
    m_list->setObjectName(QStringLiteral("lstPing"));
    m_list->setMouseTracking(true);
    m_pingButton->setObjectName(QStringLiteral("cmdPing"));
    m_pingButton->setText(c.translate(QStringLiteral("Ping"), QStringLiteral("&Ping")));
    m_check->setObjectName(QStringLiteral("cmdCheck"));
    m_check->setText(c.translate(QStringLiteral("Check"), QStringLiteral("&Check")));
    m_check->setToolTip(c.translate(QStringLiteral("Double click an address to connect")));
    m_abort->setObjectName(QStringLiteral("cmdAbort"));
    m_abort->setText(c.translate(QStringLiteral("Abort"), QStringLiteral("&Abort")));
    m_abort->hide();
    // Enter in the address box pings; no button takes it as a default.
    for (QPushButton* b : {m_pingButton, m_check, m_abort})
        b->setAutoDefault(false);

    auto* row = new QHBoxLayout;
    row->addWidget(m_ping, 1);
    row->addWidget(m_pingButton);
    row->addWidget(m_check);
    row->addWidget(m_abort);
    auto* layout = new QVBoxLayout(this);
    layout->setMenuBar(new QMenuBar(this));
    layout->addLayout(row);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_info);
    buildMenus();

    // The model's state, shown as it changes.
    connect(&m_model, &NetViewModel::lstPingChanged, this, &NetViewWindow::refreshList);
    connect(&m_model, &NetViewModel::txtPingChanged, this, [this](const QString& t) {
        if (m_ping->text() != t)
            m_ping->setText(t);
    });
    connect(&m_model, &NetViewModel::txtInfoChanged, m_info, &QLineEdit::setText);
    connect(&m_model, &NetViewModel::sweepingChanged, this, &NetViewWindow::refreshSweeping);
    connect(&m_model, &NetViewModel::focusPing, m_ping, [this] { m_ping->setFocus(); });

    // The user's actions, handed to the model.
    connect(m_ping, &QLineEdit::textEdited, &m_model, &NetViewModel::setTxtPing);
    connect(m_ping, &QLineEdit::returnPressed, &m_model, &NetViewModel::cmdPing_Click);
    connect(m_pingButton, &QPushButton::clicked, &m_model, &NetViewModel::cmdPing_Click);
    connect(m_check, &QPushButton::clicked, &m_model, &NetViewModel::NetViewCheck);
    connect(m_abort, &QPushButton::clicked, &m_model, &NetViewModel::cmdAbort_Click);
    connect(m_list, &QListWidget::itemDoubleClicked, this,
            [this](QListWidgetItem* item) { m_model.popMnuChat(m_list->row(item)); });
    connect(m_list, &QListWidget::itemEntered, this,
            [this](QListWidgetItem* item) { showHint(m_list->row(item)); });

    applyColours(c, QStringLiteral("NetView"), {m_list, m_ping, m_info});
    placeFromSettings(this, c, kPlace, QSize(380, 420));
    m_ping->setText(m_model.txtPing());
    m_info->setText(m_model.txtInfo());
    refreshList();
    refreshSweeping(m_model.sweeping());
}

void NetViewWindow::buildMenus()
{
    auto* bar = static_cast<QMenuBar*>(layout()->menuBar());
    const auto tr = [this](const char* key, const char* fallback) {
        return m_frm.ctx().translate(QLatin1String(key), QLatin1String(fallback));
    };
    auto named = [](QAction* a, const char* name) {
        a->setObjectName(QLatin1String(name));
        return a;
    };

    QMenu* file = bar->addMenu(tr("File", "&File"));
    file->setObjectName(QStringLiteral("mnuFile"));
    named(file->addAction(tr("Save", "&Save..."), this, &NetViewWindow::mnuSave_Click), "mnuSave");
    file->addSeparator();
    named(file->addAction(tr("Exit", "E&xit"), this, &QWidget::close), "mnuExit");

    QMenu* view = bar->addMenu(tr("View", "&View"));
    view->setObjectName(QStringLiteral("mnuView"));
    auto* views = new QActionGroup(this);
    const struct {
        const char *key, *fallback, *name;
        NetViewModel::View v;
    // Lang.txt keys: the first text of each line, to the closing "};".
    } viewEntries[] = {
        {"IP Address", "&IP Address", "mnuIPAdr", NetViewModel::View::IPAdr},
        {"IP Address and Host", "IP Address and &Host", "mnuIPHost", NetViewModel::View::IPHost},
        {"Host Only", "Host &Only", "mnuHostOnly", NetViewModel::View::HostOnly},
    };
    for (const auto& e : viewEntries) {
        QAction* a = named(view->addAction(tr(e.key, e.fallback)), e.name);
        a->setCheckable(true);
        a->setChecked(m_model.view() == e.v);
        views->addAction(a);
        const NetViewModel::View v = e.v;
        connect(a, &QAction::triggered, this, [this, v] { m_model.setView(v); });
    }
    view->addSeparator();
    named(view->addAction(tr("Clear", "&Clear"), &m_model, &NetViewModel::mnuViewClear_Click),
          "mnuViewClear");

    QMenu* network = bar->addMenu(tr("Network", "&Network"));
    network->setObjectName(QStringLiteral("mnuNetwork"));
    auto* scopes = new QActionGroup(this);
    QAction* all = named(network->addAction(tr("All Stations", "&All Stations")), "mnuAllStations");
    QAction* mine = named(network->addAction(tr("This Network", "&This Network")), "mnuNetIPAdr");
    QAction* specific =
        named(network->addAction(tr("Specific Range", "&Specific Range...")), "mnuSpecific");
    for (QAction* a : {all, mine, specific}) {
        a->setCheckable(true);
        scopes->addAction(a);
    }
    all->setChecked(true);
    connect(all, &QAction::triggered, &m_model, &NetViewModel::mnuAllStations_Click);
    connect(mine, &QAction::triggered, this, [this] {
        // The network of the address in the box, else of the first own one.
        QString address = m_ping->text().trimmed();
        if (!looksDotted(address))
            address = m_model.networkChoices().value(0);
        m_model.mnuNetIPAdr_Click(address);
    });
    connect(specific, &QAction::triggered, this, &NetViewWindow::mnuSpecific_Click);

    QMenu* help = bar->addMenu(tr("Help", "&Help"));
    help->setObjectName(QStringLiteral("mnuHelp"));
    named(help->addAction(tr("Contents", "&Contents"), this,
                          [this] {
                              m_frm.ctx().desktop().openFile(m_frm.ctx().HelpPath +
                                                             QStringLiteral("netview.htm"));
                          }),
          "mnuHelpContents");
    m_startingMenus = {file, view, network};

    // popMnuIPLst on the list.
    m_pop = new QMenu(this);
    m_pop->setObjectName(QStringLiteral("popMnuIPLst"));
    named(m_pop->addAction(tr("Chat", "C&hat"), this,
                           [this] { m_model.popMnuChat(m_list->currentRow()); }),
          "popMnuChat");
    named(m_pop->addAction(tr("Copy", "&Copy"), this,
                           [this] {
                               const QString t = m_model.popMnuCopy(m_list->currentRow());
                               if (!t.isEmpty())
                                   m_frm.ctx().clipboard().setText(t);
                           }),
          "popMnuCopy");
    named(m_pop->addAction(tr("Copy All", "Copy &All"), this,
                           [this] {
                               const QString t = m_model.popMnuCopyAll();
                               if (!t.isEmpty())
                                   m_frm.ctx().clipboard().setText(t);
                           }),
          "popMnuCopyAll");
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_list, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        if (!m_model.sweeping())
            m_pop->popup(m_list->viewport()->mapToGlobal(at));
    });
}

void NetViewWindow::refreshList()
{
    const QStringList lines = m_model.lstPing();
    // Lines are only ever added at the end during a sweep; a full redraw is
    // needed only when the list was cleared or changed otherwise.
    bool appended = lines.size() >= m_list->count();
    for (int i = 0; appended && i < m_list->count(); ++i)
        appended = m_list->item(i)->text() == lines[i];
    if (!appended) {
        m_list->clear();
        m_hintRow = -1;
    }
    for (int i = m_list->count(); i < lines.size(); ++i)
        m_list->addItem(lines[i]);
}

void NetViewWindow::refreshSweeping(bool sweeping)
{
    // No second sweep can start while one runs.
    m_list->setEnabled(!sweeping);
    m_pingButton->setEnabled(!sweeping);
    m_check->setEnabled(!sweeping);
    for (QMenu* m : m_startingMenus)
        m->setEnabled(!sweeping);
    m_abort->setVisible(sweeping);
}

void NetViewWindow::showHint(int row)
{
    if (row == m_hintRow || m_model.sweeping() || m_frm.connection().address().busy())
        return;
    m_hintRow = row;
    const QString hint = m_model.hostHint(row);
    if (QListWidgetItem* item = m_list->item(row))
        item->setToolTip(hint);
}

void NetViewWindow::mnuSpecific_Click()
{
    NetRangeDialog range(m_frm.ctx(), m_model.networkChoices(), this);
    if (range.exec() != QDialog::Accepted)
        return;
    const NetRangeChoice choice = range.choice();
    m_model.viewRange(choice.network, choice.from, choice.to);
}

void NetViewWindow::mnuSave_Click()
{
    saveNetViewList(m_frm.ctx().prompter(), m_model.listFileText());
}

void NetViewWindow::closeEvent(QCloseEvent* event)
{
    m_model.cmdAbort_Click();
    writePlace(this, m_frm.ctx(), kPlace);
    event->accept();
}

}  // namespace vonnel
