#pragma once
// Session records: the text of a session saved at its end and by hand.

#include <QObject>

namespace vonnel {

class FrmMain;

class SessionRecords : public QObject {
    Q_OBJECT
public:
    explicit SessionRecords(FrmMain& frm);

private:
    FrmMain& m_frm;
};

}  // namespace vonnel
