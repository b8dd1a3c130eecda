#pragma once
// The options dialog's rules on its own boxes, without windows: what a
// number box becomes when it is left, the Advanced tab's default values,
// and the cut of a preset message's menu caption.

#include "core/options/OptionsTable.h"

#include <QString>
#include <utility>
#include <vector>

namespace vonnel {

// The box's text after the user has left it; the text as it stands for a
// box without a rule.
QString validateBox(Opt control, const QString& text);
bool hasValidation(Opt control);

// cmdDefault_Click: the Advanced tab's fields and values, in order.
const std::vector<std::pair<Opt, QString>>& advancedDefaults();

// A menu caption longer than 20 characters: its first 20 and "...".
QString cutCaption(const QString& text);

// The number at the start of a box's text, cut to its whole part.
qint64 integerPart(const QString& text);

}  // namespace vonnel
