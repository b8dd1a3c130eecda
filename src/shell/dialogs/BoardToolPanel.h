#pragma once
// The board's side panel: the two colour labels, the palette (lblColour)
// and cmdMoreColour; the thickness frame (slidThick, txtThick) shown for
// the drawing tools; the font frame with its sample txtFont and
// cmdFontSetting shown for the Text tool. Every choice goes to the board.

#include <QWidget>
#include <functional>

class QGroupBox;
class QLineEdit;
class QPushButton;
class QSlider;
class QSpinBox;
class QToolButton;

namespace vonnel {

class Scrivet;
enum class BoardTool;

class BoardToolPanel : public QWidget {
    Q_OBJECT
public:
    using Translate = std::function<QString(const char*)>;
    BoardToolPanel(Scrivet& board, Translate tr, QWidget* parent = nullptr);

    // The palette's colours, in the wire's layout (red in the low byte).
    static QList<qint32> paletteColours();

    QLineEdit* txtFont() const { return m_sample; }
    QSlider* slidThick() const { return m_slider; }
    QSpinBox* txtThick() const { return m_thick; }
    QGroupBox* fraThickness() const { return m_fraThickness; }
    QGroupBox* fraFont() const { return m_fraFont; }
    QToolButton* paletteButton(int i) const;

    // The colour dialog of a colour label (cmdMoreColour takes the fore).
    void chooseColour(bool fore);
    // A palette entry: the left button sets the fore colour, the right one
    // the back colour.
    void pickPalette(int i, bool back);

private:
    void showTool(BoardTool tool);
    void showColours();
    void showFont();
    void setThickness(int n);

    Scrivet& m_board;
    QPushButton* m_fore;
    QPushButton* m_back;
    QList<QToolButton*> m_palette;
    QGroupBox* m_fraThickness;
    QSlider* m_slider;
    QSpinBox* m_thick;
    QGroupBox* m_fraFont;
    QLineEdit* m_sample;
};

}  // namespace vonnel
