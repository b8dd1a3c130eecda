#include "shell/dialogs/AccessDialogs.h"

#include "access/Encryption.h"
#include "access/LockForms.h"
#include "access/PasswordStore.h"
#include "shell/FrmMain.h"
#include "wire/PaneFormat.h"
#include "core/MainModel.h"
#include "core/CopyContext.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace vonnel {

QPixmap lockPicture(bool closed, int size)
{
    QPixmap pm(size, size);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal s = size / 32.0;
    const QColor body = closed ? QColor(0xc6, 0x28, 0x28) : QColor(0x2e, 0x7d, 0x32);
    // The shackle: closed, both legs sit in the body; open, it stands
    // raised with its left leg free.
    const qreal top = (closed ? 5 : 1) * s;
    QPainterPath shackle;
    shackle.moveTo(9 * s, closed ? 15 * s : 10 * s);
    shackle.lineTo(9 * s, top + 7 * s);
    shackle.arcTo(QRectF(9 * s, top, 14 * s, 14 * s), 180, -180);
    shackle.lineTo(23 * s, 15 * s);
    p.setPen(QPen(QColor(0x60, 0x60, 0x60), 3 * s, Qt::SolidLine, Qt::RoundCap));
    p.setBrush(Qt::NoBrush);
    p.drawPath(shackle);
    p.setPen(QPen(body.darker(150), 1.2 * s));
    p.setBrush(body);
    p.drawRoundedRect(QRectF(5 * s, 14 * s, 22 * s, 16 * s), 3 * s, 3 * s);
    p.setBrush(QColor(0x20, 0x20, 0x20));
    p.setPen(Qt::NoPen);
    p.drawEllipse(QPointF(16 * s, 21 * s), 2.2 * s, 2.2 * s);
    p.drawRect(QRectF(15.2 * s, 21 * s, 1.6 * s, 5 * s));
    return pm;
}

// --- frmSecurity ------------------------------------------------------------------

SecurityDialog::SecurityDialog(FrmMain& frm, QWidget* parent)
    : QDialog(parent),
      m_frm(frm),
      m_form(std::make_unique<FrmSecurity>(frm.ctx(), frm.encryption().passwords())),
      m_pass1(new QLineEdit(this)),
      m_pass2(new QLineEdit(this)),
      m_stLock(new QLabel(this)),
      m_awLock(new QLabel(this))
{
    setObjectName(QStringLiteral("frmSecurity"));
    setWindowTitle(MainModel::kTitle + QStringLiteral(" - ") + frm.ctx().translate(QStringLiteral("Security")));
    setModal(true);
    m_pass1->setObjectName(QStringLiteral("txtPass1"));
    m_pass2->setObjectName(QStringLiteral("txtPass2"));
    m_stLock->setObjectName(QStringLiteral("imgStLock"));
    m_awLock->setObjectName(QStringLiteral("imgAwLock"));
    for (QLineEdit* box : {m_pass1, m_pass2}) {
        box->setEchoMode(QLineEdit::Password);
        box->setReadOnly(true);  // changed only through the Set buttons
        box->setMinimumWidth(160);
    }
    auto* set1 = new QPushButton(frm.ctx().translate(QStringLiteral("Set"), QStringLiteral("&Set...")), this);
    set1->setObjectName(QStringLiteral("cmdSetPass1"));
    auto* set2 = new QPushButton(frm.ctx().translate(QStringLiteral("Set"), QStringLiteral("S&et...")), this);
    set2->setObjectName(QStringLiteral("cmdSetPass2"));
    auto* ok = new QPushButton(frm.ctx().translate(QStringLiteral("OK"), QStringLiteral("&OK")), this);
    ok->setObjectName(QStringLiteral("OKButton"));
    ok->setDefault(true);
    auto* help = new QPushButton(frm.ctx().translate(QStringLiteral("Help"), QStringLiteral("&Help")), this);
    help->setObjectName(QStringLiteral("cmdHelp"));

    auto heading = [&frm, this](const QString& text, const QString& note) {
        auto* l = new QLabel(QStringLiteral("<b>%1</b><br><small>%2</small>")
                                 .arg(frm.ctx().translate(text).toHtmlEscaped(),
                                      frm.ctx().translate(note).toHtmlEscaped()),
                             this);
        l->setWordWrap(true);
        return l;
    };
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(10);
    grid->addWidget(m_stLock, 0, 0, 2, 1, Qt::AlignTop);
    grid->addWidget(heading(FrmSecurity::lblStartup(), FrmSecurity::lblStartupNote()), 0, 1, 1, 2);
    grid->addWidget(m_pass1, 1, 1);
    grid->addWidget(set1, 1, 2);
    grid->setRowMinimumHeight(2, 12);
    grid->addWidget(m_awLock, 3, 0, 2, 1, Qt::AlignTop);
    grid->addWidget(heading(FrmSecurity::lblAway(), FrmSecurity::lblAwayNote()), 3, 1, 1, 2);
    grid->addWidget(m_pass2, 4, 1);
    grid->addWidget(set2, 4, 2);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(help);
    buttons->addStretch();
    buttons->addWidget(ok);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addSpacing(8);
    layout->addLayout(buttons);

    connect(set1, &QPushButton::clicked, this, &SecurityDialog::cmdSetPass1_Click);
    connect(set2, &QPushButton::clicked, this, &SecurityDialog::cmdSetPass2_Click);
    connect(ok, &QPushButton::clicked, this, &SecurityDialog::OKButton_Click);
    connect(help, &QPushButton::clicked, this, [this] { m_form->cmdHelp_Click(); });
    m_form->Form_Load();
    refill();
}

