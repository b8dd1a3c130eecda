#include "core/options/OptionsModel.h"

#include "core/CopyContext.h"
#include "core/IniStore.h"
#include "core/Logs.h"
#include "core/options/OptionsRules.h"
#include "platform/Autostart.h"
#include "platform/Desktop.h"
#include "platform/Prompter.h"

#include <QFile>
#include <QFileInfo>

namespace vonnel {

QString CopyOptionsStore::read(const QString& key) const
{
    return m_ctx.setting(key);
}

void CopyOptionsStore::write(const QString& key, const QString& value)
{
    m_ctx.writeSetting(key, value);
}

OptionsModel::OptionsModel(CopyContext& ctx, OptionsStore& store, Autostart& autostart,
                           QObject* parent)
    : QObject(parent), m_ctx(ctx), m_store(store), m_autostart(autostart)
{
}

Opt OptionsModel::menuBox(int n)
{
    return Opt(int(Opt::txtMnu1) + 2 * (n - 1));
}

Opt OptionsModel::messageBox(int n)
{
    return Opt(int(Opt::txtMsg1) + 2 * (n - 1));
}

int OptionsModel::presetOf(Opt control, bool& isMenu) const
{
    const int i = int(control) - int(Opt::txtMnu1);
    if (i < 0 || i >= 12)
        return 0;
    isMenu = i % 2 == 0;
    return i / 2 + 1;
}

bool OptionsModel::checked(Opt control) const
{
    return value(control) == QLatin1String("1");
}

void OptionsModel::put(Opt control, const QString& text)
{
    QString& v = m_values[size_t(control)];
    if (v == text)
        return;
    v = text;
    Q_EMIT valueChanged(control);
}

void OptionsModel::setValue(Opt control, const QString& text)
{
    bool isMenu = false;
    const int n = presetOf(control, isMenu);
    if (n == 0) {
        put(control, text);
        return;
    }
    if (isMenu) {
        // The user's own caption: it no longer follows the message.
        put(control, cutCaption(text));
        m_following[size_t(n)] = text.isEmpty();
        return;
    }
    put(control, text);
    // An empty caption takes the message, and keeps following it while the
    // user leaves the caption alone.
    if (m_following[size_t(n)] || value(menuBox(n)).isEmpty()) {
        m_following[size_t(n)] = true;
        put(menuBox(n), cutCaption(text));
    }
}

void OptionsModel::setChecked(Opt control, bool on)
{
    put(control, on ? QStringLiteral("1") : QStringLiteral("0"));
}

void OptionsModel::leaveBox(Opt control)
{
    bool isMenu = false;
    if (presetOf(control, isMenu) != 0 && isMenu)
        put(control, cutCaption(value(control)));
    else if (hasValidation(control))
        put(control, validateBox(control, value(control)));
}

QString OptionsModel::loadValue(const OptRow& row) const
{
    QString raw = m_store.read(QLatin1String(row.loadKey ? row.loadKey : row.key));
    if (raw.isEmpty() && row.absent)
        raw = QLatin1String(row.absent);
    const auto bit = [](bool on) { return on ? QStringLiteral("1") : QStringLiteral("0"); };
    switch (row.kind) {
    case OptKind::Check:
        return bit(flagByNumber(raw));
    case OptKind::CheckOne:
        return bit(iniNumber(raw) == 1);
    case OptKind::Thousands:
        return QString::number(integerPart(raw) / 1000);
    case OptKind::Slider:
        // The windows read a transparency below 50 as solid; so does the slider.
        if (row.control == Opt::slidTrans && integerPart(raw) < 50)
            return QStringLiteral("255");
        return QString::number(integerPart(raw));
    case OptKind::Choice:
        return QString::number(integerPart(raw));
    case OptKind::FontStyle: {
        const bool bold = flagByText(raw).value_or(false);
        const bool italic = flagByText(m_store.read(QLatin1String(row.key2))).value_or(false);
        return QString::number(int(bold) + 2 * int(italic));
    }
    case OptKind::Number:
    case OptKind::Text:
    case OptKind::Colour:
    case OptKind::Ring:
        return raw;
    }
    return raw;
}

void OptionsModel::GetINISetting()
{
    for (const OptRow& row : optionRows())
        put(row.control, loadValue(row));
    for (int n = 1; n <= 6; ++n)
        m_following[size_t(n)] = value(menuBox(n)).isEmpty();
}

void OptionsModel::writeRow(const OptRow& row)
{
    const QString key = QLatin1String(row.key);
    const QString v = value(row.control);
    switch (row.kind) {
    case OptKind::Check:
    case OptKind::CheckOne:
        m_store.write(key, checked(row.control) ? QStringLiteral("1") : QStringLiteral("0"));
        break;
    case OptKind::Thousands:
        m_store.write(key, QString::number(integerPart(v) * 1000));
        break;
    case OptKind::FontStyle: {
        // The same words the toolbar's font buttons keep.
        const int style = int(integerPart(v));
        const auto word = [](bool on) { return on ? QStringLiteral("True") : QStringLiteral("False"); };
        m_store.write(key, word(style & 1));
        m_store.write(QLatin1String(row.key2), word(style & 2));
        break;
    }
    default:
        m_store.write(key, v);
        break;
    }
}

void OptionsModel::cmdApply_Click()
{
    for (const OptRow& row : optionRows()) {
        if (row.kind == OptKind::Ring)
            continue;
        writeRow(row);
        if (row.control == Opt::chkLoadAtStartUp) {
            if (checked(Opt::chkLoadAtStartUp))
                m_autostart.add(programPath, programArgs);
            else
                m_autostart.remove();
        }
    }
    for (const OptRow& row : optionRows()) {
        if (row.kind == OptKind::Ring)
            writeRow(row);
    }
    Q_EMIT applied();
}

void OptionsModel::cmdDefault_Click()
{
    for (const auto& [control, text] : advancedDefaults())
        put(control, text);
}

void OptionsModel::cmdHelp_Click(OptionsPage page)
{
    m_ctx.desktop().openFile(m_ctx.HelpPath + QLatin1String(optionsTab(page).helpPage));
}

void OptionsModel::cmdViewLog_Click()
{
    const QString path = m_ctx.logs().sessionLogPath();
    if (!QFileInfo(path).isFile()) {
        m_ctx.prompter().msgBox(m_ctx.translate(QStringLiteral("No Session Log File")),
                                MsgStyle::Information);
        return;
    }
    m_ctx.desktop().openFile(path);
}

void OptionsModel::cmdClearLog_Click()
{
    const Answer a = m_ctx.prompter().msgBox(
        m_ctx.translate(QStringLiteral("Are you sure you want to clear connection log?")),
        MsgStyle::YesNo | MsgStyle::Question, m_ctx.translate(QStringLiteral("Clear Session Log")));
    if (a == Answer::Yes)
        QFile::remove(m_ctx.logs().sessionLogPath());
}

void OptionsModel::cmdClearName_Click()
{
    const Answer a = m_ctx.prompter().msgBox(
        m_ctx.translate(QStringLiteral("Are you sure you want to clear the list of recent addresses?")),
        MsgStyle::YesNo | MsgStyle::Question,
        m_ctx.translate(QStringLiteral("Clear Recent Addresses")));
    if (a != Answer::Yes)
        return;
    // The Connect dialog's history: the last address and the numbered list.
    const QString stem = QStringLiteral("Previous IP Address");
    m_store.write(stem, QString());
    for (int i = 0; i < 10000 && !m_store.read(stem + QLatin1Char(' ') + QString::number(i)).isEmpty(); ++i)
        m_store.write(stem + QLatin1Char(' ') + QString::number(i), QString());
}

void OptionsModel::cmdManualEdit_Click()
{
    const Answer a = m_ctx.prompter().msgBox(
        m_ctx.translate(QStringLiteral(
            "Warning: Any improper setting in vonnel.ini may prevent Vonnel from operating properly.")) +
            QStringLiteral("\r\n") + m_ctx.translate(QStringLiteral("Continue?")),
        MsgStyle::YesNo | MsgStyle::Exclamation, m_ctx.translate(QStringLiteral("Warning")));
    if (a == Answer::Yes)
        m_ctx.desktop().openFile(m_ctx.iniPath());
}

void OptionsModel::cmdOpenChtRec_Click()
{
    FileRequest request;
    request.title = m_ctx.translate(QStringLiteral("Open Session Record"));
    request.filter = QStringLiteral("Text (*.txt)|*.txt|All Files (*.*)|*.*");
    request.folder = value(Opt::txtSaveFolder).trimmed().isEmpty() ? m_ctx.AppPath()
                                                                    : value(Opt::txtSaveFolder).trimmed();
    const QString path = m_ctx.prompter().file(request);
    if (!path.isEmpty())
        m_ctx.desktop().openFile(path);
}

void OptionsModel::cmdAutoConnect_Click()
{
    m_store.write(QStringLiteral("AutoConnect"),
                  checked(Opt::chkAutoCheck) ? QStringLiteral("1") : QStringLiteral("0"));
}

QString OptionsModel::languageName() const
{
    if (!flagByNumber(m_store.read(QStringLiteral("Translation"))))
        return QStringLiteral("English");
    const QString file = m_store.read(QStringLiteral("LangFile"));
    return file.isEmpty() ? QStringLiteral("English") : QFileInfo(file).completeBaseName();
}

}  // namespace vonnel
