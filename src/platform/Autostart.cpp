#include "platform/Autostart.h"

#include <QDir>

#include <QFile>
#include <QSaveFile>
#include <algorithm>

namespace vonnel {

namespace {

const QString kEntryName = QStringLiteral("vonnel.desktop");

QString quoted(const QString& word)
{
    static const QString plain = QStringLiteral(
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/._-+=:,@%");
    const bool needs = word.isEmpty() ||
                       std::any_of(word.begin(), word.end(), [](QChar c) { return !plain.contains(c); });
    if (!needs)
        return word;
    // Inside quotes ", `, $ and \ are escaped with a backslash; the entry's
    // own string rules then double every backslash once more.
    QString inner;
    for (QChar c : word) {
        if (c == QLatin1Char('"') || c == QLatin1Char('`') || c == QLatin1Char('$') ||
            c == QLatin1Char('\\'))
            inner += QLatin1Char('\\');
        inner += c;
    }
    inner.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    return QLatin1Char('"') + inner + QLatin1Char('"');
}

}  // namespace

Autostart::Autostart(QString folder) : m_folder(folder.isEmpty() ? userFolder() : std::move(folder)) {}

QString Autostart::userFolder()
{
    QString config = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (config.isEmpty() || !QDir::isAbsolutePath(config))
        config = QDir::homePath() + QStringLiteral("/.config");
    return config + QStringLiteral("/autostart");
}

QString Autostart::entryPath() const
{
    return m_folder + QLatin1Char('/') + kEntryName;
}

bool Autostart::exists() const
{
    return QFile::exists(entryPath());
}

bool Autostart::hiddenByDesktop() const
{
    QFile f(entryPath());
    if (!f.open(QIODevice::ReadOnly))
        return false;
    bool inEntry = false;
    while (!f.atEnd()) {
        const QByteArray line = f.readLine().trimmed();
        if (line.startsWith('['))
            inEntry = line == "[Desktop Entry]";
        else if (inEntry && line.startsWith("Hidden") &&
                 line.mid(6).trimmed().startsWith('='))
            return line.mid(line.indexOf('=') + 1).trimmed() == "true";
    }
    return false;
}

QString Autostart::execLine(const QString& program, const QStringList& args)
{
    QStringList words{quoted(program)};
    for (const QString& a : args)
        words << quoted(a);
    return words.join(QLatin1Char(' '));
}

bool Autostart::add(const QString& program, const QStringList& args)
{
    if (hiddenByDesktop())
        return false;
    if (!QDir().mkpath(m_folder))
        return false;
    QSaveFile f(entryPath());
    if (!f.open(QIODevice::WriteOnly))
        return false;
    const QString text = QStringLiteral("[Desktop Entry]\n"
                                        "Type=Application\n"
                                        "Name=Vonnel\n"
                                        "Comment=Direct chat\n"
                                        "Exec=%1\n"
                                        "Terminal=false\n"
                                        "X-GNOME-Autostart-enabled=true\n")
                             .arg(execLine(program, args));
    f.write(text.toUtf8());
    return f.commit();
}

bool Autostart::remove()
{
    return !exists() || QFile::remove(entryPath());
}

}  // namespace vonnel
