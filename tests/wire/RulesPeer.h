#pragma once
// A peer that types by the sending rules alone, written from them and not
// from our sender: its own pane as a string, the gathered key codes, and
// the frames the rules make of each key event. The test holds its socket.
//
// What the rules cannot say it follows with its whole text ("^Clr", its
// format, one "<Paste> " frame), as our sender does: here only the Delete
// key in the middle of the pane, the one edit before the end that the rules
// allow. It answers "^reFresh" as the rules say.

#include "core/Cp1252.h"
#include "access/CipherText.h"
#include "core/IniStore.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <functional>

namespace vonnel::test {

class RulesPeer {
public:
    std::function<void(const QByteArray&)> write;
    QString key;  // empty: encryption off
    QString text;
    int caret = 0;
    int selection = 0;
    QByteArray format = "^ffArial^fbFalse^fiFalse^fs10^fc0^bc16777215^>";

    // A key press with its character ("" for keys that have none).
    void press(int code, const QString& character)
    {
        if (code == 46) {  // no key press: the control deletes at the caret
            deleteForward();
            return;
        }
        if (character.isEmpty())
            return;
        if (text.isEmpty() && !m_keySent)
            firstTyping();
        caret = int(text.size());  // typing always goes on at the end
        selection = 0;
        m_pressed << code;
        m_sameKeys = true;
        for (int c : m_pressed)
            m_sameKeys = m_sameKeys && c == m_pressed.first();
        if (code == 13) {
            keyUp(13);  // handled at its press, before the break is in
            text += QStringLiteral("\r\n");
        } else if (code == 8) {
            if (text.endsWith(QLatin1String("\r\n")))
                text.chop(2);
            else
                text.chop(1);
        } else {
            text += QChar(code);
        }
        caret = int(text.size());
    }

    void release(int code) { keyUp(code); }

    void paste(const QString& pasted)
    {
        send(wrap("<Paste> ", pasted, "</Paste>"));
        text += pasted;  // kept text followed by the paste
        caret = int(text.size());
        selection = 0;
    }

    // Bytes that came from the copy: a "^reFresh" is answered.
    void received(const QByteArray& bytes)
    {
        for (qsizetype at = bytes.indexOf("^reFresh"); at >= 0;
             at = bytes.indexOf("^reFresh", at + 1))
            resend();
    }

    void resend()
    {
        if (!key.isEmpty() && !m_keySent)
            send("tt:=" + toCp1252(key) + "=:tt");
        send("^Clr");
        send(format);
        send(wrap("<Paste> ", text, "</Paste>"));
    }

private:
    void send(const QByteArray& frame) { write(frame); }

    QByteArray wrap(const char* open, const QString& inner, const char* close) const
    {
        const QByteArray plain = toCp1252(inner);
        return QByteArray(open) + (key.isEmpty() ? plain : genEPass(plain, toCp1252(key))) + close;
    }

    void firstTyping()
    {
        if (!key.isEmpty()) {
            send("tt:=" + toCp1252(key) + "=:tt");
            m_keySent = true;
        }
        send(format);
    }

    void deleteForward()
    {
        int from = caret, n = selection;
        if (n == 0) {
            if (caret >= text.size())
                return;
            n = text.mid(caret, 2) == QLatin1String("\r\n") ? 2 : 1;
        }
        text.remove(from, n);
        caret = from;
        selection = 0;
        m_deletedInside = true;
    }

    static QByteArray number(qsizetype n) { return QByteArray::number(n); }

    void keyUp(int keyCode)
    {
        const int K = m_pressed.isEmpty() ? 0 : m_pressed.last();
        const qsizetype len = text.size();
        if (m_sameKeys) {
            if (K == 8 || keyCode == 46) {
                send("^BK" + number(len) + "#BK");
                m_lineMark = int(text.lastIndexOf(QLatin1String("\r\n")) + 1);
            } else if (K == 13) {
                send("^RETURN" + number(len) + "#RETURN");
                QString line = text.mid(m_lineMark).trimmed();
                m_lineMark = int(len);
                send(wrap("<MSG> ", line, " </MSG>"));
            } else if (K == 32) {
                send("^SPC" + number(len) + "#SPC");
            } else if (K != 27) {
                send(wrap("<KEY> ", QString(QChar(K)), " <:KEY>") + number(len) + "</KEY>");
            }
        } else {
            QString block;
            int returns = 0, deletions = 0;
            const qsizetype behind = len - m_pressed.size();
            auto flush = [&] {
                if (!block.isEmpty())
                    send(wrap("<Paste> ", block, "</Paste>"));
                block.clear();
            };
            for (int code : m_pressed) {
                if (code == 13) {
                    flush();
                    ++returns;
                } else if (code == 8 || code == 46) {
                    flush();
                    ++deletions;
                } else if (code != 27) {
                    if (returns > 0)
                        send("^RETURN" + number(behind) + "#RETURN");
                    if (deletions > 0)
                        send("^BK" + number(behind) + "#BK");
                    returns = deletions = 0;
                    block += QChar(code);
                }
            }
            if (returns > 0)
                send("^RETURN" + number(len) + "#RETURN");
            if (deletions > 0)
                send("^BK" + number(len) + "#BK");
            flush();
        }
        m_pressed.clear();
        if (keyCode == 46 && m_deletedInside)
            resend();
        m_deletedInside = false;
    }

    QList<int> m_pressed;
    bool m_sameKeys = false;
    bool m_keySent = false;
    bool m_deletedInside = false;
    int m_lineMark = 0;
};

}  // namespace vonnel::test
