#include "core/IniStore.h"

#include "core/Cp1252.h"

#ifdef Q_OS_LINUX
#include <sys/inotify.h>
#endif

#include "platform/Prompter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <cerrno>
#include <cmath>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vonnel {

namespace {

bool isBlank(QChar c) { return c == QLatin1Char(' ') || c == QLatin1Char('\t'); }

QString trimBlanks(QStringView s)
{
    int b = 0, e = int(s.size());
    while (b < e && isBlank(s[b]))
        ++b;
    while (e > b && isBlank(s[e - 1]))
        --e;
    return s.mid(b, e - b).toString();
}

struct Line {
    enum Kind { Other, Section, Pair } kind = Other;
    QString name;  // section name or key, trimmed
    QString value; // raw value text after '='
};

Line parse(const QString& raw)
{
    Line l;
    const QString t = trimBlanks(raw);
    if (t.startsWith(QLatin1Char('['))) {
        const int close = t.indexOf(QLatin1Char(']'));
        l.kind = Line::Section;
        l.name = trimBlanks(QStringView(t).mid(1, close < 0 ? -1 : close - 1));
        return l;
    }
    if (t.startsWith(QLatin1Char(';')))
        return l;
    const int eq = raw.indexOf(QLatin1Char('='));
    if (eq < 0)
        return l;
    l.kind = Line::Pair;
    l.name = trimBlanks(QStringView(raw).left(eq));
    l.value = raw.mid(eq + 1);
    return l;
}

QStringList readLines(const QString& file, bool* existed)
{
    QFile f(resolveCaseBlind(file));
    if (!f.open(QIODevice::ReadOnly)) {
        if (existed)
            *existed = false;
        return {};
    }
    if (existed)
        *existed = true;
    QString text = fromCp1252(f.readAll());
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    QStringList lines = text.split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    else if (!lines.isEmpty() && lines.last().endsWith(QLatin1Char('\r')))
        lines.last().chop(1);  // a last line cut off in its end, read as the reader reads it
    return lines;
}

}  // namespace

QString resolveCaseBlind(const QString& path)
{
    if (path.isEmpty() || QFileInfo::exists(path))
        return path;
    const QFileInfo fi(path);
    QDir dir = fi.dir();
    if (!dir.exists())
        return path;
    const QString wanted = fi.fileName();
    const QStringList entries = dir.entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                              QDir::NoDotAndDotDot);
    for (const QString& e : entries)
        if (e.compare(wanted, Qt::CaseInsensitive) == 0)
            return dir.filePath(e);
    return path;
}

namespace {

QByteArrayView trimBlanksBytes(QByteArrayView s)
{
    qsizetype b = 0, e = s.size();
    while (b < e && (s[b] == ' ' || s[b] == '\t'))
        ++b;
    while (e > b && (s[e - 1] == ' ' || s[e - 1] == '\t'))
        --e;
    return s.sliced(b, e - b);
}

// The file's bytes, found without regard to case; empty when absent.
QByteArray readWholeFile(const QString& file)
{
    QByteArray name = QFile::encodeName(file);
    int fd = ::open(name.constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0 && errno == ENOENT) {
        name = QFile::encodeName(resolveCaseBlind(file));
        fd = ::open(name.constData(), O_RDONLY | O_CLOEXEC);
    }
    if (fd < 0)
        return QByteArray();
    QByteArray data;
    struct stat st {};
    if (::fstat(fd, &st) == 0 && S_ISREG(st.st_mode)) {
        data.resize(qsizetype(st.st_size));
        qsizetype got = 0;
        while (got < data.size()) {
            const ssize_t n = ::read(fd, data.data() + got, size_t(data.size() - got));
            if (n <= 0)
                break;
            got += n;
        }
        data.truncate(got);
    }
    ::close(fd);
    return data;
}

// Names are compared without regard to case; the bytes are cp1252.
bool sameName(QByteArrayView bytes, const QString& name)
{
    if (bytes.size() != name.size())
        return false;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const uchar b = uchar(bytes[i]);
        const char16_t n = name[i].unicode();
        if (b < 0x80 && n < 0x80) {
            if (QChar::toLower(char16_t(b)) != QChar::toLower(n))
                return false;
        } else {
            return fromCp1252(QByteArray(bytes.data(), bytes.size()))
                       .compare(name, Qt::CaseInsensitive) == 0;
        }
    }
    return true;
}

}  // namespace

