#pragma once
// frmNetResolve: a host name to an address or back, a view on the copy's
// NetResolve. Enter in either box converts; the result lands in the other.

#include <QDialog>

class QLineEdit;
class QPushButton;

namespace vonnel {

class FrmMain;
class NetResolve;

class NetResolveWindow : public QDialog {
    Q_OBJECT
public:
    explicit NetResolveWindow(FrmMain& frm, QWidget* parent = nullptr);

    QLineEdit* txtIP() const { return m_ip; }
    QLineEdit* txtHost() const { return m_host; }

private:
    FrmMain& m_frm;
    NetResolve& m_model;
    QLineEdit* m_ip;
    QLineEdit* m_host;
    QPushButton* m_resolve;
    QPushButton* m_reset;
};

}  // namespace vonnel
