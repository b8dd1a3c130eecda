// This side's enciphering of the inner text of wrapped frames.

#include "access/Encryption.h"
#include "shell/FrmMain.h"

namespace vonnel {

QString FrmMain::encipher(const QString& inner) const
{
    return encryption().genEPass(inner, sessionKey);
}

}  // namespace vonnel
