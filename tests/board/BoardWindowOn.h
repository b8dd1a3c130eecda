#pragma once
// What the board's window tests share: a copy's main window as its views
// for the test's length, and mouse events on a widget.

#include "core/CopyContext.h"
#include "shell/MainWindow.h"
#include "shell/dialogs/BoardWindow.h"
#include "support/TestCopy.h"

#include <QApplication>
#include <QMouseEvent>

namespace vonnel::test {

struct WindowOn {
    explicit WindowOn(TestCopy& c) : copy(c), old(&c.frm().ctx().views()), window(c.frm())
    {
        c.frm().ctx().setViews(&window);
    }
    ~WindowOn() { copy.frm().ctx().setViews(old); }
    BoardWindow* board() const { return window.boardWindow(); }
    TestCopy& copy;
    Views* old;
    MainWindow window;
};

inline void mouse(QWidget* w, QEvent::Type type, QPoint at, Qt::MouseButton button = Qt::LeftButton)
{
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button);
    QMouseEvent e(type, QPointF(at), w->mapToGlobal(QPointF(at)),
                  type == QEvent::MouseMove ? Qt::NoButton : button, held, Qt::NoModifier);
    QApplication::sendEvent(w, &e);
}

}  // namespace vonnel::test
