// Loading and unloading of the main form: the binding of the local port,
// the second-copy rule, window placement, and the ordered end of a session
// and of the copy.

#include "access/Encryption.h"
#include "access/PasswordStore.h"
#include "connection/Connection.h"
#include "connection/PrivateLink.h"
#include "core/CopyLock.h"
#include "media/Sound.h"
#include "media/Speech.h"
#include "wire/LiveTyping.h"
#include "wire/PresetMessages.h"
#include "core/IniStore.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/Prompter.h"
#include "shell/FrmMain.h"

#include "transfer/Transfer.h"
#include "core/Views.h"
#include "connection/Session.h"
#include "core/Sender.h"
#include "wire/Receiver.h"
#include "platform/Winsock.h"
#include "core/CopyContext.h"
#include "core/WireCodec.h"

#include <QFile>

namespace vonnel {

namespace {
// A setting compared "= True" is compared with the truth value: "True"
// and -1 are equal to it, any other number is not.
bool equalsTrue(const QString& text)
{
    if (text.trimmed().compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
        return true;
    bool ok = false;
    const double v = text.trimmed().toDouble(&ok);
    return ok && v == -1;
}
}  // namespace

void FrmMain::Form_Load()
{
    if (ctx().ProgramExiting)
        return;
    ctx().views().unload(Form::frmPopMsg);

    ctx().VersionString = MainModel::kTitle + QLatin1Char(' ') + QString::number(MainModel::kMajor) + QLatin1Char('.') +
                    QString::number(MainModel::kMinor) + QLatin1Char('.') + QString::number(MainModel::kRevision);
    model().setCaption(model().titleWithVersion());
    session().SessionStartTime = ctx().clock().timeOfDay();
    session().SessionEndTime = session().SessionStartTime;

    QString localPortText = ctx().setting(QStringLiteral("LocalPort"));
    const QString remotePortText = ctx().setting(QStringLiteral("RemotePort"));

    bool secondCopy = false;
    m_copyLock = std::make_unique<CopyLock>(ctx().AppPath());
    if (!m_copyLock->acquired()) {
        if (ctx().settingInt(QStringLiteral("Dup Vonnel")) == 0) {
            // The running copy picks the command up on its next poll.
            if (!ctx().commandLine().isEmpty())
                WriteIni(kSection, QStringLiteral("Command"), ctx().commandLine(),
                         ctx().appFile(QStringLiteral("Command.ini")));
            endProcess(0);
            return;
        }
        localPortText = QString::number(iniInt(localPortText) + 1);
        secondCopy = true;
    }

    // error.log holds the failures of the present run only.
    {
        const QString log = resolveCaseBlind(ctx().appFile(QStringLiteral("error.log")));
        if (QFile::exists(log)) {
            QFile::setPermissions(log, QFile::permissions(log) | QFileDevice::WriteOwner);
            QFile::remove(log);
        }
    }

    placement.left = ctx().settingInt(QStringLiteral("Settings-MainLeft"));
    placement.top = ctx().settingInt(QStringLiteral("Settings-MainTop"));
    placement.height = ctx().settingInt(QStringLiteral("Settings-MainHeight"));
    placement.width = ctx().settingInt(QStringLiteral("Settings-MainWidth"));
    if (placement.left <= 0)
        placement.left = 1500;
    if (placement.top <= 0)
        placement.top = 1500;
    if (placement.height < 2000)
        placement.height = 5000;
    if (placement.width < 4000)
        placement.width = 7000;
    placement.scaleWidth = placement.width - 120;
    if (placement.scaleWidth <= 0)
        placement.scaleWidth = 500;

    model().stStatusbar.setPicture(1, StatePicture::picOff);

    // This copy's key pair for private sessions, made at the first start.
    // Without it (a folder that cannot be written) sessions stay plain, and
    // the Security page shows no key.
    connection().privateLink().loadIdentity();

    Winsock& ws = session().winsock(0);
    if (ws.State() != Winsock::sckClosed)
        ws.Close();
    ws.setRemotePort(quint16(iniInt(remotePortText)));
    ws.setLocalPort(quint16(iniInt(localPortText)));
    session().checkStatus();
    const int listenError = ws.Listen();
    // A second copy that cannot listen on its own port may not change the
    // ports either: they belong to the first copy.
    if (secondCopy && listenError != 0) {
        model().controls.setEnabled(Control::frmProperty_cmdApply, false);
        model().controls.setEnabled(Control::frmProperty_cmdOK, false);
    }

    model().stStatusbar.setTag(2, ctx().translate(QStringLiteral("Local Port")));
    model().stStatusbar.setText(2, model().stStatusbar.panel(2).tag + QStringLiteral(" = ") +
                               QString::number(ws.LocalPort()));

    SetMsgMnu();
    TransMenu();
    miniMenu();

    if (ctx().settingNumber(QStringLiteral("Show Tips at Startup")) == 1 && TrayOnly == 0)
        ctx().views().showModeless(Form::frmTip);
    if (ctx().settingNumber(QStringLiteral("First Run")) == 1) {
        ctx().desktop().openFile(ctx().HelpPath + QStringLiteral("index.htm"));
        ctx().writeSetting(QStringLiteral("First Run"), QStringLiteral("0"));
    }
    model().controls.setChecked(Control::mnuViewontop,
                        equalsTrue(ctx().setting(QStringLiteral("First Run"))));
    m_voiceFlag = ctx().settingNumber(QStringLiteral("Voice Assistance")) == 0;
    sound().PresetMMC();

    if (listenError == Winsock::errAddressInUse) {
        ctx().prompter().msgBox(
            ctx().translate(QStringLiteral("Error: Local Port Address in use by another program")) +
                QStringLiteral("\r\r") +
                ctx().translate(QStringLiteral("Local Port address can be change to another value in menu 'File - Properties'")),
            MsgStyle::Exclamation, QStringLiteral("Inital Error"));
        m_portConflictAtStart = true;
    } else if (listenError != 0) {
        ctx().prompter().msgBox(QStringLiteral("\r") + ws.lastErrorText(), MsgStyle::Exclamation,
                          QStringLiteral("Form Load Error"));
    }
}

void FrmMain::Init()
{
    receiver().readLimits(true);
    typing().setPermanentToolbar(ctx().settingFlag(QStringLiteral("Permanent Toolbar Settings")));

    model().txtServer.clear();
    model().txtServer.setMaxLength(receiver().textLimit);
    model().txtClient(session().sIdx).setMaxLength(receiver().textLimit);
    transfer().lastPictureFile = QStringLiteral("n/a");
    transfer().lastReceivedFile = QStringLiteral("n/a");

    if (transfer().readBytesPerSend())
        ctx().writeSetting(QStringLiteral("Byte Per Send"), QStringLiteral("2000"));

    if (!ctx().settingFlag(QStringLiteral("No Network Info Display")))
        connection().ShowLocalInfo();

    // Passwords are set up on the first starts; then both levels are read.
    encryption().passwords().initPasswordSetting();

    int interval = ctx().settingInt(QStringLiteral("Command Line Interval"));
    if (interval < 1000) {
        interval = 1000;
        ctx().writeSetting(QStringLiteral("Command Line Interval"), QStringLiteral("1000"));
    }
    m_tTimer2.setInterval(interval);
    m_tTimer2.start();
    speech().readMuteState();
    ctx().tellInitialized();
}

void FrmMain::aftOptSet()
{
    receiver().readLimits(false);
    encryption().readEncryptedSetting();
    int interval = ctx().settingInt(QStringLiteral("Command Line Interval"));
    if (interval < 1000) {
        interval = 1000;
        ctx().writeSetting(QStringLiteral("Command Line Interval"), QStringLiteral("1000"));
    }
    m_tTimer2.setInterval(interval);
    ctx().rings.Ring = ctx().setting(QStringLiteral("Ring"));
    ctx().rings.Ring1 = ctx().setting(QStringLiteral("Ring1"));
    ctx().rings.Ring2 = ctx().setting(QStringLiteral("Ring2"));
    ctx().rings.Ring3 = ctx().setting(QStringLiteral("Ring3"));
    ctx().rings.Ring4 = ctx().setting(QStringLiteral("Ring4"));
    ctx().rings.Ring5 = ctx().setting(QStringLiteral("Ring5"));
    typing().sentSetting();
    speech().SendSpeakerSetting();
}

void FrmMain::afterOptionsApplied()
{
    // The tick on the options page counts from its Apply on.
    typing().setPermanentToolbar(ctx().settingFlag(QStringLiteral("Permanent Toolbar Settings")));
    SetMsgMnu();
    miniMenu();
    aftOptSet();
}

bool FrmMain::Form_QueryUnload(bool fromUser)
{
    const bool confirm = ctx().settingNumber(ctx().translate(QStringLiteral("Confirm Exit"))) != 0;
    if (session().IsConnected() && session().TransferOnHold && fromUser) {
        const Answer a = ctx().prompter().msgBox(
            ctx().translate(QStringLiteral("You have a file sending/receiving 'on hold',")) +
                QStringLiteral("\r\n  ") + ctx().translate(QStringLiteral("Do you want to continue to exit?")),
            MsgStyle::YesNo | MsgStyle::DefaultButton2,
            QStringLiteral("File Sending/Receiving On Hold"));
        if (a == Answer::No)
            return false;
    }
    if (confirm) {
        const Answer a = ctx().prompter().msgBox(QStringLiteral("Are you really want to exit completely?"),
                                           MsgStyle::Exclamation | MsgStyle::YesNo,
                                           QStringLiteral("Vonnel - ") +
                                               ctx().translate(QStringLiteral("Program Exit")));
        if (a == Answer::No)
            return false;
    }
    Winsock& ws = session().winsock(session().sIdx);
    // Twice, in case the state changed during the first round.
    for (int pass = 0; pass < 2; ++pass) {
        if (!session().IsConnected())
            break;
        if (session().ConnectionStartedHere && ws.State() == Winsock::sckConnected) {
            sender().xSendData(wire::text(wire::kShutDown));
            session().ConnectionStartedHere = false;
            model().controls.setEnabled(Control::mnuSave, true);
            session().endedNow();
        }
        if (ws.State() == Winsock::sckConnected) {
            model().txtClient(session().sIdx).setEnabled(false);
            sender().xSendData(QString(QChar(7)));
            if (pass == 0) {
                ws.Close();
                session().checkStatus();
                ws.Listen();
                session().checkStatus();
            }
            model().controls.setEnabled(Control::mnuSave, true);
            session().endedNow();
        }
    }
    ws.Close();
    return true;
}

void FrmMain::Form_Unload()
{
    if (ctx().ProgramExiting)
        return;
    ctx().unloading = true;
    if (model().isVisible())
        connection().mnuDisconnect_Click();
    if (model().windowState() == MainModel::vbNormal && placement.left && placement.top && placement.width && placement.height) {
        ctx().writeSetting(QStringLiteral("Settings-MainLeft"), QString::number(placement.left));
        ctx().writeSetting(QStringLiteral("Settings-MainTop"), QString::number(placement.top));
        ctx().writeSetting(QStringLiteral("Settings-MainWidth"), QString::number(placement.width));
        ctx().writeSetting(QStringLiteral("Settings-MainHeight"), QString::number(placement.height));
    }
    ctx().closeFilesAtEnd();
    for (int i = 0; i < 2; ++i)
        if (session().winsock(i).State() > Winsock::sckClosed)
            session().winsock(i).Close();
    ctx().stopAllAudio();
    m_tTimer1.stop();
    m_tTimer2.stop();
    ctx().ProgramExiting = true;
    m_copyLock.reset();
    endProcess(0);
}

bool FrmMain::requestClose(bool fromUser)
{
    if (ctx().ProgramExiting)
        return true;
    if (!Form_QueryUnload(fromUser))
        return false;
    Form_Unload();
    return true;
}

}  // namespace vonnel
