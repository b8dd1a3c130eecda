#pragma once
// The peer's picture file ("captscr.jpg") on the board: decoded once per
// file, off the window's thread, with the checks before any pixel.
//
// Each show takes its picture number at once, so that both boards keep
// numbering their objects alike and the peer's erase numbers still match;
// the pixels follow when the decoding is done. Further shows of the same
// file (same length and time) only place what was decoded, or wait for it.

#include "board/PictureCheck.h"

#include <QDateTime>
#include <QFutureWatcher>
#include <QList>
#include <QObject>
#include <QRect>
#include <QString>
#include <memory>

namespace vonnel {

class Board;

class ReceivedPictures : public QObject {
    Q_OBJECT
public:
    ReceivedPictures(Board& board, PictureCheck check, QObject* parent = nullptr);
    ~ReceivedPictures() override;

    // Places the file at path in frame (twips), by the rules above.
    void show(const QString& path, const QRect& frame);
    // No decoding is running.
    bool idle() const;
    // The board closed: the next show decodes its file anew, and a
    // decoding still running fills nothing.
    void forget() { m_decodes.clear(); }

Q_SIGNALS:
    // A file could not be decoded; told once per file. error is the
    // runtime's text ("Invalid picture", "Out of memory").
    void loadFailed(const QString& error);

private:
    // One file as it stood, and what its decoding gave or will give.
    struct Decode {
        qint64 size = -1;
        QDateTime modified;
        bool done = false;
        PictureCheck::Received result;
        // Pictures made before the pixels came: number and key.
        QList<std::pair<int, quint64>> waiting;
        QFutureWatcher<PictureCheck::Received> watcher;
    };
    void finished(Decode* decode);

    Board& m_board;
    PictureCheck m_check;
    // The newest file first; older ones only until their decoding ends.
    std::vector<std::unique_ptr<Decode>> m_decodes;
};

}  // namespace vonnel
