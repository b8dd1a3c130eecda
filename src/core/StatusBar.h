#pragma once
// The eleven panels of the status bar, addressed 1..11 as the session code
// addresses them. Panel 2 carries the key "Status".

#include <QObject>
#include <QString>
#include <array>

namespace vonnel {

enum class StatePicture { None, picOff, picReady, picSend, picRec };

struct StatusPanel {
    QString text;
    QString toolTip;
    QString tag;
    QString key;
    StatePicture picture = StatePicture::None;
    bool visible = true;
};

class StatusBar : public QObject {
    Q_OBJECT
public:
    static constexpr int kPanels = 11;
    explicit StatusBar(QObject* parent = nullptr);

    const StatusPanel& panel(int n) const { return m_panels.at(size_t(n - 1)); }
    QString text(int n) const { return panel(n).text; }
    void setText(int n, const QString& t);
    void setToolTip(int n, const QString& t);
    void setTag(int n, const QString& t);
    void setPicture(int n, StatePicture p);
    void setVisible(int n, bool v);

    // The text of the byte panels 10 and 11: the count + " B" up to 1000
    // bytes; from 1001 on, whole kilobytes (of 1024) with thousands
    // separators + " KB", the form of every other size the program shows.
    static QString byteCountText(qint64 bytes);

Q_SIGNALS:
    void panelChanged(int n);

private:
    StatusPanel& at(int n) { return m_panels.at(size_t(n - 1)); }
    std::array<StatusPanel, kPanels> m_panels;
};

}  // namespace vonnel
