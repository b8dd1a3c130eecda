#pragma once
// frmAbout: the program's name and version, how often this copy was
// started and how many sessions it has had, and a word on what it is.

#include <QDialog>

namespace vonnel {

class FrmMain;

class AboutWindow : public QDialog {
    Q_OBJECT
public:
    explicit AboutWindow(FrmMain& frm, QWidget* parent = nullptr);
    // The lines shown, top to bottom (name and version, usage, sessions).
    QStringList lines() const { return m_lines; }

private:
    QStringList m_lines;
};

}  // namespace vonnel
