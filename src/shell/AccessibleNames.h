#pragma once
// Accessible names for controls that have no text of their own: a screen
// reader says what the user sees beside or on the control (its label, its
// group, its tool tip, its placeholder), the texts the windows already
// show through the translator. Run when a window of the copy is shown, so
// each dialog gets it without code of its own.

#include <QString>

class QWidget;

namespace vonnel {

// The name a control's surroundings give it, or empty when it has none or
// needs none (a button with a text, a label, a plain container).
QString derivedAccessibleName(const QWidget* control);

// Names one control when it has no name set by hand. A name set here is
// renewed, so that a label changed since (language, state) is followed.
void nameControl(QWidget* control);

// Names every unnamed control under root (root included, hidden pages of
// tabs and stacks too).
void nameUnnamedControls(QWidget* root);

}  // namespace vonnel
