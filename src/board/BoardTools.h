#pragma once
// The board's tools as plain state: which tool is on, where the mouse is
// and was pressed, the stroke under way, the frame of a shape being drawn
// and the hint shown for the tool. The routines that act on them are the
// board's (Scrivet); this holds no widgets and sends nothing.

#include "board/Board.h"

#include <QList>
#include <QPoint>
#include <QString>
#include <array>
#include <optional>

namespace vonnel {

enum class BoardTool { None, Draw, Line, Rect, Circle, Text, Erase, Capture, Image };

class BoardTools {
public:
    // A stroke holds this many points; the next one fails the array.
    static constexpr int kStrokeLimit = 500;

    // --- the tool ---------------------------------------------------------------------
    bool toolDraw = false, toolLine = false, toolRect = false, toolCircle = false,
         toolText = false, toolErase = false, toolCapture = false, toolImage = false;
    // Set by the reset: no tool is on, and no "&&sp"/"&&ep" go out.
    bool noToolSelected = true;
    // Clears every tool flag.
    void reset();
    // Only the one tool's flag.
    void select(BoardTool tool);
    BoardTool tool() const;
    bool shapeTool() const { return toolLine || toolRect || toolCircle; }
    // Draw and Erase send their points at the release, not the two ends.
    bool sendsEnds() const { return !(toolErase || toolDraw || noToolSelected); }
    // The button key and the cursor name of a tool.
    static QString key(BoardTool tool);
    static QString cursorName(BoardTool tool);

    // --- the mouse ----------------------------------------------------------------------
    qint16 curX = 0, curY = 0;
    qint16 startX = 0, startY = 0;
    bool pressedOnce = false;
    // The mouse position as the position label shows it and gives it back:
    // "x, y" cut to 16 bits.
    void setCurrent(int x, int y);
    // The press: the start from the current place. False when the place
    // is the one of the last press (the press then does nothing more).
    bool press();

    // --- the stroke ----------------------------------------------------------------------
    // strokeX(1..strokeCount), strokeY: index 0 is never used.
    std::array<qint16, kStrokeLimit + 1> strokeX{}, strokeY{};
    qint16 strokeCount = 0;
    // Adds a point; false when the arrays are full (the 501st point).
    bool addPoint(qint16 x, qint16 y);
    QList<QPoint> strokePoints() const;
    void clearStroke() { strokeCount = 0; m_strokeFailed = false; }
    // The first failure of this stroke is told, later ones are not.
    bool takeFirstFailure();

    // --- the frame of a shape under way ----------------------------------------------
    std::optional<BoardItem> band;

    // --- undo ----------------------------------------------------------------------------
    QString lastObjectKind;
    int lastObjectNumber = 0;

    // --- pictures ---------------------------------------------------------------------
    bool capturePending = false, imagePending = false;
    // Every 100 moves over the surface the pending flags are cleared.
    void countMove();

    // The hint for the tool; empty for none.
    QString hint() const;

private:
    int m_moves = 0;
    bool m_strokeFailed = false;
};

}  // namespace vonnel
