#include "shell/dialogs/NetResolveWindow.h"

#include "connection/AddressServices.h"
#include "connection/Connection.h"
#include "core/CopyContext.h"
#include "core/Form.h"
#include "nettools/NetResolve.h"
#include "platform/Desktop.h"
#include "shell/FrmMain.h"
#include "shell/NetTools.h"
#include "shell/dialogs/ToolWindowPlace.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace vonnel {

NetResolveWindow::NetResolveWindow(FrmMain& frm, QWidget* parent)
    : QDialog(parent), m_frm(frm), m_model(frm.netTools().netResolve()),
      m_ip(new QLineEdit(this)), m_host(new QLineEdit(this)), m_resolve(new QPushButton(this)),
      m_reset(new QPushButton(this))
{
    CopyContext& c = frm.ctx();
    const auto tr = [&c](const char* text) { return c.translate(QLatin1String(text)); };
    setObjectName(formName(Form::frmNetResolve));
    setWindowTitle(tr("Net Resolve"));
    m_ip->setObjectName(QStringLiteral("txtIP"));
    m_host->setObjectName(QStringLiteral("txtHost"));
    m_resolve->setObjectName(QStringLiteral("cmdResolve"));
    m_resolve->setText(tr("Resolve / Convert"));
    m_reset->setObjectName(QStringLiteral("cmdReset"));
    m_reset->setText(tr("Reset"));
    m_reset->setToolTip(tr("Clear"));
    auto* help = new QPushButton(tr("Help"), this);
    help->setObjectName(QStringLiteral("cmdHelp"));

    // Enter belongs to the boxes: no button takes it as a default.
    for (QPushButton* b : {m_resolve, m_reset, help})
        b->setAutoDefault(false);
    auto* title = new QLabel(tr("Enter IP address or host name, press Enter to convert."), this);
    title->setObjectName(QStringLiteral("lblTitle"));
    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(tr("IP Address"), this), 0, 0);
    grid->addWidget(m_ip, 0, 1);
    grid->addWidget(new QLabel(tr("(e.g. 127.0.0.1)"), this), 0, 2);
    grid->addWidget(new QLabel(tr("Host/Domain Name"), this), 1, 0);
    grid->addWidget(m_host, 1, 1);
    grid->addWidget(new QLabel(tr("(e.g. Localhost)"), this), 1, 2);
    grid->setColumnStretch(1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_resolve);
    buttons->addWidget(m_reset);
    buttons->addWidget(help);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addLayout(grid);
    layout->addLayout(buttons);

    m_ip->setText(m_model.txtIP());
    m_host->setText(m_model.txtHost());
    connect(&m_model, &NetResolve::txtIPChanged, this, [this](const QString& t) {
        if (m_ip->text() != t)
            m_ip->setText(t);
    });
    connect(&m_model, &NetResolve::txtHostChanged, this, [this](const QString& t) {
        if (m_host->text() != t)
            m_host->setText(t);
    });
    connect(&m_model, &NetResolve::busyChanged, this, [this](bool busy) {
        if (busy)
            setCursor(Qt::WaitCursor);
        else
            unsetCursor();
    });
    connect(&m_model, &NetResolve::focusRequested, this, [this](const QString& box) {
        (box == QLatin1String("IP") ? m_ip : m_host)->setFocus();
    });
    // The buttons rest while a lookup of the copy runs.
    connect(&frm.connection().address(), &AddressServices::lookupRunning, this,
            [this, help](bool running) {
                for (QPushButton* b : {m_resolve, m_reset, help})
                    b->setEnabled(!running);
            });
    connect(m_ip, &QLineEdit::textEdited, &m_model, &NetResolve::typeIP);
    connect(m_host, &QLineEdit::textEdited, &m_model, &NetResolve::typeHost);
    connect(m_ip, &QLineEdit::returnPressed, &m_model, &NetResolve::cmdResolve_Click);
    connect(m_host, &QLineEdit::returnPressed, &m_model, &NetResolve::cmdResolve_Click);
    connect(m_resolve, &QPushButton::clicked, &m_model, &NetResolve::cmdResolve_Click);
    connect(m_reset, &QPushButton::clicked, &m_model, &NetResolve::cmdReset_Click);
    connect(help, &QPushButton::clicked, this, [this] {
        m_frm.ctx().desktop().openFile(m_frm.ctx().HelpPath + QStringLiteral("netresolve.htm"));
    });
    applyColours(c, QStringLiteral("NetResolve"), {m_ip, m_host});
    resize(480, sizeHint().height());
}

}  // namespace vonnel
