// The record of parts left by broken receives: a part is offered for going
// on only to the same peer's offer of the same file, and only while the
// part stands on the disk exactly as it was left.

#include "transfer/PartialFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>

using namespace vonnel;

namespace {

const QString kPeer = QStringLiteral("127.0.0.7");
const QString kOffer = QStringLiteral("C:\\docs\\big.bin");

bool writeBytes(const QString& path, const QByteArray& bytes, QIODevice::OpenMode mode)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly | mode) && f.write(bytes) == bytes.size();
}

struct MatchCase {
    const char* name;
    std::function<void(const QString& part)> afterKeep;  // what happens to the part
    QString peer;
    QString offer;
    qint64 size;
    bool matches;
};

TEST(PartialFiles, APartIsOfferedOnlyForTheSameOfferWhileItStandsAsLeft)
{
    const QList<MatchCase> cases = {
        {"same peer, path and size", {}, kPeer, kOffer, 10000, true},
        {"another peer", {}, "127.0.0.8", kOffer, 10000, false},
        {"another path", {}, kPeer, "C:\\docs\\big2.bin", 10000, false},
        {"the same name elsewhere", {}, kPeer, "D:\\big.bin", 10000, false},
        {"another size", {}, kPeer, kOffer, 10001, false},
        {"the part grew",
         [](const QString& p) { writeBytes(p, "x", QIODevice::Append); }, kPeer, kOffer, 10000,
         false},
        {"the part was rewritten at its length",
         [](const QString& p) {
             writeBytes(p, QByteArray(4000, 'y'), QIODevice::Truncate);
             QFile f(p);
             f.open(QIODevice::ReadWrite);
             f.setFileTime(QDateTime::currentDateTime().addSecs(-3600),
                           QFileDevice::FileModificationTime);
         },
         kPeer, kOffer, 10000, false},
        {"the part is gone", [](const QString& p) { QFile::remove(p); }, kPeer, kOffer, 10000,
         false},
    };
    for (const MatchCase& c : cases) {
        SCOPED_TRACE(c.name);
        QTemporaryDir dir;
        const QString part = dir.filePath("part.bin");
        ASSERT_TRUE(writeBytes(part, QByteArray(4000, 'p'), QIODevice::Truncate));
        PartialFiles kept;
        ASSERT_TRUE(kept.keep(kPeer, kOffer, 10000, part));
        if (c.afterKeep)
            c.afterKeep(part);
        const std::optional<PartialFile> found = kept.match(c.peer, c.offer, c.size);
        EXPECT_EQ(found.has_value(), c.matches);
        if (found) {
            EXPECT_EQ(found->path, part);
            EXPECT_EQ(found->length, 4000);
        }
        // A part that changed is forgotten for good; one that merely did
        // not fit this offer stays for the right one.
        const bool changed = c.afterKeep != nullptr;
        EXPECT_EQ(kept.count(), changed ? 0 : 1);
    }
}

TEST(PartialFiles, OnlyARealPartIsKeptAndTheOldestGoFirst)
{
    QTemporaryDir dir;
    PartialFiles kept;
    const QString empty = dir.filePath("empty.bin");
    const QString whole = dir.filePath("whole.bin");
    ASSERT_TRUE(writeBytes(empty, QByteArray(), QIODevice::Truncate));
    ASSERT_TRUE(writeBytes(whole, QByteArray(100, 'w'), QIODevice::Truncate));
    EXPECT_FALSE(kept.keep(kPeer, kOffer, 100, empty));
    EXPECT_FALSE(kept.keep(kPeer, kOffer, 100, whole));
    EXPECT_FALSE(kept.keep(kPeer, kOffer, 100, dir.filePath("missing.bin")));
    EXPECT_EQ(kept.count(), 0);

    // Kept twice under one path: the later record stands alone.
    ASSERT_TRUE(kept.keep(kPeer, "C:\\first.bin", 1000, whole));
    ASSERT_TRUE(kept.keep(kPeer, "C:\\second.bin", 1000, whole));
    EXPECT_EQ(kept.count(), 1);
    EXPECT_FALSE(kept.match(kPeer, "C:\\first.bin", 1000));
    EXPECT_TRUE(kept.match(kPeer, "C:\\second.bin", 1000));

    for (int i = 0; i < PartialFiles::kMaxKept + 2; ++i) {
        const QString p = dir.filePath(QStringLiteral("p%1.bin").arg(i));
        ASSERT_TRUE(writeBytes(p, "abc", QIODevice::Truncate));
        ASSERT_TRUE(kept.keep(kPeer, QStringLiteral("C:\\p%1.bin").arg(i), 1000, p));
    }
    EXPECT_EQ(kept.count(), PartialFiles::kMaxKept);
    EXPECT_FALSE(kept.match(kPeer, "C:\\p0.bin", 1000));
    EXPECT_TRUE(kept.match(kPeer, QStringLiteral("C:\\p%1.bin").arg(PartialFiles::kMaxKept + 1), 1000));
    kept.forget(dir.filePath("p5.bin"));
    EXPECT_FALSE(kept.match(kPeer, "C:\\p5.bin", 1000));
}

}  // namespace
