#include "core/options/OptionsRules.h"

#include "core/IniStore.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace vonnel {

qint64 integerPart(const QString& text)
{
    const double n = iniNumber(text);
    if (!std::isfinite(n) || std::fabs(n) > 1e15)
        return 0;
    return qint64(std::trunc(n));
}

namespace {

// Absolute value, then not above ceiling (none: no ceiling).
QString absoluteUpTo(const QString& text, qint64 ceiling)
{
    qint64 n = std::llabs(integerPart(text));
    if (ceiling > 0 && n > ceiling)
        n = ceiling;
    return QString::number(n);
}

}  // namespace

bool hasValidation(Opt control)
{
    switch (control) {
    case Opt::txtBytePerSend:
    case Opt::txtEncryptTextLimit:
    case Opt::txtOverallTextLimit:
    case Opt::txtMemLimit:
    case Opt::txtCaptTime:
    case Opt::txtCmlInterval:
    case Opt::txtOverflow:
    case Opt::txtPasteTextLimit:
    case Opt::txtSelfRepairCount:
    case Opt::txtTimeout:
        return true;
    default:
        return false;
    }
}

QString validateBox(Opt control, const QString& text)
{
    switch (control) {
    case Opt::txtBytePerSend:
        return absoluteUpTo(text, 8000);
    case Opt::txtEncryptTextLimit:
        return absoluteUpTo(text, 32000);
    case Opt::txtOverallTextLimit:
        return absoluteUpTo(text, 64000);
    case Opt::txtMemLimit:
        // Only a ceiling: a negative value stays negative.
        return QString::number(std::min<qint64>(integerPart(text), 99));
    case Opt::txtCaptTime:
    case Opt::txtCmlInterval:
    case Opt::txtOverflow:
    case Opt::txtPasteTextLimit:
    case Opt::txtSelfRepairCount:
    case Opt::txtTimeout:
        return absoluteUpTo(text, 0);
    default:
        return text;
    }
}

const std::vector<std::pair<Opt, QString>>& advancedDefaults()
{
    static const std::vector<std::pair<Opt, QString>> defaults = {
        {Opt::chkVerChk, QStringLiteral("0")},
        {Opt::txtTimeout, QStringLiteral("2")},
        {Opt::txtPasteTextLimit, QStringLiteral("5000")},
        {Opt::txtEncryptTextLimit, QStringLiteral("2500")},
        {Opt::txtBytePerSend, QStringLiteral("3200")},
        {Opt::txtSndFileSize, QStringLiteral("50")},
        {Opt::txtOverflow, QStringLiteral("30")},
        {Opt::chkSelfRepair, QStringLiteral("1")},
        {Opt::txtSelfRepairCount, QStringLiteral("100")},
        {Opt::txtCmlInterval, QStringLiteral("5000")},
        {Opt::txtCaptTime, QStringLiteral("4")},
        {Opt::txtOverallTextLimit, QStringLiteral("64000")},
    };
    return defaults;
}

QString cutCaption(const QString& text)
{
    return text.size() > 20 ? text.left(20) + QStringLiteral("...") : text;
}

}  // namespace vonnel
