// The menus' texts and switches on the main form, and the language picker.

#include "access/Encryption.h"
#include "access/PasswordStore.h"
#include "core/Views.h"
#include "shell/FrmMain.h"
#include "shell/MenuRoutines.h"
#include "wire/PresetMessages.h"

namespace vonnel {

void FrmMain::SetMsgMnu()
{
    presets().SetMsgMnu();
}

void FrmMain::TransMenu()
{
    vonnel::TransMenu(ctx(), model().controls);
    // The minimise entry's caption says whether it also locks.
    encryption().passwords().applyMenuState();
    ctx().setMenuTexts();
}

void FrmMain::miniMenu()
{
    vonnel::miniMenu(ctx(), model().controls);
}

void FrmMain::showLanguagePicker()
{
    ctx().views().runModal(Form::frmPopMsg);
}

void FrmMain::languageApplied()
{
    TransMenu();
    Q_EMIT languageChanged();
}

}  // namespace vonnel
