#pragma once
// The text patterns the network tools test their boxes with: "*" any run,
// "?" one character, "#" one digit, "[abc]" / "[!abc]" one of / none of.
// Case counts.

#include <QString>

namespace vonnel {

bool likeMatch(const QString& text, const QString& pattern);

// "*#.*#.*#.*#": four groups, each ending in a digit. Letters before the
// digits pass ("x1.y2.z3.4"); the lookup that follows fails on them.
inline bool looksDotted(const QString& text)
{
    return likeMatch(text, QStringLiteral("*#.*#.*#.*#"));
}

// What every lookup gives when it fails.
inline const QString kLookupFailed = QStringLiteral("- - - - - - ");

}  // namespace vonnel
