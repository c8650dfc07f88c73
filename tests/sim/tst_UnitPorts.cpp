#include "sim/unit/UnitPorts.h"

#include "sim/card/CardSpectrum.h"
#include "sim/line/UnitDevices.h"
#include "sim/scope/ScopePort.h"
#include "sim/unit/UnitState.h"
#include "support/TestMain.h"

#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

ScopePortSettings scopes(ScopePort::Mode mode)
{
    return {QList<SignalSettings>(ScopePortSettings::Ports), mode};
}

// Returns the ports that were created, in the order of their demodulators.
QList<ScopePort*> portsOf(const UnitDevices& devices)
{
    QList<ScopePort*> ports = devices.findChildren<ScopePort*>();
    std::sort(ports.begin(), ports.end(), [](const ScopePort* one, const ScopePort* other) {
        return one->objectName() < other->objectName();
    });
    return ports;
}

} // namespace

class tst_UnitPorts : public QObject
{
    Q_OBJECT

private slots:
    void three_scope_ports_follow_the_modes_of_the_unit()
    {
        UnitDevices devices;
        UnitState unit;
        QVERIFY(
            unitPorts::addScopes(devices, unit, scopes(ScopePort::EyePattern), FaultTable(), 1));
        for (int n = 1; n <= 3; ++n) {
            QVERIFY(QFileInfo(devices.path() + u"/ttyUSB%1"_s.arg(n)).isSymLink());
        }
        const QList<ScopePort*> ports = portsOf(devices);
        QCOMPARE(ports.size(), 3);
        for (const ScopePort* port : ports) {
            QCOMPARE(port->mode(), static_cast<int>(ScopePort::EyePattern));
        }
        unit.takeCommand(u"D2:DSDM:1"_s);
        unit.takeMessage(u"SM,3,3"_s);
        QCOMPARE(ports.at(0)->mode(), static_cast<int>(ScopePort::EyePattern));
        QCOMPARE(ports.at(1)->mode(), static_cast<int>(ScopePort::Constellation));
        QCOMPARE(ports.at(2)->mode(), static_cast<int>(ScopePort::Sdi));
        unit.takeCommand(u"D1:DSDM:0"_s);
        QCOMPARE(ports.at(0)->mode(), static_cast<int>(ScopePort::Off));
    }

    void a_device_that_cannot_be_created_is_reported()
    {
        UnitDevices devices;
        UnitState unit;
        QFile inTheWay(devices.path() + u"/ttyUSB2"_s);
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        QVERIFY(!unitPorts::addScopes(devices, unit, scopes(ScopePort::Off), FaultTable(), 1));
        QVERIFY(devices.errorString().contains(u"ttyUSB2"_s));
        QVERIFY(inTheWay.remove());
    }

    void there_are_three_card_ports_or_none()
    {
        for (const bool none : {false, true}) {
            UnitDevices devices;
            CardSpectrum spectrum;
            CardPortSettings settings;
            settings.none = none;
            settings.type = CardPort::Type::Older;
            QVERIFY(unitPorts::addCards(devices, spectrum, settings, FaultTable(), 1));
            const QStringList names = QDir(devices.path()).entryList(QDir::System | QDir::Files);
            QCOMPARE(names,
                none ? QStringList() : QStringList({u"ttyUSB11"_s, u"ttyUSB12"_s, u"ttyUSB13"_s}));
        }
    }
};

QN740_TEST_MAIN(tst_UnitPorts)
#include "tst_UnitPorts.moc"
