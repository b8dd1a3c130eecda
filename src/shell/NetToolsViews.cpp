// The network tools' windows of the main window: each made on first use,
// kept while it is open, and brought forward when asked for again.

#include "shell/MainWindow.h"

#include "shell/dialogs/AutoConnectDialog.h"
#include "shell/dialogs/AutoIPWindow.h"
#include "shell/dialogs/NetResolveWindow.h"
#include "shell/dialogs/NetViewWindow.h"

#include <QApplication>

namespace vonnel {

bool MainWindow::isNetTool(Form form)
{
    return form == Form::frmNetView || form == Form::frmNetResolve ||
           form == Form::frmAutoConnect || form == Form::frmAutoIP;
}

QDialog* MainWindow::netToolWindow(Form form) const
{
    return m_netTools.value(int(form)).data();
}

void MainWindow::showNetTool(Form form)
{
    QPointer<QDialog>& window = m_netTools[int(form)];
    if (!window) {
        switch (form) {
        case Form::frmNetView:
            window = new NetViewWindow(m_frm, this);
            break;
        case Form::frmNetResolve:
            window = new NetResolveWindow(m_frm, this);
            break;
        case Form::frmAutoConnect:
            window = new AutoConnectDialog(m_frm, this);
            break;
        case Form::frmAutoIP: {
            auto* autoIP = new AutoIPWindow(m_frm, this);
            connect(autoIP, &AutoIPWindow::settingRequested, this,
                    [this] { showNetTool(Form::frmAutoConnect); });
            window = autoIP;
            break;
        }
        default:
            return;
        }
        window->setAttribute(Qt::WA_DeleteOnClose);
    }
    // Asked for from a modal dialog (the connect dialog's Browse): the
    // window belongs to that dialog, else the dialog would block its input.
    QWidget* modal = QApplication::activeModalWidget();
    if (modal && modal != window && window->parentWidget() != modal)
        window->setParent(modal, window->windowFlags());
    window->show();
    window->raise();
    window->activateWindow();
}

}  // namespace vonnel
