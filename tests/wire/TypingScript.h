#pragma once
// Random typing scripts for the live text properties: what a user does to
// the local pane, step by step, with a shrinker that cuts a failing script
// down to the steps that matter.

#include <QList>
#include <QRandomGenerator>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace vonnel::test {

// Key codes as the key handlers take them.
enum : int { kBack = 8, kReturn = 13, kSpace = 32, kDelete = 46 };

struct Step {
    enum Kind {
        Key,     // one key, pressed and released
        Held,    // one key held: `count` presses, one release
        Burst,   // several keys down before the first comes up
        Caret,   // the caret put somewhere (`at` in thousandths of the length)
        Select,  // a selection from `at` over `span` thousandths
        Paste,   // text pasted from the clipboard
    } kind = Key;
    QList<int> keys;  // key codes: letters and digits as their characters
    int count = 1;
    int at = 0;
    int span = 0;
    QString text;

    // Edits only at the end of the pane: what ordinary typing does.
    bool atEnd() const { return kind != Caret && kind != Select; }
};
using Script = QList<Step>;

inline QString keyName(int code)
{
    switch (code) {
    case kBack: return QStringLiteral("BS");
    case kReturn: return QStringLiteral("RET");
    case kSpace: return QStringLiteral("SPC");
    case kDelete: return QStringLiteral("DEL");
    default: return QString(QChar(code));
    }
}

inline QString describe(const Step& s)
{
    QStringList keys;
    for (int k : s.keys)
        keys << keyName(k);
    switch (s.kind) {
    case Step::Key: return keys.join(' ');
    case Step::Held: return QStringLiteral("hold %1 x%2").arg(keys.join(' ')).arg(s.count);
    case Step::Burst: return QStringLiteral("burst [%1]").arg(keys.join(' '));
    case Step::Caret: return QStringLiteral("caret %1/1000").arg(s.at);
    case Step::Select: return QStringLiteral("select %1+%2/1000").arg(s.at).arg(s.span);
    case Step::Paste: {
        QString t = s.text;
        t.replace(QLatin1String("\r\n"), QLatin1String("\\r\\n"));
        return QStringLiteral("paste \"%1\"").arg(t);
    }
    }
    return QString();
}

inline QString describe(const Script& script)
{
    QStringList out;
    for (const Step& s : script)
        out << describe(s);
    return out.join(QStringLiteral(" | "));
}

// The position in text of a thousandths fraction, never inside a line break.
inline int positionIn(const QString& text, int thousandths)
{
    int p = int(qint64(text.size()) * thousandths / 1000);
    if (p > 0 && p < text.size() && text.at(p - 1) == QLatin1Char('\r') &&
        text.at(p) == QLatin1Char('\n'))
        --p;
    return p;
}

struct ScriptOptions {
    bool onlyAtEnd = false;    // no caret moves or selections
    bool burstDeletions = true;  // bursts may hold Backspace between letters
    int maxSteps = 24;
};

class ScriptMaker {
public:
    explicit ScriptMaker(quint32 seed) : m_gen(seed) {}

    int letter()
    {
        static const QString chars = QStringLiteral("abcdefghijklmnopqrstuvwxyz0123456789");
        return chars.at(int(m_gen.bounded(int(chars.size())))).unicode();
    }
    // A single key: mostly letters, then spaces, Returns, deletions.
    int key(bool withDelete = true)
    {
        const int r = int(m_gen.bounded(100));
        if (r < 55)
            return letter();
        if (r < 70)
            return kSpace;
        if (r < 80)
            return kReturn;
        if (r < 92 || !withDelete)
            return kBack;
        return kDelete;
    }

    Script make(const ScriptOptions& o)
    {
        Script script;
        const int n = 1 + int(m_gen.bounded(o.maxSteps));
        for (int i = 0; i < n; ++i) {
            Step s;
            const int r = int(m_gen.bounded(100));
            if (r < 52) {
                s.kind = Step::Key;
                s.keys = {key()};
            } else if (r < 62) {
                s.kind = Step::Held;
                const int k = key(false);
                s.keys = {k == kReturn ? letter() : k};
                s.count = 2 + int(m_gen.bounded(5));
            } else if (r < 74) {
                s.kind = Step::Burst;
                const int m = 2 + int(m_gen.bounded(3));
                for (int j = 0; j < m; ++j) {
                    int k = int(m_gen.bounded(10)) < 7 ? letter() : key(false);
                    if (k == kBack && !o.burstDeletions)
                        k = letter();
                    s.keys << k;
                }
            } else if (r < 82) {
                s.kind = Step::Paste;
                static const QStringList texts = {"hi", "two words", "line\r\nbreak", "x", "a b c "};
                s.text = texts.at(int(m_gen.bounded(int(texts.size()))));
            } else if (o.onlyAtEnd) {
                s.kind = Step::Key;
                s.keys = {letter()};
            } else if (r < 91) {
                s.kind = Step::Caret;
                s.at = int(m_gen.bounded(1001));
                // A caret move is followed by what is done there.
                script << s;
                s = Step();
                s.kind = Step::Key;
                s.keys = {int(m_gen.bounded(3)) == 0 ? kDelete : key()};
            } else {
                s.kind = Step::Select;
                s.at = int(m_gen.bounded(1001));
                s.span = 1 + int(m_gen.bounded(400));
                script << s;
                s = Step();
                const int what = int(m_gen.bounded(4));
                if (what == 0) {
                    s.kind = Step::Paste;
                    s.text = QStringLiteral("new");
                } else {
                    s.kind = Step::Key;
                    s.keys = {what == 1 ? kDelete : what == 2 ? kBack : letter()};
                }
            }
            script << s;
        }
        return script;
    }

private:
    QRandomGenerator m_gen;
};

// Cuts a failing script down: drops steps, then shortens held keys, bursts
// and pastes, as long as it still fails. fails() runs the script from a
// fresh start and returns the failure, or nothing when it passes.
inline Script shrink(Script script,
                     const std::function<std::optional<QString>(const Script&)>& fails)
{
    bool progress = true;
    while (progress) {
        progress = false;
        for (qsizetype i = 0; i < script.size(); ++i) {
            Script shorter = script;
            shorter.removeAt(i);
            if (fails(shorter)) {
                script = shorter;
                progress = true;
                --i;
            }
        }
        for (qsizetype i = 0; i < script.size(); ++i) {
            Step& s = script[i];
            Script simpler = script;
            if (s.kind == Step::Held && s.count > 2)
                simpler[i].count = s.count - 1;
            else if (s.kind == Step::Burst && s.keys.size() > 2)
                simpler[i].keys.removeLast();
            else if (s.kind == Step::Paste && s.text.size() > 1)
                simpler[i].text.chop(1);
            else
                continue;
            if (fails(simpler)) {
                script = simpler;
                progress = true;
            }
        }
    }
    return script;
}

}  // namespace vonnel::test
