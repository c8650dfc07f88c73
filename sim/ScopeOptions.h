#pragma once

#include "sim/SignalModel.h"

#include <QList>
#include <QString>

class PanelLink;
class QCommandLineParser;
class UnitDevices;

// The options of the command line about the demodulators' scope ports: --signal, --scope-fault,
// --scope-mode.
struct ScopeOptions
{
    static constexpr int Ports = 3;

    QList<SignalSettings> signalSettings; // one a port
    int faults = 0;
    int mode = 0;
    QString fault; // why the options are refused; empty when they are not

    // Adds the options to those that the parser knows.
    static void addTo(QCommandLineParser& parser);
    // In: the parser after its work.
    static ScopeOptions from(const QCommandLineParser& parser);

    // Makes the three ports, which follow what is said of modes on the link and live as long as the
    // devices. Out: whether all are there.
    bool addPorts(UnitDevices& devices, const PanelLink& link, quint32 seed) const;
};
