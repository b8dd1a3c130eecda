#include "platform/Announcer.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include <mutex>

namespace vonnel {

namespace {

// The label as the reader sees it: a notification named by its words.
class AnnouncerAccessible : public QAccessibleWidget {
public:
    explicit AnnouncerAccessible(Announcer* a) : QAccessibleWidget(a, QAccessible::Notification) {}
    QString text(QAccessible::Text t) const override
    {
        if (t == QAccessible::Name || t == QAccessible::Description)
            return static_cast<Announcer*>(widget())->text();
        return QAccessibleWidget::text(t);
    }
};

QAccessibleInterface* announcerFactory(const QString& className, QObject* object)
{
    if (className == QLatin1String("vonnel::Announcer") && object && object->isWidgetType())
        return new AnnouncerAccessible(static_cast<Announcer*>(object));
    return nullptr;
}

}  // namespace

Announcer::Announcer(QWidget& host) : QLabel(&host)
{
    // The factory names one class of ours and keeps nothing: installed
    // once for every copy in the process.
    static std::once_flag installed;
    std::call_once(installed, [] { QAccessible::installFactory(announcerFactory); });
    setObjectName(QStringLiteral("announcements"));
    setTextFormat(Qt::PlainText);  // a peer's words are never markup
    setFocusPolicy(Qt::NoFocus);
    setGeometry(0, 0, 1, 1);
    lower();
    // Nothing said yet: no empty notice in the window.
    hide();
}

void Announcer::announce(const QString& text)
{
    // Hidden and shown again, so the same words twice are two notices.
    hide();
    setText(text.left(kTextLimit));
    QAccessibleEvent named(this, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&named);
    if (parentWidget() && parentWidget()->isVisible())
        show();
}

}  // namespace vonnel
