#include "platform/Bell.h"

#include <QApplication>

namespace vonnel {

void systemBeep()
{
    if (qobject_cast<QApplication*>(QCoreApplication::instance()))
        QApplication::beep();
}

}  // namespace vonnel
