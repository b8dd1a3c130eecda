#pragma once
// The routines every frame parser takes texts apart with. They keep the
// 1-based arithmetic the wire's texts are cut with, including what they
// do when a marker is missing, because the peers rely on that behaviour.

#include <QString>

namespace vonnel {

// The text between the first openToken and the next closeToken behind it.
// A missing openToken counts as found at the start; a missing closeToken
// gives the empty text. An empty openToken searches the whole of data.
QString getBetween(const QString& data, const QString& openToken, const QString& closeToken);

// data behind the first token. A missing token counts as found at the
// start, so the first Len(token) characters are dropped.
QString stripThrough(const QString& data, const QString& token);

// text with the first occurrence of token taken out; empty when text equals
// token; unchanged when token is empty, longer than text, or absent.
QString removeFirst(const QString& text, const QString& token);

// Everything before the first token; the whole text when token is absent
// or either text is empty.
QString leftOf(const QString& text, const QString& token);

// A position field as the frames carry it: decimal text, blanks around it
// allowed, fractions rounded. Returns false (and leaves value alone) for
// anything else, including numbers beyond 32 bits.
bool readPosition(const QString& text, int& value);

// The text cleared from a pane in this session, kept for the record. Every
// repair clears and sends the whole pane again, so a long session would
// keep its text over and over: only the newest kClearedKept characters stay.
inline constexpr qsizetype kClearedKept = 256 * 1024;
void keepCleared(QString& history, const QString& cleared);

}  // namespace vonnel
