// frmOptions: the frame of the dialog, its boxes bound to the options
// model, the late filling of the font and voice lists, and the buttons
// under the tabs. The pages themselves are built in OptionsPages.cpp.

#include "shell/dialogs/OptionsDialog.h"

#include "core/CopyContext.h"
#include "core/MainModel.h"
#include "media/Speech.h"
#include "shell/FrmMain.h"
#include "wire/PaneFormat.h"

#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QCoreApplication>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QTabWidget>
#include <QVBoxLayout>

namespace vonnel {

OptionsDialog::OptionsDialog(FrmMain& frm, QWidget* parent, const QString& autostartFolder)
    : QDialog(parent),
      m_frm(frm),
      m_store(frm.ctx()),
      m_autostart(autostartFolder),
      m_model(frm.ctx(), m_store, m_autostart)
{
    CopyContext& ctx = frm.ctx();
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(MainModel::kTitle + QStringLiteral(" - ") +
                   ctx.translate(QStringLiteral("Options")));
    m_model.programPath = QCoreApplication::applicationFilePath();
    m_model.programArgs = {QStringLiteral("--app-path"), ctx.AppPath()};

    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("stbOptions"));
    m_tabs->setUsesScrollButtons(false);  // all eleven tabs in view
    m_tabs->addTab(buildGeneral(), ctx.translate(QStringLiteral("General"), QStringLiteral("&General")));
    m_tabs->addTab(buildFont(), ctx.translate(QStringLiteral("Font"), QStringLiteral("&Font")));
    m_tabs->addTab(buildSound(), ctx.translate(QStringLiteral("Sound"), QStringLiteral("&Sound")));
    m_tabs->addTab(buildApperance(),
                   ctx.translate(QStringLiteral("Apperance"), QStringLiteral("&Apperance")));
    m_tabs->addTab(buildMessage(), ctx.translate(QStringLiteral("Message"), QStringLiteral("&Message")));
    m_tabs->addTab(buildMenu(), ctx.translate(QStringLiteral("Menu"), QStringLiteral("Menu (&E)")));
    m_tabs->addTab(buildSession(),
                   ctx.translate(QStringLiteral("Session"), QStringLiteral("Session (&I)")));
    m_tabs->addTab(buildPictureUrl(),
                   ctx.translate(QStringLiteral("Picture + URL"), QStringLiteral("&Picture + URL")));
    m_tabs->addTab(buildVoice(),
                   ctx.translate(QStringLiteral("Voice (TTS)"), QStringLiteral("&Voice (TTS)")));
    m_tabs->addTab(buildSecurity(),
                   ctx.translate(QStringLiteral("Security"), QStringLiteral("Security (&C)")));
    m_tabs->addTab(buildAdvanced(),
                   ctx.translate(QStringLiteral("Advanced"), QStringLiteral("Advanced (&V)")));

    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("lblStatus"));
    auto* help = button("cmdHelp", ctx.translate(QStringLiteral("Help"), QStringLiteral("&Help")));
    auto* ok = button("cmdOK", ctx.translate(QStringLiteral("OK"), QStringLiteral("&OK")));
    auto* cancel = button("cmdCancel", ctx.translate(QStringLiteral("Cancel"), QStringLiteral("&Cancel")));
    auto* apply = button("cmdApply", ctx.translate(QStringLiteral("Apply"), QStringLiteral("&Apply")));
    ok->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(help);
    buttons->addWidget(m_status, 1);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    buttons->addWidget(apply);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs, 1);
    layout->addLayout(buttons);

    connect(help, &QPushButton::clicked, this,
            [this] { m_model.cmdHelp_Click(OptionsPage(m_tabs->currentIndex())); });
    connect(ok, &QPushButton::clicked, this, &OptionsDialog::cmdOK_Click);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(apply, &QPushButton::clicked, this, &OptionsDialog::cmdApply_Click);
    connect(&m_model, &OptionsModel::valueChanged, this, &OptionsDialog::refresh);
    connect(&m_model, &OptionsModel::applied, &frm, &FrmMain::afterOptionsApplied);
    connect(m_tabs, &QTabWidget::currentChanged, this, &OptionsDialog::stbOptions_Click);

    m_model.GetINISetting();
    for (int c = 0; c < kOptCount; ++c)
        refresh(Opt(c));
}

OptionsDialog::~OptionsDialog() = default;

void OptionsDialog::cmdApply_Click()
{
    // A box being edited is left first, so its rule holds for what is written.
    if (auto* edit = qobject_cast<QLineEdit*>(QApplication::focusWidget()))
        Q_EMIT edit->editingFinished();
    m_model.cmdApply_Click();
    m_language->setText(m_model.languageName());
}

void OptionsDialog::cmdOK_Click()
{
    cmdApply_Click();
    accept();
}

void OptionsDialog::stbOptions_Click(int index)
{
    if (index == int(OptionsPage::Font))
        getSystemRes();
    else if (index == int(OptionsPage::Voice))
        fillVoicePage();
}

void OptionsDialog::getSystemRes()
{
    if (m_fontsFilled)
        return;
    m_fontsFilled = true;
    m_status->setText(m_frm.ctx().translate(QStringLiteral("     Retrieving system fonts... ")));
    m_status->repaint();
    auto* fonts = static_cast<QComboBox*>(box(Opt::txtFont));
    {
        const QSignalBlocker hold(fonts);
        fonts->addItems(QFontDatabase::families());
    }
    refresh(Opt::txtFont);
    m_status->clear();
}

