#pragma once
// The main window's state as the session logic writes it: the three panes,
// the status bar, the menu and toolbar states, the caption and the tray
// tip, whether the window is shown and how. The window binds to these
// through their change signals; the logic never touches a widget.

#include "core/Controls.h"
#include "core/StatusBar.h"
#include "core/TextPane.h"

#include <QObject>
#include <array>

namespace vonnel {

class MainModel : public QObject {
    Q_OBJECT
public:
    static constexpr int kMajor = VONNEL_VERSION_MAJOR;
    static constexpr int kMinor = VONNEL_VERSION_MINOR;
    static constexpr int kRevision = VONNEL_VERSION_REVISION;
    static inline const QString kTitle = QStringLiteral("Vonnel");
    // Title and version as the caption and the session records show it.
    static QString titleWithVersion();

    explicit MainModel(QObject* parent = nullptr);

    TextPane txtServer{QStringLiteral("txtServer")};
    TextPane txtTextMsg{QStringLiteral("txtTextMsg")};
    // Pane 0 holds the peer's text; 1 is the second socket's, never shown.
    TextPane& txtClient(int index) { return m_txtClient.at(size_t(index)); }
    StatusBar stStatusbar;
    Controls controls;

    QString caption() const { return m_caption; }
    void setCaption(const QString& c);
    bool isVisible() const { return m_visible; }
    void setVisible(bool v);
    enum WindowState { vbNormal = 0, vbMinimized = 1, vbMaximized = 2 };
    int windowState() const { return m_windowState; }
    void setWindowState(int s);
    // Away: put in the tray (hidden) or minimised. Notices go out and the
    // second-level lock applies only then.
    static bool isAway(bool visible, int windowState) { return !visible || windowState == vbMinimized; }
    bool isAway() const { return isAway(m_visible, m_windowState); }
    // The tray icon's tip: the session's state, or who is calling while the
    // window is hidden; cut to what the tray's record holds.
    static constexpr int kTrayTipSize = 64;
    QString trayTip() const { return m_trayTip; }
    void setTrayTip(const QString& tip);
    // The word beside the panes while the away notice stands ("Away").
    QString lblStealth() const { return m_lblStealth; }
    void setLblStealth(const QString& text);

Q_SIGNALS:
    void captionChanged();
    void trayTipChanged(const QString& tip);
    void visibilityChanged(bool visible);
    void windowStateChanged(int state);
    void lblStealthChanged(const QString& text);

private:
    std::array<TextPane, 2> m_txtClient{TextPane{QStringLiteral("txtClient(0)")},
                                        TextPane{QStringLiteral("txtClient(1)")}};
    QString m_caption;
    QString m_trayTip = kTitle;
    QString m_lblStealth;
    bool m_visible = false;
    int m_windowState = vbNormal;
};

}  // namespace vonnel
