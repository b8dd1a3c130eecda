#pragma once
// The black list (badip.txt) and the white list (safeip.txt) of callers:
// wildcard entries in ini form, tested against the caller's dotted
// address at each call, and the logic of the two dialogs that keep them.

#include <QObject>
#include <QString>

#include "core/Watched.h"
#include <QStringList>
#include <optional>

namespace vonnel {

class CopyContext;

// The Like operator: "*" any run, "?" any one character, "#" any one
// digit, "[abc]", "[a-z]", "[!...]" a character set; all else literally.
bool vbLike(const QString& text, const QString& pattern);

enum class IpListKind { Blocked, Permitted };

class IpList {
public:
    static constexpr int kMaxEntries = 20;  // what a call reads at most

    IpList(CopyContext& ctx, IpListKind kind);

    QString fileName() const;    // "badip.txt" / "safeip.txt"
    QString path() const;        // in the application folder, found case-blind
    QString entryStem() const;   // "Restricted IP " / "Safe IP "
    QString enableKey() const;   // "Detect Bad IP" / "Detect Safe IP"
    bool exists() const;

    // The entries as a call reads them: Limit, then entry 1 ... Limit.
    // No value when Limit goes beyond the twenty places a call has.
    std::optional<QStringList> readForCall() const;
    // The first entry that the address matches, in list order.
    static bool anyMatches(const QStringList& entries, const QString& address);

private:
    CopyContext& m_ctx;
    IpListKind m_kind;
};

// frmIPBlocking and frmIPPermit: one logic, two files.
class IpListDialog : public QObject, public FieldOwner {
    Q_OBJECT
public:
    IpListDialog(CopyContext& ctx, IpListKind kind, QObject* parent = nullptr);

    // Controls as the window shows them; every change emits changed().
    Watched<QString> caption{this};
    Watched<QString> checkCaption{this};
    Watched<QString> hint{this};          // "e.g. 192.168.0.* = 192.168.0.0/24"
    Watched<QString> lblMsg{this};        // the black list's own label; empty for the white list
    Watched<QString> textToolTip{this};
    Watched<bool> chkChecked{this, false};
    Watched<QStringList> list{this};
    Watched<int> listIndex{this, -1};
    Watched<QString> text{this};
    Watched<bool> listEnabled{this, false}, textEnabled{this, false};
    Watched<bool> cmdAddEnabled{this, false}, cmdRemoveEnabled{this, false}, okEnabled{this, true};
    Watched<bool> unloaded{this, false};

    void Form_Load();
    void chk_Click(bool checked);
    void txt_Change(const QString& newText);
    // A line break typed in the text field adds the entry.
    void txt_KeyPress(QChar key);
    void cmdAdd_Click();
    void lst_Click(int index);
    void cmdRemove_Click();
    void OKButton_Click();
    void CancelButton_Click();

Q_SIGNALS:
    void changed();

private:
    void fieldChanged(const void*) override { Q_EMIT changed(); }

    CopyContext& m_ctx;
    IpList m_file;
    IpListKind m_kind;
};

}  // namespace vonnel
