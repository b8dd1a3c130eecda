#pragma once
// Bringing a pane's widget up to its model's text by the smallest edit:
// text added at the end is inserted there, text taken off the end is
// removed, anything else replaces the whole. An insert is what a screen
// reader hears as new text, so arrivals are spoken as they come and
// nothing else is read again.

class QPlainTextEdit;
class QString;

namespace vonnel {

void showPaneText(QPlainTextEdit& view, const QString& text);

}  // namespace vonnel
