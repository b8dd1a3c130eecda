#pragma once
// The private session at a glance: what the session is (old wire, private,
// verified), the short string to read to the peer, the peer's key and our
// own, and "Verified" once the two strings were found the same.

#include <QDialog>

class QLabel;
class QPushButton;

namespace vonnel {

class FrmMain;
class PrivateLink;

class PrivateSessionDialog : public QDialog {
    Q_OBJECT
public:
    explicit PrivateSessionDialog(FrmMain& frm, QWidget* parent = nullptr);

private:
    void refresh();

    FrmMain& m_frm;
    PrivateLink& m_link;
    QLabel* m_state = nullptr;
    QLabel* m_string = nullptr;
    QLabel* m_peerKey = nullptr;
    QLabel* m_ownKey = nullptr;
    QLabel* m_hint = nullptr;
    QPushButton* m_verify = nullptr;
};

}  // namespace vonnel
