#pragma once
// frmAutoConnect: the stations the copy watches, their order, the interval
// and what a check does with what it finds; a view on an AutoConnectSettings
// that lives as long as the dialog.

#include <QDialog>
#include <memory>

class QCheckBox;
class QLineEdit;
class QListWidget;
class QRadioButton;

namespace vonnel {

class FrmMain;
class AutoConnectSettings;

class AutoConnectDialog : public QDialog {
    Q_OBJECT
public:
    explicit AutoConnectDialog(FrmMain& frm, QWidget* parent = nullptr);
    ~AutoConnectDialog() override;

    AutoConnectSettings& model() const { return *m_model; }
    QListWidget* lstAutoCheck() const { return m_addresses; }
    QListWidget* lstAutoHost() const { return m_hosts; }
    QLineEdit* txtAutoCheck() const { return m_entry; }
    QLineEdit* txtChkMin() const { return m_minutes; }

private:
    void refreshLists();
    void refreshEnabled(bool on);

    FrmMain& m_frm;
    std::unique_ptr<AutoConnectSettings> m_model;
    QCheckBox* m_on;
    QLineEdit* m_entry;
    QListWidget* m_addresses;
    QListWidget* m_hosts;
    QLineEdit* m_minutes;
    QRadioButton* m_connect;
    QRadioButton* m_show;
    QCheckBox* m_during;
    QCheckBox* m_after;
    QList<QWidget*> m_dependents;  // enabled with chkAutoCheckOn
};

}  // namespace vonnel
