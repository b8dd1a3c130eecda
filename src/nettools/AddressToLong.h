#pragma once
// Dotted text to the 32-bit number the echo call takes: the four parts
// read as numbers, each written as two hexadecimal digits, and the digits
// put together fourth-third-second-first. That is the address in network
// byte order as a little-endian machine holds it.
//
// The way there has its quirks, kept here: a part is read as far as it is a
// number (blanks anywhere ignored, "&H" and "&O" prefixes honoured, "" is 0),
// a part above 255 keeps only its last two hexadecimal digits (300 gives 44),
// a part too large to write leaves its two digits out so the others move up,
// and a fifth part is ignored. The result is signed: 1.2.3.200 is negative.
//
// Nothing is ever sent on this number alone: the probes take only a clean
// dotted address (parseDottedQuad), so "10.0.0.300" fails instead of
// reaching 10.0.0.44.

#include <QString>

namespace vonnel {

qint32 addressToLong(const QString& address);

}  // namespace vonnel
