#include "platform/ScriptedPrompter.h"

#include <QRegularExpression>

#include <QFile>

namespace vonnel {

ScriptedPrompter::ScriptedPrompter(QStringList answers, FILE* echo)
    : m_answers(std::move(answers)), m_echo(echo)
{
}

QStringList ScriptedPrompter::loadAnswers(const QString& path)
{
    QStringList out;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return out;
    const QList<QByteArray> lines = f.readAll().split('\n');
    for (QByteArray line : lines) {
        if (line.endsWith('\r'))
            line.chop(1);
        if (line.trimmed().isEmpty())
            continue;
        out << QString::fromUtf8(line);
    }
    return out;
}

QString ScriptedPrompter::escapeField(const QString& s)
{
    QString out;
    out.reserve(s.size());
    for (QChar c : s) {
        switch (c.unicode()) {
        case '\\': out += QLatin1String("\\\\"); break;
        case '\r': out += QLatin1String("\\r"); break;
        case '\n': out += QLatin1String("\\n"); break;
        case '\t': out += QLatin1String("\\t"); break;
        default:
            // Other control bytes (a peer's text may hold any) must not
            // reach a terminal or break the one-line-per-dialog contract.
            if (c.unicode() < 32 || c.unicode() == 127)
                out += QStringLiteral("\\x") +
                       QString::number(c.unicode(), 16).rightJustified(2, QLatin1Char('0')).toUpper();
            else
                out += c;
        }
    }
    return out;
}

QString ScriptedPrompter::nextAnswer()
{
    return m_answers.isEmpty() ? QString() : m_answers.takeFirst();
}

void ScriptedPrompter::record(const QString& kind, const QString& title, const QString& text,
                              const QString& answer)
{
    m_records.append({kind, title, text, answer});
    if (m_echo) {
        const QByteArray line = (kind + '\t' + escapeField(title) + '\t' + escapeField(text) +
                                 '\t' + escapeField(answer) + '\n')
                                    .toUtf8();
        std::fwrite(line.constData(), 1, size_t(line.size()), m_echo);
        std::fflush(m_echo);
    }
}

Answer ScriptedPrompter::box(const BoxRequest& request)
{
    const QString scripted = nextAnswer();
    Answer a = answerFromWord(scripted);
    // An answer the box does not offer falls back to its default button.
    if (a == Answer::None || !request.buttons().contains(a))
        a = request.defaultAnswer();
    record(QStringLiteral("box"), request.title, request.text, answerWord(a));
    m_records.last().style = request.style;
    return a;
}

std::optional<QString> ScriptedPrompter::input(const QString& title, const QString& prompt,
                                               const QString&)
{
    const QString scripted = nextAnswer();
    if (scripted.startsWith(QLatin1String("text:"))) {
        const QString value = scripted.mid(5);
        record(QStringLiteral("input"), title, prompt, scripted);
        return value;
    }
    record(QStringLiteral("input"), title, prompt, QStringLiteral("cancel"));
    return std::nullopt;
}

void ScriptedPrompter::notice(const QString& title, const QString& text)
{
    record(QStringLiteral("notice"), title, text, QString());
}

QString ScriptedPrompter::file(const FileRequest& request)
{
    const QString answer = answerFile(request);
    m_records.last().folder = request.folder;
    return answer;
}

QString ScriptedPrompter::answerFile(const FileRequest& request)
{
    const QString scripted = nextAnswer();
    const QString text = request.proposedName.isEmpty() ? request.filter : request.proposedName;
    if (request.filterIndex)
        *request.filterIndex = 1;
    if (scripted.startsWith(QLatin1String("file:"))) {
        record(QStringLiteral("file"), request.title, text, scripted);
        return scripted.mid(5);
    }
    // "file<n>:path" answers with the n-th filter selected.
    static const QRegularExpression withFilter(QStringLiteral("^file(\\d+):"));
    const QRegularExpressionMatch m = withFilter.match(scripted);
    if (m.hasMatch()) {
        if (request.filterIndex)
            *request.filterIndex = m.captured(1).toInt();
        record(QStringLiteral("file"), request.title, text, scripted);
        return scripted.mid(m.capturedLength(0));
    }
    record(QStringLiteral("file"), request.title, text, QStringLiteral("cancel"));
    return QString();
}

int ScriptedPrompter::count(const QString& needle) const
{
    int n = 0;
    for (const PromptRecord& r : m_records)
        if (r.title.contains(needle) || r.text.contains(needle))
            ++n;
    return n;
}

}  // namespace vonnel