QString ReadIni(const QString& section, const QString& key, const QString& file, int buffer)
{
    // Read on every call, straight off the bytes: the settings are read at
    // the point of use, keystrokes included, so this has to be cheap.
    return ReadIniBytes(readWholeFile(file), section, key, buffer);
}

IniFileWatch::~IniFileWatch()
{
#ifdef Q_OS_LINUX
    if (m_fd >= 0)
        ::close(m_fd);
#endif
}

std::optional<QByteArray> IniFileWatch::bytes()
{
#ifdef Q_OS_LINUX
    if (m_fd == -2)
        m_fd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (m_fd < 0)
        return std::nullopt;
    if (m_valid) {
        // Any event since the last read: the file changed (or went).
        alignas(struct inotify_event) char buf[4096];
        while (::read(m_fd, buf, sizeof buf) > 0)
            m_valid = false;
        if (m_valid)
            return m_data;
    }
    // Watched before it is read, so no write can slip between the two.
    const QByteArray name = QFile::encodeName(m_path);
    if (inotify_add_watch(m_fd, name.constData(),
                          IN_MODIFY | IN_ATTRIB | IN_CLOSE_WRITE | IN_MOVE_SELF |
                              IN_DELETE_SELF) < 0)
        return std::nullopt;
    m_data = readWholeFile(m_path);
    m_valid = true;
    ++m_generation;
    return m_data;
#else
    return std::nullopt;
#endif
}

QString ReadIniBytes(const QByteArray& data, const QString& section, const QString& key, int buffer)
{
    const QString wantedKey = trimBlanks(key);
    bool inSection = false;
    qsizetype pos = 0;
    while (pos < data.size()) {
        qsizetype eol = data.indexOf('\n', pos);
        if (eol < 0)
            eol = data.size();
        QByteArrayView raw(data.constData() + pos, eol - pos);
        pos = eol + 1;
        if (raw.endsWith('\r'))
            raw = raw.chopped(1);
        const QByteArrayView t = trimBlanksBytes(raw);
        if (t.startsWith('[')) {
            // The first section of that name is the one read.
            if (inSection)
                break;
            const qsizetype close = t.indexOf(']');
            inSection = sameName(trimBlanksBytes(t.sliced(1, (close < 0 ? t.size() : close) - 1)), section);
            continue;
        }
        if (!inSection || t.startsWith(';'))
            continue;
        const qsizetype eq = raw.indexOf('=');
        if (eq < 0 || !sameName(trimBlanksBytes(raw.first(eq)), wantedKey))
            continue;
        QString v = fromCp1252(trimBlanksBytes(raw.sliced(eq + 1)).toByteArray());
        if (v.size() >= 2 && (v.front() == QLatin1Char('"') || v.front() == QLatin1Char('\'')) &&
            v.back() == v.front())
            v = v.mid(1, v.size() - 2);
        v = v.left(buffer - 1);
        while (!v.isEmpty() && v.back() == QLatin1Char(' '))
            v.chop(1);
        return v;
    }
    return QString();
}

void WriteIni(const QString& section, const QString& key, const QString& value,
              const QString& file)
{
    bool existed = false;
    QStringList lines = readLines(file, &existed);
    const QString target = existed ? resolveCaseBlind(file) : file;
    const QString pair = key + QLatin1Char('=') + value;

    int sectionAt = -1, lastInSection = -1, keyAt = -1;
    for (int i = 0; i < lines.size(); ++i) {
        const Line l = parse(lines[i]);
        if (l.kind == Line::Section) {
            if (sectionAt >= 0)
                break;
            if (l.name.compare(section, Qt::CaseInsensitive) == 0) {
                sectionAt = i;
                lastInSection = i;
            }
            continue;
        }
        if (sectionAt < 0)
            continue;
        if (!trimBlanks(lines[i]).isEmpty())
            lastInSection = i;
        if (l.kind == Line::Pair && l.name.compare(trimBlanks(key), Qt::CaseInsensitive) == 0) {
            keyAt = i;
            break;
        }
    }
    if (keyAt >= 0)
        lines[keyAt] = pair;
    else if (sectionAt >= 0)
        lines.insert(lastInSection + 1, pair);
    else
        lines << QLatin1Char('[') + section + QLatin1Char(']') << pair;

    QByteArray out = toCp1252(lines.join(QLatin1String("\r\n")));
    out += "\r\n";
    QFile f(target);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return;
    f.write(out);
}

