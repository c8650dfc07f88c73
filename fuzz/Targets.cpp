#include "Target.h"

const QList<FuzzTarget>& fuzzTargets()
{
    static const QList<FuzzTarget> All{
        {"link", true, 3000, fuzz::takeLink},
        {"key", true, 600, fuzz::takeKey},
        {"entry", false, 300, fuzz::takeEntry},
        {"menufile", false, 3000, fuzz::takeMenuFile},
        {"json", false, 3000, fuzz::takeJson},
        {"recording", false, 2000, fuzz::takeRecording},
        {"iq", false, 8000, fuzz::takeIq},
        {"sdi", false, 600, fuzz::takeSdi},
        {"bus", false, 3000, fuzz::takeBus},
        {"scenario", false, 2000, fuzz::takeScenario},
        {"frames", false, 2000, fuzz::takeFrames},
        {"readers", true, 600, fuzz::takeReaders},
    };
    return All;
}
