// A file that cannot be written while it is received: the peer is told to
// stop, the user sees one "File Fransfer " box, and later frames of the
// peer give no more boxes.

#include "transfer/RawPeer.h"
#include "connection/Session.h"
#include "platform/Prompter.h"

#include <csignal>
#include <sys/resource.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

// Files of this process may not grow past a size for the life of this
// object: the system refuses the write that would cross it, as a full
// disk does.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &m_old);
        m_oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{bytes, m_old.rlim_max};
        m_set = setrlimit(RLIMIT_FSIZE, &limit) == 0;
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_oldHandler);
    }
    bool set() const { return m_set; }

private:
    rlimit m_old{};
    void (*m_oldHandler)(int) = nullptr;
    bool m_set = false;
};

TEST_F(RawPeer, AFileThatCannotBeWrittenIsSaidOnceAsAFileTransferFailure)
{
    const QString target = copy.file("in/big.bin");
    ASSERT_FALSE(offer(QStringLiteral("big.bin"), 100000, target).isEmpty());
    copy.prompter().clearRecords();

    QByteArray answers;
    {
        FileSizeLimit limit(65536);
        ASSERT_TRUE(limit.set());
        for (int i = 0; i < 60 && !answers.contains("%%Sending Cancel%%"); ++i) {
            send(frame(randomBytes(2000, quint32(i))));
            answers += readAtLeast(peer, 18, 3000);
        }
    }
    EXPECT_TRUE(answers.contains("%%Sending Cancel%%"));
    EXPECT_LE(QFileInfo(target).size(), 65536);

    // Whatever the peer sends after that is no file of ours and no box.
    send(frame(randomBytes(2000, 99)));
    readFor(peer, 200);

    QStringList shown;
    int icon = 0;
    for (const PromptRecord& p : copy.prompter().records())
        if (p.kind == QLatin1String("box")) {
            shown << p.text;
            icon = p.style & 0x70;
        }
    ASSERT_EQ(shown.size(), 1) << shown.join(" | ").toStdString();
    EXPECT_TRUE(shown[0].startsWith(QLatin1String("File Fransfer 75 "))) << shown[0].toStdString();
    EXPECT_TRUE(shown[0].contains(target)) << shown[0].toStdString();
    EXPECT_EQ(icon, MsgStyle::Exclamation);
    EXPECT_TRUE(f().session().IsConnected()) << "the session goes on";
}

}  // namespace
