#pragma once
// State of the menu entries, toolbar buttons and dialog buttons the logic
// speaks of (Control): enabled, checked, visible, caption. The logic sets
// it; the window binds its actions to the same controls and follows
// changed().

#include "core/Control.h"

#include <QObject>
#include <QString>
#include <array>

namespace vonnel {

struct ControlState {
    bool enabled = true;
    bool checked = false;
    bool visible = true;
    QString caption;
    QString toolTip;
};

class Controls : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    const ControlState& state(Control c) const { return m_items[size_t(c)]; }
    bool enabled(Control c) const { return state(c).enabled; }
    bool checked(Control c) const { return state(c).checked; }
    bool visible(Control c) const { return state(c).visible; }
    QString caption(Control c) const { return state(c).caption; }

    void setEnabled(Control c, bool on);
    void setChecked(Control c, bool on);
    void setVisible(Control c, bool on);
    void setCaption(Control c, const QString& caption);
    void setToolTip(Control c, const QString& tip);

Q_SIGNALS:
    void changed(vonnel::Control c);

private:
    template <class T>
    void set(Control c, T ControlState::*field, const T& value);

    std::array<ControlState, kControlCount> m_items;
};

}  // namespace vonnel
