#pragma once
// The receive entry: every arrival is taken apart in passes and each message handed to its handler.

#include <QObject>

namespace vonnel {

class FrmMain;

class Receiver : public QObject {
    Q_OBJECT
public:
    explicit Receiver(FrmMain& frm);

private:
    FrmMain& m_frm;
};

}  // namespace vonnel
