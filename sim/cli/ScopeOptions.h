#pragma once

#include "sim/scope/SignalModel.h"

#include <QList>
#include <QString>

class FaultTable;
class QCommandLineParser;
class UnitDevices;
class UnitState;

// The options of the command line about the demodulators' scope ports: --signal, --scope-mode.
struct ScopeOptions
{
    static constexpr int Ports = 3;

    QList<SignalSettings> signalSettings; // one a port
    int mode = 0;
    QString fault; // why the options are refused; empty when they are not

    // Adds the options to those that the parser knows.
    static void addTo(QCommandLineParser& parser);
    // In: the parser after its work.
    static ScopeOptions from(const QCommandLineParser& parser);

    // Makes the three ports, which send what the state says and live as long as the devices. state:
    // is given the signals and the modes; must live longer. Out: whether all are there.
    bool addPorts(
        UnitDevices& devices, UnitState& state, const FaultTable& faults, quint32 seed) const;
};
