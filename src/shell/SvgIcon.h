#pragma once
// Icons from our own SVG drawings, drawn afresh at every size and scale so
// they stay sharp at 1.5x and 2x. The drawings' ink (#2b2b2b) takes the
// palette's text colour and its paper the ground colour, so a dark palette
// gets light lines on dark sheets.

#include <QIcon>
#include <QString>

namespace vonnel {

// The drawing's ink, as written in every file under :/icons, and its
// paper (sheets, windows), which takes the palette's ground colour.
inline constexpr const char* kDrawingInk = "#2b2b2b";
inline constexpr const char* kDrawingPaper = "#fffffe";

// A null icon when the file is missing or is no drawing.
QIcon svgIcon(const QString& resourcePath);

}  // namespace vonnel
