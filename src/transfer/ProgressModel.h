#pragma once
// frmProgress as the transfer logic sees it: captions, tags, tool tips,
// enabled and visible flags, the labels and the bar. A window binds to it
// when there are windows; without them (headless, tests) it is the whole
// of the progress window.

#include <QColor>
#include <QObject>
#include <QString>

namespace vonnel {

struct ProgressButton {
    QString caption;  // as shown (translated)
    QString tag;      // the untranslated word the logic compares
    QString toolTip;
    bool enabled = true;
    bool visible = true;
};

struct ProgressLabel {
    QString text;
    bool visible = true;
    QColor color = Qt::black;
};

class ProgressModel : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    bool loaded = false;
    bool minimized = false;
    QString caption;
    QString txtSendRec;  // "Sending File" or "Receiving File"
    ProgressButton cmdPause;
    ProgressButton cmdCancel;
    bool chkCloseProgress = false;
    bool chkCloseProgressVisible = true;
    ProgressLabel lblProgress;
    QString lblFinished;
    QString lblFilesize;
    QString lblFilename;
    int prbProgress = 0;

    // The window's values at load.
    void reset();
    // The views are to show the model again.
    void refresh() { Q_EMIT changed(); }

Q_SIGNALS:
    void changed();
    void loadedChanged(bool loaded);
};

}  // namespace vonnel
