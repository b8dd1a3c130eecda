#include "links/URLCheck.h"

#include <QElapsedTimer>
#include <QList>
#include <gtest/gtest.h>

using namespace vonnel;

namespace {

struct Case {
    const char* why;
    QString text, address, rest;
    UrlKind kind;
};

}  // namespace

TEST(URLCheck, FindsTheEarliestAddressAndCutsIt)
{
    const QList<Case> cases = {
        {"closing bracket ends it", "see http://a.example/x),y", "http://a.example/x", "),y", UrlKind::Http},
        {"first of two", "http://a www.b", "http://a", " www.b", UrlKind::Http},
        {"www. once no http is left", " www.b", "www.b", "", UrlKind::Www},
        {"www. not looked for beside http", "www.a http://b", "http://b", "", UrlKind::Http},
        {"www. not looked for beside https", "www.a https://b", "https://b", "", UrlKind::Https},
        {"news is no address", "news://server/group", "", "", UrlKind::None},
        {"mailto starts before the mail start", "mailto:me@a.example", "mailto:me@a.example", "", UrlKind::Mailto},
        {"bare mail", "joe@a.example", "joe@a.example", "", UrlKind::Mail},
        {"one letter after the point", "joe@a.e", "", "", UrlKind::None},
        {"digits after the point", "joe@a.12", "", "", UrlKind::None},
        {"apostrophe opens, then cuts to nothing", "'joe@a.example'", "", "'joe@a.example'", UrlKind::Mail},
        {"apostrophe does not end the left side", "x'joe@a.example", "x", "'joe@a.example", UrlKind::Mail},
        {"space ends the left side", "it's joe@a.example.", "joe@a.example.", "", UrlKind::Mail},
        {"angle brackets around mail", "to:<joe@a.example>", "joe@a.example", ">", UrlKind::Mail},
        {"line feed ends the left side", "hi\njoe@a.example", "joe@a.example", "", UrlKind::Mail},
        {"a lone CR does not", "hi\rjoe@a.example", "hi\rjoe@a.example", "", UrlKind::Mail},
        {"the first @ decides the mail start", "@@ a@b.cd", "@@", " a@b.cd", UrlKind::Mail},
        {"earliest start wins, ftp", "ftp://f.example http://h", "ftp://f.example", " http://h", UrlKind::Ftp},
        {"earliest start wins, mail", "joe@a.example http://h", "joe@a.example", " http://h", UrlKind::Mail},
        {"a tie goes to the web address", "http://u@h.example", "http://u@h.example", "", UrlKind::Http},
        {"search is case-sensitive", "HTTP://A.EXAMPLE WWW.B", "", "", UrlKind::None},
        {"trailing point, colon, question mark stay", "go http://a.example/?:. now", "http://a.example/?:.", " now", UrlKind::Http},
        {"CR LF ends it", "http://a\r\nb", "http://a", "\r\nb", UrlKind::Http},
        {"lone LF stays", "http://a\nb", "http://a\nb", "", UrlKind::Http},
        {"lone CR stays", "http://a\rb c", "http://a\rb", " c", UrlKind::Http},
        {"empty text", "", "", "", UrlKind::None},
    };
    for (const Case& c : cases) {
        const UrlFind f = findUrl(c.text);
        EXPECT_EQ(f.address, c.address) << c.why;
        EXPECT_EQ(f.rest, c.rest) << c.why;
        EXPECT_EQ(f.kind, c.kind) << c.why;
    }
}

TEST(URLCheck, EachTerminatorCutsTheAddress)
{
    for (const char* t : {" ", "(", ")", "[", "]", "<", ">", "\"", "'", ";", ","}) {
        const QString text = QStringLiteral("http://a.example/p") + QLatin1String(t) + QStringLiteral("q");
        const UrlFind f = findUrl(text);
        EXPECT_EQ(f.address, "http://a.example/p") << t;
        EXPECT_EQ(f.rest, QLatin1String(t) + QStringLiteral("q")) << t;
    }
    for (const char* t : {".", ":", "?", "!", "{", "|", "\t", "&"})
        EXPECT_EQ(findUrl(QStringLiteral("http://a") + QLatin1String(t) + "b").address,
                  QStringLiteral("http://a") + QLatin1String(t) + "b")
            << t;
}

TEST(URLCheck, ModeWordPicksAddressOrRest)
{
    const QString text = QStringLiteral("a http://x.example b");
    EXPECT_EQ(URLCheck(text, "URL"), "http://x.example");
    EXPECT_EQ(URLCheck(text, "AnyStr"), " b");
    EXPECT_EQ(URLCheck(text, "anyStr"), " b");
    EXPECT_EQ(URLCheck(text, "url"), " b") << "only the exact word gives the address";
    EXPECT_EQ(URLCheck("nothing here", "anyStr"), "") << "no address, no rest";
}

TEST(URLCheck, MailPatternAndStart)
{
    const QList<std::pair<QString, bool>> pattern = {
        {"a@b.cd", true},   {"a@.cd", true},     {"a@b 1.xy", true}, {"a@b...", true},
        {"a@b.c", false},   {"a@b.c1", false},   {"a@b.1c", false},  {"@b.cd", false},
        {"-@b.cd", false},  {"\u00e9@b.cd", false}, {"a@", false},   {"x.cd a@b", false},
    };
    for (const auto& [text, match] : pattern)
        EXPECT_EQ(looksLikeMail(text), match) << text.toStdString();

    EXPECT_EQ(mailStart("joe@a.example"), 0);
    EXPECT_EQ(mailStart("a [b]joe@x"), 5);
    EXPECT_EQ(mailStart("a;b'joe@x"), 2) << "apostrophe is passed over";
    EXPECT_EQ(mailStart("a,b\"c@x@y"), 4) << "only up to the first @";
}

TEST(URLCheck, HostileTextIsScannedInLinearTime)
{
    // Texts that would make a naive scan quadratic: many near-misses of
    // every pattern. A quadratic scan of these takes minutes.
    const QList<QString> texts = {
        QStringLiteral("a@").repeated(200000),
        QStringLiteral("a@b.1").repeated(100000),
        QStringLiteral("http:/").repeated(100000),
        QStringLiteral("@").repeated(400000) + QStringLiteral("a@b.cd"),
        QStringLiteral("www.") + QStringLiteral("x").repeated(400000),
    };
    QElapsedTimer timer;
    timer.start();
    for (const QString& t : texts)
        findUrl(t);
    EXPECT_LT(timer.elapsed(), 5000);
}
