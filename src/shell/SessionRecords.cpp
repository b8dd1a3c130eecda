#include "shell/SessionRecords.h"

#include "shell/FrmMain.h"

namespace vonnel {

SessionRecords::SessionRecords(FrmMain& frm) : QObject(&frm), m_frm(frm) {}

}  // namespace vonnel