SecurityDialog::~SecurityDialog() = default;

void SecurityDialog::refill()
{
    m_pass1->setText(m_form->txtPass1);
    m_pass2->setText(m_form->txtPass2);
    m_stLock->setPixmap(lockPicture(m_form->imgStLock));
    m_awLock->setPixmap(lockPicture(m_form->imgAwLock));
    m_stLock->setToolTip(m_form->imgStLock ? QStringLiteral("imgStLock") : QStringLiteral("imgStUnlock"));
    m_awLock->setToolTip(m_form->imgAwLock ? QStringLiteral("imgAwLock") : QStringLiteral("imgAwUnlock"));
}

void SecurityDialog::cmdSetPass1_Click()
{
    m_form->cmdSetPass1_Click();
    refill();
}

void SecurityDialog::cmdSetPass2_Click()
{
    m_form->cmdSetPass2_Click();
    refill();
}

void SecurityDialog::OKButton_Click()
{
    m_form->OKButton_Click();
    accept();
}

// --- frmEncrypt -------------------------------------------------------------------

EncryptDialog::EncryptDialog(FrmMain& frm, QWidget* parent)
    : QDialog(parent),
      m_frm(frm),
      m_form(std::make_unique<FrmEncrypt>(frm.ctx(), frm.encryption())),
      m_key(new QLineEdit(this)),
      m_text(new QPlainTextEdit(this)),
      m_result(new QPlainTextEdit(this))
{
    setObjectName(QStringLiteral("frmEncrypt"));
    setWindowTitle(frm.ctx().translate(FrmEncrypt::title()));
    m_form->Form_Load();
    m_key->setObjectName(QStringLiteral("txtKey"));
    m_text->setObjectName(QStringLiteral("txtText"));
    m_result->setObjectName(QStringLiteral("txtResult"));
    // Cipher text has no blanks: it wraps anywhere rather than run off.
    m_result->setWordWrapMode(QTextOption::WrapAnywhere);
    auto* encrypt = new QPushButton(m_form->captionEncrypt, this);
    encrypt->setObjectName(QStringLiteral("cmdEncrypt"));
    auto* decrypt = new QPushButton(m_form->captionDecrypt, this);
    decrypt->setObjectName(QStringLiteral("cmdDecrypt"));
    auto* help = new QPushButton(frm.ctx().translate(QStringLiteral("Help"), QStringLiteral("&Help")), this);
    help->setObjectName(QStringLiteral("cmdHelp"));

    // The colour pair applies when the colour switch is on.
    if (m_form->colour.trimmed().toDouble() != 0) {
        bool fgOk = false, bkOk = false;
        const qint64 fg = m_form->colourFg.trimmed().toLongLong(&fgOk);
        const qint64 bk = m_form->colourBk.trimmed().toLongLong(&bkOk);
        for (QWidget* box : {static_cast<QWidget*>(m_key), static_cast<QWidget*>(m_text),
                             static_cast<QWidget*>(m_result)}) {
            QPalette pal = box->palette();
            if (fgOk)
                pal.setColor(QPalette::Text, PaneFormat::toColor(fg));
            if (bkOk)
                pal.setColor(QPalette::Base, PaneFormat::toColor(bk));
            box->setPalette(pal);
        }
    }

    auto* keyRow = new QHBoxLayout;
    keyRow->addWidget(new QLabel(m_form->lblKey, this));
    keyRow->addWidget(m_key, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(encrypt);
    buttons->addWidget(decrypt);
    buttons->addStretch();
    buttons->addWidget(help);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(keyRow);
    // The two text boxes share the height; the buttons stay below them.
    layout->addWidget(m_text, 1);
    layout->addWidget(m_result, 1);
    layout->addLayout(buttons);
    resize(420, 320);

    connect(encrypt, &QPushButton::clicked, this, &EncryptDialog::cmdEncrypt_Click);
    connect(decrypt, &QPushButton::clicked, this, &EncryptDialog::cmdDecrypt_Click);
    connect(help, &QPushButton::clicked, this, [this] { m_form->cmdHelp_Click(); });
}

EncryptDialog::~EncryptDialog() = default;

void EncryptDialog::take()
{
    m_form->txtKey = m_key->text();
    m_form->txtText = m_text->toPlainText();
    m_form->txtResult = m_result->toPlainText();
}

void EncryptDialog::showResult()
{
    if (m_result->toPlainText() != m_form->txtResult)
        m_result->setPlainText(m_form->txtResult);
}

void EncryptDialog::cmdEncrypt_Click()
{
    take();
    m_form->cmdEncrypt_Click();
    showResult();
}

void EncryptDialog::cmdDecrypt_Click()
{
    take();
    m_form->cmdDecrypt_Click();
    showResult();
}

}  // namespace vonnel
