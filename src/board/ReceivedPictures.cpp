#include "board/ReceivedPictures.h"

#include "board/Board.h"

#include <QFileInfo>
#include <QPromise>
#include <QThreadPool>

namespace vonnel {

ReceivedPictures::ReceivedPictures(Board& board, PictureCheck check, QObject* parent)
    : QObject(parent), m_board(board), m_check(std::move(check))
{
}

ReceivedPictures::~ReceivedPictures()
{
    // A decoding still running ends on its own; nobody hears of it.
    for (auto& d : m_decodes)
        d->watcher.disconnect(this);
}

bool ReceivedPictures::idle() const
{
    for (const auto& d : m_decodes)
        if (!d->done)
            return false;
    return true;
}

void ReceivedPictures::show(const QString& path, const QRect& frame)
{
    const QFileInfo file(path);
    Decode* current = m_decodes.empty() ? nullptr : m_decodes.front().get();
    if (current && current->size == file.size() && current->modified == file.lastModified()) {
        if (current->done) {
            m_board.addPicture(frame, current->result.image);
            return;
        }
        if (const int n = m_board.addPicture(frame, QImage()))
            current->waiting.append({n, m_board.pictureKey(n)});
        return;
    }

    // A new file: its checks here, its pixels in the pool.
    auto decode = std::make_unique<Decode>();
    decode->size = file.size();
    decode->modified = file.lastModified();
    const PictureCheck::DecodePlan plan = m_check.planReceived(path);
    Decode* d = decode.get();
    // A finished one of an older file is no longer wanted.
    std::erase_if(m_decodes, [](const auto& old) { return old->done; });
    m_decodes.insert(m_decodes.begin(), std::move(decode));
    if (!plan.size.isValid()) {
        d->done = true;
        d->result = {QImage(), plan.error};
        m_board.addPicture(frame, QImage());
        Q_EMIT loadFailed(plan.error);
        return;
    }
    if (const int n = m_board.addPicture(frame, QImage()))
        d->waiting.append({n, m_board.pictureKey(n)});
    auto promise = std::make_shared<QPromise<PictureCheck::Received>>();
    connect(&d->watcher, &QFutureWatcherBase::finished, this, [this, d] { finished(d); });
    d->watcher.setFuture(promise->future());
    promise->start();
    QThreadPool::globalInstance()->start([promise, path, plan] {
        promise->addResult(PictureCheck::decodeReceived(path, plan));
        promise->finish();
    });
}

void ReceivedPictures::finished(Decode* d)
{
    d->done = true;
    if (d->watcher.future().resultCount() > 0)
        d->result = d->watcher.future().result();
    else
        d->result = {QImage(), QStringLiteral("Invalid picture")};
    const QList<std::pair<int, quint64>> waiting = std::exchange(d->waiting, {});
    m_board.fillPictures(waiting, d->result.image);
    if (d->result.image.isNull())
        Q_EMIT loadFailed(d->result.error);
    // An older file's entry goes at the next new file (not here: this runs
    // inside its watcher's signal).
}

}  // namespace vonnel
