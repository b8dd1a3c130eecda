#pragma once
// When a caller, a file offer or a ring comes while the main window is
// hidden or minimised, the user hears of it on the desktop as well: one
// notice through the copy's notifier, unless `Desktop Notification` is 0.
// A window in sight says it itself, and no notice is raised.

#include <QObject>
#include <QString>

namespace vonnel {

class CopyContext;
class MainModel;

enum class NoticeKind { Call, FileOffer, Ring };

class DesktopNotice : public QObject {
    Q_OBJECT
public:
    DesktopNotice(CopyContext& ctx, MainModel& model, QObject* parent = nullptr);

    // The decision alone: the window away (hidden or minimised) and the
    // key not 0. A key never written counts as on.
    static bool due(bool windowVisible, int windowState, const QString& keyText);
    // The notice's title for its kind, through the lookup.
    QString title(NoticeKind kind) const;
    // Raises the notice when it is due; true when it went to the notifier.
    // The screen reader's announcement goes out either way.
    bool raise(NoticeKind kind, const QString& detail);

private:
    CopyContext& m_ctx;
    MainModel& m_model;
};

}  // namespace vonnel
