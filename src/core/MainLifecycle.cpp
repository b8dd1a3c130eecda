// Loading and unloading of the main form: the binding of the local port,
// the second-copy rule, window placement, and the ordered end of a session
// and of the copy.

#include "access/Encryption.h"
#include "access/PasswordStore.h"
#include "connection/Connection.h"
#include "core/CopyLock.h"
#include "wire/LiveTyping.h"
#include "core/IniStore.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/Prompter.h"
#include "shell/FrmMain.h"
#include "transfer/Transfer.h"
#include "shell/Views.h"

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
    if (ProgramExiting)
        return;
    views().unload(QStringLiteral("frmPopMsg"));

    VersionString = kTitle + QLatin1Char(' ') + QString::number(kMajor) + QLatin1Char('.') +
                    QString::number(kMinor) + QLatin1Char('.') + QString::number(kRevision);
    setCaption(titleWithVersion());
    SessionStartTime = clock().timeOfDay();
    SessionEndTime = SessionStartTime;

    QString localPortText = setting(QStringLiteral("LocalPort"));
    const QString remotePortText = setting(QStringLiteral("RemotePort"));

    bool secondCopy = false;
    m_copyLock = std::make_unique<CopyLock>(AppPath());
    if (!m_copyLock->acquired()) {
        if (settingInt(QStringLiteral("Dup Vonnel")) == 0) {
            // The running copy picks the command up on its next poll.
            if (!commandLine().isEmpty())
                WriteIni(kSection, QStringLiteral("Command"), commandLine(),
                         appFile(QStringLiteral("Command.ini")));
            endProcess(0);
            return;
        }
        localPortText = QString::number(iniInt(localPortText) + 1);
        secondCopy = true;
    }

    // error.log holds the failures of the present run only.
    {
        const QString log = resolveCaseBlind(appFile(QStringLiteral("error.log")));
        if (QFile::exists(log)) {
            QFile::setPermissions(log, QFile::permissions(log) | QFileDevice::WriteOwner);
            QFile::remove(log);
        }
    }

    left = settingInt(QStringLiteral("Settings-MainLeft"));
    top = settingInt(QStringLiteral("Settings-MainTop"));
    height = settingInt(QStringLiteral("Settings-MainHeight"));
    width = settingInt(QStringLiteral("Settings-MainWidth"));
    if (left <= 0)
        left = 1500;
    if (top <= 0)
        top = 1500;
    if (height < 2000)
        height = 5000;
    if (width < 4000)
        width = 7000;
    scaleWidth = width - 120;
    if (scaleWidth <= 0)
        scaleWidth = 500;

    stStatusbar.setPicture(1, StatePicture::picOff);

    Winsock& ws = winsock(0);
    if (ws.State() != Winsock::sckClosed)
        ws.Close();
    ws.setRemotePort(quint16(iniInt(remotePortText)));
    ws.setLocalPort(quint16(iniInt(localPortText)));
    checkStatus();
    const int listenError = ws.Listen();
    // A second copy that cannot listen on its own port may not change the
    // ports either: they belong to the first copy.
    if (secondCopy && listenError != 0) {
        controls.setEnabled(QStringLiteral("frmProperty.cmdApply"), false);
        controls.setEnabled(QStringLiteral("frmProperty.cmdOK"), false);
    }

    stStatusbar.setTag(2, translate(QStringLiteral("Local Port")));
    stStatusbar.setText(2, stStatusbar.panel(2).tag + QStringLiteral(" = ") +
                               QString::number(ws.LocalPort()));

    Q_EMIT menusNeedText();

    if (settingNumber(QStringLiteral("Show Tips at Startup")) == 1 && TrayOnly == 0)
        views().showModeless(QStringLiteral("frmTip"));
    if (settingNumber(QStringLiteral("First Run")) == 1) {
        desktop().openFile(HelpPath + QStringLiteral("index.htm"));
        writeSetting(QStringLiteral("First Run"), QStringLiteral("0"));
    }
    controls.setChecked(QStringLiteral("mnuViewontop"),
                        equalsTrue(setting(QStringLiteral("First Run"))));
    voiceFlag = settingNumber(QStringLiteral("Voice Assistance")) == 0;

    if (listenError == Winsock::errAddressInUse) {
        prompter().msgBox(
            translate(QStringLiteral("Error: Local Port Address in use by another program")) +
                QStringLiteral("\r\r") +
                translate(QStringLiteral("Local Port address can be change to another value in menu 'File - Properties'")),
            MsgStyle::Exclamation, QStringLiteral("Inital Error"));
        PortConflictAtStart = true;
    } else if (listenError != 0) {
        prompter().msgBox(QStringLiteral("\r") + ws.lastErrorText(), MsgStyle::Exclamation,
                          QStringLiteral("Form Load Error"));
    }
}

