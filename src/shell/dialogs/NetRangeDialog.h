#pragma once
// frmNetRange: the network and the stations' range of a specific sweep.
// The range boxes are set right as they change (correctRange).

#include "nettools/NetRange.h"

#include <QDialog>

class QComboBox;
class QLineEdit;

namespace vonnel {

class CopyContext;

class NetRangeDialog : public QDialog {
    Q_OBJECT
public:
    // networks: the own addresses that are in use; texts through the copy's
    // lookup.
    NetRangeDialog(const CopyContext& ctx, const QStringList& networks, QWidget* parent = nullptr);

    QComboBox* cobNetwork() const { return m_network; }
    QLineEdit* txtRangeFrom() const { return m_from; }
    QLineEdit* txtRangeTo() const { return m_to; }
    // What cmdRangeView hands to the sweep.
    NetRangeChoice choice() const;

private:
    void correct();

    QComboBox* m_network;
    QLineEdit* m_from;
    QLineEdit* m_to;
};

}  // namespace vonnel
