#pragma once
// The configuration store: plain ini files read and written on every
// access, with no cache, so a hand edit is seen by the next read.

#include <QString>
#include <optional>

namespace vonnel {

class Prompter;

inline const QString kSection = QStringLiteral("Vonnel");

// Reads one value: blanks round it removed, one pair of enclosing quotes
// removed, cut to 254 characters. Missing file, section or key read as "".
QString ReadIni(const QString& section, const QString& key, const QString& file);
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

// cp1252 conversions used for every file and wire text.
QString fromCp1252(const QByteArray& bytes);
QByteArray toCp1252(const QString& text);

}  // namespace vonnel
