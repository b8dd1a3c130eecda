#include "shell/dialogs/UrlHistoryWindow.h"

#include "core/CopyContext.h"
#include "core/Form.h"
#include "core/Twips.h"
#include "links/UrlHistory.h"
#include "links/UrlHistoryCommands.h"
#include "platform/Prompter.h"
#include "shell/FrmMain.h"
#include "wire/PaneFormat.h"

#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QVBoxLayout>

namespace vonnel {

UrlHistoryWindow::UrlHistoryWindow(FrmMain& frm, QWidget* parent)
    : QDialog(parent), m_frm(frm), m_urls(new QListWidget(this)),
      m_descripts(new QListWidget(this)), m_descript(new QLineEdit(this))
{
    setObjectName(formName(Form::frmURLHistory));
    setWindowTitle(frm.ctx().translate(QStringLiteral("URL History")));
    m_urls->setObjectName(QStringLiteral("lstURL"));
    m_descripts->setObjectName(QStringLiteral("lstDescript"));
    m_descript->setObjectName(QStringLiteral("txtDescript"));
    // The descriptions stand beside their addresses and follow their
    // selection and scrolling; only the address list takes clicks.
    m_descripts->setSelectionMode(QAbstractItemView::NoSelection);
    m_descripts->setFocusPolicy(Qt::NoFocus);
    connect(m_urls->verticalScrollBar(), &QScrollBar::valueChanged,
            m_descripts->verticalScrollBar(), &QScrollBar::setValue);

    auto* lists = new QHBoxLayout;
    lists->addWidget(m_urls, 3);
    lists->addWidget(m_descripts, 2);
    auto* layout = new QVBoxLayout(this);
    layout->setMenuBar(new QMenuBar(this));
    layout->addLayout(lists, 1);
    layout->addWidget(m_descript);
    buildMenus();

    UrlHistory& h = frm.urlHistory();
    connect(&h, &UrlHistory::listChanged, this, &UrlHistoryWindow::refreshLists);
    // An address added costs one row, not a reload of the whole list.
    connect(&h, &UrlHistory::entryAppended, this, [this](int index) {
        const UrlHistory& history = m_frm.urlHistory();
        if (index != m_urls->count()) {
            refreshLists();
            return;
        }
        m_urls->addItem(history.lstURL()[index]);
        m_descripts->addItem(history.lstDescript()[index]);
    });
    connect(&h, &UrlHistory::countChanged, this, &UrlHistoryWindow::refreshCount);
    connect(&h, &UrlHistory::selectionChanged, this, [this](int i) {
        m_urls->setCurrentRow(i);
        m_descripts->setCurrentRow(i);
    });
    connect(&h, &UrlHistory::txtDescriptChanged, m_descript, [this](const QString& t) {
        if (m_descript->text() != t)
            m_descript->setText(t);
        if (m_frm.urlHistory().promptShown()) {
            m_descript->selectAll();
            m_descript->setFocus();
        }
    });
    connect(m_urls, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0 && row != m_frm.urlHistory().selectedIndex())
            m_frm.urlHistory().select(row);
    });
    connect(m_urls, &QListWidget::itemDoubleClicked, this,
            [this] { m_frm.urlHistoryCommands().mnuVisit_Click(); });
    connect(m_descript, &QLineEdit::textEdited, this,
            [this](const QString& t) { m_frm.urlHistory().setTxtDescript(t); });
    connect(m_descript, &QLineEdit::returnPressed, this,
            [this] { m_frm.urlHistory().txtDescript_Enter(); });

    refreshLists();
    placeFromSettings();
}

