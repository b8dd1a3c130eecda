#pragma once
// The session key and enciphered text of a session.

#include <QObject>

namespace vonnel {

class FrmMain;

class Encryption : public QObject {
    Q_OBJECT
public:
    explicit Encryption(FrmMain& frm);

private:
    FrmMain& m_frm;
};

}  // namespace vonnel
