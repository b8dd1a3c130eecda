#include "shell/dialogs/PrivateSessionDialog.h"

#include "connection/Connection.h"
#include "connection/PrivateLink.h"
#include "core/CopyContext.h"
#include "shell/FrmMain.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace vonnel {

namespace {
QLabel* selectable(QWidget* parent)
{
    auto* l = new QLabel(parent);
    l->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return l;
}
}  // namespace

PrivateSessionDialog::PrivateSessionDialog(FrmMain& frm, QWidget* parent)
    : QDialog(parent), m_frm(frm), m_link(frm.connection().privateLink())
{
    CopyContext& c = frm.ctx();
    setObjectName(QStringLiteral("frmPrivate"));
    setWindowTitle(c.translate(QStringLiteral("Private Session")));

    m_state = new QLabel(this);
    m_state->setObjectName(QStringLiteral("lblPrivacy"));
    QFont bold = m_state->font();
    bold.setBold(true);
    m_state->setFont(bold);

    m_string = selectable(this);
    m_string->setWordWrap(true);
    m_string->setObjectName(QStringLiteral("lblShortString"));
    QFont big = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    big.setPointSizeF(big.pointSizeF() * 1.8);
    big.setBold(true);
    m_string->setFont(big);
    m_string->setAccessibleName(c.translate(QStringLiteral("Short string")));

    m_hint = new QLabel(c.translate(QStringLiteral("Read the short string to your peer (by phone, or face to face) "
                                                   "and let them read theirs. Only if both are the same is "
                                                   "nobody in between.")),
                        this);
    m_hint->setWordWrap(true);

    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    m_peerKey = selectable(this);
    m_peerKey->setObjectName(QStringLiteral("lblPeerKey"));
    m_peerKey->setFont(fixed);
    m_ownKey = selectable(this);
    m_ownKey->setObjectName(QStringLiteral("lblOwnKey"));
    m_ownKey->setFont(fixed);

    auto* form = new QFormLayout;
    form->addRow(c.translate(QStringLiteral("Short string")) + QLatin1Char(':'), m_string);
    form->addRow(c.translate(QStringLiteral("Peer key")) + QLatin1Char(':'), m_peerKey);
    form->addRow(c.translate(QStringLiteral("Your key")) + QLatin1Char(':'), m_ownKey);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    m_verify = buttons->addButton(c.translate(QStringLiteral("&Verified")), QDialogButtonBox::ActionRole);
    m_verify->setObjectName(QStringLiteral("cmdVerified"));
    m_verify->setToolTip(c.translate(QStringLiteral("Both short strings are the same: remember this key as the peer's")));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_verify, &QPushButton::clicked, this, [this] { m_link.markVerified(); });

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_state);
    layout->addLayout(form);
    layout->addWidget(m_hint);
    layout->addWidget(buttons);

    connect(&m_link, &PrivateLink::privacyChanged, this, &PrivateSessionDialog::refresh);
    refresh();
}

void PrivateSessionDialog::refresh()
{
    CopyContext& c = m_frm.ctx();
    const Privacy p = m_link.privacy();
    const bool isPrivate = p == Privacy::Private || p == Privacy::Verified;
    m_state->setText(p == Privacy::NoSession ? c.translate(QStringLiteral("No session"))
                                             : c.translate(PrivateLink::privacyText(p)));
    m_string->setText(isPrivate ? m_link.shortString() : QStringLiteral("-"));
    m_peerKey->setText(isPrivate ? Identity::inTwoLines(m_link.peerFingerprint()) : QStringLiteral("-"));
    m_ownKey->setText(Identity::inTwoLines(m_link.identity().fingerprint()));
    m_hint->setVisible(isPrivate);
    m_verify->setEnabled(p == Privacy::Private);
    m_verify->setVisible(isPrivate);
}

}  // namespace vonnel
