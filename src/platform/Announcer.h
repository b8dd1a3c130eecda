#pragma once
// Tells a screen reader something without moving the focus. A small label
// of the window, seen by the reader as a notification, takes the words and
// shows anew: a reader speaks a notification as it appears, whatever has
// the focus. Its name is the words.

#include <QLabel>
#include <QString>

class QWidget;

namespace vonnel {

class Announcer : public QLabel {
    Q_OBJECT
public:
    // Words past this are cut: a peer's long text is the pane's to read.
    static constexpr int kTextLimit = 500;

    // One pixel in the host's corner, behind the rest, so the reader counts
    // it as showing while nobody sees it.
    explicit Announcer(QWidget& host);

    void announce(const QString& text);
};

}  // namespace vonnel
