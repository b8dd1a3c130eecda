// Bringing the main window back, from the tray or for a session.

#include "access/Encryption.h"
#include "access/PasswordStore.h"
#include "shell/FrmMain.h"
#include "shell/Views.h"

namespace vonnel {

void FrmMain::ShowMain()
{
    if (WindowContext == QLatin1String("Scrivet")) {
        views().showModeless(QStringLiteral("frmDraw"));
        return;
    }
    // A window put away in the tray or minimised is locked while a
    // second-level password applies.
    const bool away = !isVisible() || windowState() == vbMinimized;
    if (away && !encryption().passwords().secondLevelUnlocked())
        return;
    setWindowState(vbNormal);
    setVisible(true);
    txtServer.caretToEnd();
    TrayOnly = 0;
    setTrayTip(kTitle);  // the caller it named is in sight now
    controls.setEnabled(QStringLiteral("mnuTray"), true);
    views().raiseMain();
}

}  // namespace vonnel
