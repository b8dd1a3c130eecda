#include "shell/dialogs/NetRangeDialog.h"

#include "core/CopyContext.h"
#include "core/Form.h"

#include <QComboBox>
#include <QFont>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace vonnel {

NetRangeDialog::NetRangeDialog(const CopyContext& ctx, const QStringList& networks, QWidget* parent)
    : QDialog(parent), m_network(new QComboBox(this)), m_from(new QLineEdit(QStringLiteral("0"), this)),
      m_to(new QLineEdit(QStringLiteral("255"), this))
{
    const auto tr = [&ctx](const char* key, const char* fallback = "") {
        return ctx.translate(QLatin1String(key), QLatin1String(fallback));
    };
    setObjectName(formName(Form::frmNetRange));
    setWindowTitle(tr("Specific Range"));
    m_network->setObjectName(QStringLiteral("cobNetwork"));
    m_network->setEditable(true);
    m_network->addItems(networks);
    m_from->setObjectName(QStringLiteral("txtRangeFrom"));
    m_to->setObjectName(QStringLiteral("txtRangeTo"));
    for (QLineEdit* box : {m_from, m_to}) {
        box->setMaxLength(3);
        box->setMaximumWidth(60);
        connect(box, &QLineEdit::textEdited, this, &NetRangeDialog::correct);
    }

    auto* title = new QLabel(tr("Specific Range"), this);
    QFont big = title->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.3);
    title->setFont(big);
    auto* view = new QPushButton(tr("View", "&View"), this);
    view->setObjectName(QStringLiteral("cmdRangeView"));
    view->setDefault(true);
    auto* cancel = new QPushButton(tr("Cancel", "&Cancel"), this);
    cancel->setObjectName(QStringLiteral("cmdRangeCancel"));
    connect(view, &QPushButton::clicked, this, [this] {
        correct();
        accept();
    });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* range = new QHBoxLayout;
    range->addWidget(new QLabel(tr("From:"), this));
    range->addWidget(m_from);
    range->addSpacing(12);
    range->addWidget(new QLabel(tr("To:"), this));
    range->addWidget(m_to);
    range->addStretch();
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(view);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addWidget(new QLabel(tr("Network Name: (Select one or type an address)"), this));
    layout->addWidget(m_network);
    layout->addWidget(new QLabel(tr("Stations Range:"), this));
    layout->addLayout(range);
    layout->addLayout(buttons);
}

void NetRangeDialog::correct()
{
    const NetRangeBoxes fixed = correctRange({m_from->text(), m_to->text()});
    // An emptied box stays empty while the user types into it.
    if (!m_from->text().isEmpty() && m_from->text() != fixed.txtRangeFrom)
        m_from->setText(fixed.txtRangeFrom);
    if (!m_to->text().isEmpty() && m_to->text() != fixed.txtRangeTo)
        m_to->setText(fixed.txtRangeTo);
}

NetRangeChoice NetRangeDialog::choice() const
{
    return cmdRangeView_Click(m_network->currentText(), {m_from->text(), m_to->text()});
}

}  // namespace vonnel
