#include "core/IniStore.h"

#include "platform/Prompter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <cmath>

namespace vonnel {

namespace {

// Code points of 0x80..0x9F in cp1252; 0 where the code page has a hole,
// which maps to the C1 control of the same number.
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

constexpr int kReadBuffer = 255;  // one less is the longest value read

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
    return lines;
}

}  // namespace

QString fromCp1252(const QByteArray& bytes)
{
    QString out(bytes.size(), Qt::Uninitialized);
    QChar* d = out.data();
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const uchar c = uchar(bytes[i]);
        d[i] = (c >= 0x80 && c < 0xA0 && kCp1252High[c - 0x80]) ? QChar(kCp1252High[c - 0x80])
                                                                 : QChar(c);
    }
    return out;
}

QByteArray toCp1252(const QString& text)
{
    QByteArray out(text.size(), Qt::Uninitialized);
    char* d = out.data();
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t u = text[i].unicode();
        if (u < 0x80 || (u >= 0xA0 && u < 0x100) || (u >= 0x80 && u < 0xA0 && !kCp1252High[u - 0x80])) {
            d[i] = char(u);
            continue;
        }
        char b = '?';
        for (int k = 0; k < 32; ++k)
            if (kCp1252High[k] == u) {
                b = char(0x80 + k);
                break;
            }
        d[i] = b;
    }
    return out;
}

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

QString ReadIni(const QString& section, const QString& key, const QString& file)
{
    const QStringList lines = readLines(file, nullptr);
    bool inSection = false;
    for (const QString& raw : lines) {
        const Line l = parse(raw);
        if (l.kind == Line::Section) {
            // The first section of that name is the one read.
            if (inSection)
                break;
            inSection = l.name.compare(section, Qt::CaseInsensitive) == 0;
            continue;
        }
        if (!inSection || l.kind != Line::Pair)
            continue;
        if (l.name.compare(trimBlanks(key), Qt::CaseInsensitive) != 0)
            continue;
        QString v = trimBlanks(l.value);
        if (v.size() >= 2 && (v.front() == QLatin1Char('"') || v.front() == QLatin1Char('\'')) &&
            v.back() == v.front())
            v = v.mid(1, v.size() - 2);
        v = v.left(kReadBuffer - 1);
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
    // Banker's rounding, as the integer conversion of the original does.
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
