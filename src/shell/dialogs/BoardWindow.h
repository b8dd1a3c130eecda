#pragma once
// frmDraw: a view on the copy's board (Scrivet). The surface shows the
// board's kept raster and the frame under way, and hands the mouse to the
// board in twips; the buttons and the chat strip call the board's
// routines. Everything the board does, it does without this window.

#include "shell/dialogs/PreviewWindow.h"

#include <QDialog>
#include <QPointer>

class QAction;
class QLabel;
class QLineEdit;
class QSpinBox;
class QToolButton;

namespace vonnel {

class FrmMain;
class Scrivet;
enum class BoardTool;

class BoardSurface;
class BoardToolPanel;
class TipWindow;

class BoardWindow : public QDialog {
    Q_OBJECT
public:
    // mute: the main window's Mute entry, offered in the board's menu.
    BoardWindow(FrmMain& frm, QAction* mute, QWidget* parent = nullptr);

    BoardSurface* picDraw() const { return m_surface; }
    QLineEdit* txtServer() const { return m_server; }
    QLabel* txtClient() const { return m_client; }
    QToolButton* toolButton(BoardTool tool) const;
    // The colours, thickness and font of the tools.
    BoardToolPanel* toolPanel() const { return m_panel; }
    // frmTmp while a picture waits for the user's choice.
    PreviewWindow* previewWindow() const { return m_preview; }
    // frmDrawTip: the board's tips; null when DrawTips.txt holds none.
    TipWindow* showDrawTips();

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:

    FrmMain& m_frm;
    Scrivet& m_board;
    BoardSurface* m_surface;
    QLineEdit* m_server;
    QLabel* m_client;
    QLabel* m_hint;
    BoardToolPanel* m_panel;
    QList<QToolButton*> m_tools;
    QPointer<PreviewWindow> m_preview;
    QPointer<TipWindow> m_tips;
    QAction* m_mute;
};

}  // namespace vonnel
