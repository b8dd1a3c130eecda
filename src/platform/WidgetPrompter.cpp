#include "platform/WidgetPrompter.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QApplication>
#include <QFontMetrics>
#include <QGridLayout>
#include <QMessageBox>
#include <QSpacerItem>
#include <QPushButton>

namespace vonnel {

namespace {
QMessageBox::StandardButton toStandard(Answer a)
{
    switch (a) {
    case Answer::Ok: return QMessageBox::Ok;
    case Answer::Cancel: return QMessageBox::Cancel;
    case Answer::Abort: return QMessageBox::Abort;
    case Answer::Retry: return QMessageBox::Retry;
    case Answer::Ignore: return QMessageBox::Ignore;
    case Answer::Yes: return QMessageBox::Yes;
    case Answer::No: return QMessageBox::No;
    case Answer::None: break;
    }
    return QMessageBox::NoButton;
}
}  // namespace

Answer WidgetPrompter::box(const BoxRequest& request)
{
    QMessageBox box(m_parent);
    box.setWindowTitle(request.title);
    box.setText(QString(request.text).replace(QLatin1String("\r\n"), QLatin1String("\n"))
                    .replace(QLatin1Char('\r'), QLatin1Char('\n')));
    switch (request.icon()) {
    case MsgStyle::Critical: box.setIcon(QMessageBox::Critical); break;
    case MsgStyle::Question: box.setIcon(QMessageBox::Question); break;
    case MsgStyle::Exclamation: box.setIcon(QMessageBox::Warning); break;
    case MsgStyle::Information: box.setIcon(QMessageBox::Information); break;
    default: box.setIcon(QMessageBox::NoIcon);
    }
    QMessageBox::StandardButtons buttons;
    for (Answer a : request.buttons())
        buttons |= toStandard(a);
    box.setStandardButtons(buttons);
    box.setDefaultButton(toStandard(request.defaultAnswer()));
    if (request.style & MsgStyle::Foreground)
        box.setWindowFlag(Qt::WindowStaysOnTopHint);
    // A short text under a long title made a box too narrow for it: the
    // desktop cut "File Receiving Request" to "File Rece... Request".
    if (auto* grid = qobject_cast<QGridLayout*>(box.layout()))
        grid->addItem(new QSpacerItem(titleRoom(request.title), 0, QSizePolicy::Minimum, QSizePolicy::Minimum),
                      grid->rowCount(), 0, 1, grid->columnCount());
    const int pressed = box.exec();
    for (Answer a : request.buttons())
        if (pressed == toStandard(a))
            return a;
    // Closed with the window's close button: Cancel where offered.
    return request.buttons().contains(Answer::Cancel) ? Answer::Cancel : request.defaultAnswer();
}

int WidgetPrompter::titleRoom(const QString& title)
{
    // Desktops draw titles bold and often larger than the text, beside
    // their close, maximise and minimise buttons.
    QFont f = QApplication::font();
    f.setBold(true);
    f.setPointSizeF(f.pointSizeF() * 1.2);
    return QFontMetrics(f).horizontalAdvance(title) + 3 * QFontMetrics(f).height() + 48;
}

std::optional<QString> WidgetPrompter::input(const QString& title, const QString& prompt,
                                             const QString& defaultText)
{
    bool ok = false;
    const QString text =
        QInputDialog::getText(m_parent, title, prompt, QLineEdit::Normal, defaultText, &ok);
    if (!ok)
        return std::nullopt;
    return text;
}

QString WidgetPrompter::qtFilter(const QString& filter)
{
    if (!filter.contains(QLatin1Char('|')))
        return filter;
    const QStringList parts = filter.split(QLatin1Char('|'));
    QStringList out;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts[i + 1];
        patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
        if (patterns == QLatin1String("*.*"))
            patterns = QStringLiteral("*");
        out << parts[i] + QLatin1String(" (") + patterns + QLatin1Char(')');
    }
    return out.join(QLatin1String(";;"));
}

QString WidgetPrompter::file(const FileRequest& request)
{
    const QString filter = qtFilter(request.filter);
    if (request.save) {
        QString start = request.folder;
        if (!request.proposedName.isEmpty())
            start = (start.isEmpty() ? QString() : start + QLatin1Char('/')) + request.proposedName;
        QString chosen;
        const QString name =
            QFileDialog::getSaveFileName(m_parent, request.title, start, filter, &chosen);
        if (request.filterIndex) {
            const qsizetype i = filter.split(QStringLiteral(";;")).indexOf(chosen);
            *request.filterIndex = i < 0 ? 1 : int(i) + 1;
        }
        return name;
    }
    return QFileDialog::getOpenFileName(m_parent, request.title, request.folder, filter);
}

}  // namespace vonnel
