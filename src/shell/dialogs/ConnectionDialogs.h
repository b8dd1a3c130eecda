#pragma once
// Windows of the connection dialogs: frmLogin, frmProperty, frmIPBlocking
// and frmIPPermit. Each binds to its logic object and only shows it.

#include <QString>
#include <optional>

class QWidget;

namespace vonnel {

class FrmMain;

// Runs the named dialog modally over parent. No value when the form is
// not one of these four; otherwise whether it was left with OK.
std::optional<bool> runConnectionDialog(FrmMain& frm, const QString& form, QWidget* parent);

}  // namespace vonnel
