// The settings reader and writer, and the language lookup that reads a
// language file the same way, under arbitrary file bytes: a settings file
// may be hand-edited and a language file may come from anyone.
//
//   fuzz_ini -max_len=4096 corpus/ini/
//
// The first byte picks the key and a value to write; the rest is the file.
// What must hold: a value read is one line, at most 254 characters, with
// no blank at its end; writing a key and reading it back gives the value
// written; writing one key leaves every other key of the section as it
// read before; the language lookup gives the file's entry or the key.

#include "core/IniStore.h"
#include "core/Translator.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace vonnel;

namespace {

void fail(int line)
{
    std::fprintf(stderr, "fuzz_ini: check at line %d failed\n", line);
    std::abort();
}

#define check(ok) ((ok) ? void() : fail(__LINE__))

const std::array<QString, 8> kKeys = {
    QStringLiteral("LocalPort"),   QStringLiteral("Away Message"), QStringLiteral("Connect"),
    QStringLiteral("Menu1"),       QStringLiteral("A"),            QStringLiteral("Text Limit"),
    QStringLiteral("Incomming Connection Timeout"), QStringLiteral("x y")};

const std::array<QString, 4> kValues = {QStringLiteral("2500"), QStringLiteral("Gone for coffee"),
                                        QStringLiteral("\u00e9t\u00e9 = summer"),
                                        QStringLiteral("a;b[c]d")};

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    check(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    check(f.write(bytes) == bytes.size());
}

QTemporaryDir* folder = nullptr;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    new QCoreApplication(*argc, *argv);
    // Memory-backed where there is one: a file cut and written again on a
    // disk is flushed at its close, which would set the pace.
    const QString base = QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm")
                                                                    : QDir::tempPath();
    folder = new QTemporaryDir(base + QStringLiteral("/fuzz_ini-XXXXXX"));
    check(folder->isValid());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const uint8_t pick = data[0];
    const QByteArray bytes(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1));
    const QString& key = kKeys[pick % kKeys.size()];
    const QString& value = kValues[(pick >> 3) % kValues.size()];
    const QString section = (pick & 0x80) ? QStringLiteral("Other") : kSection;

    // Every key of the list, read off the bytes.
    std::array<QString, kKeys.size()> before;
    for (size_t i = 0; i < kKeys.size(); ++i) {
        before[i] = ReadIniBytes(bytes, section, kKeys[i]);
        check(before[i].size() <= 254);
        check(!before[i].contains(QLatin1Char('\n')));
        check(!before[i].endsWith(QLatin1Char(' ')));
    }

    // The language lookup reads the same way.
    const QString lang = folder->filePath(QStringLiteral("fuzz.lng"));
    writeFile(lang, bytes);
    Translator translator(folder->path() + QLatin1Char('/'));
    translator.setLangFile(QStringLiteral("fuzz.lng"));
    translator.setTranslationOn(true);
    // The lookup's buffer is one longer than the settings' (255 characters).
    const QString entry = ReadIniBytes(bytes, kSection, key, Translator::kReadBuffer);
    check(translator.translate(key) == (entry.isEmpty() ? key : entry));

    // A write changes that key alone.
    const QString ini = folder->filePath(QStringLiteral("fuzz.ini"));
    writeFile(ini, bytes);
    WriteIni(section, key, value, ini);
    check(ReadIni(section, key, ini) == value);
    for (size_t i = 0; i < kKeys.size(); ++i) {
        if (kKeys[i].compare(key, Qt::CaseInsensitive) == 0)
            continue;
        check(ReadIni(section, kKeys[i], ini) == before[i]);
    }
    return 0;
}