void UrlHistoryWindow::buildMenus()
{
    auto* bar = static_cast<QMenuBar*>(layout()->menuBar());
    UrlHistoryCommands& c = m_frm.urlHistoryCommands();
    UrlHistory& h = m_frm.urlHistory();
    const auto tr = [this](const char* key, const char* fallback) {
        return m_frm.ctx().translate(QLatin1String(key), QLatin1String(fallback));
    };
    QMenu* file = bar->addMenu(tr("File", "&File"));
    file->setObjectName(QStringLiteral("mnuFile"));
    file->addAction(tr("Open", "&Open..."), this, [&c] { c.mnuOpen_Click(); })
        ->setObjectName(QStringLiteral("mnuOpen"));
    file->addAction(tr("Save", "&Save..."), this, [&c] { c.mnuSave_Click(); })
        ->setObjectName(QStringLiteral("mnuSave"));
    file->addSeparator();
    file->addAction(tr("Exit", "E&xit"), this, &QWidget::close)
        ->setObjectName(QStringLiteral("mnuExit"));

    QMenu* url = bar->addMenu(tr("URL", "&URL"));
    url->setObjectName(QStringLiteral("mnuURL"));
    m_pop = new QMenu(this);
    m_pop->setObjectName(QStringLiteral("popURL"));
    struct Entry {
        const char* key;
        const char* fallback;
        const char* name;
        const char* pop;
        std::function<void()> run;
    };
    // Lang.txt keys: the first text of each line, to the closing "};".
    const QList<Entry> entries = {
        {"Add", "&Add...", "mnuAdd", "popAdd", [this] { editEntry(true); }},
        {"Remove", "&Remove", "mnuRemove", "popRemove", [&h] { h.mnuRemove_Click(); }},
        {"Remove Duplicates", "Remove &Duplicates", "mnuRemoveDup", nullptr,
         [&h] { h.mnuRemoveDup_Click(); }},
        {"Remove All", "Remove A&ll", "mnuRemoveAll", nullptr, [&h] { h.mnuRemoveAll_Click(); }},
        {"Visit", "&Visit", "mnuVisit", "popVisit", [&c] { c.mnuVisit_Click(); }},
        {"Copy", "&Copy", "mnuCopy", "popCopy", [&c] { c.mnuCopy_Click(); }},
        {"Edit", "&Edit...", "mnuEdit", "popEdit", [this] { editEntry(false); }},
        {"Refresh", "Re&fresh", "mnuRefresh", "popRefresh", [this] { refreshLists(); }},
    };
    for (const Entry& e : entries) {
        url->addAction(tr(e.key, e.fallback), this, e.run)->setObjectName(QLatin1String(e.name));
        if (e.pop)
            m_pop->addAction(tr(e.key, e.fallback), this, e.run)
                ->setObjectName(QLatin1String(e.pop));
    }
    m_urls->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_urls, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { m_pop->popup(m_urls->viewport()->mapToGlobal(at)); });

    QMenu* window = bar->addMenu(tr("Window", "&Window"));
    window->setObjectName(QStringLiteral("mnuWindow"));
    m_onTop = window->addAction(tr("Always on Top", "Always on &Top"));
    m_onTop->setObjectName(QStringLiteral("mnuViewontop"));
    m_onTop->setCheckable(true);
    connect(m_onTop, &QAction::triggered, this, [this](bool on) {
        setOnTop(on);
        m_frm.ctx().writeSetting(QStringLiteral("Settings-URLHistoryViewOnTop"),
                                 on ? QStringLiteral("1") : QStringLiteral("0"));
    });
    m_count = bar->addAction(QString());
    m_count->setObjectName(QStringLiteral("mnuCount"));
    m_count->setEnabled(false);
}

void UrlHistoryWindow::refreshLists()
{
    const UrlHistory& h = m_frm.urlHistory();
    const int row = h.selectedIndex();
    m_urls->clear();
    m_descripts->clear();
    m_urls->addItems(h.lstURL());
    m_descripts->addItems(h.lstDescript());
    if (row >= 0 && row < m_urls->count()) {
        m_urls->setCurrentRow(row);
        m_descripts->setCurrentRow(row);
    }
    m_descript->setText(h.txtDescript());
    refreshCount();
}

