#pragma once
// What the session logic asks of windows beyond boxes: showing the main
// window and running the program's own dialogs. Without windows (headless,
// tests) nothing is shown and a modal dialog returns at once as if closed.

#include "core/Form.h"

namespace vonnel {

class Views {
public:
    virtual ~Views() = default;
    // Runs the dialog (frmProperty, frmLogin ...) modally. A headless run
    // returns false at once: the dialog was closed without OK.
    virtual bool runModal(Form form) { (void)form; return false; }
    virtual void showModeless(Form form) { (void)form; }
    virtual void unload(Form form) { (void)form; }
    virtual bool isVisible(Form form) const { (void)form; return false; }
    // Brings the main window to the front (topmost, then not topmost).
    virtual void raiseMain() {}
};

}  // namespace vonnel
