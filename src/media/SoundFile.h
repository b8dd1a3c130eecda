#pragma once
// Choosing a sound for one of the six rings: the options page's Browse
// buttons. The file may be at most SndMaxSize bytes (50000 when the setting
// is 0) and is copied into the application folder, where every ring is
// played from; the settings keep its bare name only.

#include <QString>

namespace vonnel {

class CopyContext;

// The filter of the sound file dialog, as it stands.
QString soundFileFilter();

// The limit in bytes a chosen sound may have.
qint64 soundSizeLimit(const CopyContext& ctx);

// Takes the file at path as a ring sound: refused (with a box) when it is
// larger than the limit, else copied into the application folder unless it
// is the one there already. Returns the bare name the ring's box takes, or
// current when the file was refused or could not be copied.
QString takeSoundFile(CopyContext& ctx, const QString& path, const QString& current);

// Browse: asks for a file with the sound filter and takes it as above;
// current when the dialog was cancelled.
QString browseSoundFile(CopyContext& ctx, const QString& current);

}  // namespace vonnel
