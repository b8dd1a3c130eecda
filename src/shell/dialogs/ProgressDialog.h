#pragma once
// frmProgress: the window of a running transfer, bound to the transfer's
// progress model. It shows the model and hands its buttons to the logic;
// it holds no state of its own.

#include <QColor>
#include <QDialog>
#include <QTimer>

class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;

namespace vonnel {

class FrmMain;

class ProgressDialog : public QDialog {
    Q_OBJECT
public:
    ProgressDialog(FrmMain& frm, QWidget* parent = nullptr);

    QPushButton* cmdPause() const { return m_pause; }
    QPushButton* cmdCancel() const { return m_cancel; }
    QLabel* lblProgress() const { return m_progress; }
    QProgressBar* prbProgress() const { return m_bar; }
    // What the window says when it closes itself at the end of a transfer,
    // or empty when it did not end there.
    static QString finishedNotice(FrmMain& frm);

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void refresh();
    void loadedChanged(bool loaded);

    FrmMain& m_frm;
    QTimer m_refreshTimer;
    static constexpr int kRefreshMs = 40;
    QColor m_progressColor = Qt::black;
    QLabel* m_filename;
    QLabel* m_filesize;
    QLabel* m_progress;
    QLabel* m_finished;
    QProgressBar* m_bar;
    QCheckBox* m_close;
    QPushButton* m_pause;
    QPushButton* m_cancel;
};

// Gives a copy with windows its progress window, shown while the model is
// loaded.
ProgressDialog* installProgressDialog(FrmMain& frm, QWidget* parent);

}  // namespace vonnel
