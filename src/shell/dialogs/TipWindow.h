#pragma once
// frmTip: the tips of the day, one at a time from a random place, the next
// one on cmdNextTip (the first after the last), and the check box that
// says whether the window comes up at start. frmDrawTip is the same window
// for the board, on DrawTips.txt.

#include "shell/Tips.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QPushButton;

namespace vonnel {

class FrmMain;

class TipWindow : public QDialog {
    Q_OBJECT
public:
    // file: the tips' file in the application folder; start: the first tip
    // shown (taken modulo the count); form: the window's name.
    TipWindow(FrmMain& frm, const QString& file, int start, QWidget* parent = nullptr,
              const QString& form = QStringLiteral("frmTip"));
    static constexpr const char* kDrawTips = "DrawTips.txt";

    bool hasTips() const { return !m_tips.isEmpty(); }
    QString shownTip() const;
    QPushButton* cmdNextTip() const { return m_next; }
    QCheckBox* chkLoadTipsAtStartup() const { return m_load; }

    void cmdNextTip_Click();
    void chkLoadTipsAtStartup_Click();

private:
    FrmMain& m_frm;
    Tips m_tips;
    QLabel* m_text;
    QCheckBox* m_load;
    QPushButton* m_next;
};

}  // namespace vonnel
