#pragma once
// Live typing: key events of the local pane become frames as they are typed.

#include <QObject>

namespace vonnel {

class FrmMain;

class LiveTyping : public QObject {
    Q_OBJECT
public:
    explicit LiveTyping(FrmMain& frm);

private:
    FrmMain& m_frm;
};

}  // namespace vonnel
