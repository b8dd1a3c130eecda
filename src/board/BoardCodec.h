#pragma once
// The board's messages on the wire: every word spelled once, the 22 tests
// in the order the receiver runs them, the field cuts with the peers'
// arithmetic, and builders for the exact text each sender puts out. Words
// the layers below also send (the ready pair, the chat strip, the label,
// the picture's show) stay in core/WireCodec and are named here.

#include "core/WireCodec.h"

#include <QByteArrayView>
#include <QList>
#include <QPoint>
#include <QString>
#include <array>

namespace vonnel::board {

// --- the words --------------------------------------------------------------------
inline constexpr QByteArrayView kRequest = "&& Scrivet Request &&";
inline constexpr QByteArrayView kRing = "&&-g";
inline constexpr QByteArrayView kNotReady = wire::kNotReady;
inline constexpr QByteArrayView kReady = wire::kReady;
inline constexpr QByteArrayView kChatOpen = wire::kBoardChatOpen;
inline constexpr QByteArrayView kChatClose = wire::kBoardChatClose;
inline constexpr QByteArrayView kForeColor = "&&fc";
inline constexpr QByteArrayView kBackColor = "&&bc";
inline constexpr QByteArrayView kFont = "&&font";
inline constexpr QByteArrayView kThickness = "&&lt";
inline constexpr QByteArrayView kStart = "&&sp";
inline constexpr QByteArrayView kEnd = "&&ep";
inline constexpr QByteArrayView kLabel = wire::kBoardLabelOpen;
inline constexpr QByteArrayView kRect = "&&rec$";
inline constexpr QByteArrayView kCircle = "&&cir$";
inline constexpr QByteArrayView kLine = "&&lin$";
inline constexpr QByteArrayView kStroke = "&&st";
inline constexpr QByteArrayView kErase = "&&et";
inline constexpr QByteArrayView kErasePic = "&&e-p";
inline constexpr QByteArrayView kEraseLabel = "&&e-l";
inline constexpr QByteArrayView kEraseAll = "&&eee$";
inline constexpr QByteArrayView kShowPic = wire::kBoardShowPic;
inline constexpr QByteArrayView kClosed = "&& Scrivet Closed &&";
// Inside a message: a field ends in "$", a pair is split by ",", a point
// list ends in "%".
inline constexpr QChar kFieldEnd = u'$';
inline constexpr QChar kPairSplit = u',';
inline constexpr QChar kListEnd = u'%';
// What the chat strip adds behind a line that holds a CR, so the cut
// that skips six characters has something to take.
inline constexpr QByteArrayView kChatPadding = "123456";
// The peer's line on our board reads this once the peer has left it.
inline constexpr QByteArrayView kCloseMark = "<Close>";

// --- the tests, in order ----------------------------------------------------------
enum class Test {
    Request, Ring, NotReady, Ready, Chat, ForeColor, BackColor, Font, Thickness,
    Start, End, Label, Rect, Circle, Line, Stroke, Erase, ErasePic, EraseLabel,
    EraseAll, ShowPic, Closed,
};
struct TestWord {
    Test test;
    QByteArrayView head;
};
inline constexpr std::array<TestWord, 22> kTests = {{
    {Test::Request, kRequest},     {Test::Ring, kRing},
    {Test::NotReady, kNotReady},   {Test::Ready, kReady},
    {Test::Chat, kChatOpen},       {Test::ForeColor, kForeColor},
    {Test::BackColor, kBackColor}, {Test::Font, kFont},
    {Test::Thickness, kThickness}, {Test::Start, kStart},
    {Test::End, kEnd},             {Test::Label, kLabel},
    {Test::Rect, kRect},           {Test::Circle, kCircle},
    {Test::Line, kLine},           {Test::Stroke, kStroke},
    {Test::Erase, kErase},         {Test::ErasePic, kErasePic},
    {Test::EraseLabel, kEraseLabel}, {Test::EraseAll, kEraseAll},
    {Test::ShowPic, kShowPic},     {Test::Closed, kClosed},
}};
inline QLatin1String text(QByteArrayView word) { return QLatin1String(word); }

// Whether data goes to the board's routine: "&&" and a third character
// other than "&".
bool isBoardMessage(const QString& data);
// Whether data is all there is of a board word that a read boundary cut
// short: a beginning of one of the heads, shorter than it ("&", "&&",
// "&&sho").
bool cutInsideHead(const QString& data);
// Whether text can be the start of a board message: it begins with one of
// the heads, or is cut inside one.
bool couldBeginMessage(const QString& text);

// The longest font name taken from the peer. No font family comes near
// it: Windows keeps a face name in 32 characters with its end
// (LF_FACESIZE), and families under fontconfig are display names of a few
// dozen at most. A longer name can name no font, so it is cut here, and
// a flood of labels cannot make each keep a megabyte of name.
inline constexpr qsizetype kFontNameLimit = 256;

// --- cutting ---------------------------------------------------------------------
// A failure in the middle of a message, with the number and the text the
// runtime gives it: 5 for a cut with a negative length (a missing "," or
// "$"), 13 for a field that is no number, 6 for a number out of range.
struct DrawError {
    int number = 0;
    QString description;
};
DrawError cutError();
// The text before the first sep in data; throws DrawError 5 when there is
// none.
QString cutBefore(const QString& data, QChar sep);
// "head" + field + "$" at the start of data: the field; data keeps what
// stands behind the "$".
QString takeField(QString& data, qsizetype headLength);
// A 16-bit number as the runtime converts text: blanks around it allowed,
// halves rounded to even; 13 when it is no number, 6 out of range.
qint16 toInteger(const QString& text);
// A size sent as a single-precision text, cut to a 16-bit whole number.
qint16 toCutInteger(const QString& text);
// The same for 32-bit numbers (colours).
qint32 toLong(const QString& text);
// "True"/"False" (any case) or a number; 13 otherwise.
bool toBoolean(const QString& text);
// A point list "x,y$x,y$...%" after its head, one pair at a time.
struct PairText {
    QString x, y;
};
// Takes one pair off the front of data; false when data begins with "%"
// (which is then taken off).
bool takePair(QString& data, PairText& pair);

// --- builders ----------------------------------------------------------------------
QString chatLine(const QString& text);
QString foreColor(qint32 colour);
QString backColor(qint32 colour);
struct FontFields {
    QString name;
    float size = 9;
    bool bold = false, italic = false, underline = false, strikethrough = false;
};
QString font(const FontFields& f);
QString thickness(int n);
QString start(int x, int y);
QString end(int x, int y);
QString label(const QString& text);
// "&&st" or "&&et" + "x,y$" for each point + "%".
QString stroke(const QList<QPoint>& points);
QString erase(const QList<QPoint>& points);
QString eraseLabel(int n);
QString ring(const QString& name);

}  // namespace vonnel::board