void UrlHistoryWindow::refreshCount()
{
    m_count->setText(m_frm.urlHistory().countCaption());
}

void UrlHistoryWindow::editEntry(bool add)
{
    UrlHistoryCommands& c = m_frm.urlHistoryCommands();
    std::optional<UrlEditForm> form = add ? std::optional(c.mnuAdd_Click()) : c.mnuEdit_Click();
    if (!form)
        return;
    // frmURL: address and description, OK and Cancel.
    QDialog d(this);
    d.setObjectName(QStringLiteral("frmURL"));
    d.setWindowTitle(windowTitle());
    auto* url = new QLineEdit(form->txtURL, &d);
    url->setObjectName(QStringLiteral("txtURL"));
    auto* descript = new QLineEdit(form->txtDescript, &d);
    descript->setObjectName(QStringLiteral("txtDescript"));
    auto* fields = new QFormLayout(&d);
    fields->addRow(m_frm.ctx().translate(QStringLiteral("URL:")), url);
    fields->addRow(m_frm.ctx().translate(QStringLiteral("Description:")), descript);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &d);
    fields->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, &d, [&] {
        form->txtURL = url->text();
        form->txtDescript = descript->text();
        if (c.cmdOK_Click(*form))
            d.accept();
    });
    connect(buttons, &QDialogButtonBox::rejected, &d, &QDialog::reject);
    d.resize(420, d.sizeHint().height());
    d.exec();
}

void UrlHistoryWindow::placeFromSettings()
{
    CopyContext& c = m_frm.ctx();
    const int left = c.settingInt(QStringLiteral("Settings-URLHistoryLeft"));
    const int top = c.settingInt(QStringLiteral("Settings-URLHistoryTop"));
    const int width = c.settingInt(QStringLiteral("Settings-URLHistoryWidth"));
    const int height = c.settingInt(QStringLiteral("Settings-URLHistoryHeight"));
    resize(width > 0 ? width / kTwipsPerPixel : 520, height > 0 ? height / kTwipsPerPixel : 320);
    if (left > 0 && top > 0)
        move(left / kTwipsPerPixel, top / kTwipsPerPixel);
    if (c.settingInt(QStringLiteral("URL History-Colour")) == 1) {
        QPalette p = m_urls->palette();
        p.setColor(QPalette::Text,
                   PaneFormat::toColor(c.settingInt(QStringLiteral("URL History-Colour-FG"))));
        p.setColor(QPalette::Base,
                   PaneFormat::toColor(c.settingInt(QStringLiteral("URL History-Colour-BK"))));
        m_urls->setPalette(p);
        m_descripts->setPalette(p);
    }
    const bool onTop = c.settingFlag(QStringLiteral("Settings-URLHistoryViewOnTop"));
    m_onTop->setChecked(onTop);
    setOnTop(onTop);
}

void UrlHistoryWindow::setOnTop(bool on)
{
    const bool shown = isVisible();
    setWindowFlag(Qt::WindowStaysOnTopHint, on);
    if (shown)
        show();
}

void UrlHistoryWindow::closeEvent(QCloseEvent* event)
{
    const bool reminder = m_frm.ctx().settingFlag(QStringLiteral("URL Save Reminder"));
    if (!m_frm.urlHistoryCommands().Form_QueryUnload(reminder)) {
        event->ignore();
        return;
    }
    CopyContext& c = m_frm.ctx();
    c.writeSetting(QStringLiteral("Settings-URLHistoryLeft"), QString::number(x() * kTwipsPerPixel));
    c.writeSetting(QStringLiteral("Settings-URLHistoryTop"), QString::number(y() * kTwipsPerPixel));
    c.writeSetting(QStringLiteral("Settings-URLHistoryWidth"),
                   QString::number(width() * kTwipsPerPixel));
    c.writeSetting(QStringLiteral("Settings-URLHistoryHeight"),
                   QString::number(height() * kTwipsPerPixel));
    event->accept();
}

}  // namespace vonnel
