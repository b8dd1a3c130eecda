#include "core/Controls.h"

namespace vonnel {

template <class T>
void Controls::set(Control c, T ControlState::*field, const T& value)
{
    T& now = m_items[size_t(c)].*field;
    if (now == value)
        return;
    now = value;
    Q_EMIT changed(c);
}

void Controls::setEnabled(Control c, bool on) { set(c, &ControlState::enabled, on); }
void Controls::setChecked(Control c, bool on) { set(c, &ControlState::checked, on); }
void Controls::setVisible(Control c, bool on) { set(c, &ControlState::visible, on); }
void Controls::setCaption(Control c, const QString& caption) { set(c, &ControlState::caption, caption); }
void Controls::setToolTip(Control c, const QString& tip) { set(c, &ControlState::toolTip, tip); }

}  // namespace vonnel
