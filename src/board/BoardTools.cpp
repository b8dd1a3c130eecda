#include "board/BoardTools.h"

#include <algorithm>

namespace vonnel {

void BoardTools::reset()
{
    toolDraw = toolLine = toolRect = toolCircle = toolText = toolErase = toolCapture =
        toolImage = false;
    noToolSelected = true;
    band.reset();
}

void BoardTools::select(BoardTool t)
{
    reset();
    switch (t) {
    case BoardTool::None: return;
    case BoardTool::Draw: toolDraw = true; break;
    case BoardTool::Line: toolLine = true; break;
    case BoardTool::Rect: toolRect = true; break;
    case BoardTool::Circle: toolCircle = true; break;
    case BoardTool::Text: toolText = true; break;
    case BoardTool::Erase: toolErase = true; break;
    case BoardTool::Capture: toolCapture = true; break;
    case BoardTool::Image: toolImage = true; break;
    }
    noToolSelected = false;
}

BoardTool BoardTools::tool() const
{
    if (toolDraw) return BoardTool::Draw;
    if (toolLine) return BoardTool::Line;
    if (toolRect) return BoardTool::Rect;
    if (toolCircle) return BoardTool::Circle;
    if (toolText) return BoardTool::Text;
    if (toolErase) return BoardTool::Erase;
    if (toolCapture) return BoardTool::Capture;
    if (toolImage) return BoardTool::Image;
    return BoardTool::None;
}

QString BoardTools::key(BoardTool t)
{
    switch (t) {
    case BoardTool::Draw: return QStringLiteral("Draw");
    case BoardTool::Line: return QStringLiteral("Line");
    case BoardTool::Rect: return QStringLiteral("Rectangle");
    case BoardTool::Circle: return QStringLiteral("Circle");
    case BoardTool::Text: return QStringLiteral("Text");
    case BoardTool::Erase: return QStringLiteral("Erase");
    case BoardTool::Capture: return QStringLiteral("Capture");
    case BoardTool::Image: return QStringLiteral("Image");
    case BoardTool::None: break;
    }
    return QString();
}

QString BoardTools::cursorName(BoardTool t)
{
    switch (t) {
    case BoardTool::Draw: return QStringLiteral("dot");
    case BoardTool::Line: return QStringLiteral("Line");
    case BoardTool::Rect: return QStringLiteral("rect");
    case BoardTool::Circle: return QStringLiteral("circle");
    case BoardTool::Text: return QStringLiteral("text");
    case BoardTool::Erase: return QStringLiteral("erase");
    case BoardTool::Capture: return QStringLiteral("camera");
    case BoardTool::Image: return QStringLiteral("image");
    case BoardTool::None: break;
    }
    return QString();
}

void BoardTools::setCurrent(int x, int y)
{
    curX = qint16(std::clamp(x, -32768, 32767));
    curY = qint16(std::clamp(y, -32768, 32767));
}

bool BoardTools::press()
{
    const bool same = pressedOnce && startX == curX && startY == curY;
    startX = curX;
    startY = curY;
    pressedOnce = true;
    return !same;
}

bool BoardTools::addPoint(qint16 x, qint16 y)
{
    if (strokeCount >= kStrokeLimit)
        return false;
    ++strokeCount;
    strokeX[strokeCount] = x;
    strokeY[strokeCount] = y;
    return true;
}

QList<QPoint> BoardTools::strokePoints() const
{
    QList<QPoint> points;
    points.reserve(strokeCount);
    for (int i = 1; i <= strokeCount; ++i)
        points.append(QPoint(strokeX[i], strokeY[i]));
    return points;
}

bool BoardTools::takeFirstFailure()
{
    const bool first = !m_strokeFailed;
    m_strokeFailed = true;
    return first;
}

void BoardTools::countMove()
{
    if (++m_moves < 100)
        return;
    m_moves = 0;
    capturePending = imagePending = false;
}

QString BoardTools::hint() const
{
    if (toolDraw)
        return QStringLiteral("Move slowly to draw a continue line");
    if (toolErase)
        return QStringLiteral("Right click to erase all objects");
    if (toolCapture)
        return QStringLiteral(
            "Select an area to display image. Target the window to be captured in a few seconds");
    if (toolImage)
        return QStringLiteral("Select an area to display image");
    return QString();
}

}  // namespace vonnel
