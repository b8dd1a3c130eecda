#pragma once
// A prompter that answers from a script and keeps what it was asked.

#include "platform/Prompter.h"

namespace vonnel::test {

struct FakePrompter : Prompter {
    QList<Answer> answers;    // in order; Ok when used up
    QStringList fileAnswers;  // in order; cancelled when used up
    QList<BoxRequest> boxes;
    QList<FileRequest> files;

    Answer box(const BoxRequest& r) override
    {
        boxes.append(r);
        return answers.isEmpty() ? Answer::Ok : answers.takeFirst();
    }
    std::optional<QString> input(const QString&, const QString&, const QString&) override { return {}; }
    QString file(const FileRequest& r) override
    {
        files.append(r);
        return fileAnswers.isEmpty() ? QString() : fileAnswers.takeFirst();
    }
};

}  // namespace vonnel::test
