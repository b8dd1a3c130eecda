#include "wire/LiveTyping.h"

#include "shell/FrmMain.h"

namespace vonnel {

LiveTyping::LiveTyping(FrmMain& frm) : QObject(&frm), m_frm(frm) {}

}  // namespace vonnel
