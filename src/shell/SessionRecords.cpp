#include "shell/SessionRecords.h"

#include "connection/Connection.h"
#include "connection/PrivateLink.h"

#include "core/Cp1252.h"
#include "core/IniStore.h"
#include "platform/Prompter.h"
#include "shell/FrmMain.h"
#include "connection/Session.h"
#include "platform/Clock.h"
#include "core/CopyContext.h"

#include <QFile>
#include <QFileInfo>
#include <QHostInfo>
#include <QLocale>

namespace vonnel {

namespace {

const QString kStars = QStringLiteral("*") + QString(15, QLatin1Char('=')) + QStringLiteral("*");

QString timeText(const QTime& t)
{
    return t.isValid() ? t.toString(QStringLiteral("h:mm:ss AP")) : QString();
}

}  // namespace

SessionRecords::SessionRecords(FrmMain& frm) : QObject(&frm), m_frm(frm)
{
    connect(&frm.session(), &Session::sessionEnded, this, &SessionRecords::sessionEnded);
    connect(&frm.session(), &Session::sessionOpened, this, [this] {
        m_open = true;
        m_frm.session().SessionEndTime = QTime();
    });
}

void SessionRecords::sessionEnded()
{
    if (!m_open)
        return;
    m_open = false;
    if (!m_frm.session().SessionEndTime.isValid())
        m_frm.session().SessionEndTime = m_frm.ctx().clock().timeOfDay();
    SmartSave();
}

QString SessionRecords::headerLine() const
{
    // A private session says so, and whether the peer's key was verified;
    // the record of a session on the old wire is as it always was.
    const PrivateLink& link = m_frm.connection().privateLink();
    const Privacy p = link.privacy() != Privacy::NoSession ? link.privacy() : link.lastSessionPrivacy();
    const QString privacy = p == Privacy::Private || p == Privacy::Verified
                                ? QStringLiteral(" [") + m_frm.ctx().translate(PrivateLink::privacyText(p)) +
                                      QLatin1Char(']')
                                : QString();
    return QStringLiteral("Vonnel Free ") +
           QLocale().toString(m_frm.ctx().clock().today(), QLocale::ShortFormat) + QLatin1Char(' ') +
           timeText(m_frm.session().SessionStartTime) + QStringLiteral(" - ") +
           timeText(m_frm.session().SessionEndTime) + privacy;
}

QString SessionRecords::messageFormat() const
{
    return headerLine() + kCrLf + kCrLf + m_frm.model().txtTextMsg.text();
}

QString SessionRecords::chatFormat() const
{
    FrmMain& f = m_frm;
    const QString localName = QHostInfo::localHostName();
    return headerLine() + kCrLf + kStars + QLatin1Char(' ') + localName + QLatin1Char(' ') +
           kStars + kCrLf + localName.toUpper() + QStringLiteral(": ") + f.model().txtServer.text() +
           kCrLf + kCrLf + kStars + kCrLf + f.model().txtClient(f.session().sIdx).text();
}

QString SessionRecords::smartSavePath() const
{
    QString folder = m_frm.ctx().setting(QStringLiteral("SmartSave Folder")).trimmed();
    if (folder.isEmpty())
        folder = m_frm.ctx().AppPath();
    // An application folder that already ends in a separator gives a
    // doubled one; that is harmless.
    return folder + QLatin1Char('/') +
           m_frm.ctx().clock().now().toString(QStringLiteral("MMddhhmm")) + QStringLiteral(".txt");
}

bool SessionRecords::writeRecord(const QString& path, const QString& text, QString* error) const
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        *error = file.errorString();
        return false;
    }
    const QByteArray bytes = toCp1252(text);
    if (file.write(bytes) != bytes.size()) {
        *error = file.errorString();
        return false;
    }
    return true;
}

void SessionRecords::SmartSave()
{
    FrmMain& f = m_frm;
    const int count = f.ctx().settingInt(QStringLiteral("Connection Count")) + 1;
    f.ctx().writeSetting(QStringLiteral("Connection Count"), QString::number(count));
    if (f.ctx().settingFlag(QStringLiteral("No SmartSave")))
        return;
    QString error;
    if (!writeRecord(smartSavePath(), messageFormat(), &error)) {
        f.ctx().prompter().msgBox(QStringLiteral("Save Chat Session Error: ") + error,
                            MsgStyle::Exclamation);
        f.ctx().closeFilesAtEnd();
    }
}

void SessionRecords::mnuSave_Click()
{
    FrmMain& f = m_frm;
    int filterIndex = 1;
    FileRequest request;
    request.save = true;
    request.title = f.ctx().translate(QStringLiteral("Save As"), QStringLiteral("Save As"));
    request.filter = QStringLiteral(
        "All Files (*.*)|*.*|Message Format (*.txt)|*.txt|Chat Format (*.txt)|*.txt");
    request.filterIndex = &filterIndex;
    QString path = f.ctx().prompter().file(request);
    if (path.isEmpty())
        return;
    if (filterIndex == 2 && QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".txt");
    if (QFileInfo::exists(path)) {
        const Answer a = f.ctx().prompter().msgBox(
            path + QLatin1Char(' ') + f.ctx().translate(QStringLiteral("is already exist.")) +
                f.ctx().translate(QStringLiteral("Do you want to overwrite it?")),
            MsgStyle::YesNo | MsgStyle::Question);
        if (a == Answer::No)
            return;
    }
    QString text;
    if (filterIndex == 2)
        text = messageFormat();
    else if (filterIndex == 3)
        text = chatFormat();
    else
        return;  // All Files writes nothing
    QString error;
    if (!writeRecord(path, text, &error)) {
        f.ctx().prompter().msgBox(QStringLiteral("Save Chat Record Error: ") + error,
                            MsgStyle::Exclamation);
        f.ctx().closeFilesAtEnd();
    }
}

}  // namespace vonnel