bool FileExist(const QString& path, Prompter* prompter)
{
    if (path.isEmpty() || path.right(3) == QLatin1String("n/a"))
        return false;
    const QFileInfo fi(resolveCaseBlind(path));
    if (!fi.exists() || !fi.isFile() || fi.isHidden())
        return false;
    QFile f(fi.filePath());
    if (!f.open(QIODevice::ReadOnly)) {
        if (prompter)
            prompter->msgBox(QStringLiteral("File existence checking error:\r\n") + path +
                             QLatin1Char(' ') + f.errorString());
        return false;
    }
    return true;
}

void ClearForRecreate(const QString& path, Prompter& prompter)
{
    if (!FileExist(path, &prompter))
        return;
    const QString real = resolveCaseBlind(path);
    QFile f(real);
    // A plainly read-only file is made writable; any other mix stays, and
    // the delete then fails as it would for a file in use.
    const QFileDevice::Permissions p = f.permissions();
    const bool readOnlyOnly = !(p & QFileDevice::WriteOwner) && !QFileInfo(real).isHidden();
    if (readOnlyOnly)
        f.setPermissions(p | QFileDevice::WriteOwner);
    const bool writable = QFileInfo(real).isWritable() && QFileInfo(QFileInfo(real).path()).isWritable();
    if (!writable || !f.remove()) {
        prompter.msgBox(QStringLiteral("File access error: cannot delete and recreate ") + path +
                            QStringLiteral("\r\nReaseon: ") + f.errorString() +
                            QStringLiteral("\r\nCauses: ReadOnly Attribute, Permission Denied, "
                                           "File Already Opened, etc.\r\n\r\nPlease delete the "
                                           "file manually and immediately now before click OK "
                                           "to continue."),
                        MsgStyle::Critical);
    }
}

double iniNumber(const QString& text)
{
    const QString t = text.trimmed();
    int i = 0;
    if (i < t.size() && (t[i] == QLatin1Char('-') || t[i] == QLatin1Char('+')))
        ++i;
    int digits = 0;
    while (i < t.size() && t[i].isDigit()) {
        ++i;
        ++digits;
    }
    if (i < t.size() && t[i] == QLatin1Char('.')) {
        ++i;
        while (i < t.size() && t[i].isDigit()) {
            ++i;
            ++digits;
        }
    }
    if (digits == 0)
        return 0;
    if (i < t.size() && (t[i] == QLatin1Char('E') || t[i] == QLatin1Char('e'))) {
        int j = i + 1;
        if (j < t.size() && (t[j] == QLatin1Char('-') || t[j] == QLatin1Char('+')))
            ++j;
        if (j < t.size() && t[j].isDigit()) {
            while (j < t.size() && t[j].isDigit())
                ++j;
            i = j;
        }
    }
    bool ok = false;
    const double v = t.left(i).toDouble(&ok);
    return ok ? v : 0;
}

int iniInt(const QString& text)
{
    const double v = iniNumber(text);
    if (v > 2147483647.0)
        return 2147483647;
    if (v < -2147483648.0)
        return -2147483647 - 1;
    // Banker's rounding: a setting of 2.5 is read as 2, 3.5 as 4.
    return int(std::nearbyint(v));
}

bool flagByNumber(const QString& text)
{
    return iniNumber(text) != 0;
}

std::optional<bool> flagByText(const QString& text)
{
    const QString t = text.trimmed();
    if (t.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
        return true;
    if (t.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
        return false;
    bool ok = false;
    const double v = t.toDouble(&ok);
    if (!ok)
        return std::nullopt;
    return v != 0;
}

}  // namespace vonnel
