#include "shell/AccessibleNames.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QBoxLayout>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextEdit>
#include <QToolButton>

namespace vonnel {

namespace {

// Marks a name this file set, as opposed to one a window set by hand.
constexpr const char* kDerived = "vonnelDerivedName";

// "&Port:" reads "Port".
QString plain(QString text)
{
    text.replace(QLatin1String("&&"), QLatin1String("\x01"));
    text.remove(QLatin1Char('&'));
    text.replace(QLatin1Char('\x01'), QLatin1Char('&'));
    text = text.trimmed();
    while (text.endsWith(QLatin1Char(':')) || text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text.trimmed();
}

QString labelText(const QWidget* w)
{
    const auto* label = qobject_cast<const QLabel*>(w);
    return label && label->pixmap().isNull() ? plain(label->text()) : QString();
}

// Controls a screen reader has to name; a button's or a check box's own
// text already names it, and a scroll bar takes no focus and is told by
// its role.
bool needsName(const QWidget* w)
{
    if (const auto* b = qobject_cast<const QAbstractButton*>(w))
        return plain(b->text()).isEmpty();
    if (qobject_cast<const QScrollBar*>(w))
        return false;
    // A spin box's own line edit is not shown to a screen reader.
    if (qobject_cast<const QAbstractSpinBox*>(w->parentWidget()))
        return false;
    return qobject_cast<const QLineEdit*>(w) || qobject_cast<const QTextEdit*>(w) ||
           qobject_cast<const QPlainTextEdit*>(w) || qobject_cast<const QAbstractSpinBox*>(w) ||
           qobject_cast<const QComboBox*>(w) || qobject_cast<const QAbstractSlider*>(w) ||
           qobject_cast<const QAbstractItemView*>(w);
}

// The label a layout puts before the control: the form's label of the
// row, the cell to its left (else above) in a grid, the widget before it
// in a row.
QString layoutLabel(const QWidget* w)
{
    const QWidget* parent = w->parentWidget();
    QLayout* top = parent ? parent->layout() : nullptr;
    if (!top)
        return {};
    QList<QLayout*> pending{top};
    while (!pending.isEmpty()) {
        QLayout* layout = pending.takeFirst();
        const int at = layout->indexOf(const_cast<QWidget*>(w));
        if (at >= 0) {
            if (auto* form = qobject_cast<QFormLayout*>(layout))
                return form->labelForField(const_cast<QWidget*>(w))
                           ? labelText(form->labelForField(const_cast<QWidget*>(w)))
                           : QString();
            if (auto* grid = qobject_cast<QGridLayout*>(layout)) {
                int row = 0, col = 0, rs = 0, cs = 0;
                grid->getItemPosition(at, &row, &col, &rs, &cs);
                for (const auto& [r, c] : {std::pair{row, col - 1}, std::pair{row - 1, col}}) {
                    if (r < 0 || c < 0)
                        continue;
                    if (QLayoutItem* item = grid->itemAtPosition(r, c))
                        if (const QString t = labelText(item->widget()); !t.isEmpty())
                            return t;
                }
                return {};
            }
            for (int i = at - 1; i >= 0; --i) {
                QWidget* before = layout->itemAt(i)->widget();
                if (before)
                    return labelText(before);
            }
            return {};
        }
        for (int i = 0; i < layout->count(); ++i)
            if (QLayout* inner = layout->itemAt(i)->layout())
                pending << inner;
    }
    return {};
}

QString buddyLabel(const QWidget* w)
{
    const QWidget* parent = w->parentWidget();
    if (!parent)
        return {};
    for (const QLabel* label : parent->findChildren<QLabel*>(Qt::FindDirectChildrenOnly))
        if (label->buddy() == w)
            return labelText(label);
    return {};
}

QString placeholder(const QWidget* w)
{
    if (const auto* e = qobject_cast<const QLineEdit*>(w))
        return plain(e->placeholderText());
    if (const auto* e = qobject_cast<const QTextEdit*>(w))
        return plain(e->placeholderText());
    if (const auto* e = qobject_cast<const QPlainTextEdit*>(w))
        return plain(e->placeholderText());
    return {};
}

}  // namespace

QString derivedAccessibleName(const QWidget* w)
{
    if (!w || !needsName(w))
        return {};
    // The line edit of an editable combo box is named as its box: the
    // box itself speaks its value.
    if (const auto* combo = qobject_cast<const QComboBox*>(w->parentWidget());
        combo && combo->lineEdit() == w) {
        const QString own = combo->accessibleName();
        return own.isEmpty() ? derivedAccessibleName(combo) : plain(own);
    }
    if (QString t = buddyLabel(w); !t.isEmpty())
        return t;
    if (QString t = layoutLabel(w); !t.isEmpty())
        return t;
    if (const auto* tool = qobject_cast<const QToolButton*>(w); tool && tool->defaultAction())
        if (QString t = plain(tool->defaultAction()->text()); !t.isEmpty())
            return t;
    if (QString t = plain(w->toolTip()); !t.isEmpty())
        return t;
    if (QString t = placeholder(w); !t.isEmpty())
        return t;
    // Nothing beside it: the title of the group it sits in.
    if (const auto* group = qobject_cast<const QGroupBox*>(w->parentWidget()))
        return plain(group->title());
    return {};
}

void nameControl(QWidget* w)
{
    const QString current = w->accessibleName();
    const QVariant mine = w->property(kDerived);
    if (!current.isEmpty() && (!mine.isValid() || mine.toString() != current))
        return;
    const QString name = derivedAccessibleName(w);
    if (name == current)
        return;
    w->setAccessibleName(name);
    w->setProperty(kDerived, name.isEmpty() ? QVariant() : QVariant(name));
}

void nameUnnamedControls(QWidget* root)
{
    if (!root)
        return;
    nameControl(root);
    for (QWidget* w : root->findChildren<QWidget*>())
        nameControl(w);
}

}  // namespace vonnel
