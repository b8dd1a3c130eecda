#pragma once
// What the session logic asks of windows beyond boxes: showing the main
// window and running the program's own dialogs. Without windows (headless,
// tests) nothing is shown and a modal dialog returns at once as if closed.

#include <QString>

namespace vonnel {

class Views {
public:
    virtual ~Views() = default;
    // Runs the named dialog (frmProperty, frmLogin ...) modally. A headless
    // run returns false at once: the dialog was closed without OK.
    virtual bool runModal(const QString& form) { (void)form; return false; }
    virtual void showModeless(const QString& form) { (void)form; }
    virtual void unload(const QString& form) { (void)form; }
    virtual bool isVisible(const QString& form) const { (void)form; return false; }
    // Brings the main window to the front (topmost, then not topmost).
    virtual void raiseMain() {}
};

}  // namespace vonnel
