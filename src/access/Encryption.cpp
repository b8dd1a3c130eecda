#include "access/Encryption.h"

#include "shell/FrmMain.h"

namespace vonnel {

Encryption::Encryption(FrmMain& frm) : QObject(&frm), m_frm(frm) {}

}  // namespace vonnel
