#pragma once
// frmProgress as the transfer logic sees it: captions, tags, tool tips,
// enabled and visible flags, the labels and the bar. A window binds to it
// when there are windows; without them (headless, tests) it is the whole
// of the progress window.

#include <QColor>
#include <QObject>
#include <QString>

#include "core/Watched.h"

namespace vonnel {

struct ProgressButton {
    explicit ProgressButton(FieldOwner* owner = nullptr)
        : caption(owner), tag(owner), toolTip(owner), enabled(owner, true), visible(owner, true)
    {
    }
    Watched<QString> caption;  // as shown (translated)
    Watched<QString> tag;      // the untranslated word the logic compares
    Watched<QString> toolTip;
    Watched<bool> enabled;
    Watched<bool> visible;
};

struct ProgressLabel {
    explicit ProgressLabel(FieldOwner* owner = nullptr)
        : text(owner), visible(owner, true), color(owner, QColor(Qt::black))
    {
    }
    Watched<QString> text;
    Watched<bool> visible;
    Watched<QColor> color;
};

// Every field tells the views when it changes: changed(), or for loaded
// loadedChanged().
class ProgressModel : public QObject, public FieldOwner {
    Q_OBJECT
public:
    using QObject::QObject;

    Watched<bool> loaded{this, false};
    Watched<bool> minimized{this, false};
    Watched<QString> caption{this};
    Watched<QString> txtSendRec{this};  // "Sending File" or "Receiving File"
    ProgressButton cmdPause{this};
    ProgressButton cmdCancel{this};
    Watched<bool> chkCloseProgress{this, false};
    Watched<bool> chkCloseProgressVisible{this, true};
    ProgressLabel lblProgress{this};
    Watched<QString> lblFinished{this};
    Watched<QString> lblFilesize{this};
    Watched<QString> lblFilename{this};
    Watched<int> prbProgress{this, 0};

    // The window's values at load.
    void reset();

Q_SIGNALS:
    void changed();
    void loadedChanged(bool loaded);

private:
    void fieldChanged(const void* field) override;
};

}  // namespace vonnel
