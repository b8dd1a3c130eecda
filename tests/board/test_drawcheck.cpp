// The board's reader on its own: each of the 22 tests from a table of
// text in and actions out, the order of the tests within one round, the
// calls on what is left, and the error tail.

#include "board/DrawCheck.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace vonnel {
namespace {

// Writes down every action as one short line; the cipher marks the text it
// was given, so a test sees which texts went through it.
class Recorder : public DrawTarget {
public:
    QStringList seen;
    QStringList boxes;
    int rounds = 0;
    qint64 now = 1000;

    qint64 nowMs() const override { return now; }

    void beforeTests() override { ++rounds; }
    qint32 localForeColour() const override { return 111; }
    qint32 localBackColour() const override { return 222; }
    QString decipher(const QString& t) const override { return "{" + t + "}"; }
    void request() override { seen << "request"; }
    void ring(const QString& name) override { seen << "ring " + name; }
    void notReady() override { seen << "notReady"; }
    void ready() override { seen << "ready"; }
    void chat(const QString& line) override { seen << "chat " + line; }
    void foreColor(const RemoteParams& r) override { seen << "fc " + r.remoteForeColor; }
    void backColor(const RemoteParams& r) override { seen << "bc " + r.remoteBackColor; }
    void font(const RemoteParams& r) override
    {
        seen << QString("font %1 %2 %3%4%5%6")
                    .arg(r.remoteFontName)
                    .arg(r.remoteFontSize)
                    .arg(int(r.remoteBold))
                    .arg(int(r.remoteItalic))
                    .arg(int(r.remoteUnderline))
                    .arg(int(r.remoteStrikethrough));
    }
    void thickness(const RemoteParams& r) override { seen << QString("lt %1").arg(r.remoteThickness); }
    void label(const QString& t, const RemoteParams& r) override
    {
        seen << QString("lbl %1 at %2,%3").arg(t).arg(r.remoteEndX).arg(r.remoteEndY);
    }
    QString shape(const RemoteParams& r)
    {
        return QString("%1,%2-%3,%4 t%5 c%6")
            .arg(r.remoteStartX)
            .arg(r.remoteStartY)
            .arg(r.remoteEndX)
            .arg(r.remoteEndY)
            .arg(r.remoteThickness)
            .arg(r.remoteForeColor);
    }
    void rect(const RemoteParams& r) override { seen << "rec " + shape(r); }
    void circle(const RemoteParams& r) override { seen << "cir " + shape(r); }
    void line(const RemoteParams& r) override { seen << "lin " + shape(r); }
    void strokePoint(qint16 x, qint16 y, const RemoteParams& r, std::optional<QPoint> from) override
    {
        QString s = QString("st %1,%2 c%3").arg(x).arg(y).arg(r.remoteForeColor);
        if (from)
            s += QString(" from %1,%2").arg(from->x()).arg(from->y());
        seen << s;
    }
    void erasePoint(qint16 x, qint16 y, const RemoteParams& r) override
    {
        seen << QString("et %1,%2 c%3").arg(x).arg(y).arg(r.remoteBackColor);
    }
    void erasePic(qint16 n) override { seen << QString("e-p %1").arg(n); }
    void eraseLabel(qint16 n) override { seen << QString("e-l %1").arg(n); }
    void eraseAll() override { seen << "eee"; }
    void showPic(const RemoteParams& r) override { seen << "showPic " + shape(r); }
    void closed() override { seen << "closed"; }
    void protocolError(const QString& t) override { boxes << t; }
};

struct Case {
    const char* name;
    const char* data;
    const char* actions;  // joined by "|"
    const char* rest;
    const char* box = "";  // the error's description when a box is shown
};

// One test each, in the table's order, then the quirks around them.
const Case kCases[] = {
    {"request alone", "&& Scrivet Request &&", "request", ""},
    {"request behind a message", "&&fc7$&& Scrivet Request &&", "fc 7|request", ""},
    {"request sharing its read leaves the rest to the loop",
     "&& Scrivet Request &&<Paste> a</Paste>^BK1#BK", "request", "<Paste> a</Paste>^BK1#BK"},
    {"request then a board message", "&& Scrivet Request &&&&fc7$", "request|fc 7", ""},
    {"ring keeps the name for the loop", "&&-gbell.wav", "ring bell.wav", "bell.wav"},
    {"not ready", "&&!NotReady!&&", "notReady", ""},
    {"ready", "&&!Ready!&&tail", "ready", "tail"},
    {"not ready then ready in one round", "&&!NotReady!&&&&!Ready!&&", "notReady|ready", ""},
    {"chat line to its end word", "&&<#> hi there <#>&&after", "chat {hi there}", "after"},
    {"chat line to a CR takes in the padding", "&&<#> hi\r", "chat {hi}", "6"},
    {"chat line with no end fails silently", "&&<#> no end", "", ""},
    {"empty chat line", "&&<#>  <#>&&", "chat {}", ""},
    {"the away take-back's empty line has one blank", "&&<#> <#>&&&&fc1$", "chat {}|fc 1", ""},
    {"fore colour", "&&fc255$", "fc 255", ""},
    {"back colour", "&&bc65280$x", "bc 65280", "x"},
    {"font", "&&fontArial$10.5$True$False$false$1$", "font Arial 10 1001", ""},
    {"font with a style that is no flag", "&&fontArial$10$Yes$False$False$False$", "", "",
     "Type mismatch"},
    {"thickness", "&&lt3$", "lt 3", ""},
    {"start and end then a rectangle", "&&sp10,20$&&ep-30,40$&&rec$",
     "rec 10,20--30,40 t0 c111", ""},
    {"circle", "&&sp1,2$&&ep3,4$&&cir$", "cir 1,2-3,4 t0 c111", ""},
    {"line", "&&sp1,2$&&ep3,4$&&lin$", "lin 1,2-3,4 t0 c111", ""},
    {"label at the end point", "&&ep5,6$&&lblhello$", "lbl {hello} at 5,6", ""},
    {"stroke skips pairs with a missing number", "&&st1,2$,5$6,$3,4$%z",
     "st 1,2 c111|st 3,4 c111 from 1,2", "z"},
    {"stroke with no points", "&&st%", "", ""},
    {"each stroke message starts a stroke of its own", "&&st1,2$3,4$%&&st5,6$%",
     "st 1,2 c111|st 3,4 c111 from 1,2|st 5,6 c111", ""},
    {"stroke without its end draws nothing yet", "&&st1,2$3,4$", "", ""},
    {"erase trail", "&&et1,2$3,4$%", "et 1,2 c222|et 3,4 c222", ""},
    {"erase trail with an empty number", "&&et,2$%", "", "", "Type mismatch"},
    {"erase picture", "&&e-p3$", "e-p 3", ""},
    {"erase label", "&&e-l4$", "e-l 4", ""},
    {"erase all", "&&eee$", "eee", ""},
    {"show picture", "&&sp1,2$&&ep3,4$&&showPic$", "showPic 1,2-3,4 t0 c111", ""},
    {"closed", "&& Scrivet Closed &&", "closed", ""},
    {"a point out of range", "&&sp99999,1$&&rec$", "", "", "Overflow"},
    {"a missing comma fails silently", "&&sp12$&&rec$", "", ""},
    {"a head no test knows", "&&zz", "", "", "Out of stack space"},
    {"tests after the one that matched still run",
     "&&!Ready!&&&&fc1$&&bc2$&&lt3$&&sp1,2$&&ep3,4$&&rec$&&st5,6$%&&eee$&& Scrivet Closed &&",
     "ready|fc 1|bc 2|lt 3|rec 1,2-3,4 t3 c1|st 5,6 c1|eee|closed", ""},
    {"messages out of the table's order go round again", "&&rec$&&fc9$&&rec$",
     "rec 0,0-0,0 t0 c111|fc 9|rec 0,0-0,0 t0 c9", ""},
};

TEST(DrawCheck, EachTestByTable)
{
    for (const Case& c : kCases) {
        Recorder target;
        DrawCheck check(target);
        QString data = QString::fromLatin1(c.data);
        const QString rest = check.cDrawcheck(data);
        const QString actions = target.seen.join('|');
        EXPECT_EQ(actions, QString::fromLatin1(c.actions)) << c.name;
        EXPECT_EQ(rest, QString::fromLatin1(c.rest)) << c.name;
        if (*c.box) {
            ASSERT_EQ(target.boxes.size(), 1) << c.name;
            EXPECT_TRUE(target.boxes[0].startsWith("Receiving - DrawCheck Protocol Error \r" +
                                                   QString::fromLatin1(c.box) +
                                                   "\r\n\r\nData causing problem:  "))
                << c.name << ": " << target.boxes[0].toStdString();
        } else {
            EXPECT_TRUE(target.boxes.isEmpty()) << c.name << ": " << target.boxes.value(0).toStdString();
        }
    }
}

TEST(DrawCheck, MessagesInTheTablesOrderTakeOneRound)
{
    Recorder target;
    DrawCheck check(target);
    QString data = "&&fc1$&&lt2$&&sp3,4$&&ep5,6$&&rec$";
    check.cDrawcheck(data);
    EXPECT_EQ(target.rounds, 1);
    EXPECT_FALSE(check.recursionGuard);

    data = "&&rec$&&fc1$";
    target.rounds = 0;
    check.cDrawcheck(data);
    EXPECT_EQ(target.rounds, 2);
    EXPECT_TRUE(check.recursionGuard) << "raised on the way back from the inner call";
}

TEST(DrawCheck, TheGuardLeftUpHandsTheNextMessageBackToTheLoop)
{
    Recorder target;
    DrawCheck check(target);
    QString data = "&&rec$&&fc1$";
    check.cDrawcheck(data);
    ASSERT_TRUE(check.recursionGuard);

    data = "&&cir$&&fc2$";
    EXPECT_EQ(check.cDrawcheck(data), "&&fc2$");
    EXPECT_FALSE(check.recursionGuard);
    EXPECT_EQ(target.seen.last(), "cir 0,0-0,0 t0 c1");
    // The loop hands it back, and this time it goes through.
    data = "&&fc2$";
    EXPECT_EQ(check.cDrawcheck(data), "");
    EXPECT_EQ(check.remote.remoteForeColor, "2");
}

TEST(DrawCheck, RemoteValuesOutliveTheCallAndEmptyColoursFallBack)
{
    Recorder target;
    DrawCheck check(target);
    QString data = "&&fc$&&bc-5$";
    check.cDrawcheck(data);
    EXPECT_EQ(check.remote.remoteForeColor, "") << "kept as sent until the next call";
    EXPECT_EQ(check.remote.remoteBackColor, "-5");

    data = "&&sp7,8$&&lt4$";
    check.cDrawcheck(data);
    EXPECT_EQ(check.remote.remoteForeColor, "111");
    EXPECT_EQ(check.remote.remoteBackColor, "222");
    data = "&&ep9,10$&&rec$";
    check.cDrawcheck(data);
    EXPECT_EQ(target.seen.last(), "rec 7,8-9,10 t4 c111");
}

TEST(DrawCheck, NumbersConvertAsTheRuntimeDoes)
{
    Recorder target;
    DrawCheck check(target);
    QString data = "&&sp 2.5 ,3.5$&&lt32767$";
    check.cDrawcheck(data);
    EXPECT_EQ(check.remote.remoteStartX, 2) << "halves go to the even neighbour";
    EXPECT_EQ(check.remote.remoteStartY, 4);
    EXPECT_EQ(check.remote.remoteThickness, 32767);
    data = "&&lt32768$";
    check.cDrawcheck(data);
    ASSERT_EQ(target.boxes.size(), 1);
    EXPECT_TRUE(target.boxes[0].contains("Overflow"));
    EXPECT_EQ(check.remote.remoteThickness, 32767) << "a failed conversion sets nothing";
}

TEST(DrawCheck, AMessageTheReadCutOffWaitsForTheRest)
{
    Recorder target;
    DrawCheck check(target);
    QString data = "&&fc1$&&st1,2$3,";
    EXPECT_EQ(check.cDrawcheck(data), "");
    EXPECT_EQ(target.seen.join('|'), "fc 1");
    ASSERT_TRUE(check.hasPending());
    // The loop puts it before the next read.
    data = check.takePending() + "4$%&&<#> a <#>&&";
    EXPECT_FALSE(check.hasPending());
    check.cDrawcheck(data);
    EXPECT_EQ(target.seen.join('|'), "fc 1|st 1,2 c1|st 3,4 c1 from 1,2|chat {a}");

    const char* kept[] = {"&&<#> half a line", "&&lblhalf a la", "&&fc25", "&&sp-12,3",
                          "&&et1,2$3", "&&e-l1", "&&fontArial$10$Tr"};
    for (const char* cut : kept) {
        data = cut;
        check.cDrawcheck(data);
        EXPECT_EQ(check.takePending(), QString(cut)) << cut;
    }
    // What can never become a message is dropped as before.
    const char* dropped[] = {"&&sp12$&&rec$", "&&fc1x", "&&stA,1", "&&fontArial$10$&&rec"};
    for (const char* bad : dropped) {
        data = bad;
        check.cDrawcheck(data);
        EXPECT_FALSE(check.hasPending()) << bad;
    }
    data = "&&st" + QString(DrawCheck::kPendingLimit, '1');
    check.cDrawcheck(data);
    EXPECT_FALSE(check.hasPending()) << "no more than the limit is kept";
    EXPECT_TRUE(target.boxes.isEmpty());
}

// The receive loop as far as the board sees it: each read behind the part
// the last one left held (when it can be its rest), board messages to the
// reader, anything else kept aside as the loop's other stages' business.
struct Reads {
    explicit Reads(DrawCheck& c) : check(c) {}
    void read(const QString& bytes)
    {
        QString text = check.joinHeld(bytes);
        while (!text.isEmpty()) {
            if (board::isBoardMessage(text)) {
                text = check.cDrawcheck(text);
            } else {
                other += text;
                text.clear();
            }
        }
    }
    DrawCheck& check;
    QString other;
};

TEST(DrawCheck, AMessageTornAnywhereByAReadIsJoined)
{
    // Every kind of message but the ring (whose name runs to the end of the
    // read, wherever that is), in the table's order.
    const QString all =
        "&& Scrivet Request &&&&!NotReady!&&&&!Ready!&&&&<#> hi & there <#>&&&&fc255$"
        "&&bc65280$&&fontArial$10.5$True$False$False$False$&&lt3$&&sp10,20$&&ep-30,40$"
        "&&lblhello$&&rec$&&cir$&&lin$&&st1,2$3,4$%&&et5,6$%&&e-p1$&&e-l4$&&eee$"
        "&&showPic$&& Scrivet Closed &&";
    Recorder whole;
    DrawCheck wholeCheck(whole);
    Reads(wholeCheck).read(all);
    ASSERT_EQ(whole.seen.size(), 20) << whole.seen.join('|').toStdString();
    ASSERT_TRUE(whole.boxes.isEmpty());

    // From the second character on: a read of one character alone is the
    // loop's (an older peer's bare character), not the board's.
    for (qsizetype cut = 2; cut < all.size(); ++cut) {
        Recorder target;
        DrawCheck check(target);
        Reads reads(check);
        reads.read(all.left(cut));
        target.now += 20;
        reads.read(all.mid(cut));
        EXPECT_EQ(target.seen.join('|'), whole.seen.join('|')) << "cut at " << cut << ": " << all.left(cut).toStdString();
        EXPECT_TRUE(target.boxes.isEmpty()) << cut << ": " << target.boxes.value(0).toStdString();
        EXPECT_TRUE(reads.other.isEmpty()) << cut << ": " << reads.other.toStdString();
        EXPECT_FALSE(check.hasPending()) << cut;
    }

    // Cut into many reads: a long stroke comes in pieces of 7 characters.
    QList<QPoint> points;
    for (int i = 0; i < 500; ++i)
        points << QPoint(-i, i);
    const QString stroke = board::stroke(points) + "&&eee$";
    Recorder target;
    DrawCheck check(target);
    Reads reads(check);
    for (qsizetype at = 0; at < stroke.size(); at += 7)
        reads.read(stroke.mid(at, 7));
    ASSERT_EQ(target.seen.size(), 501);
    EXPECT_EQ(target.seen[0], "st 0,0 c111");
    EXPECT_EQ(target.seen[499], "st -499,499 c111 from -498,498") << "one stroke however it was cut";
    EXPECT_EQ(target.seen.last(), "eee");
}

TEST(DrawCheck, AnUnfinishedMessageCostsOnlyItself)
{
    Recorder target;
    DrawCheck check(target);
    Reads reads(check);
    // The next read opens a frame of its own: the held part is given up,
    // silently, and the read goes on alone.
    const char* unfinished[] = {"&&lblno dollar", "&&<#> no end", "&&fontArial$1",
                                "&&st1,2$3", "&&sp1", "&&", "&&show"};
    const char* next[] = {"^reFresh", "<MSG> later </MSG>", "<KEY> x <:KEY>1</KEY>",
                          "&&eee$", "%%File Sending Request%%", "<Paste> p</Paste>"};
    for (const char* u : unfinished)
        for (const char* n : next) {
            reads.other.clear();
            target.seen.clear();
            reads.read(u);
            ASSERT_TRUE(check.hasPending()) << u;
            reads.read(n);
            EXPECT_FALSE(check.hasPending()) << u << " then " << n;
            if (QString(n).startsWith("&&"))
                EXPECT_EQ(target.seen.join('|'), "eee") << u;
            else
                EXPECT_EQ(reads.other, n) << u;
        }
    EXPECT_TRUE(target.boxes.isEmpty());

    // A read that cannot go on with the word the held part began.
    reads.other.clear();
    reads.read("&&fc1$&&sh");
    reads.read("ut");
    EXPECT_FALSE(check.hasPending());
    EXPECT_EQ(reads.other, "ut");

    // The rest that comes too late: the hold's time runs from the first part,
    // not from each further one.
    target.seen.clear();
    reads.read("&&<#> slow");
    target.now += DrawCheck::kHoldMs / 2;
    reads.read(" line");
    ASSERT_TRUE(check.hasPending());
    target.now += DrawCheck::kHoldMs / 2 + 1;
    reads.other.clear();
    reads.read(" <#>&&");
    EXPECT_FALSE(check.hasPending());
    EXPECT_EQ(target.seen.join('|'), "");
    EXPECT_EQ(reads.other, " <#>&&") << "the late rest goes on alone";
    reads.read("&&<#> in time");
    target.now += DrawCheck::kHoldMs;
    reads.read(" <#>&&");
    EXPECT_EQ(target.seen.join('|'), "chat {in time}");

    // The closing word of a chat line holds the board's opening: its rest
    // still joins.
    reads.read("&&<#> a <#>&");
    reads.read("&&&fc5$");
    EXPECT_EQ(target.seen.mid(1).join('|'), "chat {a}|fc 5");
    EXPECT_TRUE(target.boxes.isEmpty());
}

TEST(DrawCheck, AFontNameIsCutToTheLongestAFamilyCouldHave)
{
    Recorder target;
    DrawCheck check(target);
    QString data = "&&font" + QString(100000, 'F') + "$12$False$True$False$False$&&lt2$";
    check.cDrawcheck(data);
    EXPECT_EQ(check.remote.remoteFontName, QString(board::kFontNameLimit, 'F'));
    EXPECT_LT(check.remote.remoteFontName.capacity(), 2 * board::kFontNameLimit)
        << "the name does not keep the read's memory";
    EXPECT_EQ(check.remote.remoteFontSize, 12);
    EXPECT_EQ(target.seen.last(), "lt 2");
    data = "&&fontDejaVu Sans Mono$9$True$False$False$False$";
    check.cDrawcheck(data);
    EXPECT_EQ(check.remote.remoteFontName, "DejaVu Sans Mono");
}

TEST(DrawCheck, TheBoxShowsAtMostAThousandCharactersOfData)
{
    Recorder target;
    DrawCheck check(target);
    QString data = "&&et,1$%" + QString(5000, 'x');
    check.cDrawcheck(data);
    ASSERT_EQ(target.boxes.size(), 1);
    EXPECT_LT(target.boxes[0].size(), 1100);
}

TEST(BoardCodec, BuildersGiveWhatTheReaderTakes)
{
    using namespace board;
    Recorder target;
    DrawCheck check(target);
    QString data = foreColor(255) + backColor(-1) + thickness(2) + start(-3, 4) + end(5, 6) +
                   QString(text(kRect)) + stroke({{1, 2}, {3, 4}}) +
                   erase({{7, 8}}) + eraseLabel(9) + QString(text(kEraseAll)) + chatLine("yo");
    EXPECT_EQ(data.left(30), "&&fc255$&&bc-1$&&lt2$&&sp-3,4$");
    check.cDrawcheck(data);
    EXPECT_EQ(target.seen.join('|'),
              "fc 255|bc -1|lt 2|rec -3,4-5,6 t2 c255|st 1,2 c255|st 3,4 c255 from 1,2|"
              "et 7,8 c-1|e-l 9|eee|chat {yo}");

    const QString f = font({"Arial", 10.5f, true, false, false, true});
    EXPECT_EQ(f, "&&fontArial$10.5$True$False$False$True$");
    EXPECT_EQ(label("hi"), "&&lblhi$");
    EXPECT_EQ(ring("a.wav"), "&&-ga.wav");
    EXPECT_EQ(stroke({}), "&&st%");
}

}  // namespace
}  // namespace vonnel
