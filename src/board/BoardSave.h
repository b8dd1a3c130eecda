#pragma once
// Saving the board: the surface rendered from its objects into a file, so
// it works without a screen or a clipboard (headless, Wayland).

#include <QSize>
#include <QString>

namespace vonnel {

class Board;
class CopyContext;

// Writes the board as ".jpg" (quality 85) or ".bmp", by the name's ending,
// at least minimum pixels in size. Returns the error's description, empty
// on success.
QString saveBoardImage(const Board& board, const QString& path, QSize minimum = {});

// cmdSave_Click and mnuSave_Click: the "Save as" dialog, the ending added
// when missing, the question before overwriting, the file written. A copy
// without windows renders at least 600 x 400 pixels. Returns the file
// written, empty when nothing was.
QString cmdSave_Click(CopyContext& ctx, const Board& board);

}  // namespace vonnel
