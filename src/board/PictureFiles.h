#pragma once
// What frmDlg, the small file browser of the preview, knows without its
// widgets: which files it shows as pictures and the details beside one.

#include <QDateTime>
#include <QString>
#include <QStringList>

namespace vonnel {

class PictureFiles {
public:
    // The endings shown as a picture: bmp, gif, jpg, rle, cur, ico, emf, wmf.
    static bool isPicture(const QString& name);
    // The file list's name filters for those endings.
    static QStringList nameFilters();
    // The length as the browser shows it: " B" up to 1000 bytes, else in
    // KB of 1024 bytes with two places.
    static QString sizeText(qint64 bytes);
    // "Size" + ": " + the length, and "Date/Time" + ": " + the time; the
    // two words as the lookup gives them.
    static QString details(const QString& sizeWord, qint64 bytes, const QString& dateWord,
                           const QDateTime& modified);
};

}  // namespace vonnel
