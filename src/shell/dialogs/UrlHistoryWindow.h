#pragma once
// frmURLHistory: the addresses seen in sessions beside their descriptions,
// a view on the copy's UrlHistory. The lists, the file and every question
// are the links library's; this window only shows them and hands on clicks.

#include <QDialog>

class QLabel;
class QLineEdit;
class QListWidget;
class QMenu;

namespace vonnel {

class FrmMain;

class UrlHistoryWindow : public QDialog {
    Q_OBJECT
public:
    explicit UrlHistoryWindow(FrmMain& frm, QWidget* parent = nullptr);

    QListWidget* lstURL() const { return m_urls; }
    QListWidget* lstDescript() const { return m_descripts; }
    QLineEdit* txtDescript() const { return m_descript; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildMenus();
    void refreshLists();
    void refreshCount();
    void editEntry(bool add);
    void placeFromSettings();
    void setOnTop(bool on);

    FrmMain& m_frm;
    QListWidget* m_urls;
    QListWidget* m_descripts;
    QLineEdit* m_descript;
    QAction* m_count = nullptr;
    QAction* m_onTop = nullptr;
    QMenu* m_pop = nullptr;
};

}  // namespace vonnel
