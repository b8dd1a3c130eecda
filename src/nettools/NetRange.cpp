#include "nettools/NetRange.h"

namespace vonnel {

namespace {

// The number of a box, or nothing when it holds no whole number.
std::optional<int> boxNumber(const QString& text)
{
    bool ok = false;
    const int n = text.trimmed().toInt(&ok);
    if (!ok)
        return std::nullopt;
    return qBound(0, n, 255);
}

}  // namespace

NetRangeBoxes correctRange(const NetRangeBoxes& typed)
{
    const int from = boxNumber(typed.txtRangeFrom).value_or(0);
    const int to = qMax(from, boxNumber(typed.txtRangeTo).value_or(255));
    return {QString::number(from), QString::number(to)};
}

NetRangeChoice cmdRangeView_Click(const QString& cobNetwork, const NetRangeBoxes& boxes)
{
    const NetRangeBoxes b = correctRange(boxes);
    return {cobNetwork.trimmed(), b.txtRangeFrom.toInt(), b.txtRangeTo.toInt()};
}

}  // namespace vonnel
