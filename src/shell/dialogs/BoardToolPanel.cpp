#include "shell/dialogs/BoardToolPanel.h"

#include "board/Scrivet.h"

#include <QColorDialog>
#include <algorithm>
#include <QFontDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>

namespace vonnel {

namespace {

// Sixteen colours of the classic palette, then eight lighter ones, as RGB.
constexpr QRgb kPalette[] = {
    0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080, 0xC0C0C0,
    0x808080, 0xFF0000, 0x00FF00, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF,
    0xFFC0C0, 0xFFE0C0, 0xFFFFC0, 0xC0FFC0, 0xC0FFFF, 0xC0C0FF, 0xFFC0FF, 0xE0E0E0,
};

QString swatchStyle(qint32 wire)
{
    return QStringLiteral("background:%1;border:1px solid #555;")
        .arg(QColor::fromRgb(boardColour(wire)).name());
}

}  // namespace

QList<qint32> BoardToolPanel::paletteColours()
{
    QList<qint32> out;
    for (QRgb c : kPalette)
        out << wireColour(c | 0xFF000000u);
    return out;
}

BoardToolPanel::BoardToolPanel(Scrivet& board, Translate tr, QWidget* parent)
    : QWidget(parent), m_board(board)
{
    // The colours: fore and back, the palette under them.
    auto* colours = new QGroupBox(tr("Colour"));
    colours->setObjectName(QStringLiteral("fraColour"));
    m_fore = new QPushButton;
    m_fore->setObjectName(QStringLiteral("lblForeColour"));
    m_fore->setToolTip(tr("Colour"));
    m_back = new QPushButton;
    m_back->setObjectName(QStringLiteral("lblBackColour"));
    m_back->setToolTip(tr("Background"));
    for (QPushButton* b : {m_fore, m_back})
        b->setFixedSize(40, 28);
    connect(m_fore, &QPushButton::clicked, this, [this] { chooseColour(true); });
    connect(m_back, &QPushButton::clicked, this, [this] { chooseColour(false); });
    auto* grid = new QGridLayout(colours);
    grid->setSpacing(2);
    grid->addWidget(m_fore, 0, 0, 1, 2);
    grid->addWidget(m_back, 0, 2, 1, 2);
    const QList<qint32> palette = paletteColours();
    for (int i = 0; i < palette.size(); ++i) {
        auto* swatch = new QToolButton;
        swatch->setObjectName(QStringLiteral("lblColour_%1").arg(i));
        swatch->setFixedSize(20, 20);
        swatch->setStyleSheet(swatchStyle(palette[i]));
        swatch->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(swatch, &QToolButton::clicked, this, [this, i] { pickPalette(i, false); });
        connect(swatch, &QWidget::customContextMenuRequested, this, [this, i] { pickPalette(i, true); });
        grid->addWidget(swatch, 1 + i / 4, i % 4);
        m_palette << swatch;
    }
    auto* more = new QPushButton(tr("More Colours"));
    more->setObjectName(QStringLiteral("cmdMoreColour"));
    connect(more, &QPushButton::clicked, this, [this] { chooseColour(true); });
    grid->addWidget(more, 2 + int(palette.size() - 1) / 4, 0, 1, 4);

    // The thickness: slider and number box agree, the board hears once.
    m_fraThickness = new QGroupBox(tr("Thickness"));
    m_fraThickness->setObjectName(QStringLiteral("fraThickness"));
    m_slider = new QSlider(Qt::Horizontal);
    m_slider->setObjectName(QStringLiteral("slidThick"));
    m_slider->setRange(1, 30);
    m_thick = new QSpinBox;
    m_thick->setObjectName(QStringLiteral("txtThick"));
    m_thick->setRange(1, 99);
    connect(m_slider, &QSlider::valueChanged, this, &BoardToolPanel::setThickness);
    connect(m_thick, &QSpinBox::valueChanged, this, &BoardToolPanel::setThickness);
    auto* thickLayout = new QHBoxLayout(m_fraThickness);
    thickLayout->addWidget(m_slider, 1);
    thickLayout->addWidget(m_thick);

    // The font of the labels: its sample, and the dialog.
    m_fraFont = new QGroupBox(tr("Font"));
    m_fraFont->setObjectName(QStringLiteral("fraFont"));
    m_sample = new QLineEdit(QStringLiteral("AaBbYyZz"));
    m_sample->setObjectName(QStringLiteral("txtFont"));
    m_sample->setReadOnly(true);
    m_sample->setAlignment(Qt::AlignCenter);
    m_sample->setMinimumHeight(44);
    auto* fontButton = new QPushButton(tr("Font"));
    fontButton->setObjectName(QStringLiteral("cmdFontSetting"));
    connect(fontButton, &QPushButton::clicked, this, [this] {
        const BoardLabel& now = m_board.labelFont;
        QFont current(now.fontName, now.fontSize);
        current.setBold(now.bold);
        current.setItalic(now.italic);
        current.setUnderline(now.underline);
        current.setStrikeOut(now.strikethrough);
        bool ok = false;
        const QFont f = QFontDialog::getFont(&ok, current, this);
        if (ok)
            m_board.cmdFontSetting_Click({QString(), f.family(), f.pointSize(), f.bold(), f.italic(),
                                          f.underline(), f.strikeOut()});
    });
    auto* fontLayout = new QVBoxLayout(m_fraFont);
    fontLayout->addWidget(m_sample);
    fontLayout->addWidget(fontButton);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(colours);
    layout->addWidget(m_fraThickness);
    layout->addWidget(m_fraFont);
    layout->addStretch();
    setFixedWidth(150);

    connect(&board, &Scrivet::toolChanged, this, &BoardToolPanel::showTool);
    connect(&board, &Scrivet::labelFontChanged, this, [this] {
        showColours();
        showFont();
    });
    connect(&board.board(), &Board::changed, this, &BoardToolPanel::showColours);
    showColours();
    showFont();
    {
        const QSignalBlocker a(m_slider), b(m_thick);
        m_slider->setValue(board.board().txtThick);
        m_thick->setValue(board.board().txtThick);
    }
}

QToolButton* BoardToolPanel::paletteButton(int i) const
{
    return m_palette.value(i);
}

void BoardToolPanel::showTool(BoardTool tool)
{
    const bool drawing = tool == BoardTool::Draw || tool == BoardTool::Line ||
                         tool == BoardTool::Rect || tool == BoardTool::Circle;
    m_fraThickness->setEnabled(drawing);
    m_fraFont->setEnabled(tool == BoardTool::Text);
    if (drawing) {
        const QSignalBlocker a(m_slider), b(m_thick);
        m_slider->setValue(m_board.board().txtThick);
        m_thick->setValue(m_board.board().txtThick);
    }
}

void BoardToolPanel::showColours()
{
    m_fore->setStyleSheet(swatchStyle(m_board.board().lblForeColour));
    m_back->setStyleSheet(swatchStyle(m_board.board().lblBackColour));
}

void BoardToolPanel::showFont()
{
    const BoardLabel& l = m_board.labelFont;
    QFont f = m_sample->font();
    if (!l.fontName.isEmpty())
        f.setFamily(l.fontName);
    f.setPointSize(std::clamp(l.fontSize, 1, 28));
    f.setBold(l.bold);
    f.setItalic(l.italic);
    f.setUnderline(l.underline);
    f.setStrikeOut(l.strikethrough);
    m_sample->setFont(f);
    m_sample->setStyleSheet(QStringLiteral("color:%1;background:%2;")
                                .arg(QColor::fromRgb(boardColour(m_board.sampleFore)).name(),
                                     QColor::fromRgb(boardColour(m_board.sampleBack)).name()));
}

void BoardToolPanel::setThickness(int n)
{
    const QSignalBlocker a(m_slider), b(m_thick);
    m_slider->setValue(n);
    m_thick->setValue(n);
    if (n != m_board.board().txtThick)
        m_board.setThickness(n);
}

void BoardToolPanel::chooseColour(bool fore)
{
    const Board& b = m_board.board();
    const QColor now = QColor::fromRgb(boardColour(fore ? b.lblForeColour : b.lblBackColour));
    const QColor c = QColorDialog::getColor(now, this);
    if (!c.isValid())
        return;
    if (fore)
        m_board.setForeColour(wireColour(c.rgb()));
    else
        m_board.setBackColour(wireColour(c.rgb()));
}

void BoardToolPanel::pickPalette(int i, bool back)
{
    const QList<qint32> palette = paletteColours();
    if (i < 0 || i >= palette.size())
        return;
    if (back)
        m_board.setBackColour(palette[i]);
    else
        m_board.setForeColour(palette[i]);
    showColours();
}

}  // namespace vonnel
