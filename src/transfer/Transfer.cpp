#include "transfer/Transfer.h"

#include "shell/FrmMain.h"

namespace vonnel {

Transfer::Transfer(FrmMain& frm) : QObject(&frm), m_frm(frm) {}

}  // namespace vonnel
