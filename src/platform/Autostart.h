#pragma once
// Starting with the user's session: an XDG autostart entry, vonnel.desktop,
// in the user's own autostart folder ($XDG_CONFIG_HOME/autostart, else
// ~/.config/autostart). System-wide folders are never touched.

#include <QString>
#include <QStringList>

namespace vonnel {

class Autostart {
public:
    // folder: where the entry goes; empty for the user's autostart folder.
    explicit Autostart(QString folder = QString());
    virtual ~Autostart() = default;

    static QString userFolder();
    QString entryPath() const;

    // addStratUp: writes the entry that starts program with args. An entry
    // the desktop has switched off (Hidden=true, as its autostart settings
    // write it) is left as it stands: the user turned it off there, and a
    // silent switch back on would overrule that. Returns false then, and
    // when the entry cannot be written.
    virtual bool add(const QString& program, const QStringList& args);
    // removeStratUp: deletes the entry; true when none is left.
    virtual bool remove();
    bool exists() const;
    // The entry is there and switched off by the desktop.
    bool hiddenByDesktop() const;

    // The Exec line of a desktop entry: each word quoted where it needs it.
    static QString execLine(const QString& program, const QStringList& args);

private:
    QString m_folder;
};

}  // namespace vonnel
