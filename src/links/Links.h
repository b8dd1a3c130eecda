#pragma once
// The two entries of the address scan: scanLocalText for what this side
// types or pastes, webCheck for what the peer sent in "<URL>" and board
// chat lines. Addresses go into the URL History and, from local text, to
// the peer; a remote address is opened only when the user says OK, which
// is not the question's default.

#include "links/LinkSeams.h"

#include <QMetaObject>
#include <QString>

namespace vonnel {

class UrlHistory;

class Links {
public:
    Links(LinkSeams seams, UrlHistory& history);
    ~Links();
    Links(const Links&) = delete;
    Links& operator=(const Links&) = delete;

    // Called at Tab, Space and Return with the pane text behind urlScanned,
    // and after a paste with the pasted text.
    void scanLocalText(const QString& text);

    // A remote text: on return it holds what stood behind the first address.
    void webCheck(QString& text);

    UrlHistory& history() { return m_history; }

private:
    bool flag(const char* key) const;

    LinkSeams m_seams;
    UrlHistory& m_history;
    // The history's "full" tells the user once per filling.
    QMetaObject::Connection m_fullNotice;
};

}  // namespace vonnel
