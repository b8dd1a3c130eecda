#include "shell/PaneText.h"

#include <QPlainTextEdit>
#include <QString>
#include <QTextCursor>
#include <QTextDocument>

namespace vonnel {

void showPaneText(QPlainTextEdit& view, const QString& text)
{
    const QString current = view.toPlainText();
    if (current == text)
        return;
    // Edits kept for undo would grow with every arrival; the model is the
    // pane's truth anyway.
    view.setUndoRedoEnabled(false);
    QTextCursor at(view.document());
    if (text.startsWith(current)) {
        at.movePosition(QTextCursor::End);
        at.insertText(text.mid(current.size()));
    } else if (current.startsWith(text)) {
        at.setPosition(int(text.size()));
        at.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
        at.removeSelectedText();
    } else {
        view.setPlainText(text);
    }
    view.moveCursor(QTextCursor::End);
}

}  // namespace vonnel
