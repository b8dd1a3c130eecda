#include "shell/FrmMain.h"

#include "access/Encryption.h"
#include "connection/Connection.h"
#include "connection/PropertyDialog.h"
#include "connection/Session.h"
#include "board/Scrivet.h"
#include "core/CopyLock.h"
#include "core/DesktopNotice.h"
#include "core/Cp1252.h"
#include "core/Sender.h"
#include "core/Views.h"
#include "links/Links.h"
#include "links/UrlHistory.h"
#include "links/UrlHistoryCommands.h"
#include "platform/Clipboard.h"
#include "media/RingExchange.h"
#include "media/Sound.h"
#include "media/Speech.h"
#include "platform/Desktop.h"
#include "shell/CommandControl.h"
#include "shell/NetTools.h"
#include "shell/SessionRecords.h"
#include "transfer/Transfer.h"
#include "wire/FrameSender.h"
#include "wire/AwayNotice.h"
#include "wire/LiveTyping.h"
#include "wire/PresetMessages.h"
#include "wire/Receiver.h"
#include "core/CopyContext.h"

#include <QFileInfo>

namespace vonnel {

// Every part of the copy, in the order they are built. A part may hold a
// reference to one built after it, as long as it does not use it before
// the whole set stands.
struct FrmMain::Parts {
    Parts(const CopyEnvironment& env)
        : ctx(env),
          session(ctx, model, sender),
          cipher(ctx, model, sender),
          sender(ctx, model, session, cipher),
          connection(ctx, model, session, sender, cipher),
          receiver(ctx, model, session, sender, cipher, connection),
          typing(ctx, model, session, sender, cipher, receiver),
          transfer(ctx, model, session, sender, receiver),
          scrivet(ctx, model, session, sender, cipher, transfer),
          sound(ctx),
          rings(ctx, model, session, sender, receiver, transfer, sound),
          speech(ctx, model, session, sender),
          presets(ctx, model.controls, typing),
          away(ctx, model, session, sender, typing),
          notice(ctx, model)
    {
    }
    CopyContext ctx;
    MainModel model;
    Session session;
    Encryption cipher;
    FrameSender sender;
    Connection connection;
    Receiver receiver;
    LiveTyping typing;
    Transfer transfer;
    Scrivet scrivet;
    Sound sound;
    RingExchange rings;
    Speech speech;
    PresetMessages presets;
    AwayNotice away;
    DesktopNotice notice;
    std::unique_ptr<SessionRecords> records;
    std::unique_ptr<CommandControl> commands;
    std::unique_ptr<UrlHistory> urlHistory;
    std::unique_ptr<Links> links;
    std::unique_ptr<UrlHistoryCommands> urlCommands;
    std::unique_ptr<NetTools> netTools;
};

FrmMain::FrmMain(const CopyEnvironment& env, QObject* parent)
    : QObject(parent), m_parts(std::make_unique<Parts>(env))
{
    Parts& p = *m_parts;
    p.sender.setTyping(&p.typing);
    p.records = std::make_unique<SessionRecords>(*this);
    p.commands = std::make_unique<CommandControl>(*this);
    p.commands->mnuMute_Click = [&p] { p.speech.mnuMute_Click(); };
    m_tTimer2.setInterval(5000);

    // Routines that live in one subsystem and are called from another.
    connect(&p.session, &Session::sessionOpened, this, &FrmMain::aftOptSet);
    connect(&p.receiver, &Receiver::updateRequested, this, &FrmMain::mnuUpdate_Click);
    connect(&p.receiver, &Receiver::versionConflict, &p.connection, &Connection::mnuDisconnect_Click);
    connect(&p.session, &Session::sessionEnded, this, [&p] { p.typing.keySent = false; });
    p.receiver.keySent = [&p] { return p.typing.keySent; };
    p.receiver.cSendFileCheck = [&p](QString& data, QByteArray& bytes) {
        return p.transfer.cSendFileCheck(data, bytes);
    };
    p.receiver.frameArrival = [&p](QByteArray& bytes) { return p.transfer.dataFrame(bytes, 0); };
    p.receiver.cDrawcheck = [&p](QString& data) { return p.scrivet.cDrawcheck(data); };
    p.transfer.boardShown = [&p] { return p.scrivet.visible(); };
    connect(&p.transfer, &Transfer::drawSendingLabel, &p.scrivet, &Scrivet::setSendingPicture);
    p.receiver.joinArrival = [&p](const QByteArray& bytes, QList<QByteArray>& parts) {
        // A board message the last read cut off goes before this one, when
        // this one can be its rest.
        if (std::optional<QByteArray> joined = p.scrivet.joinHeld(bytes)) {
            parts << *joined;
            return true;
        }
        return p.transfer.joinArrival(bytes, parts);
    };
    connect(&p.session, &Session::sessionEnded, this, [&p] { p.scrivet.check().takePending(); });
    connect(&p.receiver, &Receiver::formatReceived, &p.typing, &LiveTyping::receiveFormat);
    connect(&p.receiver, &Receiver::refreshAnswerNeedsSettings, &p.typing,
            &LiveTyping::sentSetting);
    // Speech: our voice goes out behind the format, the peer's lines and
    // voice come in on both receive paths, and a finished line is spoken.
    connect(&p.receiver, &Receiver::refreshAnswerNeedsSettings, &p.speech,
            &Speech::SendSpeakerSetting);
    connect(&p.receiver, &Receiver::speakerSettingReceived, &p.speech, &Speech::SaveSpeakerSetting);
    connect(&p.receiver, &Receiver::speakReceived, &p.speech, &Speech::speakReceived);
    p.typing.speakLocalLine = [&p](const QString& line) { p.speech.SpeakText(line, true); };
    p.scrivet.speakLocalLine = [&p](const QString& line) { p.speech.SpeakText(line, true); };
    p.typing.sendSpeakerSetting = [&p] { p.speech.SendSpeakerSetting(); };
    connect(&p.ctx, &CopyContext::stopAudio, &p.speech, [&p] { p.speech.dssTTS().audioReset(); });
    connect(&p.receiver, &Receiver::refreshAnswerStarts, &p.typing, &LiveTyping::cancelFollowUp);
    connect(&p.connection, &Connection::propertiesApplied, this, &FrmMain::Init);
    // Sounds: every part's bell, the peer's rings, the copy's end.
    connect(&p.ctx, &CopyContext::ringRequested, &p.sound, &Sound::playRing);
    connect(&p.receiver, &Receiver::playRing, &p.sound, &Sound::playKey);
    connect(&p.ctx, &CopyContext::stopAudio, &p.sound, &Sound::stopAudio);
    connect(&p.receiver, &Receiver::ringReceived, &p.rings, &RingExchange::ringReceived);
    connect(&p.receiver, &Receiver::ringFileRequested, &p.rings, &RingExchange::ringFileRequested);
    connect(&p.receiver, &Receiver::ringFileAnnounced, &p.rings, &RingExchange::ringFileAnnounced);
    connect(&p.receiver, &Receiver::ringReceived, &p.notice, [&p] {
        p.notice.raise(NoticeKind::Ring, p.ctx.translate(QStringLiteral("From: ")) + p.session.PeerIP);
    });
    // The tray's tip follows the session socket (see trayMouseMove).
    connect(&p.session.winsock(0), &Winsock::stateChanged, this, [this] { trayMouseMove(); });
    connect(&p.session, &Session::sessionOpened, this, [this] { trayMouseMove(); });
    // The away notice: tTimer2's work after Command.ini, the window's state,
    // the session's end.
    connect(&m_tTimer2, &QTimer::timeout, &p.away, &AwayNotice::tTimer2_Timer);
    connect(&p.model, &MainModel::windowStateChanged, &p.away, &AwayNotice::Form_Resize);
    connect(&p.session, &Session::sessionEnded, &p.away, &AwayNotice::sessionEnded);
    connect(&p.scrivet, &Scrivet::userBack, &p.away, &AwayNotice::boardMouseMove);
    p.commands->connectToAddress = [&p](const QString& host, const QString& port) {
        p.connection.connectTo(host, port);
    };
    wireLinks();
    p.netTools = std::make_unique<NetTools>(*this);
}

void FrmMain::wireLinks()
{
    Parts& p = *m_parts;
    const TranslateFn translate = [&p](const QString& t) { return p.ctx.translate(t); };
    p.urlHistory = std::make_unique<UrlHistory>(translate);
    LinkSeams seams;
    seams.settingFlag = [&p](const QString& key) { return p.ctx.settingFlag(key); };
    seams.isConnected = [&p] { return p.session.IsConnected(); };
    seams.xSendData = [&p](const QString& frame) { p.sender.xSendData(frame); };
    seams.translate = translate;
    seams.localPaneLength = [&p] { return p.model.txtServer.length(); };
    seams.setUrlScanned = [&p](int n) { p.typing.urlScanned = n; };
    seams.showHistory = [&p](bool) { p.ctx.views().showModeless(Form::frmURLHistory); };
    seams.openUrl = [&p](const QUrl& url) { return p.ctx.desktop().openUrl(url.toString()); };
    seams.prompter = &p.ctx.prompter();
    p.links = std::make_unique<Links>(seams, *p.urlHistory);
    p.urlCommands = std::make_unique<UrlHistoryCommands>(*p.urlHistory, p.ctx.prompter(), translate);
    p.urlCommands->encode = [](const QString& t) { return toCp1252(t); };
    p.urlCommands->decode = [](const QByteArray& b) { return fromCp1252(b); };
    p.urlCommands->openUrl = seams.openUrl;
    p.urlCommands->setClipboardText = [&p](const QString& t) { p.ctx.clipboard().setText(t); };

    p.typing.scanLocalText = [&p](const QString& text) { p.links->scanLocalText(text); };
    connect(&p.receiver, &Receiver::webCheck, this, [&p](const QString& address) {
        QString text = address;
        p.links->webCheck(text);
    });
    connect(&p.scrivet, &Scrivet::webCheck, this, [&p](const QString& line) {
        QString text = line;
        p.links->webCheck(text);
    });
}

FrmMain::~FrmMain() = default;

CopyContext& FrmMain::ctx() const { return m_parts->ctx; }
MainModel& FrmMain::model() const { return m_parts->model; }
Session& FrmMain::session() const { return m_parts->session; }
Sender& FrmMain::sender() const { return m_parts->sender; }
Encryption& FrmMain::encryption() const { return m_parts->cipher; }
Connection& FrmMain::connection() const { return m_parts->connection; }
Receiver& FrmMain::receiver() const { return m_parts->receiver; }
LiveTyping& FrmMain::typing() const { return m_parts->typing; }
Scrivet& FrmMain::scrivet() const { return m_parts->scrivet; }
Transfer& FrmMain::transfer() const { return m_parts->transfer; }
SessionRecords& FrmMain::records() const { return *m_parts->records; }
Sound& FrmMain::sound() const { return m_parts->sound; }
RingExchange& FrmMain::rings() const { return m_parts->rings; }
Speech& FrmMain::speech() const { return m_parts->speech; }
CommandControl& FrmMain::commands() const { return *m_parts->commands; }
Links& FrmMain::links() const { return *m_parts->links; }
UrlHistory& FrmMain::urlHistory() const { return *m_parts->urlHistory; }
UrlHistoryCommands& FrmMain::urlHistoryCommands() const { return *m_parts->urlCommands; }
PresetMessages& FrmMain::presets() const { return m_parts->presets; }
AwayNotice& FrmMain::away() const { return m_parts->away; }
NetTools& FrmMain::netTools() const { return *m_parts->netTools; }
DesktopNotice& FrmMain::notice() const { return m_parts->notice; }

void FrmMain::mnuUpdate_Click()
{
    CopyContext& c = ctx();
    const QString address = c.setting(QStringLiteral("Update"));
    QString tool = c.setting(QStringLiteral("UpdateExe"));
    if (!tool.isEmpty()) {
        // The user's own update tool, from the settings: never peer text.
        if (QFileInfo(tool).isRelative())
            tool = c.appFile(tool);
        QStringList args = c.setting(QStringLiteral("UpdateParam"))
                               .split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (!address.isEmpty())
            args << address;
        c.desktop().startProgram(tool, args);
    } else if (!address.isEmpty()) {
        c.desktop().openUrl(address);
    }
}

void FrmMain::endProcess(int code)
{
    if (m_ended)
        return;
    m_ended = true;
    m_exitCode = code;
    ctx().ProgramExiting = true;
    Q_EMIT endRequested(code);
}

}  // namespace vonnel
