// Bringing the main window back, from the tray or for a session.

#include "core/Views.h"
#include "access/Encryption.h"
#include "access/PasswordStore.h"
#include "board/Scrivet.h"
#include "shell/FrmMain.h"
#include "core/Views.h"
#include "core/CopyContext.h"

namespace vonnel {

void FrmMain::ShowMain()
{
    if (WindowContext == QLatin1String("Scrivet")) {
        scrivet().showWindow();
        return;
    }
    if (!awayLockPassed())
        return;
    model().setWindowState(MainModel::vbNormal);
    model().setVisible(true);
    model().txtServer.caretToEnd();
    TrayOnly = 0;
    trayMouseMove();  // the caller it named is in sight now; the tip says the state again
    model().controls.setEnabled(Control::mnuTray, true);
    ctx().views().raiseMain();
}

bool FrmMain::awayLockPassed()
{
    // A window put away in the tray or minimised is locked while a
    // second-level password applies.
    return !model().isAway() || encryption().passwords().secondLevelUnlocked();
}

}  // namespace vonnel