void FrmMain::Init()
{
    int limit = settingInt(QStringLiteral("Text Limit"));
    if (limit > 64000)
        limit = 64000;
    if (limit < 1)
        limit = 32000;
    writeSetting(QStringLiteral("Text Limit"), QString::number(limit));
    textLimit = limit;

    permanentToolbar = settingFlag(QStringLiteral("Permanent Toolbar Settings"));
    overflowLimit = settingInt(QStringLiteral("Overflow"));
    acceptIncompatible = settingFlag(QStringLiteral("Accept Incompatible Character"));
    selfRepair = settingFlag(QStringLiteral("Character Self Repair"));
    repairCountLimit = settingInt(QStringLiteral("Repair Count Limit"));
    if (overflowLimit == 0) {
        overflowLimit = 50;
        writeSetting(QStringLiteral("Overflow"), QStringLiteral("50"));
    }
    if (repairCountLimit == 0) {
        repairCountLimit = 50;
        writeSetting(QStringLiteral("Repair Count Limit"), QStringLiteral("50"));
    }

    txtServer.clear();
    txtServer.setMaxLength(textLimit);
    txtClient().setMaxLength(textLimit);
    lastPictureFile = QStringLiteral("n/a");
    lastReceivedFile = QStringLiteral("n/a");

    if (transfer().readBytesPerSend())
        writeSetting(QStringLiteral("Byte Per Send"), QStringLiteral("2000"));

    if (!settingFlag(QStringLiteral("No Network Info Display")))
        connection().ShowLocalInfo();

    controls.setVisible(QStringLiteral("mnuEncryption"),
                        !settingFlag(QStringLiteral("Encryption Menu Off")));

    // Passwords are set up on the first starts; then both levels are read.
    encryption().passwords().initPasswordSetting();

    int interval = settingInt(QStringLiteral("Command Line Interval"));
    if (interval < 1000) {
        interval = 1000;
        writeSetting(QStringLiteral("Command Line Interval"), QStringLiteral("1000"));
    }
    tTimer2.setInterval(interval);
    tTimer2.start();
    Q_EMIT initialized();
}

void FrmMain::aftOptSet()
{
    overflowLimit = settingInt(QStringLiteral("Overflow"));
    if (overflowLimit == 0)
        overflowLimit = 50;
    acceptIncompatible = settingFlag(QStringLiteral("Accept Incompatible Character"));
    selfRepair = settingFlag(QStringLiteral("Character Self Repair"));
    repairCountLimit = settingInt(QStringLiteral("Repair Count Limit"));
    if (repairCountLimit == 0)
        repairCountLimit = 50;
    encryptOn = settingFlag(QStringLiteral("Encrypted"));
    int interval = settingInt(QStringLiteral("Command Line Interval"));
    if (interval < 1000) {
        interval = 1000;
        writeSetting(QStringLiteral("Command Line Interval"), QStringLiteral("1000"));
    }
    tTimer2.setInterval(interval);
    Ring = setting(QStringLiteral("Ring"));
    Ring1 = setting(QStringLiteral("Ring1"));
    Ring2 = setting(QStringLiteral("Ring2"));
    Ring3 = setting(QStringLiteral("Ring3"));
    Ring4 = setting(QStringLiteral("Ring4"));
    Ring5 = setting(QStringLiteral("Ring5"));
    typing().sentSetting();
}

bool FrmMain::Form_QueryUnload(bool fromUser)
{
    const bool confirm = settingNumber(translate(QStringLiteral("Confirm Exit"))) != 0;
    if (IsConnected() && TransferOnHold && fromUser) {
        const Answer a = prompter().msgBox(
            translate(QStringLiteral("You have a file sending/receiving 'on hold',")) +
                QStringLiteral("\r\n  ") + translate(QStringLiteral("Do you want to continue to exit?")),
            MsgStyle::YesNo | MsgStyle::DefaultButton2,
            QStringLiteral("File Sending/Receiving On Hold"));
        if (a == Answer::No)
            return false;
    }
    if (confirm) {
        const Answer a = prompter().msgBox(QStringLiteral("Are you really want to exit completely?"),
                                           MsgStyle::Exclamation | MsgStyle::YesNo,
                                           QStringLiteral("Vonnel - ") +
                                               translate(QStringLiteral("Program Exit")));
        if (a == Answer::No)
            return false;
    }
    Winsock& ws = winsock(sIdx);
    // Twice, in case the state changed during the first round.
    for (int pass = 0; pass < 2; ++pass) {
        if (!IsConnected())
            break;
        if (ConnectionStartedHere && ws.State() == Winsock::sckConnected) {
            xSendData(QStringLiteral("^SD"));
            ConnectionStartedHere = false;
            controls.setEnabled(QStringLiteral("mnuSave"), true);
            SessionEndTime = clock().timeOfDay();
            Q_EMIT sessionEnded();
        }
        if (ws.State() == Winsock::sckConnected) {
            txtClient().setEnabled(false);
            xSendData(QString(QChar(7)));
            if (pass == 0) {
                ws.Close();
                checkStatus();
                ws.Listen();
                checkStatus();
            }
            controls.setEnabled(QStringLiteral("mnuSave"), true);
            SessionEndTime = clock().timeOfDay();
            Q_EMIT sessionEnded();
        }
    }
    ws.Close();
    return true;
}

void FrmMain::Form_Unload()
{
    if (ProgramExiting)
        return;
    unloading = true;
    if (isVisible())
        connection().mnuDisconnect_Click();
    if (windowState() == vbNormal && left && top && width && height) {
        writeSetting(QStringLiteral("Settings-MainLeft"), QString::number(left));
        writeSetting(QStringLiteral("Settings-MainTop"), QString::number(top));
        writeSetting(QStringLiteral("Settings-MainWidth"), QString::number(width));
        writeSetting(QStringLiteral("Settings-MainHeight"), QString::number(height));
    }
    Q_EMIT closeOpenFiles();
    for (int i = 0; i < 2; ++i)
        if (winsock(i).State() > Winsock::sckClosed)
            winsock(i).Close();
    Q_EMIT stopAudio();
    tTimer1.stop();
    tTimer2.stop();
    ProgramExiting = true;
    m_copyLock.reset();
    endProcess(0);
}

bool FrmMain::requestClose(bool fromUser)
{
    if (ProgramExiting)
        return true;
    if (!Form_QueryUnload(fromUser))
        return false;
    Form_Unload();
    return true;
}

}  // namespace vonnel
