#include "core/StatusBar.h"

#include <QLocale>

namespace vonnel {

StatusBar::StatusBar(QObject* parent) : QObject(parent)
{
    m_panels[1].key = QStringLiteral("Status");
}

QString StatusBar::byteCountText(qint64 bytes)
{
    if (bytes <= 1000)
        return QString::number(bytes) + QStringLiteral(" B");
    static const QLocale grouped(QLocale::English, QLocale::UnitedStates);
    return grouped.toString(qRound64(double(bytes) / 1024.0)) + QStringLiteral(" KB");
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
