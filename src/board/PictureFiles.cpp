#include "board/PictureFiles.h"

namespace vonnel {

namespace {

constexpr const char* kEndings[] = {"bmp", "gif", "jpg", "rle", "cur", "ico", "emf", "wmf"};

}  // namespace

bool PictureFiles::isPicture(const QString& name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot < 0)
        return false;
    const QString ending = name.mid(dot + 1);
    for (const char* e : kEndings)
        if (ending.compare(QLatin1String(e), Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

QStringList PictureFiles::nameFilters()
{
    QStringList filters;
    for (const char* e : kEndings)
        filters << QStringLiteral("*.") + QLatin1String(e);
    return filters;
}

QString PictureFiles::sizeText(qint64 bytes)
{
    if (bytes <= 1000)
        return QString::number(bytes) + QStringLiteral(" B");
    return QString::number(double(bytes) / 1024.0, 'f', 2) + QStringLiteral(" KB");
}

QString PictureFiles::details(const QString& sizeWord, qint64 bytes, const QString& dateWord,
                              const QDateTime& modified)
{
    return sizeWord + QStringLiteral(": ") + sizeText(bytes) + QLatin1Char('\n') + dateWord +
           QStringLiteral(": ") + modified.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

}  // namespace vonnel
