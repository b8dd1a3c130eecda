#pragma once
// frmNetView: the sweep of the own networks, a view on the copy's
// NetViewModel. The address box with Ping, Check and Abort, the list of
// stations that answered, the status line, and the menus of the views, the
// networks and the list.

#include <QDialog>

class QAction;
class QLineEdit;
class QListWidget;
class QMenu;
class QPushButton;

namespace vonnel {

class FrmMain;
class NetViewModel;

class NetViewWindow : public QDialog {
    Q_OBJECT
public:
    explicit NetViewWindow(FrmMain& frm, QWidget* parent = nullptr);

    QListWidget* lstPing() const { return m_list; }
    QLineEdit* txtPing() const { return m_ping; }
    QLineEdit* txtInfo() const { return m_info; }
    QPushButton* cmdAbort() const { return m_abort; }

    // mnuSpecific: frmNetRange, and its range swept when it is left by View.
    void mnuSpecific_Click();
    void mnuSave_Click();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildMenus();
    void refreshList();
    void refreshSweeping(bool sweeping);
    void showHint(int row);

    FrmMain& m_frm;
    NetViewModel& m_model;
    QLineEdit* m_ping;
    QLineEdit* m_info;
    QListWidget* m_list;
    QPushButton* m_pingButton;
    QPushButton* m_check;
    QPushButton* m_abort;
    QMenu* m_pop = nullptr;
    QList<QMenu*> m_startingMenus;  // mnuFile, mnuView, mnuNetwork
    int m_hintRow = -1;
};

}  // namespace vonnel
