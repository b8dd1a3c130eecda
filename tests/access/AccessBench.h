#pragma once
// A copy that is built but not started, on its own folder and a clock that
// stands still, for the cipher and password routines; and a PC1 written
// apart from the program's, to check the wire from outside.

#include "core/IniStore.h"
#include "platform/Clipboard.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/ScriptedPrompter.h"
#include "shell/FrmMain.h"
#include "core/Views.h"
#include "core/CopyContext.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <cstdint>
#include <memory>
#include <ostream>

// Readable texts in failure messages.
inline void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

namespace vonnel::test {

class AccessBench {
public:
    explicit AccessBench(const QDateTime& now = QDateTime(QDate(2024, 5, 1), QTime(15, 25, 40)))
        : clock(now)
    {
        app = dir.path() + QLatin1Char('/');
        QFile::copy(QStringLiteral(VONNEL_SOURCE_DIR "/dist/vonnel.ini.preset"), app + "vonnel.ini");
        QFile(app + "vonnel.ini").setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        set("Usage", "10");
        CopyEnvironment env;
        env.appPath = app;
        env.headless = true;
        env.prompter = &prompter;
        env.clock = &clock;
        env.clipboard = &clipboard;
        env.desktop = &desktop;
        env.views = &views;
        frm = std::make_unique<FrmMain>(env);
        frm->ctx().HelpPath = QStringLiteral("/help/");
    }

    void set(const QString& key, const QString& value)
    {
        WriteIni(kSection, key, value, app + "vonnel.ini");
    }
    QString get(const QString& key) const { return ReadIni(kSection, key, app + "vonnel.ini"); }

    QTemporaryDir dir;
    QString app;
    ManualClock clock;
    ScriptedPrompter prompter;
    MemoryClipboard clipboard;
    RecordingDesktop desktop;
    Views views;
    std::unique_ptr<FrmMain> frm;
};

// PC1, 128-bit key, as published: a 16-bit generator over the eight key
// words, its output folded into one pad byte per text byte, and the plain
// byte mixed into all sixteen key bytes. Output in the two-letter form
// ('a' + high nibble, 'a' + low nibble).
class PeerPc1 {
public:
    static QByteArray encrypt(const QByteArray& key, const QByteArray& plain)
    {
        PeerPc1 p(key);
        QByteArray out;
        for (char ch : plain) {
            const std::uint8_t c = std::uint8_t(ch);
            const std::uint8_t pad = p.nextPad();
            for (auto& k : p.cle)
                k ^= c;
            const std::uint8_t e = c ^ pad;
            out += char('a' + (e >> 4));
            out += char('a' + (e & 15));
        }
        return out;
    }

    static QByteArray decrypt(const QByteArray& key, const QByteArray& letters)
    {
        PeerPc1 p(key);
        QByteArray out;
        for (qsizetype n = 0; n + 1 < letters.size(); n += 2) {
            const std::uint8_t e = std::uint8_t(((letters[n] - 'a') << 4) | (letters[n + 1] - 'a'));
            const std::uint8_t c = e ^ p.nextPad();
            for (auto& k : p.cle)
                k ^= c;
            out += char(c);
        }
        return out;
    }

private:
    explicit PeerPc1(const QByteArray& key)
    {
        for (int n = 0; n < 16; ++n)
            cle[n] = n < key.size() ? std::uint8_t(key[n]) : 0;
    }

    std::uint8_t nextPad()
    {
        x1a0[0] = std::uint16_t(cle[0] * 256 + cle[1]);
        i = 0;
        code();
        std::uint16_t inter = res;
        for (int w = 1; w < 8; ++w) {
            x1a0[w] = std::uint16_t(x1a0[w - 1] ^ std::uint16_t(cle[2 * w] * 256 + cle[2 * w + 1]));
            code();
            inter ^= res;
        }
        return std::uint8_t((inter >> 8) ^ (inter & 255));
    }

    void code()
    {
        std::uint16_t dx = std::uint16_t(x1a2 + i);
        std::uint16_t ax = x1a0[i];
        std::uint16_t cx = 0x015a;
        const std::uint16_t bx = 0x4e35;
        std::uint16_t tmp = ax; ax = si; si = tmp;
        tmp = ax; ax = dx; dx = tmp;
        if (ax != 0)
            ax = std::uint16_t(std::uint32_t(ax) * bx);
        tmp = ax; ax = cx; cx = tmp;
        if (ax != 0) {
            ax = std::uint16_t(std::uint32_t(ax) * si);
            cx = std::uint16_t(ax + cx);
        }
        tmp = ax; ax = si; si = tmp;
        ax = std::uint16_t(std::uint32_t(ax) * bx);
        dx = std::uint16_t(cx + dx);
        ax = std::uint16_t(ax + 1);
        x1a2 = dx;
        x1a0[i] = ax;
        res = std::uint16_t(ax ^ dx);
        ++i;
    }

    std::uint8_t cle[16]{};
    std::uint16_t x1a0[8]{};
    std::uint16_t x1a2 = 0, si = 0, res = 0;
    int i = 0;
};

}  // namespace vonnel::test
