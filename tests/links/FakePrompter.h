#pragma once
// A prompter that answers from a script and keeps what it was asked.

#include "platform/Prompter.h"

#include <QList>

namespace vonnel::test {

class FakePrompter : public Prompter {
public:
    QList<Answer> answers;     // taken in order; the box's default when used up
    QStringList fileAnswers;   // taken in order; cancelled when used up
    QList<BoxRequest> boxes;
    QList<FileRequest> files;

    Answer box(const BoxRequest& request) override
    {
        boxes.append(request);
        return answers.isEmpty() ? Answer::Ok : answers.takeFirst();
    }
    std::optional<QString> input(const QString&, const QString&, const QString&) override
    {
        return std::nullopt;
    }
    QString file(const FileRequest& request) override
    {
        files.append(request);
        return fileAnswers.isEmpty() ? QString() : fileAnswers.takeFirst();
    }
};

}  // namespace vonnel::test
