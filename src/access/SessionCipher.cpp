// This side's enciphering of the inner text of wrapped frames.

#include "access/CipherText.h"
#include "core/IniStore.h"
#include "shell/FrmMain.h"

namespace vonnel {

QString FrmMain::encipher(const QString& inner) const
{
    return fromCp1252(genEPass(toCp1252(inner), toCp1252(sessionKey)));
}

}  // namespace vonnel
