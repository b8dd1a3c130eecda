#include "platform/Prompter.h"

namespace vonnel {

QList<Answer> BoxRequest::buttons() const
{
    switch (buttonSet()) {
    case MsgStyle::OkCancel: return {Answer::Ok, Answer::Cancel};
    case MsgStyle::AbortRetryIgnore: return {Answer::Abort, Answer::Retry, Answer::Ignore};
    case MsgStyle::YesNoCancel: return {Answer::Yes, Answer::No, Answer::Cancel};
    case MsgStyle::YesNo: return {Answer::Yes, Answer::No};
    case MsgStyle::RetryCancel: return {Answer::Retry, Answer::Cancel};
    default: return {Answer::Ok};
    }
}

Answer BoxRequest::defaultAnswer() const
{
    const QList<Answer> all = buttons();
    int index = 0;
    if (style & MsgStyle::DefaultButton3)
        index = 2;
    else if (style & MsgStyle::DefaultButton2)
        index = 1;
    return index < all.size() ? all[index] : all.first();
}

Answer Prompter::msgBox(const QString& text, int style, const QString& title)
{
    return box(BoxRequest{title.isEmpty() ? QStringLiteral("Vonnel") : title, text, style});
}

QString answerWord(Answer a)
{
    switch (a) {
    case Answer::Ok: return QStringLiteral("ok");
    case Answer::Cancel: return QStringLiteral("cancel");
    case Answer::Abort: return QStringLiteral("abort");
    case Answer::Retry: return QStringLiteral("retry");
    case Answer::Ignore: return QStringLiteral("ignore");
    case Answer::Yes: return QStringLiteral("yes");
    case Answer::No: return QStringLiteral("no");
    case Answer::None: break;
    }
    return QStringLiteral("none");
}

Answer answerFromWord(const QString& word)
{
    const QString w = word.trimmed().toLower();
    for (Answer a : {Answer::Ok, Answer::Cancel, Answer::Abort, Answer::Retry, Answer::Ignore,
                     Answer::Yes, Answer::No})
        if (answerWord(a) == w)
            return a;
    return Answer::None;
}

}  // namespace vonnel
