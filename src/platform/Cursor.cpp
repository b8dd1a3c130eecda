#include "platform/Cursor.h"

#include <QCursor>
#include <QGuiApplication>

namespace vonnel {

OverrideCursor::~OverrideCursor()
{
    setNormal();
}

void OverrideCursor::setWait()
{
    if (m_waiting || !qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return;
    QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    m_waiting = true;
}

void OverrideCursor::setNormal()
{
    if (!m_waiting)
        return;
    m_waiting = false;
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        QGuiApplication::restoreOverrideCursor();
}

}  // namespace vonnel
