#pragma once
// frmNetView's mnuSave: the list as a text file at a place the user names.

#include <QString>

namespace vonnel {

class Prompter;

// Asks for the file (title "Save", all files or text files, ".txt" added to
// a bare name), asks before overwriting, and writes the text in the code
// page. Returns the path written; "" when cancelled, refused or failed (a
// failure is told as "Save Ping List Error: " and the reason).
QString saveNetViewList(Prompter& prompter, const QString& listText);

}  // namespace vonnel
