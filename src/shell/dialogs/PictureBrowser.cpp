#include "shell/dialogs/PictureBrowser.h"

#include "board/PictureFiles.h"
#include "core/CopyContext.h"
#include "platform/Prompter.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QImageReader>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QStorageInfo>
#include <QVBoxLayout>

namespace vonnel {

PictureBrowser::PictureBrowser(CopyContext& ctx, QWidget* parent, const QString& folder)
    : QDialog(parent), m_ctx(ctx)
{
    setObjectName(QStringLiteral("frmDlg"));
    setWindowTitle(ctx.translate(QStringLiteral("Open File")));
    const auto tr = [&ctx](const char* key) { return ctx.translate(QLatin1String(key)); };

    m_drives = new QComboBox;
    m_drives->setObjectName(QStringLiteral("drvList"));
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes())
        if (volume.isValid() && volume.isReady() && m_drives->findText(volume.rootPath()) < 0)
            m_drives->addItem(volume.rootPath());
    if (m_drives->findText(QDir::homePath()) < 0)
        m_drives->addItem(QDir::homePath());
    m_where = new QLabel;
    m_where->setObjectName(QStringLiteral("lblFolder"));
    m_where->setTextFormat(Qt::PlainText);
    m_dirs = new QListWidget;
    m_dirs->setObjectName(QStringLiteral("dirList"));
    m_files = new QListWidget;
    m_files->setObjectName(QStringLiteral("filList"));
    m_image = new QLabel;
    m_image->setObjectName(QStringLiteral("imgPreview"));
    m_image->setFixedSize(200, 160);
    m_image->setAlignment(Qt::AlignCenter);
    m_image->setFrameShape(QFrame::StyledPanel);
    m_details = new QLabel;
    m_details->setObjectName(QStringLiteral("lblDetails"));
    m_details->setTextFormat(Qt::PlainText);
    m_details->setMinimumWidth(200);
    auto* open = new QPushButton(tr("Open"));
    open->setObjectName(QStringLiteral("cmdOK"));
    open->setDefault(true);
    auto* cancel = new QPushButton(tr("Cancel"));
    cancel->setObjectName(QStringLiteral("cmdCancel"));

    connect(m_drives, &QComboBox::textActivated, this, &PictureBrowser::openFolder);
    connect(m_dirs, &QListWidget::itemDoubleClicked, this, [this](QListWidgetItem* item) {
        openFolder(QDir(m_folder).absoluteFilePath(item->text()));
    });
    connect(m_files, &QListWidget::currentTextChanged, this, &PictureBrowser::selectFile);
    connect(m_files, &QListWidget::itemDoubleClicked, this, &PictureBrowser::pickCurrent);
    connect(open, &QPushButton::clicked, this, &PictureBrowser::pickCurrent);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* lists = new QVBoxLayout;
    lists->addWidget(m_drives);
    lists->addWidget(m_where);
    lists->addWidget(m_dirs, 1);
    auto* side = new QVBoxLayout;
    side->addWidget(m_image);
    side->addWidget(m_details);
    side->addStretch();
    auto* top = new QHBoxLayout;
    top->addLayout(lists, 1);
    top->addWidget(m_files, 1);
    top->addLayout(side);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(open);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addLayout(buttons);
    resize(720, 380);
    openFolder(folder.isEmpty() ? ctx.AppPath() : folder);
}

void PictureBrowser::openFolder(const QString& folder)
{
    const QDir dir(folder);
    if (!dir.exists()) {
        m_ctx.prompter().msgBox(QStringLiteral("File Error: ") + folder, MsgStyle::Exclamation);
        return;
    }
    m_folder = dir.absolutePath();
    m_where->setText(QDir::toNativeSeparators(m_folder));
    // The drive the folder lies on: the longest root it begins with.
    int drive = -1;
    qsizetype longest = -1;
    for (int i = 0; i < m_drives->count(); ++i) {
        const QString root = m_drives->itemText(i);
        if (m_folder.startsWith(root) && root.size() > longest) {
            drive = i;
            longest = root.size();
        }
    }
    if (drive >= 0) {
        const QSignalBlocker block(m_drives);
        m_drives->setCurrentIndex(drive);
    }
    m_dirs->clear();
    if (!dir.isRoot())
        m_dirs->addItem(QStringLiteral(".."));
    m_dirs->addItems(dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase));
    m_files->clear();
    m_files->addItems(dir.entryList(QDir::Files, QDir::Name | QDir::IgnoreCase));
    m_image->clear();
    m_details->clear();
}

void PictureBrowser::selectFile(const QString& name)
{
    m_image->clear();
    m_details->clear();
    if (name.isEmpty())
        return;
    const QFileInfo info(QDir(m_folder).absoluteFilePath(name));
    if (!info.isFile())
        return;
    if (PictureFiles::isPicture(name)) {
        // Read at the preview's size only, so a large file costs little.
        QImageReader reader(info.absoluteFilePath());
        const QSize full = reader.size();
        if (full.isValid())
            reader.setScaledSize(full.scaled(m_image->size(), Qt::KeepAspectRatio));
        const QImage image = reader.read();
        if (image.isNull())
            m_image->setText(reader.errorString());
        else
            m_image->setPixmap(QPixmap::fromImage(image));
    }
    m_details->setText(PictureFiles::details(m_ctx.translate(QStringLiteral("Size")), info.size(),
                                             m_ctx.translate(QStringLiteral("Date/Time")),
                                             info.lastModified()));
}

void PictureBrowser::pickCurrent()
{
    const QListWidgetItem* item = m_files->currentItem();
    if (!item)
        return;
    Q_EMIT picked(QDir(m_folder).absoluteFilePath(item->text()));
    accept();
}

}  // namespace vonnel
