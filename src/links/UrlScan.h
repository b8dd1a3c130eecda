#pragma once
// The decisions of the address scan, without the copy around them: which
// addresses a local text holds and what goes on the wire for each, what a
// remote address gives, and which addresses may be handed to the user's
// own program at all.

#include "links/LinkSeams.h"

#include <QString>
#include <QStringList>
#include <QUrl>

namespace vonnel {

// A scan holds at most this many addresses; one more is an error.
constexpr int kMaxScannedAddresses = 255;
// A remote address is shown in the question cut to this many characters.
constexpr int kShownAddressLength = 50;
// Addresses longer than this are recorded and asked about like any other,
// but never handed to the user's program: browsers and mail programs cut
// or refuse them.
constexpr int kMaxOpenedAddressLength = 2048;

struct LocalScan {
    bool blank = true;       // nothing but characters below 33: nothing to do
    QStringList addresses;   // in the order found
    bool tooMany = false;    // the 256th address came; none is to be handled
};

// The scan loop over a local text.
LocalScan planLocalScan(const QString& text);

// "<URL> " + address + " </URL>", the frame for one address.
QString urlFrame(const QString& address);

// The scan failure box text and title.
QString anyUrlErrorText();
QString linkErrorTitle();

struct RemoteUrl {
    QString address;  // empty: nothing to do
    QString rest;     // what stood behind it
    QString shown;    // the address cut for the question
    QUrl target;      // valid when the address may be opened
};

// One address out of a remote text; only the first is looked at.
RemoteUrl inspectRemote(const QString& text);

// The question of the Web Check box.
QString webCheckQuestion(const QString& shown, const TranslateFn& translate);
// The box after an OK to an address that cannot be opened.
QString notOpenedText(const QString& shown, const TranslateFn& translate);
// The box when the URL History is full.
QString historyFullText(const TranslateFn& translate);

// What an address is opened as, or an invalid QUrl when it must not be.
// Only the kinds the scanner knows pass: "http://", "https://", "ftp://",
// "mailto:", "www." (as http) and a bare mail address (as mailto), with no
// control characters, no user part in front of a web host (the
// "http://bank.example@elsewhere" disguise) and no mail fields beyond
// to, cc, bcc, subject and body (mail programs attach files on request).
QUrl openableUrl(const QString& address);

}  // namespace vonnel
