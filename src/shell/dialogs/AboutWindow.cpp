#include "shell/dialogs/AboutWindow.h"

#include "core/CopyContext.h"
#include "core/MainModel.h"
#include "shell/FrmMain.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace vonnel {

AboutWindow::AboutWindow(FrmMain& frm, QWidget* parent) : QDialog(parent)
{
    CopyContext& c = frm.ctx();
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(c.translate(QStringLiteral("About")) + QLatin1Char(' ') + MainModel::kTitle);

    const QString version = MainModel::kTitle + QLatin1Char(' ') + QString::number(MainModel::kMajor) +
                            QLatin1Char('.') + QString::number(MainModel::kMinor) + QLatin1Char('.') +
                            QString::number(MainModel::kRevision);
    m_lines << version
            << c.translate(QStringLiteral("Usage")) + QStringLiteral(": ") + c.setting(QStringLiteral("Usage"))
            << c.translate(QStringLiteral("Connection Count")) + QStringLiteral(": ") +
                   c.setting(QStringLiteral("Connection Count"));

    auto* icon = new QLabel(this);
    icon->setPixmap(windowIcon().pixmap(48, 48));
    if (parent)
        icon->setPixmap(parent->windowIcon().pixmap(48, 48));
    auto* name = new QLabel(m_lines[0], this);
    name->setObjectName(QStringLiteral("lblVersion"));
    QFont f = name->font();
    f.setBold(true);
    f.setPointSize(f.pointSize() + 4);
    name->setFont(f);
    auto* blurb = new QLabel(
        c.translate(QStringLiteral("A chat between two computers: each letter reaches the other side as it is "
                                   "typed. Files, a shared drawing board, rings and speech go over the same "
                                   "connection.")),
        this);
    blurb->setWordWrap(true);
    auto* usage = new QLabel(m_lines[1], this);
    usage->setObjectName(QStringLiteral("lblUsage"));
    auto* count = new QLabel(m_lines[2], this);
    count->setObjectName(QStringLiteral("lblConnectionCount"));

    auto* text = new QVBoxLayout;
    text->addWidget(name);
    text->addWidget(blurb);
    text->addSpacing(8);
    text->addWidget(usage);
    text->addWidget(count);
    auto* top = new QHBoxLayout;
    top->addWidget(icon, 0, Qt::AlignTop);
    top->addLayout(text, 1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(buttons);
    resize(420, 210);
}

}  // namespace vonnel
