#pragma once

#include "sim/card/CardFaults.h"
#include "sim/card/CardPort.h"

#include <QString>

class CardSpectrum;
class QCommandLineParser;
class UnitDevices;

// The options of the command line about the spectral cards: --card, --card-points.
struct CardOptions
{
    bool none = false;
    CardPort::Type type = CardPort::Type::K7150;
    int points = CardPort::DefaultPoints;
    QString fault; // why the options are refused; empty when they are not

    // Adds the options to those that the parser knows.
    static void addTo(QCommandLineParser& parser);
    // In: the parser after its work.
    static CardOptions from(const QCommandLineParser& parser);

    // Makes the three card ports, which live as long as the devices. spectrum: what the cards see;
    // must live longer. Out: whether all are there.
    bool addPorts(
        UnitDevices& devices, CardSpectrum& spectrum, const FaultTable& faults, quint32 seed) const;
};
