#pragma once
// State of the named menu entries and toolbar buttons (mnuConnect,
// "Toolbar1:1" ...): enabled, checked, visible, caption. The logic sets
// it by name; the window binds its actions to the same names.

#include <QHash>
#include <QObject>
#include <QString>

namespace vonnel {

struct ControlState {
    bool enabled = true;
    bool checked = false;
    bool visible = true;
    QString caption;
    QString toolTip;
    QString tag;
};

class Controls : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    const ControlState& state(const QString& name) const;
    bool enabled(const QString& name) const { return state(name).enabled; }
    bool checked(const QString& name) const { return state(name).checked; }
    bool visible(const QString& name) const { return state(name).visible; }
    QString caption(const QString& name) const { return state(name).caption; }

    void setEnabled(const QString& name, bool on);
    void setChecked(const QString& name, bool on);
    void setVisible(const QString& name, bool on);
    void setCaption(const QString& name, const QString& caption);
    void setToolTip(const QString& name, const QString& tip);
    void setTag(const QString& name, const QString& tag) { m_items[name].tag = tag; }

Q_SIGNALS:
    void changed(const QString& name);

private:
    QHash<QString, ControlState> m_items;
};

// Name of toolbar button n (1-based) of Toolbar1.
inline QString toolbarButton(int n) { return QStringLiteral("Toolbar1:") + QString::number(n); }

}  // namespace vonnel
