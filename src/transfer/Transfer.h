#pragma once
// File transfer: one file at a time, stop-and-wait, with pause, hold and cancel.

#include <QObject>

namespace vonnel {

class FrmMain;

class Transfer : public QObject {
    Q_OBJECT
public:
    explicit Transfer(FrmMain& frm);

private:
    FrmMain& m_frm;
};

}  // namespace vonnel
