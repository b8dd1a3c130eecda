// The board's reader under arbitrary text from the peer, acting on a real
// board model. The first byte sets the local colours' fallback, whether
// the cipher marks its text and how much time passes between reads; the
// rest is the arrival, cut into reads at each byte 0x01, each read as the
// receive loop hands it over: behind the message the last read cut off
// when it can be its rest, then one "&&" message at a time.
//
//   fuzz_board -max_len=8192 corpus/board/
//
// What must hold: no crash, no hang, the reader's answer is empty or a
// piece of what came (with the chat strip's padding at most), a read is
// joined only behind what was held and otherwise handed back as it came,
// a message held for the next read is never more than the limit, the
// board never keeps more than its limits, and counters match the objects
// made.

#include "board/Board.h"
#include "board/DrawCheck.h"

#include <QCoreApplication>
#include <cstdint>
#include <cstdlib>

using namespace vonnel;

namespace {

void check(bool ok)
{
    if (!ok)
        std::abort();
}

// The board in a copy, without the copy: every message goes to the model.
class ModelTarget : public DrawTarget {
public:
    Board board;
    qint32 fore = 0, back = 0xFFFFFF;
    bool mark = false;
    int boxes = 0;
    qint64 now = 0;

    qint32 localForeColour() const override { return fore; }
    qint32 localBackColour() const override { return back; }
    QString decipher(const QString& t) const override { return mark ? t + u'#' : t; }
    qint64 nowMs() const override { return now; }
    void backColor(const RemoteParams& r) override { board.eraseBkCol(board::toLong(r.remoteBackColor)); }
    void label(const QString& t, const RemoteParams& r) override
    {
        board.remoteLabel(r.remoteEndX, r.remoteEndY, t,
                          {QString(), r.remoteFontName, r.remoteFontSize, r.remoteBold,
                           r.remoteItalic, r.remoteUnderline, r.remoteStrikethrough},
                          board::toLong(r.remoteForeColor));
    }
    void rect(const RemoteParams& r) override
    {
        board.drawRect(r.remoteEndX, r.remoteEndY, r.remoteThickness,
                       board::toLong(r.remoteForeColor), r.remoteStartX, r.remoteStartY);
    }
    void circle(const RemoteParams& r) override
    {
        board.drawCircle(r.remoteEndX, r.remoteEndY, r.remoteThickness,
                         board::toLong(r.remoteForeColor), r.remoteStartX, r.remoteStartY);
    }
    void line(const RemoteParams& r) override
    {
        board.drawLine(r.remoteEndX, r.remoteEndY, r.remoteThickness,
                       board::toLong(r.remoteForeColor), r.remoteStartX, r.remoteStartY);
    }
    void strokePoint(qint16 x, qint16 y, const RemoteParams& r, std::optional<QPoint> from) override
    {
        board.drawPoint(x, y, board::toLong(r.remoteForeColor), r.remoteThickness, from);
    }
    void erasePoint(qint16 x, qint16 y, const RemoteParams& r) override
    {
        board.erasePoint(x, y, board::toLong(r.remoteBackColor));
    }
    void erasePic(qint16 n) override { board.erasePic(n); }
    void eraseLabel(qint16 n) override { board.eraseLabel(n); }
    void eraseAll() override { board.eraseAll(); }
    void showPic(const RemoteParams& r) override
    {
        board.addPicture(QRect(r.remoteStartX, r.remoteStartY, 10, 10), QImage());
    }
    void protocolError(const QString& text) override
    {
        check(text.startsWith(QLatin1String("Receiving - DrawCheck Protocol Error \r")));
        ++boxes;
    }
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    new QCoreApplication(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    ModelTarget target;
    target.fore = qint32(data[0] & 0x0F) - 2;
    target.back = qint32(data[0] >> 4) - 2;
    target.mark = data[0] & 0x80;
    DrawCheck reader(target);
    const qint64 step = data[0] & 0x40 ? DrawCheck::kHoldMs + 1 : 10;
    const QString arrival =
        QString::fromLatin1(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1));

    int turns = 0;
    for (const QString& read : arrival.split(QChar(1))) {
        target.now += step;
        const bool holding = reader.hasPending();
        QString text = reader.joinHeld(read);
        check(!reader.hasPending() || read.isEmpty());
        check(text == read || (holding && text.endsWith(read) && text.size() > read.size()));
        // As the receive loop does: a board message, or the one "&" a read
        // ends in behind other text, goes to the reader, what it hands back
        // is looked at again; anything else is one character taken.
        bool behindOther = false;
        while (!text.isEmpty()) {
            check(++turns <= int(size) * 2 + 4);
            const bool lastAmpersand = behindOther && text == QLatin1String("&");
            if (!board::isBoardMessage(text) && !lastAmpersand) {
                text.remove(0, 1);
                behindOther = true;
                continue;
            }
            const qsizetype before = text.size();
            QString message = text;
            const QString rest = reader.cDrawcheck(message);
            check(rest.isEmpty() || rest.size() <= before + 6);
            check(!reader.hasPending() || rest.isEmpty());
            check(reader.pendingSize() <= DrawCheck::kPendingLimit);
            // What comes back unchanged goes the loop's other way.
            text = rest == text ? rest.mid(2) : rest;
            behindOther = true;
        }
    }

    const Board& b = target.board;
    check(b.labelCount >= 0 && b.labelCount <= Board::kLabelLimit);
    check(b.imageCount >= 0 && b.imageCount <= Board::kPictureLimit);
    check(b.shapeCount + b.lineCount + b.eraseCount <= Board::kMarkLimit);
    qsizetype marks = 0;
    for (const BoardItem& item : b.items())
        marks += item.kind != ItemKind::Label && item.kind != ItemKind::Picture;
    check(marks == b.shapeCount + b.lineCount + b.eraseCount);
    return 0;
}
