#pragma once
// frmAutoIP, AutoNotify: the stations that answered the last check, with
// "Chat" to call one, a view on the copy's AutoNotify.

#include <QDialog>

class QLabel;
class QListWidget;
class QMenu;

namespace vonnel {

class FrmMain;
class AutoNotify;

class AutoIPWindow : public QDialog {
    Q_OBJECT
public:
    explicit AutoIPWindow(FrmMain& frm, QWidget* parent = nullptr);

    QListWidget* lstOnlineIP() const { return m_list; }
    QLabel* stbTime() const { return m_time; }

Q_SIGNALS:
    // mnuSetting: frmAutoConnect is to open.
    void settingRequested();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void refreshList();
    void chat();

    FrmMain& m_frm;
    AutoNotify& m_model;
    QListWidget* m_list;
    QLabel* m_time;
    QMenu* m_pop = nullptr;
};

}  // namespace vonnel
