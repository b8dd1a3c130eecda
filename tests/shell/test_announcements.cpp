// What a screen reader is told: the panes change by the smallest edit, so
// an arrival is an insert of the new text alone; the announcer's words go
// out as a text insert on its own label; rings and offers reach it through
// the copy's seam, in sight or not.

#include "../transfer/RawPeer.h"
#include "core/CopyContext.h"
#include "core/DesktopNotice.h"
#include "platform/Announcer.h"
#include "shell/MainWindow.h"
#include "shell/PaneText.h"
#include "support/TestCopy.h"

#include <QAccessible>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

// The edits a document went through: position, removed, added.
struct Edits {
    explicit Edits(QPlainTextEdit& view)
    {
        QObject::connect(view.document(), &QTextDocument::contentsChange,
                         [this](int at, int removed, int added) { seen << QList<int>{at, removed, added}; });
    }
    QList<QList<int>> seen;
};

TEST(PaneText, AnArrivalIsInsertedAtTheEndAndNothingElseIsTouched)
{
    QPlainTextEdit view;
    showPaneText(view, "hello");
    Edits edits(view);
    showPaneText(view, "hello world\nsecond");
    EXPECT_EQ(view.toPlainText(), "hello world\nsecond");
    ASSERT_EQ(edits.seen.size(), 1);
    EXPECT_EQ(edits.seen[0], (QList<int>{5, 0, 13})) << "only the new text, at the end";
    EXPECT_EQ(view.textCursor().position(), 18) << "the caret follows the end";

    edits.seen.clear();
    showPaneText(view, "hello world\nsecond");
    EXPECT_TRUE(edits.seen.isEmpty()) << "the same text is no edit";

    // A backspace from the peer takes characters off the end.
    showPaneText(view, "hello wor");
    EXPECT_EQ(view.toPlainText(), "hello wor");
    ASSERT_EQ(edits.seen.size(), 1);
    EXPECT_EQ(edits.seen[0][0], 9);
    EXPECT_EQ(edits.seen[0][2], 0);

    // Anything else is the whole text anew.
    showPaneText(view, "other");
    EXPECT_EQ(view.toPlainText(), "other");
    showPaneText(view, "");
    EXPECT_EQ(view.toPlainText(), "");

    // A long evening of arrivals keeps no undo history.
    for (int i = 0; i < 50; ++i)
        showPaneText(view, view.toPlainText() + "x");
    EXPECT_FALSE(view.document()->isUndoAvailable());
}

// Show events of a widget: each one is a notification appearing.
struct Shows : QObject {
    explicit Shows(QWidget& w) { w.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* e) override
    {
        count += e->type() == QEvent::Show;
        return false;
    }
    int count = 0;
};

TEST(Announcer, EachAnnouncementIsANotificationShownWithTheWords)
{
    QWidget host;
    host.resize(200, 100);
    host.show();
    Announcer announcer(host);
    EXPECT_FALSE(announcer.isVisible()) << "nothing said yet";
    Shows shows(announcer);
    announcer.announce("Ring - Vonnel: From: 127.0.0.1");
    EXPECT_EQ(shows.count, 1);
    QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&announcer);
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->role(), QAccessible::Notification);
    EXPECT_EQ(seen->text(QAccessible::Name), "Ring - Vonnel: From: 127.0.0.1");
    EXPECT_TRUE(announcer.isVisible());

    // The same words again are heard again.
    announcer.announce("Ring - Vonnel: From: 127.0.0.1");
    EXPECT_EQ(shows.count, 2);

    announcer.announce("<b>not markup</b>");
    EXPECT_EQ(seen->text(QAccessible::Name), "<b>not markup</b>");
    EXPECT_EQ(announcer.textFormat(), Qt::PlainText);
    announcer.announce(QString(5000, 'a'));
    EXPECT_EQ(seen->text(QAccessible::Name).size(), Announcer::kTextLimit);

    // It never takes the focus from where the user is.
    EXPECT_EQ(announcer.focusPolicy(), Qt::NoFocus);

    // A window put away shows nothing; the words are kept all the same.
    host.hide();
    const int before = shows.count;
    announcer.announce("while away");
    EXPECT_EQ(shows.count, before);
    EXPECT_FALSE(announcer.isVisible());
    EXPECT_EQ(announcer.text(), "while away");
}

TEST(Announcer, RingsAndOffersAreAnnouncedWithTheWindowInSight)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    MainWindow window(copy.frm());
    CopyContext& ctx = copy.frm().ctx();
    QStringList said;
    QObject::connect(&ctx, &CopyContext::announcementWanted, [&](const QString& t) { said << t; });
    Q_EMIT ctx.noticeWanted(NoticeKind::FileOffer, "notes.txt  12 Bytes");
    EXPECT_EQ(said, QStringList{"File Receiving Request - Vonnel: notes.txt  12 Bytes"});

    // The window's announcer says what the seam is given.
    auto* label = window.findChild<Announcer*>("announcements");
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->text(), "File Receiving Request - Vonnel: notes.txt  12 Bytes");
    ctx.announce("Private session on");
    EXPECT_EQ(label->text(), "Private session on");
}

// A ring from the peer is told to the reader with the window in sight.
class RingHeard : public RawPeer {};

TEST_F(RingHeard, ThePeersRingIsAnnounced)
{
    QStringList said;
    QObject::connect(&f().ctx(), &CopyContext::announcementWanted, [&](const QString& t) { said << t; });
    send("^gring.wav^G^");
    ASSERT_TRUE(waitUntil([&] { return !said.isEmpty(); }, 3000));
    EXPECT_EQ(said, QStringList{"Ring - Vonnel: From: 127.0.0.1"});
}

}  // namespace
