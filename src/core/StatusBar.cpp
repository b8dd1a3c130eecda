#include "core/StatusBar.h"

namespace vonnel {

StatusBar::StatusBar(QObject* parent) : QObject(parent)
{
    m_panels[1].key = QStringLiteral("Status");
}

void StatusBar::setText(int n, const QString& t)
{
    if (n < 1 || n > kPanels || at(n).text == t)
        return;
    at(n).text = t;
    Q_EMIT panelChanged(n);
}

void StatusBar::setToolTip(int n, const QString& t)
{
    if (n < 1 || n > kPanels || at(n).toolTip == t)
        return;
    at(n).toolTip = t;
    Q_EMIT panelChanged(n);
}

void StatusBar::setTag(int n, const QString& t)
{
    if (n >= 1 && n <= kPanels)
        at(n).tag = t;
}

void StatusBar::setPicture(int n, StatePicture p)
{
    if (n < 1 || n > kPanels || at(n).picture == p)
        return;
    at(n).picture = p;
    Q_EMIT panelChanged(n);
}

void StatusBar::setVisible(int n, bool v)
{
    if (n < 1 || n > kPanels || at(n).visible == v)
        return;
    at(n).visible = v;
    Q_EMIT panelChanged(n);
}

}  // namespace vonnel
