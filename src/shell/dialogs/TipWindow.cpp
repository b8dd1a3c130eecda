#include "shell/dialogs/TipWindow.h"

#include "core/CopyContext.h"
#include "shell/FrmMain.h"

#include <QCheckBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace vonnel {

TipWindow::TipWindow(FrmMain& frm, const QString& file, int start, QWidget* parent, const QString& form)
    : QDialog(parent), m_frm(frm), m_tips(frm.ctx().appFile(file), start)
{
    CopyContext& c = frm.ctx();
    setObjectName(form);
    setWindowTitle(c.translate(QStringLiteral("Tips of the day"), QStringLiteral("Tips")));

    auto* bulb = new QLabel(this);
    bulb->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxInformation).pixmap(40, 40));
    auto* heading = new QLabel(c.translate(QStringLiteral("Did you know..."), QStringLiteral("Did you know...")), this);
    QFont f = heading->font();
    f.setBold(true);
    f.setPointSize(f.pointSize() + 2);
    heading->setFont(f);
    m_text = new QLabel(m_tips.current(), this);
    m_text->setObjectName(QStringLiteral("lblTipText"));
    m_text->setWordWrap(true);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_text->setMinimumSize(340, 90);

    auto* panel = new QFrame(this);
    panel->setFrameShape(QFrame::StyledPanel);
    panel->setStyleSheet(QStringLiteral("QFrame{background:#fffde7;}"));
    auto* inner = new QVBoxLayout(panel);
    inner->addWidget(heading);
    inner->addWidget(m_text, 1);
    auto* top = new QHBoxLayout;
    top->addWidget(bulb, 0, Qt::AlignTop);
    top->addWidget(panel, 1);

    m_load = new QCheckBox(c.translate(QStringLiteral("Show Tips at Startup")), this);
    m_load->setObjectName(QStringLiteral("chkLoadTipsAtStartup"));
    m_load->setChecked(c.settingNumber(QStringLiteral("Show Tips at Startup")) == 1);
    m_next = new QPushButton(c.translate(QStringLiteral("Next Tip"), QStringLiteral("&Next Tip")), this);
    m_next->setObjectName(QStringLiteral("cmdNextTip"));
    m_next->setEnabled(m_tips.count() > 1);
    auto* ok = new QPushButton(c.translate(QStringLiteral("OK"), QStringLiteral("&OK")), this);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    connect(m_next, &QPushButton::clicked, this, &TipWindow::cmdNextTip_Click);
    connect(m_load, &QCheckBox::clicked, this, &TipWindow::chkLoadTipsAtStartup_Click);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_load);
    buttons->addStretch();
    buttons->addWidget(m_next);
    buttons->addWidget(ok);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addLayout(buttons);
    resize(470, 230);
}

QString TipWindow::shownTip() const { return m_text->text(); }

void TipWindow::cmdNextTip_Click() { m_text->setText(m_tips.next()); }

void TipWindow::chkLoadTipsAtStartup_Click()
{
    m_frm.ctx().writeSetting(QStringLiteral("Show Tips at Startup"),
                             m_load->isChecked() ? QStringLiteral("1") : QStringLiteral("0"));
}

}  // namespace vonnel
