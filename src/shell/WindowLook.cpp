#include "shell/WindowLook.h"

#include "core/CopyContext.h"
#include "core/IniStore.h"
#include "shell/AccessibleNames.h"
#include "shell/FrmMain.h"

#include <QApplication>
#include <QColorDialog>
#include <QDialog>
#include <QEvent>
#include <QFileDialog>
#include <QFontDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <QProgressDialog>

namespace vonnel {

Transparency transparencyOf(const QString& keyText)
{
    const double value = iniNumber(keyText);
    if (value < 50)
        return {255, true};
    if (value >= 255)
        return {255, false};
    return {int(value), false};
}

void applyTransparency(QWidget* window, CopyContext& ctx)
{
    const Transparency t = transparencyOf(ctx.setting(QStringLiteral("Settings-Transparent")));
    if (t.writeBack)
        ctx.writeSetting(QStringLiteral("Settings-Transparent"), QStringLiteral("255"));
    window->setWindowOpacity(t.alpha / 255.0);
}

void StayOnTop(QWidget* form, FrmMain& frm)
{
    if (frm.ctx().ProgramExiting)
        return;
    const bool on = frm.model().controls.checked(Control::mnuViewontop);
    if (form->testAttribute(Qt::WA_WState_Created) &&
        bool(form->windowFlags() & Qt::WindowStaysOnTopHint) == on)
        return;
    // A changed flag hides the window; one in sight is shown again.
    const bool shown = form->isVisible();
    form->setWindowFlag(Qt::WindowStaysOnTopHint, on);
    if (shown)
        form->show();
}

namespace {

// The system's boxes and pickers are not the program's windows.
bool isProgramDialog(QObject* o)
{
    auto* d = qobject_cast<QDialog*>(o);
    return d && !qobject_cast<QMessageBox*>(o) && !qobject_cast<QFileDialog*>(o) &&
           !qobject_cast<QColorDialog*>(o) && !qobject_cast<QFontDialog*>(o) &&
           !qobject_cast<QInputDialog*>(o) && !qobject_cast<QProgressDialog*>(o);
}

class DialogLoads : public QObject {
public:
    DialogLoads(QWidget* mainWindow, FrmMain& frm) : QObject(mainWindow), m_main(mainWindow), m_frm(frm) {}

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Show && watched->isWidgetType())
            nameControls(static_cast<QWidget*>(watched));
        if (event->type() == QEvent::Show && isProgramDialog(watched)) {
            auto* d = static_cast<QDialog*>(watched);
            // A dialog of another copy in the same process is that copy's.
            const QWidget* owner = d->parentWidget() ? d->parentWidget()->window() : nullptr;
            if ((!owner || owner == m_main) && !d->property(kLoaded).toBool()) {
                d->setProperty(kLoaded, true);
                applyTransparency(d, m_frm.ctx());
            }
        }
        return false;
    }

private:
    // A window names all its controls, the hidden pages' too; a control
    // shown later in a window already up names itself.
    static void nameControls(QWidget* w)
    {
        if (w->isWindow())
            nameUnnamedControls(w);
        else
            nameControl(w);
    }

    static constexpr const char* kLoaded = "vonnelLoaded";
    QWidget* m_main;
    FrmMain& m_frm;
};

}  // namespace

void watchDialogLoads(QWidget* mainWindow, FrmMain& frm)
{
    qApp->installEventFilter(new DialogLoads(mainWindow, frm));
}

}  // namespace vonnel
