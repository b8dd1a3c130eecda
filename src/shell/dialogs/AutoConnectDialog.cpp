#include "shell/dialogs/AutoConnectDialog.h"

#include "core/CopyContext.h"
#include "core/Form.h"
#include "nettools/AutoConnectSettings.h"
#include "platform/Desktop.h"
#include "shell/FrmMain.h"
#include "shell/NetTools.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace vonnel {

AutoConnectDialog::AutoConnectDialog(FrmMain& frm, QWidget* parent)
    : QDialog(parent), m_frm(frm), m_model(frm.netTools().autoConnectSettings())
{
    CopyContext& c = frm.ctx();
    const auto tr = [&c](const char* text) { return c.translate(QLatin1String(text)); };
    AutoConnectSettings& s = *m_model;
    setObjectName(formName(Form::frmAutoConnect));
    setWindowTitle(tr("AutoConnect"));

    m_on = new QCheckBox(tr("&Automatic check the following stations"), this);
    m_on->setObjectName(QStringLiteral("chkAutoCheckOn"));
    m_entry = new QLineEdit(this);
    m_entry->setObjectName(QStringLiteral("txtAutoCheck"));
    auto* add = new QPushButton(tr("&Add"), this);
    add->setObjectName(QStringLiteral("cmdAdd"));
    auto* remove = new QPushButton(tr("&Remove"), this);
    remove->setObjectName(QStringLiteral("cmdRemove"));
    auto* up = new QToolButton(this);
    up->setObjectName(QStringLiteral("cmdPriorUp"));
    up->setArrowType(Qt::UpArrow);
    auto* down = new QToolButton(this);
    down->setObjectName(QStringLiteral("cmdPriorDwn"));
    down->setArrowType(Qt::DownArrow);
    m_addresses = new QListWidget(this);
    m_addresses->setObjectName(QStringLiteral("lstAutoCheck"));
    m_hosts = new QListWidget(this);
    m_hosts->setObjectName(QStringLiteral("lstAutoHost"));
    // The hosts stand beside their addresses; a line picked in either list
    // is picked in both.
    m_hosts->setFocusPolicy(Qt::NoFocus);
    connect(m_hosts, &QListWidget::currentRowChanged, m_addresses, [this](int row) {
        if (row >= 0 && row != m_addresses->currentRow())
            m_addresses->setCurrentRow(row);
    });
    connect(m_addresses->verticalScrollBar(), &QScrollBar::valueChanged,
            m_hosts->verticalScrollBar(), &QScrollBar::setValue);
    m_minutes = new QLineEdit(this);
    m_minutes->setObjectName(QStringLiteral("txtChkMin"));
    m_minutes->setMaximumWidth(44);
    m_minutes->setAlignment(Qt::AlignRight);
    auto* vsc = new QScrollBar(Qt::Vertical, this);
    vsc->setObjectName(QStringLiteral("vscMin"));
    vsc->setRange(-1, 1);
    vsc->setValue(0);
    vsc->setFixedHeight(m_minutes->sizeHint().height());
    m_connect = new QRadioButton(tr("&Connect to the first online station"), this);
    m_connect->setObjectName(QStringLiteral("optAutoConnect"));
    m_show = new QRadioButton(tr("&Show online station(s) only"), this);
    m_show->setObjectName(QStringLiteral("optAutoShow"));
    m_during = new QCheckBox(tr("Check during a session"), this);
    m_during->setObjectName(QStringLiteral("chkChkDuring"));
    m_after = new QCheckBox(tr("Switch the check off after a session"), this);
    m_after->setObjectName(QStringLiteral("chkChkAfter"));
    auto* ok = new QPushButton(tr("OK"), this);
    ok->setObjectName(QStringLiteral("OKButton"));
    auto* cancel = new QPushButton(tr("Cancel"), this);
    cancel->setObjectName(QStringLiteral("CancelButton"));
    auto* help = new QPushButton(tr("Help"), this);
    help->setObjectName(QStringLiteral("cmdHelp"));
    for (QPushButton* b : {add, remove, ok, cancel, help})
        b->setAutoDefault(false);

    // Layout: the entry row, the two lists with their buttons, the check's
    // interval and options, then the dialog's buttons.
    auto* entry = new QHBoxLayout;
    entry->addWidget(new QLabel(tr("IP Address / Host"), this));
    entry->addWidget(m_entry, 1);
    entry->addWidget(add);
    auto* side = new QVBoxLayout;
    side->addWidget(remove);
    side->addSpacing(10);
    auto* priority = new QLabel(tr("Priority"), this);
    priority->setAlignment(Qt::AlignCenter);
    side->addWidget(priority);
    auto* arrows = new QHBoxLayout;
    arrows->addWidget(up);
    arrows->addWidget(down);
    side->addLayout(arrows);
    side->addStretch();
    auto* lists = new QHBoxLayout;
    lists->addWidget(m_addresses, 1);
    lists->addWidget(m_hosts, 1);
    lists->addLayout(side);
    auto* every = new QHBoxLayout;
    every->addWidget(new QLabel(tr("Check every"), this));
    every->addWidget(m_minutes);
    every->addWidget(vsc);
    every->addWidget(new QLabel(tr("Minites"), this));
    every->addStretch();
    auto* options = new QGroupBox(this);
    auto* optionsLayout = new QVBoxLayout(options);
    optionsLayout->addWidget(m_connect);
    optionsLayout->addWidget(m_show);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(help);
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_on);
    layout->addLayout(entry);
    layout->addLayout(lists, 1);
    layout->addLayout(every);
    layout->addWidget(options);
    layout->addWidget(m_during);
    layout->addWidget(m_after);
    layout->addLayout(buttons);
    m_dependents = {m_entry, add, remove, up, down, m_addresses, m_hosts, m_minutes, vsc,
                    m_connect, m_show, m_during, m_after, priority};

    // The model's state.
    m_on->setChecked(s.chkAutoCheckOn());
    m_entry->setText(s.txtAutoCheck());
    m_minutes->setText(s.txtChkMin());
    (s.optAutoConnect ? m_connect : m_show)->setChecked(true);
    m_during->setChecked(s.chkChkDuring);
    m_after->setChecked(s.chkChkAfter);
    refreshLists();
    refreshEnabled(s.chkAutoCheckOn());
    connect(&s, &AutoConnectSettings::listChanged, this, &AutoConnectDialog::refreshLists);
    connect(&s, &AutoConnectSettings::selectionChanged, m_addresses,
            [this](int row) { m_addresses->setCurrentRow(row); });
    connect(&s, &AutoConnectSettings::txtAutoCheckChanged, this, [this](const QString& t) {
        if (m_entry->text() != t)
            m_entry->setText(t);
        m_entry->repaint();  // "Resoving..." is seen while the name is looked up
    });
    connect(&s, &AutoConnectSettings::txtChkMinChanged, this, [this](const QString& t) {
        if (m_minutes->text() != t)
            m_minutes->setText(t);
    });
    connect(&s, &AutoConnectSettings::chkAutoCheckOnChanged, this, &AutoConnectDialog::refreshEnabled);
    connect(&s, &AutoConnectSettings::closed, this, &QDialog::accept);

    // The user's actions.
    connect(m_on, &QCheckBox::toggled, &s, &AutoConnectSettings::setChkAutoCheckOn);
    connect(m_entry, &QLineEdit::textEdited, &s, &AutoConnectSettings::setTxtAutoCheck);
    connect(m_entry, &QLineEdit::returnPressed, &s, &AutoConnectSettings::cmdAdd_Click);
    connect(add, &QPushButton::clicked, &s, &AutoConnectSettings::cmdAdd_Click);
    connect(remove, &QPushButton::clicked, &s, &AutoConnectSettings::cmdRemove_Click);
    connect(up, &QToolButton::clicked, &s, &AutoConnectSettings::cmdPriorUp_Click);
    connect(down, &QToolButton::clicked, &s, &AutoConnectSettings::cmdPriorDwn_Click);
    connect(m_addresses, &QListWidget::currentRowChanged, this, [this](int row) {
        m_hosts->setCurrentRow(row);
        if (row != m_model->selected())
            m_model->select(row);
    });
    connect(m_minutes, &QLineEdit::textEdited, &s, &AutoConnectSettings::setTxtChkMin);
    connect(m_minutes, &QLineEdit::editingFinished, this,
            [this] { m_minutes->setText(m_model->txtChkMin()); });
    connect(vsc, &QScrollBar::valueChanged, this, [this, vsc](int v) {
        if (v == 0)
            return;
        // Up on the bar is more minutes; the bar springs back to the middle.
        m_model->vscMinStep(-v);
        const QSignalBlocker quiet(vsc);
        vsc->setValue(0);
    });
    connect(m_connect, &QRadioButton::toggled, this, [this](bool on) { m_model->optAutoConnect = on; });
    connect(m_during, &QCheckBox::toggled, this, [this](bool on) { m_model->chkChkDuring = on; });
    connect(m_after, &QCheckBox::toggled, this, [this](bool on) { m_model->chkChkAfter = on; });
    connect(ok, &QPushButton::clicked, &s, &AutoConnectSettings::OKButton_Click);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(help, &QPushButton::clicked, this, [this] {
        m_frm.ctx().desktop().openFile(m_frm.ctx().HelpPath +
                                       QStringLiteral("autoconnect_setting.htm"));
    });
    resize(460, 420);
}

AutoConnectDialog::~AutoConnectDialog() = default;

void AutoConnectDialog::refreshLists()
{
    const int row = m_model->selected();
    const QSignalBlocker quiet(m_addresses);  // the model's selection stays
    const QSignalBlocker quietHosts(m_hosts);
    m_addresses->clear();
    m_hosts->clear();
    m_addresses->addItems(m_model->lstAutoCheck());
    m_hosts->addItems(m_model->lstAutoHost());
    m_addresses->setCurrentRow(row);
    m_hosts->setCurrentRow(row);
}

void AutoConnectDialog::refreshEnabled(bool on)
{
    if (m_on->isChecked() != on)
        m_on->setChecked(on);
    for (QWidget* w : m_dependents)
        w->setEnabled(on);
}

}  // namespace vonnel