void OptionsDialog::fillVoicePage()
{
    if (m_voiceFilled)
        return;
    m_voiceFilled = true;
    m_status->setText(m_frm.ctx().translate(QStringLiteral("     Retrieving system information... ")));
    m_status->repaint();
    // The sliders show the engine as it stands, in the engine's ranges.
    const Speech::OptionsPage page = m_frm.speech().optionsPage();
    auto* voices = static_cast<QComboBox*>(box(Opt::cbVoiceEng));
    {
        const QSignalBlocker hold(voices);
        voices->addItems(page.modeNames);
    }
    static_cast<QSlider*>(box(Opt::slidSpeed))->setRange(page.minSpeed, page.maxSpeed);
    static_cast<QSlider*>(box(Opt::SlidPitch))->setRange(page.minPitch, page.maxPitch);
    m_model.setValue(Opt::slidSpeed, QString::number(page.speed));
    m_model.setValue(Opt::SlidPitch, QString::number(page.pitch));
    m_model.setValue(Opt::slidVol, QString::number(page.volume));
    m_model.setValue(Opt::cbVoiceEng, QString::number(page.selected));
    for (Opt c : {Opt::slidSpeed, Opt::SlidPitch, Opt::slidVol, Opt::cbVoiceEng})
        refresh(c);
    m_status->clear();
}

void OptionsDialog::refresh(Opt control)
{
    QWidget* w = box(control);
    if (!w)
        return;
    const QSignalBlocker hold(w);
    const QString v = m_model.value(control);
    if (auto* c = qobject_cast<QCheckBox*>(w)) {
        c->setChecked(m_model.checked(control));
    } else if (auto* e = qobject_cast<QLineEdit*>(w)) {
        if (e->text() != v)
            e->setText(v);
    } else if (auto* s = qobject_cast<QSlider*>(w)) {
        s->setValue(v.toInt());
    } else if (auto* b = qobject_cast<QComboBox*>(w)) {
        if (b->isEditable())
            b->setCurrentText(v);
        else
            b->setCurrentIndex(v.toInt());
    } else if (auto* p = qobject_cast<QPushButton*>(w)) {
        bool ok = false;
        const qint64 colour = v.trimmed().toLongLong(&ok);
        QPixmap swatch(28, 14);
        swatch.fill(ok ? PaneFormat::toColor(colour) : QColor(Qt::transparent));
        QPainter(&swatch).drawRect(swatch.rect().adjusted(0, 0, -1, -1));
        p->setIcon(QIcon(swatch));
        p->setToolTip(v);
    }
}

// --- box makers --------------------------------------------------------------

QGroupBox* OptionsDialog::frame(const char* name, const QString& caption)
{
    auto* f = new QGroupBox(caption);
    f->setObjectName(QLatin1String(name));
    return f;
}

QPushButton* OptionsDialog::button(const char* name, const QString& text)
{
    auto* b = new QPushButton(text, this);
    b->setObjectName(QLatin1String(name));
    b->setAutoDefault(false);
    return b;
}

QWidget* OptionsDialog::check(Opt control, const QString& text)
{
    auto* c = new QCheckBox(text, this);
    c->setObjectName(optName(control));
    connect(c, &QCheckBox::toggled, this, [this, control](bool on) { m_model.setChecked(control, on); });
    m_boxes[size_t(control)] = c;
    return c;
}

QWidget* OptionsDialog::lineBox(Opt control)
{
    auto* e = new QLineEdit(this);
    e->setObjectName(optName(control));
    connect(e, &QLineEdit::textEdited, this,
            [this, control](const QString& t) { m_model.setValue(control, t); });
    connect(e, &QLineEdit::editingFinished, this, [this, control] { m_model.leaveBox(control); });
    m_boxes[size_t(control)] = e;
    return e;
}

QWidget* OptionsDialog::slider(Opt control, int min, int max)
{
    auto* s = new QSlider(Qt::Horizontal, this);
    s->setObjectName(optName(control));
    s->setRange(min, max);
    connect(s, &QSlider::valueChanged, this,
            [this, control](int v) { m_model.setValue(control, QString::number(v)); });
    m_boxes[size_t(control)] = s;
    return s;
}

QWidget* OptionsDialog::colourButton(Opt control, const QString& text)
{
    auto* b = new QPushButton(text, this);
    b->setObjectName(optName(control));
    b->setAutoDefault(false);
    connect(b, &QPushButton::clicked, this, [this, control, text] {
        bool ok = false;
        const qint64 now = m_model.value(control).trimmed().toLongLong(&ok);
        const QColor c = QColorDialog::getColor(ok ? PaneFormat::toColor(now) : QColor(Qt::black),
                                                this, text);
        if (c.isValid())
            m_model.setValue(control, QString::number(PaneFormat::fromColor(c)));
    });
    m_boxes[size_t(control)] = b;
    return b;
}

void OptionsDialog::addRow(QGridLayout* grid, const QString& label, QWidget* box, QWidget* extra)
{
    const int row = grid->rowCount();
    auto* l = new QLabel(label, this);
    l->setBuddy(box);
    grid->addWidget(l, row, 0);
    grid->addWidget(box, row, 1, 1, extra ? 1 : 2);
    if (extra)
        grid->addWidget(extra, row, 2);
}

}  // namespace vonnel
