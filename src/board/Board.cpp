#include "board/Board.h"

#include <algorithm>

namespace vonnel {

QRgb boardColour(qint32 value)
{
    const quint32 v = quint32(value);
    return qRgb(int(v & 0xFF), int((v >> 8) & 0xFF), int((v >> 16) & 0xFF));
}

qint32 wireColour(QRgb colour)
{
    return qint32(quint32(qRed(colour)) | quint32(qGreen(colour)) << 8 |
                  quint32(qBlue(colour)) << 16);
}

Board::Board(QObject* parent) : QObject(parent)
{
    m_labelErased.fill(false, kLabelLimit + 1);
}

void Board::setSurfaceSize(QSize twips)
{
    if (twips == m_surface)
        return;
    m_surface = twips;
    structural();
}

bool Board::labelErased(int n) const
{
    return n >= 0 && n < m_labelErased.size() && m_labelErased.at(n);
}

const BoardItem* Board::label(int n) const
{
    if (n < 1 || n > m_labelIndex.size() || m_labelIndex.at(n - 1) < 0)
        return nullptr;
    return &m_items.at(m_labelIndex.at(n - 1));
}

const BoardItem* Board::pictureItem(int n) const
{
    if (n < 1 || n > m_pictureIndex.size() || m_pictureIndex.at(n - 1) < 0)
        return nullptr;
    return &m_items.at(m_pictureIndex.at(n - 1));
}

bool Board::markRoom()
{
    if (shapeCount + lineCount + eraseCount < kMarkLimit)
        return true;
    ++m_refused;
    return false;
}

void Board::structural()
{
    ++m_revision;
    Q_EMIT changed();
}

bool Board::drawPoint(qint16 x, qint16 y, qint32 colour, qint16 thickness,
                      std::optional<QPoint> from)
{
    if (!markRoom())
        return false;
    // The dot's place is its top-left corner.
    const int size = std::max<int>(thickness, 1) * 50;
    ++shapeCount;
    BoardItem dot{ItemKind::Dot, true, shapeCount, x, y, size, size, 1, boardColour(colour)};
    if (from) {
        dot.joined = true;
        dot.fromX = from->x();
        dot.fromY = from->y();
    }
    m_items.append(dot);
    Q_EMIT changed();
    return true;
}

bool Board::erasePoint(qint16 x, qint16 y, qint32 colour)
{
    if (!markRoom())
        return false;
    ++eraseCount;
    m_items.append({ItemKind::EraseDot, true, eraseCount, x, y, 100, 100, 1, boardColour(colour)});
    Q_EMIT changed();
    return true;
}

BoardItem Board::band(ItemKind kind, int x, int y, int sx, int sy, int pen, QRgb colour)
{
    BoardItem item{kind, true, 0, 0, 0, 0, 0, std::max(pen, 1), colour};
    if (kind == ItemKind::Line) {
        item.x1 = sx, item.y1 = sy, item.x2 = x, item.y2 = y;
        return item;
    }
    item.x1 = std::min(x, sx);
    item.y1 = std::min(y, sy);
    item.x2 = std::abs(x - sx);
    item.y2 = std::abs(y - sy);
    return item;
}

bool Board::makeShape(ItemKind kind, qint16 x, qint16 y, qint16 thickness, qint32 colour,
                      qint16 sx, qint16 sy)
{
    if (!markRoom())
        return false;
    if (sx > 0)
        startX = sx;
    if (sy > 0)
        startY = sy;
    const int pen = thickness == 0 ? txtThick : thickness;
    BoardItem item = band(kind, x, y, startX, startY, pen, boardColour(colour));
    if (kind == ItemKind::Line) {
        item.number = ++lineCount;
        item.pen = std::max(pen * 3, 1);
    } else {
        item.number = ++shapeCount;
    }
    m_items.append(item);
    Q_EMIT changed();
    return true;
}

bool Board::drawRect(qint16 x, qint16 y, qint16 thickness, qint32 colour, qint16 sx, qint16 sy)
{
    return makeShape(ItemKind::Rect, x, y, thickness, colour, sx, sy);
}

bool Board::drawCircle(qint16 x, qint16 y, qint16 thickness, qint32 colour, qint16 sx, qint16 sy)
{
    return makeShape(ItemKind::Oval, x, y, thickness, colour, sx, sy);
}

bool Board::drawLine(qint16 x, qint16 y, qint16 thickness, std::optional<qint32> colour,
                     qint16 sx, qint16 sy)
{
    return makeShape(ItemKind::Line, x, y, thickness, colour.value_or(lblForeColour), sx, sy);
}

int Board::remoteLabel(qint16 x, qint16 y, const QString& text, BoardLabel font,
                       std::optional<qint32> colour)
{
    if (labelCount >= kLabelLimit) {
        ++m_refused;
        return 0;
    }
    if (font.fontName.isEmpty())
        font.fontName = txtFontName;
    if (font.fontSize == 0)
        font.fontSize = 9;
    font.text = text.left(kLabelTextLimit);
    const int n = ++labelCount;
    m_labelErased[n] = false;
    m_labelIndex.resize(n, -1);
    m_labelIndex[n - 1] = int(m_items.size());
    m_labels.append(font);
    m_items.append({ItemKind::Label, true, n, x, y, 0, 0, 1,
                    boardColour(colour.value_or(lblForeColour)), int(m_labels.size() - 1)});
    Q_EMIT changed();
    return n;
}

int Board::addPicture(const QRect& twips, const QImage& image)
{
    if (imageCount >= kPictureLimit) {
        ++m_refused;
        return 0;
    }
    const int n = ++imageCount;
    m_pictureIndex.resize(n, -1);
    m_pictureIndex[n - 1] = int(m_items.size());
    const QImage kept = withinBudget(image);
    usePicture(kept, +1);
    m_pictures.append(kept);
    m_pictureKeys.append(++m_lastPictureKey);
    m_items.append({ItemKind::Picture, !kept.isNull(), n, twips.x(), twips.y(), twips.width(),
                    twips.height(), 1, 0, int(m_pictures.size() - 1)});
    Q_EMIT changed();
    return n;
}

QImage Board::withinBudget(const QImage& image)
{
    // A picture shown again shares its pixels and costs nothing more.
    const bool shared = m_pictureUses.contains(image.cacheKey());
    if (image.isNull() || shared || m_pictureBytes + image.sizeInBytes() <= kPictureBytesLimit)
        return image;
    ++m_refused;
    return QImage();
}

quint64 Board::pictureKey(int n) const
{
    const BoardItem* item = pictureItem(n);
    return item ? m_pictureKeys.at(item->extra) : 0;
}

int Board::fillPictures(const QList<std::pair<int, quint64>>& pictures, const QImage& image)
{
    int filled = 0;
    for (const auto& [n, key] : pictures) {
        if (key == 0 || pictureKey(n) != key || image.isNull())
            continue;
        BoardItem& item = m_items[m_pictureIndex.at(n - 1)];
        if (!m_pictures.at(item.extra).isNull())
            continue;
        const QImage kept = withinBudget(image);
        usePicture(kept, +1);
        m_pictures[item.extra] = kept;
        item.visible = !kept.isNull();
        ++filled;
    }
    if (filled > 0)
        structural();
    return filled;
}

void Board::usePicture(const QImage& image, int change)
{
    if (image.isNull())
        return;
    int& uses = m_pictureUses[image.cacheKey()];
    if (uses == 0)
        m_pictureBytes += image.sizeInBytes();
    uses += change;
    if (uses <= 0) {
        m_pictureBytes -= image.sizeInBytes();
        m_pictureUses.remove(image.cacheKey());
    }
}

void Board::eraseLabel(int n)
{
    // An unknown number is no error for labels.
    if (n < 1 || n > m_labelIndex.size() || m_labelIndex.at(n - 1) < 0)
        return;
    BoardItem& item = m_items[m_labelIndex.at(n - 1)];
    item.visible = false;
    m_labels[item.extra] = BoardLabel{};
    m_labelIndex[n - 1] = -1;
    m_labelErased[n] = true;
    structural();
}

bool Board::erasePic(int n)
{
    if (n < 1 || n > m_pictureIndex.size() || m_pictureIndex.at(n - 1) < 0)
        return false;
    BoardItem& item = m_items[m_pictureIndex.at(n - 1)];
    item.visible = false;
    usePicture(m_pictures[item.extra], -1);
    m_pictures[item.extra] = QImage();
    m_pictureIndex[n - 1] = -1;
    structural();
    return true;
}

void Board::eraseAll()
{
    m_items.clear();
    m_labels.clear();
    m_pictures.clear();
    m_pictureKeys.clear();
    m_pictureUses.clear();
    m_pictureBytes = 0;
    m_labelIndex.clear();
    m_pictureIndex.clear();
    // The numbers start again at 1: a label made after this must not count
    // as deleted because an earlier one of its number was.
    m_labelErased.fill(false);
    labelCount = 0;
    imageCount = 0;
    shapeCount = lineCount = eraseCount = 0;
    structural();
}

void Board::eraseBkCol(qint32 colour)
{
    m_backColor = colour;
    const QRgb c = boardColour(colour);
    for (BoardItem& item : m_items)
        if (item.kind == ItemKind::EraseDot)
            item.colour = c;
    structural();
}

void Board::ClrPic()
{
    if (m_pictureIndex.size() <= imageCount)
        return;
    for (qsizetype n = imageCount + 1; n <= m_pictureIndex.size(); ++n)
        if (const int i = m_pictureIndex.at(n - 1); i >= 0)
            m_items[i].visible = false;
    m_pictureIndex.resize(imageCount);
    structural();
}

}  // namespace vonnel
