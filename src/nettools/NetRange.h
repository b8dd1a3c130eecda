#pragma once
// frmNetRange: the network to sweep and the stations' range. The range
// boxes are corrected as they change: a text that is no number, or a "To"
// below "From", is set right so that 0 <= From <= To <= 255 always holds.

#include <QStringList>
#include <optional>

namespace vonnel {

struct NetRangeBoxes {
    QString txtRangeFrom;
    QString txtRangeTo;
};

// The boxes after a change: each a number 0..255, "To" never below "From".
NetRangeBoxes correctRange(const NetRangeBoxes& typed);

// The range to sweep from the boxes as they stand after correction.
struct NetRangeChoice {
    QString network;
    int from = 0;
    int to = 255;
};
NetRangeChoice cmdRangeView_Click(const QString& cobNetwork, const NetRangeBoxes& boxes);

}  // namespace vonnel
