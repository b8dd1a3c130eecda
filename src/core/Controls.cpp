#include "core/Controls.h"

namespace vonnel {

const ControlState& Controls::state(const QString& name) const
{
    static const ControlState kDefault;
    auto it = m_items.constFind(name);
    return it == m_items.constEnd() ? kDefault : *it;
}

void Controls::setEnabled(const QString& name, bool on)
{
    ControlState& s = m_items[name];
    if (s.enabled == on)
        return;
    s.enabled = on;
    Q_EMIT changed(name);
}

void Controls::setChecked(const QString& name, bool on)
{
    ControlState& s = m_items[name];
    if (s.checked == on)
        return;
    s.checked = on;
    Q_EMIT changed(name);
}

void Controls::setVisible(const QString& name, bool on)
{
    ControlState& s = m_items[name];
    if (s.visible == on)
        return;
    s.visible = on;
    Q_EMIT changed(name);
}

void Controls::setCaption(const QString& name, const QString& caption)
{
    ControlState& s = m_items[name];
    if (s.caption == caption)
        return;
    s.caption = caption;
    Q_EMIT changed(name);
}

void Controls::setToolTip(const QString& name, const QString& tip)
{
    ControlState& s = m_items[name];
    if (s.toolTip == tip)
        return;
    s.toolTip = tip;
    Q_EMIT changed(name);
}

}  // namespace vonnel
