#pragma once
// The one seam through which logic asks the user anything. Windows get a
// widget implementation; tests and headless runs get a scripted one.

#include <QString>
#include <QStringList>
#include <optional>

namespace vonnel {

// Message box style numbers, so call sites can be written as the system
// writes them: buttons + icon + default button (+ foreground).
namespace MsgStyle {
constexpr int OkOnly = 0, OkCancel = 1, AbortRetryIgnore = 2, YesNoCancel = 3, YesNo = 4,
              RetryCancel = 5;
constexpr int Critical = 16, Question = 32, Exclamation = 48, Information = 64;
constexpr int DefaultButton1 = 0, DefaultButton2 = 256, DefaultButton3 = 512;
constexpr int Foreground = 65536;
}  // namespace MsgStyle

enum class Answer { None = 0, Ok = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7 };

struct BoxRequest {
    QString title;
    QString text;
    int style = 0;  // MsgStyle sum

    int buttonSet() const { return style & 7; }
    int icon() const { return style & 0x70; }
    // Buttons the box offers, in order.
    QList<Answer> buttons() const;
    // What pressing Enter gives: the default button of the style.
    Answer defaultAnswer() const;
};

struct FileRequest {
    bool save = false;
    QString title;
    QString filter;        // "Text (*.txt)|*.txt|All (*.*)|*.*" or Qt form
    QString proposedName;  // bare name, or empty
    QString folder;
    // Out: the 1-based index of the filter the user left selected (1 when
    // the dialog doesn't say). Optional.
    int* filterIndex = nullptr;
};

class Prompter {
public:
    virtual ~Prompter() = default;
    virtual Answer box(const BoxRequest& request) = 0;
    // Returns std::nullopt when cancelled.
    virtual std::optional<QString> input(const QString& title, const QString& prompt,
                                         const QString& defaultText) = 0;
    // Returns the empty text when cancelled.
    virtual QString file(const FileRequest& request) = 0;
    // Something the user is to know that needs no answer and that windows
    // show in place (the short string of a private session). Headless and
    // in tests it is a line of its own; a window has nothing to add.
    virtual void notice(const QString& /*title*/, const QString& /*text*/) {}

    // Convenience with the system's argument order: text, style, title.
    Answer msgBox(const QString& text, int style = 0, const QString& title = QString());
};

QString answerWord(Answer a);
Answer answerFromWord(const QString& word);

}  // namespace vonnel
