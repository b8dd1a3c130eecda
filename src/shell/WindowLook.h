#pragma once
// How the program's windows look beyond their contents: the transparency
// read from Settings-Transparent when a window loads, and the window kept
// above the others while mnuViewontop is checked.

#include <QString>

class QWidget;

namespace vonnel {

class CopyContext;
class FrmMain;

struct Transparency {
    int alpha = 255;         // 255: solid
    bool writeBack = false;  // the key is to be written as 255
};

// The rule: a value below 50 is taken as 255 and written back, so that no
// window is made almost invisible by hand; 255 and above is solid.
Transparency transparencyOf(const QString& keyText);

// Form_Load of the main window and of each dialog.
void applyTransparency(QWidget* window, CopyContext& ctx);

// StayOnTop: above the others while mnuViewontop is checked, not otherwise;
// nothing once the copy is ending.
void StayOnTop(QWidget* form, FrmMain& frm);

// Runs applyTransparency on the first show of every dialog of the
// copy (the program's own windows, not the system's boxes and pickers).
void watchDialogLoads(QWidget* mainWindow, FrmMain& frm);

}  // namespace vonnel
