// The eleven pages of frmOptions, each with the frames its settings are
// grouped in. Every text passes the copy's lookup with the plain text as
// its key.

#include "shell/dialogs/OptionsDialog.h"

#include <QFontDatabase>

#include "connection/Connection.h"
#include "connection/PrivateLink.h"
#include "platform/Prompter.h"

#include "access/Encryption.h"
#include "access/LockForms.h"
#include "core/CopyContext.h"
#include "core/Views.h"
#include "media/Sound.h"
#include "media/SoundFile.h"
#include "media/Speech.h"
#include "media/VoiceEngine.h"
#include "shell/FrmMain.h"
#include "shell/dialogs/ConnectionDialogs.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>

namespace vonnel {

namespace {

QWidget* page(std::initializer_list<QWidget*> frames)
{
    auto* w = new QWidget;
    auto* v = new QVBoxLayout(w);
    for (QWidget* f : frames)
        v->addWidget(f);
    v->addStretch();
    return w;
}

QVBoxLayout* column(QGroupBox* frame)
{
    return new QVBoxLayout(frame);
}

QGridLayout* grid(QGroupBox* frame)
{
    auto* g = new QGridLayout(frame);
    g->setColumnStretch(1, 1);
    return g;
}

}  // namespace

QWidget* OptionsDialog::buildGeneral()
{
    CopyContext& ctx = m_frm.ctx();
    QGroupBox* startup = frame("fraStartup", ctx.translate(QStringLiteral("Startup")));
    QVBoxLayout* s = column(startup);
    s->addWidget(check(Opt::chkLoadAtStartUp, ctx.translate(QStringLiteral("Load Vonnel at system startup"))));
    s->addWidget(check(Opt::chkShowTips, ctx.translate(QStringLiteral("Show Tips at Startup"))));
    s->addWidget(check(Opt::chkMinStart, ctx.translate(QStringLiteral("Start in the system tray only"))));
    s->addWidget(check(Opt::chkLocalInfo, ctx.translate(QStringLiteral("Do not display network information at startup"))));
    s->addWidget(check(Opt::chkDesktopNotify, ctx.translate(QStringLiteral("Show desktop notifications"))));

    QGroupBox* connection = frame("fraConnection", ctx.translate(QStringLiteral("Connection")));
    QVBoxLayout* c = column(connection);
    auto* autoRow = new QHBoxLayout;
    autoRow->addWidget(check(Opt::chkAutoCheck, ctx.translate(QStringLiteral("Check the stations of AutoConnect"))), 1);
    QPushButton* autoConnect = button("cmdAutoConnect", ctx.translate(QStringLiteral("AutoConnect"), QStringLiteral("&AutoConnect...")));
    autoRow->addWidget(autoConnect);
    c->addLayout(autoRow);
    c->addWidget(check(Opt::chkCloseProgress, ctx.translate(QStringLiteral("Close the progress window when a transfer is done"))));
    connect(autoConnect, &QPushButton::clicked, this, [this] {
        m_model.cmdAutoConnect_Click();
        m_frm.ctx().views().showModeless(Form::frmAutoConnect);
    });

    QGroupBox* saveExit = frame("fraSaveExit", ctx.translate(QStringLiteral("Save and Exit")));
    QVBoxLayout* e = column(saveExit);
    e->addWidget(check(Opt::chkExitConfirm, ctx.translate(QStringLiteral("Confirm before exit"))));
    e->addWidget(check(Opt::chkSaveToolbar, ctx.translate(QStringLiteral("Keep the toolbar's font changes"))));
    return page({startup, connection, saveExit});
}

QWidget* OptionsDialog::buildFont()
{
    CopyContext& ctx = m_frm.ctx();
    QGroupBox* f = frame("fraFont", ctx.translate(QStringLiteral("Font of the local pane")));
    QGridLayout* g = grid(f);
    // The font list is filled when the tab is first shown (getSystemRes).
    auto* fonts = new QComboBox(this);
    fonts->setObjectName(optName(Opt::txtFont));
    fonts->setEditable(true);
    connect(fonts, &QComboBox::currentTextChanged, this,
            [this](const QString& t) { m_model.setValue(Opt::txtFont, t); });
    m_boxes[size_t(Opt::txtFont)] = fonts;
    addRow(g, ctx.translate(QStringLiteral("Font:")), fonts);
    addRow(g, ctx.translate(QStringLiteral("Size:")), lineBox(Opt::txtSize));
    auto* style = new QComboBox(this);
    style->setObjectName(optName(Opt::txtStyle));
    style->addItems({ctx.translate(QStringLiteral("Regular")), ctx.translate(QStringLiteral("Bold")),
                     ctx.translate(QStringLiteral("Italic")), ctx.translate(QStringLiteral("Bold Italic"))});
    connect(style, &QComboBox::currentIndexChanged, this,
            [this](int i) { m_model.setValue(Opt::txtStyle, QString::number(i)); });
    m_boxes[size_t(Opt::txtStyle)] = style;
    addRow(g, ctx.translate(QStringLiteral("Style:")), style);
    addRow(g, ctx.translate(QStringLiteral("Font Colour:")),
           colourButton(Opt::cmdFontColour, ctx.translate(QStringLiteral("Font Colour"))));
    addRow(g, ctx.translate(QStringLiteral("Background Colour:")),
           colourButton(Opt::cmdBackColour, ctx.translate(QStringLiteral("Background Colour"))));
    return page({f});
}

QWidget* OptionsDialog::buildSound()
{
    CopyContext& ctx = m_frm.ctx();
    QGroupBox* f = frame("fraSound", ctx.translate(QStringLiteral("Sound")));
    QGridLayout* g = grid(f);
    g->addWidget(check(Opt::chkDisableSnd, ctx.translate(QStringLiteral("Disable all sounds"))), 0, 0, 1, 4);
    g->addWidget(check(Opt::chkSameRing, ctx.translate(QStringLiteral("Play the caller's own ring"))), 1, 0, 1, 4);
    struct RingRow { Opt box; const char* browse; const char* test; QString label; };
    const RingRow rings[] = {
        {Opt::txtRing, "cmdBRing", "cmdRing", ctx.translate(QStringLiteral("Ring:"))},
        {Opt::txtRing1, "cmdBRing1", "cmdRing1", ctx.translate(QStringLiteral("Connected:"))},
        {Opt::txtRing2, "cmdBRing2", "cmdRing2", ctx.translate(QStringLiteral("Disconnected:"))},
        {Opt::txtRing3, "cmdBRing3", "cmdRing3", ctx.translate(QStringLiteral("Incomming Chat:"))},
        {Opt::txtRing4, "cmdBRing4", "cmdRing4", ctx.translate(QStringLiteral("Connection Error:"))},
        {Opt::txtRing5, "cmdBRing5", "cmdRing5", ctx.translate(QStringLiteral("Internal Bell:"))},
    };
    const QString browseText = ctx.translate(QStringLiteral("Browse"), QStringLiteral("Browse..."));
    const QString playText = ctx.translate(QStringLiteral("Play"));
    int row = 2;
    for (const RingRow& r : rings) {
        const Opt box = r.box;
        auto* browse = button(r.browse, browseText);
        auto* play = button(r.test, playText);
        g->addWidget(new QLabel(r.label, this), row, 0);
        g->addWidget(lineBox(box), row, 1);
        g->addWidget(browse, row, 2);
        g->addWidget(play, row, 3);
        ++row;
        connect(browse, &QPushButton::clicked, this, [this, box] {
            m_model.setValue(box, browseSoundFile(m_frm.ctx(), m_model.value(box)));
        });
        connect(play, &QPushButton::clicked, this, [this, box] {
            m_frm.sound().PlayMMCFile(m_frm.ctx().AppPath() + m_model.value(box));
        });
    }
    return page({f});
}

QWidget* OptionsDialog::buildApperance()
{
    CopyContext& ctx = m_frm.ctx();
    QGroupBox* f = frame("fraApperance", ctx.translate(QStringLiteral("Apperance")));
    QGridLayout* g = grid(f);
    auto* transRow = new QHBoxLayout;
    transRow->addWidget(new QLabel(ctx.translate(QStringLiteral("See-through")), this));
    transRow->addWidget(slider(Opt::slidTrans, 50, 255), 1);
    transRow->addWidget(new QLabel(ctx.translate(QStringLiteral("Solid")), this));
    g->addWidget(new QLabel(ctx.translate(QStringLiteral("Window transparency:")), this), 0, 0);
    g->addLayout(transRow, 0, 1, 1, 3);
    struct ColourRow { Opt on, fg, bk; QString label; };
    const ColourRow rows[] = {
        {Opt::chkNetViewColour, Opt::lblNV_FG, Opt::lblNV_BK, ctx.translate(QStringLiteral("Net View colours"))},
        {Opt::chkNetResolveColour, Opt::lblNR_FG, Opt::lblNR_BK, ctx.translate(QStringLiteral("Net Resolve colours"))},
        {Opt::chkURLColour, Opt::lblURL_FG, Opt::lblURL_BK, ctx.translate(QStringLiteral("URL History colours"))},
        {Opt::chkCheckColour, Opt::lblAC_FG, Opt::lblAC_BK, ctx.translate(QStringLiteral("AutoNotify colours"))},
        {Opt::chkEncryptColour, Opt::lblEnc_FG, Opt::lblEnc_BK, ctx.translate(QStringLiteral("Encryption colours"))},
    };
    const QString fore = ctx.translate(QStringLiteral("Text"));
    const QString back = ctx.translate(QStringLiteral("Background"));
    int row = 1;
    for (const ColourRow& r : rows) {
        g->addWidget(check(r.on, r.label), row, 0, 1, 2);
        g->addWidget(colourButton(r.fg, fore), row, 2);
        g->addWidget(colourButton(r.bk, back), row, 3);
        ++row;
    }
    return page({f});
}

QWidget* OptionsDialog::buildMessage()
{
    CopyContext& ctx = m_frm.ctx();
    QGroupBox* msg = frame("fraMsg", ctx.translate(QStringLiteral("Preset Messages")));
    QGridLayout* g = grid(msg);
    g->setColumnStretch(1, 1);
    g->setColumnStretch(2, 3);
    g->addWidget(new QLabel(ctx.translate(QStringLiteral("Menu caption")), this), 0, 1);
    g->addWidget(new QLabel(ctx.translate(QStringLiteral("Message")), this), 0, 2);
    for (int n = 1; n <= 6; ++n) {
        g->addWidget(new QLabel(QString::number(n), this), n, 0);
        g->addWidget(lineBox(OptionsModel::menuBox(n)), n, 1);
        g->addWidget(lineBox(OptionsModel::messageBox(n)), n, 2);
    }
    QGroupBox* away = frame("fraAway", ctx.translate(QStringLiteral("Away")));
    QGridLayout* a = grid(away);
    a->addWidget(check(Opt::chkAwayMsgOn, ctx.translate(QStringLiteral("Send the away message when the screen saver starts"))), 0, 0, 1, 2);
    a->addWidget(check(Opt::chkAwayResize, ctx.translate(QStringLiteral("Send the away message when minimized"))), 1, 0, 1, 2);
    addRow(a, ctx.translate(QStringLiteral("Away message:")), lineBox(Opt::txtAwayMsg));
    a->addWidget(check(Opt::chkAutoMin, ctx.translate(QStringLiteral("Minimize when the screen saver starts"))), 3, 0, 1, 2);
    return page({msg, away});
}

QWidget* OptionsDialog::buildMenu()
{
    CopyContext& ctx = m_frm.ctx();
    QGroupBox* menu = frame("fraMenu", ctx.translate(QStringLiteral("Menu entries not displayed")));
    QGridLayout* g = new QGridLayout(menu);
    const std::pair<Opt, QString> entries[] = {
        {Opt::chkMSave, ctx.translate(QStringLiteral("Save"))},
        {Opt::chkMAutoConnect, ctx.translate(QStringLiteral("AutoConnect"))},
        {Opt::chkMProperties, ctx.translate(QStringLiteral("Properties"))},
        {Opt::chkMExit, ctx.translate(QStringLiteral("Exit"))},
        {Opt::chkMMessage, ctx.translate(QStringLiteral("Messages"))},
        {Opt::chkMTool, ctx.translate(QStringLiteral("Tools"))},
        {Opt::chkMRing, ctx.translate(QStringLiteral("Ring"))},
        {Opt::chkMSendFile, ctx.translate(QStringLiteral("Send File"))},
        {Opt::chkMScrivet, ctx.translate(QStringLiteral("Scrivet"))},
        {Opt::chkMSecurity, ctx.translate(QStringLiteral("Security"))},
        {Opt::chkMOption, ctx.translate(QStringLiteral("Options"))},
        {Opt::chkMExtra, ctx.translate(QStringLiteral("Extras"))},
        {Opt::chkMNetView, ctx.translate(QStringLiteral("Net View"))},
        {Opt::chkMNetResolve, ctx.translate(QStringLiteral("Net Resolve"))},
        {Opt::chkMAutoNotify, ctx.translate(QStringLiteral("AutoNotify"))},
        {Opt::chkMEncryption, ctx.translate(QStringLiteral("Encryption"))},
        {Opt::chkMLexlet, ctx.translate(QStringLiteral("Lexlet"))},
        {Opt::chkMURLHistory, ctx.translate(QStringLiteral("URL History"))},
    };
    int i = 0;
    for (const auto& [box, text] : entries) {
        g->addWidget(check(box, text), i / 3, i % 3);
        ++i;
    }
    QGroupBox* language = frame("fraLanguage", ctx.translate(QStringLiteral("Language")));
    auto* l = new QHBoxLayout(language);
    m_language = new QLabel(m_model.languageName(), this);
    m_language->setObjectName(QStringLiteral("lblLang"));
    auto* lang = button("cmdLang", ctx.translate(QStringLiteral("Language"), QStringLiteral("&Language...")));
    l->addWidget(m_language, 1);
    l->addWidget(lang);
    connect(lang, &QPushButton::clicked, this, &OptionsDialog::languageRequested);
    return page({menu, language});
}

QWidget* OptionsDialog::buildSession()
{
    CopyContext& ctx = m_frm.ctx();
    QGroupBox* rec = frame("fraSessionRec", ctx.translate(QStringLiteral("Session Records")));
    QGridLayout* g = grid(rec);
    g->addWidget(check(Opt::chkNoSmartSave, ctx.translate(QStringLiteral("Do not auto save each session"))), 0, 0, 1, 3);
    addRow(g, ctx.translate(QStringLiteral("Folder:")), lineBox(Opt::txtSaveFolder));
    auto* recButtons = new QHBoxLayout;
    const std::pair<const char*, QString> recs[] = {
        {"cmdOpenChtRec", ctx.translate(QStringLiteral("Open Record"), QStringLiteral("&Open Record..."))},
        {"cmdViewLog", ctx.translate(QStringLiteral("View Session Log"), QStringLiteral("&View Session Log"))},
        {"cmdClearLog", ctx.translate(QStringLiteral("Clear Session Log"), QStringLiteral("C&lear Session Log"))},
    };
    QList<QPushButton*> made;
    for (const auto& [name, text] : recs) {
        made << button(name, text);
        recButtons->addWidget(made.last());
    }
    g->addLayout(recButtons, g->rowCount(), 0, 1, 3);
    connect(made[0], &QPushButton::clicked, this, [this] { m_model.cmdOpenChtRec_Click(); });
    connect(made[1], &QPushButton::clicked, this, [this] { m_model.cmdViewLog_Click(); });
    connect(made[2], &QPushButton::clicked, this, [this] { m_model.cmdClearLog_Click(); });

    QGroupBox* out = frame("fraOutgoing", ctx.translate(QStringLiteral("Outgoing")));
    QVBoxLayout* o = column(out);
    o->addWidget(check(Opt::chkSaveTempPort, ctx.translate(QStringLiteral("Keep the port typed in the Connect dialog"))));
    auto* clearName = button("cmdClearName", ctx.translate(QStringLiteral("Clear Recent Addresses")));
    o->addWidget(clearName, 0, Qt::AlignLeft);
    connect(clearName, &QPushButton::clicked, this, [this] { m_model.cmdClearName_Click(); });

    QGroupBox* in = frame("fraIncoming", ctx.translate(QStringLiteral("Incoming")));
    QGridLayout* i = grid(in);
    i->addWidget(check(Opt::chkAutoAcceptChat, ctx.translate(QStringLiteral("Accept every caller without asking"))), 0, 0, 1, 2);
    auto* black = button("cmdBlockLst", ctx.translate(QStringLiteral("Black List"), QStringLiteral("&Black List")));
    auto* white = button("cmdSafeLst", ctx.translate(QStringLiteral("White List"), QStringLiteral("&White List")));
    i->addWidget(check(Opt::chkBlock, ctx.translate(QStringLiteral("Refuse the callers of the black list"))), 1, 0);
    i->addWidget(black, 1, 1);
    i->addWidget(check(Opt::chkPermit, ctx.translate(QStringLiteral("Take only the callers of the white list"))), 2, 0);
    i->addWidget(white, 2, 1);
    connect(black, &QPushButton::clicked, this,
            [this] { runConnectionDialog(m_frm, Form::frmIPBlocking, this); });
    connect(white, &QPushButton::clicked, this,
            [this] { runConnectionDialog(m_frm, Form::frmIPPermit, this); });
    return page({rec, out, in});
}

QWidget* OptionsDialog::buildPictureUrl()
{
    CopyContext& ctx = m_frm.ctx();
    QGroupBox* pic = frame("fraPic", ctx.translate(QStringLiteral("Drawing Board and Pictures")));
    QVBoxLayout* p = column(pic);
    p->addWidget(check(Opt::chkMainVisible, ctx.translate(QStringLiteral("Do Not Hide Chat Window"))));
    p->addWidget(check(Opt::chkNoPicErrChk, ctx.translate(QStringLiteral("Do Not Check for Corrupted Picture "))));
    p->addWidget(check(Opt::chkNoPicErrMsg, ctx.translate(QStringLiteral("No Picture Error Message"))));
    p->addWidget(check(Opt::chkAlwaysCenter, ctx.translate(QStringLiteral("Always Locate Picture In The Center"))));
    QGroupBox* url = frame("fraURL", ctx.translate(QStringLiteral("URL")));
    QVBoxLayout* u = column(url);
    u->addWidget(check(Opt::chkWebCheck, ctx.translate(QStringLiteral("Ask before opening the other side's addresses"))));
    u->addWidget(check(Opt::chkShowURLHst, ctx.translate(QStringLiteral("Show the URL History when an address is found"))));
    u->addWidget(check(Opt::chkNoLocalURL, ctx.translate(QStringLiteral("Keep my own addresses out of the history"))));
    u->addWidget(check(Opt::chkNoRemoteURL, ctx.translate(QStringLiteral("Keep the other side's addresses out of the history"))));
    u->addWidget(check(Opt::chkURLSaveReminder, ctx.translate(QStringLiteral("Ask to save when the URL History closes"))));
    return page({pic, url});
}

QWidget* OptionsDialog::buildVoice()
{
    CopyContext& ctx = m_frm.ctx();
    QGroupBox* f = frame("fraTTS", ctx.translate(QStringLiteral("Text to Speech (TTS)")));
    QGridLayout* g = grid(f);
    const std::pair<Opt, QString> boxes[] = {
        {Opt::chkDisableTTS, ctx.translate(QStringLiteral("Disable All TTS"))},
        {Opt::chkDisableLocalTTS, ctx.translate(QStringLiteral("Disable Local Automatic TTS"))},
        {Opt::chkDisableRemoteTTS, ctx.translate(QStringLiteral("Disable Remote Automatic and Manual TTS"))},
        {Opt::chkNotSendAutoTTS, ctx.translate(QStringLiteral("Do Not Send Automatic TTS Signal"))},
        {Opt::chkNotSendManualTTS, ctx.translate(QStringLiteral("Do Not Send Manual TTS Signal"))},
    };
    int row = 0;
    for (const auto& [box, text] : boxes)
        g->addWidget(check(box, text), row++, 0, 1, 3);
    // Filled from the engine when the tab is first shown.
    auto* voices = new QComboBox(this);
    voices->setObjectName(optName(Opt::cbVoiceEng));
    connect(voices, &QComboBox::currentIndexChanged, this,
            [this](int i) { m_model.setValue(Opt::cbVoiceEng, QString::number(i)); });
    m_boxes[size_t(Opt::cbVoiceEng)] = voices;
    addRow(g, ctx.translate(QStringLiteral("Voice:")), voices);
    addRow(g, ctx.translate(QStringLiteral("Volume:")), slider(Opt::slidVol, 1, 10));
    addRow(g, ctx.translate(QStringLiteral("Speed:")), slider(Opt::slidSpeed, VoiceEngine::kMinSpeed, VoiceEngine::kMaxSpeed));
    addRow(g, ctx.translate(QStringLiteral("Pitch:")), slider(Opt::SlidPitch, VoiceEngine::kMinPitch, VoiceEngine::kMaxPitch));
    auto* text = new QLineEdit(ctx.translate(QStringLiteral("Hello, this is my voice.")), this);
    text->setObjectName(QStringLiteral("txtSpeak"));
    auto* speak = button("cmdSpeak", ctx.translate(QStringLiteral("Speak"), QStringLiteral("&Speak")));
    addRow(g, ctx.translate(QStringLiteral("Test:")), text, speak);
    connect(speak, &QPushButton::clicked, this, [this, text] {
        const auto value = [this](Opt c) { return static_cast<QSlider*>(box(c))->value(); };
        Speech::OptionsVoice sliders;
        sliders.volume = value(Opt::slidVol);
        sliders.volumeMax = static_cast<QSlider*>(box(Opt::slidVol))->maximum();
        sliders.speed = value(Opt::slidSpeed);
        sliders.pitch = value(Opt::SlidPitch);
        m_frm.speech().cmdSpeak_Click(text->text(), sliders);
    });
    return page({f});
}

QWidget* OptionsDialog::buildSecurity()
{
    CopyContext& ctx = m_frm.ctx();
    QGroupBox* pass = frame("fraPassword", ctx.translate(QStringLiteral("Password")));
    QGridLayout* g = grid(pass);
    const QString setText = ctx.translate(QStringLiteral("Set Password"), QStringLiteral("Set Password..."));
    auto* first = button("cmd1stPass", setText);
    auto* second = button("cmd2ndPass", setText);
    addRow(g, ctx.translate(QStringLiteral("Startup password protected")), first);
    addRow(g, ctx.translate(QStringLiteral("Away password protected")), second);
    const auto setPass = [this](bool firstLevel) {
        FrmSecurity form(m_frm.ctx(), m_frm.encryption().passwords());
        form.Form_Load();
        if (firstLevel)
            form.cmdSetPass1_Click();
        else
            form.cmdSetPass2_Click();
    };
    connect(first, &QPushButton::clicked, this, [setPass] { setPass(true); });
    connect(second, &QPushButton::clicked, this, [setPass] { setPass(false); });
    QGroupBox* enc = frame("fraEncrypt", ctx.translate(QStringLiteral("Encryption")));
    column(enc)->addWidget(check(Opt::chkEncrypt, ctx.translate(QStringLiteral("Encrypt the text I send"))));
    return page({pass, enc, buildPrivateFrame()});
}

QGroupBox* OptionsDialog::buildPrivateFrame()
{
    CopyContext& ctx = m_frm.ctx();
    QGroupBox* priv = frame("fraPrivate", ctx.translate(QStringLiteral("Private sessions")));
    QVBoxLayout* col = column(priv);
    col->addWidget(check(Opt::chkPrivate, ctx.translate(QStringLiteral("Go private with peers that can (TLS 1.3)"))));
    col->addWidget(check(Opt::chkPrivateOnly,
                         ctx.translate(QStringLiteral("Private sessions only: refuse peers of the old wire"))));
    auto* keyLabel = new QLabel(ctx.translate(QStringLiteral("Your key")) + QLatin1Char(':'));
    auto* key = new QLabel;
    key->setObjectName(QStringLiteral("lblOwnKey"));
    key->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    key->setWordWrap(true);
    key->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    keyLabel->setBuddy(key);
    PrivateLink& link = m_frm.connection().privateLink();
    key->setText(link.identity().fingerprint());
    auto* renew = button("cmdNewKey", ctx.translate(QStringLiteral("Make a &New Key...")));
    connect(renew, &QPushButton::clicked, this, [this, key, &link] {
        CopyContext& c = m_frm.ctx();
        const Answer a = c.prompter().msgBox(
            c.translate(QStringLiteral("Peers that verified your present key will be warned that it changed, "
                                       "and will have to compare the short string with you again.")) +
                QStringLiteral("\r\r") + c.translate(QStringLiteral("Make a new key?")),
            MsgStyle::YesNo + MsgStyle::Question + MsgStyle::DefaultButton2,
            c.translate(QStringLiteral("New Key")));
        if (a != Answer::Yes)
            return;
        QString error;
        if (!link.identity().renew(&error))
            c.prompter().msgBox(c.translate(QStringLiteral("No new key could be made:")) + QLatin1Char(' ') + error,
                                MsgStyle::Exclamation, c.translate(QStringLiteral("New Key")));
        key->setText(link.identity().fingerprint());
    });
    col->addWidget(keyLabel);
    col->addWidget(key);
    col->addWidget(renew, 0, Qt::AlignLeft);
    return priv;
}

QWidget* OptionsDialog::buildAdvanced()
{
    CopyContext& ctx = m_frm.ctx();
    QGroupBox* conn = frame("fraAdvConnect", ctx.translate(QStringLiteral("Connection")));
    QGridLayout* c = grid(conn);
    c->addWidget(check(Opt::chkVerChk, ctx.translate(QStringLiteral("Warn of an incompatible version"))), 0, 0, 1, 3);
    c->addWidget(check(Opt::chkNoResolve, ctx.translate(QStringLiteral("Do not resolve the other side's name"))), 1, 0, 1, 3);
    addRow(c, ctx.translate(QStringLiteral("Incomming connection timeout (seconds):")), lineBox(Opt::txtTimeout));

    QGroupBox* send = frame("fraSending", ctx.translate(QStringLiteral("Sending")));
    QGridLayout* s = grid(send);
    addRow(s, ctx.translate(QStringLiteral("Bytes per send:")), lineBox(Opt::txtBytePerSend));
    addRow(s, ctx.translate(QStringLiteral("Paste text limit:")), lineBox(Opt::txtPasteTextLimit));
    addRow(s, ctx.translate(QStringLiteral("Encrypted paste text limit:")), lineBox(Opt::txtEncryptTextLimit));
    addRow(s, ctx.translate(QStringLiteral("Sound file size limit (KB):")), lineBox(Opt::txtSndFileSize));

    QGroupBox* recv = frame("fraReceiving", ctx.translate(QStringLiteral("Receiving")));
    QGridLayout* r = grid(recv);
    r->addWidget(check(Opt::chkSelfRepair, ctx.translate(QStringLiteral("Character self repair"))), 0, 0, 1, 3);
    addRow(r, ctx.translate(QStringLiteral("Repair count limit:")), lineBox(Opt::txtSelfRepairCount));
    addRow(r, ctx.translate(QStringLiteral("Overflow cycle limit:")), lineBox(Opt::txtOverflow));
    addRow(r, ctx.translate(QStringLiteral("Overall text limit:")), lineBox(Opt::txtOverallTextLimit));

    QGroupBox* sys = frame("fraSys", ctx.translate(QStringLiteral("System")));
    QGridLayout* y = grid(sys);
    addRow(y, ctx.translate(QStringLiteral("Memory limit (%):")), lineBox(Opt::txtMemLimit));
    addRow(y, ctx.translate(QStringLiteral("Capture delay (seconds):")), lineBox(Opt::txtCaptTime));
    addRow(y, ctx.translate(QStringLiteral("Command line interval (ms):")), lineBox(Opt::txtCmlInterval));
    auto* defaults = button("cmdDefault", ctx.translate(QStringLiteral("Restore Default Settings")));
    auto* manual = button("cmdManualEdit", ctx.translate(QStringLiteral("Manual edit initial file")));
    auto* row = new QHBoxLayout;
    row->addWidget(defaults);
    row->addWidget(manual);
    row->addStretch();
    y->addLayout(row, y->rowCount(), 0, 1, 3);
    connect(defaults, &QPushButton::clicked, this, [this] { m_model.cmdDefault_Click(); });
    connect(manual, &QPushButton::clicked, this, [this] { m_model.cmdManualEdit_Click(); });

    auto* w = new QWidget;
    auto* grid2 = new QGridLayout(w);
    grid2->addWidget(conn, 0, 0);
    grid2->addWidget(send, 0, 1);
    grid2->addWidget(recv, 1, 0);
    grid2->addWidget(sys, 1, 1);
    grid2->setRowStretch(2, 1);
    return w;
}

}  // namespace vonnel
