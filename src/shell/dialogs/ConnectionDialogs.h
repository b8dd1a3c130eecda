#pragma once
// Windows of the connection dialogs: frmLogin, frmProperty, frmIPBlocking
// and frmIPPermit. Each binds to its logic object and only shows it.

#include "core/Form.h"

#include <optional>

class QWidget;

namespace vonnel {

class FrmMain;

// Runs the dialog modally over parent. No value when the form is not one
// of these four; otherwise whether it was left with OK.
std::optional<bool> runConnectionDialog(FrmMain& frm, Form form, QWidget* parent);

}  // namespace vonnel
