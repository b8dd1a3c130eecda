#include "wire/Receiver.h"

#include "shell/FrmMain.h"

namespace vonnel {

Receiver::Receiver(FrmMain& frm) : QObject(&frm), m_frm(frm) {}

}  // namespace vonnel
