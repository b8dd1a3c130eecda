#pragma once
// frmDlg: the preview's small file browser. A drive list, the folders of
// the chosen folder and its files; a picture file is shown beside them
// with its size and time. A double-click on a file (or Open) hands it on.

#include <QDialog>

class QComboBox;
class QLabel;
class QListWidget;
class QListWidgetItem;

namespace vonnel {

class CopyContext;

class PictureBrowser : public QDialog {
    Q_OBJECT
public:
    PictureBrowser(CopyContext& ctx, QWidget* parent = nullptr, const QString& folder = QString());

    QString folder() const { return m_folder; }
    void openFolder(const QString& folder);
    // A file of the list chosen: its picture and details beside it.
    void selectFile(const QString& name);

    QComboBox* drvList() const { return m_drives; }
    QListWidget* dirList() const { return m_dirs; }
    QListWidget* filList() const { return m_files; }
    QLabel* imgPreview() const { return m_image; }
    QLabel* lblDetails() const { return m_details; }

Q_SIGNALS:
    void picked(const QString& path);

private:
    void pickCurrent();

    CopyContext& m_ctx;
    QString m_folder;
    QComboBox* m_drives;
    QLabel* m_where;
    QListWidget* m_dirs;
    QListWidget* m_files;
    QLabel* m_image;
    QLabel* m_details;
};

}  // namespace vonnel
