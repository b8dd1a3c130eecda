#include "core/MainModel.h"

namespace vonnel {

MainModel::MainModel(QObject* parent) : QObject(parent), m_caption(titleWithVersion()) {}

QString MainModel::titleWithVersion()
{
    return kTitle + QLatin1Char(' ') + QString::number(kMajor) + QLatin1Char('.') +
           QString::number(kMinor);
}

void MainModel::setCaption(const QString& c)
{
    if (c == m_caption)
        return;
    m_caption = c;
    Q_EMIT captionChanged();
}

void MainModel::setVisible(bool v)
{
    if (v == m_visible)
        return;
    m_visible = v;
    Q_EMIT visibilityChanged(v);
}

void MainModel::setWindowState(int s)
{
    if (s == m_windowState)
        return;
    m_windowState = s;
    Q_EMIT windowStateChanged(s);
}

void MainModel::setTrayTip(const QString& tip)
{
    // The tray's record holds 64 characters with the closing NUL.
    const QString cut = tip.left(kTrayTipSize - 1);
    if (cut == m_trayTip)
        return;
    m_trayTip = cut;
    Q_EMIT trayTipChanged(cut);
}

void MainModel::setLblStealth(const QString& text)
{
    if (text == m_lblStealth)
        return;
    m_lblStealth = text;
    Q_EMIT lblStealthChanged(text);
}

}  // namespace vonnel
