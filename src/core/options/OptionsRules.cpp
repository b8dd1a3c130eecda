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

// The number boxes checked when left: absolute value then a ceiling (0:
// none), or the ceiling alone.
struct BoxRule {
    Opt control;
    bool absolute;
    qint64 ceiling;
};
constexpr BoxRule kBoxRules[] = {
    {Opt::txtBytePerSend, true, 8000},
    {Opt::txtEncryptTextLimit, true, 32000},
    {Opt::txtOverallTextLimit, true, 64000},
    // Only a ceiling: a negative value stays negative.
    {Opt::txtMemLimit, false, 99},
    {Opt::txtCaptTime, true, 0},
    {Opt::txtCmlInterval, true, 0},
    {Opt::txtOverflow, true, 0},
    {Opt::txtPasteTextLimit, true, 0},
    {Opt::txtSelfRepairCount, true, 0},
    {Opt::txtTimeout, true, 0},
};

const BoxRule* ruleOf(Opt control)
{
    for (const BoxRule& r : kBoxRules)
        if (r.control == control)
            return &r;
    return nullptr;
}

}  // namespace

bool hasValidation(Opt control)
{
    return ruleOf(control) != nullptr;
}

QString validateBox(Opt control, const QString& text)
{
    const BoxRule* rule = ruleOf(control);
    if (!rule)
        return text;
    if (rule->absolute)
        return absoluteUpTo(text, rule->ceiling);
    return QString::number(std::min<qint64>(integerPart(text), rule->ceiling));
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
