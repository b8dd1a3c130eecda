#include "links/UrlScan.h"

#include "core/WireCodec.h"

#include "links/URLCheck.h"
#include "links/UrlHistory.h"

#include <QUrlQuery>

namespace vonnel {

LocalScan planLocalScan(const QString& text)
{
    LocalScan scan;
    if (trimBelow33(text).isEmpty())
        return scan;
    scan.blank = false;
    QString rest = text;
    for (;;) {
        const UrlFind f = findUrl(rest);
        rest = f.rest;
        if (!f.address.isEmpty()) {
            if (scan.addresses.size() >= kMaxScannedAddresses) {
                scan.tooMany = true;
                scan.addresses.clear();
                return scan;
            }
            scan.addresses.append(f.address);
        }
        if (f.address.isEmpty() || rest.isEmpty())
            return scan;
    }
}

QString urlFrame(const QString& address)
{
    return wire::text(wire::kUrlOpen) + address + wire::text(wire::kUrlClose);
}

QString anyUrlErrorText()
{
    return QStringLiteral("Any URL Error: Subscript out of range");
}

QString linkErrorTitle()
{
    return QStringLiteral("Vonnel Error");
}

RemoteUrl inspectRemote(const QString& text)
{
    const UrlFind f = findUrl(text);
    RemoteUrl r;
    r.rest = f.rest;
    if (f.address.isEmpty())
        return r;
    r.address = f.address;
    r.shown = f.address.left(kShownAddressLength);
    r.target = openableUrl(f.address);
    return r;
}

QString webCheckQuestion(const QString& shown, const TranslateFn& translate)
{
    const QString ask = QStringLiteral("Do you want to open?");
    return (translate ? translate(ask) : ask) + QStringLiteral("\r\n\r\n") + shown;
}

QString notOpenedText(const QString& shown, const TranslateFn& translate)
{
    const QString say = QStringLiteral("This address cannot be opened:");
    return (translate ? translate(say) : say) + QStringLiteral("\r\n\r\n") + shown;
}

QString historyFullText(const TranslateFn& translate)
{
    const QString say =
        QStringLiteral("The URL History is full: no more addresses are kept until some are removed.");
    return translate ? translate(say) : say;
}

QUrl openableUrl(const QString& address)
{
    if (address.isEmpty() || address.size() > kMaxOpenedAddressLength)
        return {};
    for (QChar c : address) {
        if (c.unicode() < 33 || c.unicode() == 0x7f)
            return {};
    }
    auto starts = [&address](const char* prefix) {
        return address.startsWith(QLatin1String(prefix), Qt::CaseSensitive);
    };
    QString full;
    QString scheme;
    if (starts("http://") || starts("https://") || starts("ftp://") || starts("mailto:")) {
        full = address;
        scheme = address.left(address.indexOf(QLatin1Char(':')));
    } else if (starts("www.")) {
        full = QStringLiteral("http://") + address;
        scheme = QStringLiteral("http");
    } else if (looksLikeMail(address) && !address.contains(QLatin1Char(':'))) {
        full = QStringLiteral("mailto:") + address;
        scheme = QStringLiteral("mailto");
    } else {
        return {};
    }
    const QUrl url(full, QUrl::StrictMode);
    if (!url.isValid() || url.scheme() != scheme)
        return {};
    if (scheme == QLatin1String("mailto")) {
        static const QStringList allowed = {QStringLiteral("to"), QStringLiteral("cc"),
                                            QStringLiteral("bcc"), QStringLiteral("subject"),
                                            QStringLiteral("body")};
        const auto items = QUrlQuery(url).queryItems();
        for (const auto& item : items) {
            if (!allowed.contains(item.first.toLower()))
                return {};
        }
    } else {
        if (url.host().isEmpty())
            return {};
        if (scheme != QLatin1String("ftp") && !url.userInfo().isEmpty())
            return {};
    }
    return url;
}

}  // namespace vonnel
