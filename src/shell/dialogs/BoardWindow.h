#pragma once
// frmDraw: a view on the copy's board (Scrivet). The surface shows the
// board's kept raster and the frame under way, and hands the mouse to the
// board in twips; the buttons and the chat strip call the board's
// routines. Everything the board does, it does without this window.

#include <QDialog>

class QLabel;
class QLineEdit;
class QSpinBox;
class QToolButton;

namespace vonnel {

class FrmMain;
class Scrivet;
enum class BoardTool;

class BoardSurface;

class BoardWindow : public QDialog {
    Q_OBJECT
public:
    explicit BoardWindow(FrmMain& frm, QWidget* parent = nullptr);

    BoardSurface* picDraw() const { return m_surface; }
    QLineEdit* txtServer() const { return m_server; }
    QLabel* txtClient() const { return m_client; }
    QToolButton* toolButton(BoardTool tool) const;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void chooseColour(bool fore);

    FrmMain& m_frm;
    Scrivet& m_board;
    BoardSurface* m_surface;
    QLineEdit* m_server;
    QLabel* m_client;
    QLabel* m_hint;
    QSpinBox* m_thick;
    QList<QToolButton*> m_tools;
};

}  // namespace vonnel
