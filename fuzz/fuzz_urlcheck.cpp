// The address scan under arbitrary text, as the peer feeds it through
// "<URL>" messages and board chat lines, and as a paste feeds the local
// scan. The first byte picks how the rest is read (single-byte or UTF-8)
// and the switches of the receiving side; the rest is the text.
//
//   fuzz_urlcheck -max_len=4096 corpus/urlcheck/
//
// What must hold: URLCheck agrees with a plain, slow reading of its rules
// (for texts short enough to read slowly), the address and the rest are the
// text's own pieces, nothing is offered for opening outside the known
// schemes, and the history never passes its cap.

#include "links/Links.h"
#include "links/URLCheck.h"
#include "links/UrlHistory.h"
#include "links/UrlScan.h"
#include "platform/Prompter.h"

#include <QCoreApplication>
#include <array>
#include <cstdint>
#include <cstdlib>

using namespace vonnel;

namespace {

void check(bool ok)
{
    if (!ok)
        std::abort();
}

class YesPrompter : public Prompter {
public:
    Answer box(const BoxRequest&) override { return Answer::Ok; }
    std::optional<QString> input(const QString&, const QString&, const QString&) override
    {
        return std::nullopt;
    }
    QString file(const FileRequest&) override { return {}; }
};

bool alnum(QChar c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool digit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// "*[0-9a-zA-Z]@*.[!0-9][!0-9]*" tried at every split.
bool slowMailPattern(const QString& t)
{
    for (qsizetype i = 0; i + 1 < t.size(); ++i) {
        if (!alnum(t[i]) || t[i + 1] != u'@')
            continue;
        for (qsizetype j = i + 2; j + 2 < t.size(); ++j)
            if (t[j] == u'.' && !digit(t[j + 1]) && !digit(t[j + 2]))
                return true;
    }
    return false;
}

// The rules read one by one, with 1-based positions and cut after cut.
QString slowAddress(const QString& t, qsizetype& start1)
{
    auto at = [&t](const QString& s) { return t.indexOf(s) + 1; };
    std::array<qsizetype, 6> list{};
    list[0] = at("http://");
    list[1] = at("https://");
    if (list[0] == 0 && list[1] == 0)
        list[2] = at("www.");
    list[3] = at("ftp://");
    list[4] = at("mailto:");
    if (slowMailPattern(t)) {
        const QString left = t.left(t.indexOf(u'@') + 1);
        qsizetype most = 0;
        for (const char* d : {" ", "<", ">", "\"", ";", ",", "(", ")", "[", "]", "\n"})
            most = std::max(most, left.lastIndexOf(QLatin1String(d)) + 1);
        list[5] = most + 1;
    }
    start1 = 0;
    for (qsizetype p : list)
        if (p != 0 && (start1 == 0 || p < start1))
            start1 = p;
    if (start1 == 0)
        return {};
    QString a = t.mid(start1 - 1);
    for (const char* d : {"\r\n", " ", "(", ")", "[", "]", "<", ">", "\"", "'", ";", ","}) {
        const qsizetype p = a.indexOf(QLatin1String(d));
        if (p >= 0)
            a = a.left(p);
    }
    return a;
}

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
    const uint8_t flags = data[0];
    const QByteArray bytes(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1));
    const QString text = (flags & 1) ? QString::fromUtf8(bytes) : QString::fromLatin1(bytes);

    const UrlFind f = findUrl(text);
    if (!f.found) {
        check(f.address.isEmpty() && f.rest.isEmpty());
    } else {
        check(f.start >= 0 && f.start + f.address.size() + f.rest.size() == text.size());
        check(text.mid(f.start, f.address.size()) == f.address);
        check(text.endsWith(f.rest));
    }
    if (text.size() <= 512) {
        qsizetype start1 = 0;
        const QString slow = slowAddress(text, start1);
        check(slow == f.address);
        check((start1 != 0) == f.found);
    }

    const LocalScan scan = planLocalScan(text);
    check(scan.addresses.size() <= kMaxScannedAddresses);
    for (const QString& a : scan.addresses)
        check(!a.isEmpty() && text.contains(a));

    // The remote path, with the switches of the first byte.
    UrlHistory history;
    YesPrompter prompter;
    QList<QUrl> opened;
    LinkSeams seams;
    seams.settingFlag = [flags](const QString& key) {
        if (key == QLatin1String("Web Check"))
            return (flags & 2) == 0;
        if (key == QLatin1String("No Remote URL"))
            return (flags & 4) != 0;
        return (flags & 8) != 0;
    };
    seams.prompter = &prompter;
    seams.openUrl = [&opened](const QUrl& u) {
        opened << u;
        return true;
    };
    Links links(seams, history);
    QString remote = text;
    int rounds = 0;
    // Callers hand one text each; going on with the rest stands in for a
    // peer sending the pieces one after another.
    while (!remote.isEmpty() && rounds++ < 64) {
        const QString before = remote;
        links.webCheck(remote);
        check(before.endsWith(remote));
        if (remote.size() == before.size())
            break;  // an address cut to nothing leaves the text as it was
    }
    check(history.count() <= UrlHistory::kMaxEntries);
    check(history.lstURL().size() == history.lstDescript().size());
    for (const QUrl& u : opened) {
        const QString s = u.scheme();
        check(s == u"http" || s == u"https" || s == u"ftp" || s == u"mailto");
        for (QChar c : u.toString(QUrl::FullyEncoded))
            check(c.unicode() > 32 && c.unicode() < 127);
    }
    return 0;
}
