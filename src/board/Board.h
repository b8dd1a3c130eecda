#pragma once
// The board's surface as objects, without widgets: five numbered
// collections (labels, pictures, shapes, lines, erase dots) in one list in
// the order they were made, which is also the order they are painted. Local
// and remote actions go through the same routines, so two boards that saw
// the same actions hold the same objects under the same numbers; the wire
// names labels and pictures by these numbers.
//
// Units are twips, as on the wire; the surface shows 15 twips per pixel.

#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QString>
#include <optional>

namespace vonnel {

// A colour as the wire carries it: red in the lowest byte.
QRgb boardColour(qint32 value);
qint32 wireColour(QRgb colour);

enum class ItemKind : quint8 { Label, Picture, Rect, Oval, Dot, Line, EraseDot };

struct BoardItem {
    ItemKind kind = ItemKind::Dot;
    bool visible = true;
    int number = 0;  // in its own collection, from 1
    // Left, top, width, height in twips; for a line its two ends.
    int x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    int pen = 1;  // border width in pixels
    QRgb colour = 0;
    int extra = -1;  // the label's text or the picture, by index
    // A dot that goes on a stroke: painted as a band of its own width from
    // the stroke's dot before it (its place in from), so a fast hand leaves
    // a line rather than a trail of dots. Numbering is the dot's alone.
    bool joined = false;
    int fromX = 0, fromY = 0;
};

struct BoardLabel {
    QString text;
    QString fontName;
    int fontSize = 9;
    bool bold = false, italic = false, underline = false, strikethrough = false;
};

class Board : public QObject {
    Q_OBJECT
public:
    // What a peer can make us keep. Labels and pictures as the wire's
    // numbers allow; shapes, lines and erase dots together far above a
    // long evening's drawing (some 500 strokes of 500 points) but below
    // what a flood would make of memory.
    static constexpr int kLabelLimit = 1500;
    static constexpr int kPictureLimit = 1500;
    static constexpr int kMarkLimit = 250000;
    // Decoded pictures together; a picture past it keeps its number but
    // shows nothing. A label's text is one line of an input box.
    static constexpr qint64 kPictureBytesLimit = qint64(512) * 1024 * 1024;
    static constexpr int kLabelTextLimit = 4096;
    // The surface's size until a window says otherwise: 800 x 600 pixels.
    static constexpr int kDefaultWidth = 12000, kDefaultHeight = 9000;

    explicit Board(QObject* parent = nullptr);

    // --- local values the routines fall back on ----------------------------------
    qint32 lblForeColour = 0;            // black
    qint32 lblBackColour = 0xFFFFFF;     // white
    int txtThick = 1;
    QString txtFontName = QStringLiteral("MS Sans Serif");
    // The surface's own background colour and size.
    qint32 backColor() const { return m_backColor; }
    QSize surfaceSize() const { return m_surface; }
    void setSurfaceSize(QSize twips);
    // The press position the shape routines start from.
    qint16 startX = 0, startY = 0;

    // --- the collections ---------------------------------------------------------
    qint16 labelCount = 0;
    qint16 imageCount = 0;
    int shapeCount = 0;
    int lineCount = 0;
    int eraseCount = 0;
    // Labels already deleted, so eraseAll skips them; 1 to 1500.
    bool labelErased(int n) const;
    const QList<BoardItem>& items() const { return m_items; }
    const BoardLabel& labelText(const BoardItem& item) const { return m_labels.at(item.extra); }
    const QImage& picture(const BoardItem& item) const { return m_pictures.at(item.extra); }
    // A label or picture by its number; null when it is not there (any more).
    const BoardItem* label(int n) const;
    const BoardItem* pictureItem(int n) const;
    // Objects refused because a limit was reached.
    int refused() const { return m_refused; }
    // Goes up whenever objects change other than by being added, so a
    // cached raster knows it must paint everything again.
    quint64 revision() const { return m_revision; }

    // --- the routines --------------------------------------------------------------
    // Each makes one object and returns false when a limit refuses it.
    // A dot given from (the stroke's dot before it) is joined to that one.
    bool drawPoint(qint16 x, qint16 y, qint32 colour, qint16 thickness,
                   std::optional<QPoint> from = std::nullopt);
    bool erasePoint(qint16 x, qint16 y, qint32 colour);
    // From the start (a positive start argument replaces startX, startY) to
    // (x, y); a thickness of 0 takes txtThick.
    bool drawRect(qint16 x, qint16 y, qint16 thickness, qint32 colour, qint16 sx, qint16 sy);
    bool drawCircle(qint16 x, qint16 y, qint16 thickness, qint32 colour, qint16 sx, qint16 sy);
    bool drawLine(qint16 x, qint16 y, qint16 thickness, std::optional<qint32> colour,
                  qint16 sx, qint16 sy);
    // The frame of a shape under way, outside the collections.
    static BoardItem band(ItemKind kind, int x, int y, int sx, int sy, int pen, QRgb colour);
    // An empty font name takes txtFontName, size 0 takes 9, no colour takes
    // lblForeColour; text past kLabelTextLimit is not kept. Returns the
    // label's number, 0 when refused.
    int remoteLabel(qint16 x, qint16 y, const QString& text, BoardLabel font,
                    std::optional<qint32> colour);
    // A picture in the rectangle; returns its number, 0 when refused. Past
    // the bytes limit the number is taken and the picture left out.
    int addPicture(const QRect& twips, const QImage& image);
    // The key of picture n as it stands: another picture that takes the
    // number later (after an erase of all) has another key; 0 for none.
    quint64 pictureKey(int n) const;
    // Gives each picture (number n, key), made without its pixels, the
    // pixels decoded for it since; one that is gone, is another picture
    // now, or has pixels is left alone. Painted anew once; returns how
    // many took them.
    int fillPictures(const QList<std::pair<int, quint64>>& pictures, const QImage& image);
    // An unknown label is no error; an unknown picture is (false).
    void eraseLabel(int n);
    bool erasePic(int n);
    void eraseAll();
    // The surface takes the colour and every erase dot with it.
    void eraseBkCol(qint32 colour);
    // Drops pictures numbered above imageCount.
    void ClrPic();

Q_SIGNALS:
    // Objects were added (painted on top) or changed (painted anew).
    void changed();

private:
    bool makeShape(ItemKind kind, qint16 x, qint16 y, qint16 thickness, qint32 colour,
                   qint16 sx, qint16 sy);
    bool markRoom();
    void structural();
    // Pixels are counted once however many pictures share them.
    void usePicture(const QImage& image, int change);
    // The image as kept: null past the bytes limit (and counted refused).
    QImage withinBudget(const QImage& image);

    QList<BoardItem> m_items;
    QList<BoardLabel> m_labels;
    QList<QImage> m_pictures;
    QList<quint64> m_pictureKeys;  // beside m_pictures
    quint64 m_lastPictureKey = 0;
    // Item index by number, 1-based; -1 once erased.
    QList<int> m_labelIndex;
    QList<int> m_pictureIndex;
    QList<bool> m_labelErased;
    qint32 m_backColor = 0xFFFFFF;
    QSize m_surface{kDefaultWidth, kDefaultHeight};
    int m_refused = 0;
    qint64 m_pictureBytes = 0;
    QHash<qint64, int> m_pictureUses;  // by the pixels' cache key
    quint64 m_revision = 0;
};

}  // namespace vonnel
