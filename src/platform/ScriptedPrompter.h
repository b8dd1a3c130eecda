#pragma once
// Answers every box from a script, in order, and records what was asked.
// Used by tests and by --headless, where each request is also written to
// stderr as one line: kind TAB title TAB text TAB answer.

#include "platform/Prompter.h"

#include <QStringList>
#include <cstdio>

namespace vonnel {

struct PromptRecord {
    QString kind;  // "box", "file", "input" or "notice"
    QString title;
    QString text;
    QString answer;  // as written in the answers file
    int style = 0;   // a box's MsgStyle sum
    QString folder;  // where a file dialog opens
};

class ScriptedPrompter : public Prompter {
public:
    explicit ScriptedPrompter(QStringList answers = {}, FILE* echo = nullptr);

    static QStringList loadAnswers(const QString& path);
    void addAnswers(const QStringList& answers) { m_answers += answers; }

    Answer box(const BoxRequest& request) override;
    std::optional<QString> input(const QString& title, const QString& prompt,
                                 const QString& defaultText) override;
    QString file(const FileRequest& request) override;
    void notice(const QString& title, const QString& text) override;

    const QList<PromptRecord>& records() const { return m_records; }
    // Records of one kind whose title or text contains the needle.
    int count(const QString& needle) const;
    bool asked(const QString& needle) const { return count(needle) > 0; }
    void clearRecords() { m_records.clear(); }

    static QString escapeField(const QString& s);

private:
    QString nextAnswer();
    QString answerFile(const FileRequest& request);
    void record(const QString& kind, const QString& title, const QString& text,
                const QString& answer);

    QStringList m_answers;
    QList<PromptRecord> m_records;
    FILE* m_echo;
};

}  // namespace vonnel
