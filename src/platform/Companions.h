#pragma once
// The pieces the program needs at run time and cannot do without silently:
// the media backend for rings and sounds, a speech engine, and the JPEG
// image plugin for board pictures. Each missing one is named in a box at
// start, one by one, and the program goes on without it.

#include <QList>
#include <QString>
#include <functional>

namespace vonnel {

class Prompter;

struct CompanionProbe {
    QString name;  // what the box names
    QString loss;  // what does not work without it
    std::function<bool()> present;
};

// The probes of this platform, in the order they are reported.
QList<CompanionProbe> companionProbes();

// Shows one box for each probe that finds its piece missing; returns the
// names shown.
QStringList reportMissingCompanions(Prompter& prompter, const QList<CompanionProbe>& probes);

}  // namespace vonnel
