#pragma once
// The configuration store: plain ini files read and written on every
// access, so a hand edit is seen by the next read. (A copy's own settings
// file is re-read only when the kernel says it changed: IniFileWatch.)

#include <QString>
#include <optional>

namespace vonnel {

class Prompter;

inline const QString kSection = QStringLiteral("Vonnel");

// The settings' read buffer: a value comes back cut to one less.
inline constexpr int kIniReadBuffer = 255;

// Reads one value: blanks round it removed, one pair of enclosing quotes
// removed, cut to buffer - 1 characters (254 for the settings). Missing
// file, section or key read as "".
QString ReadIni(const QString& section, const QString& key, const QString& file,
                int buffer = kIniReadBuffer);
// The same read on bytes already taken off the file.
QString ReadIniBytes(const QByteArray& data, const QString& section, const QString& key,
                     int buffer = kIniReadBuffer);

// The bytes of one ini file for one copy, read again only after the file
// has changed. Change is told by the kernel's file notifications, which are
// queued at the moment of the write, so a write by anyone (this process, a
// hand edit) is seen by the very next read, as with a plain read. Where
// notifications are not to be had, every call reads the file.
class IniFileWatch {
public:
    explicit IniFileWatch(QString path) : m_path(std::move(path)) {}
    ~IniFileWatch();
    IniFileWatch(const IniFileWatch&) = delete;
    IniFileWatch& operator=(const IniFileWatch&) = delete;

    // The file's bytes, or nothing when it cannot be watched (then the
    // caller reads it as ReadIni does).
    std::optional<QByteArray> bytes();
    // Goes up each time the bytes are taken off the file anew.
    quint64 generation() const { return m_generation; }

private:
    QString m_path;
    quint64 m_generation = 0;
    int m_fd = -2;  // -2: not opened yet; -1: not to be had
    QByteArray m_data;
    bool m_valid = false;
};

// Writes one value in place, creating file, section and key as needed and
// leaving every other line as it stands. Failures are silent.
void WriteIni(const QString& section, const QString& key, const QString& value,
              const QString& file);
// False for "", for any path ending in "n/a", for folders and hidden files.
bool FileExist(const QString& path, Prompter* prompter = nullptr);
// Deletes a file so it can be written anew (only the capture file uses it).
void ClearForRecreate(const QString& path, Prompter& prompter);

// The application's files are looked up without regard to case: the name
// as asked if it exists, else the one entry of its folder that differs only
// in case, else the name as asked (to be created).
QString resolveCaseBlind(const QString& path);

// The three read idioms.
double iniNumber(const QString& text);           // numeric prefix, else 0
int iniInt(const QString& text);                 // the number, rounded
bool flagByNumber(const QString& text);          // number is not 0
std::optional<bool> flagByText(const QString& text);  // "True"/"False"/number; "" fails


}  // namespace vonnel
