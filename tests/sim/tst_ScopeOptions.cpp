#include "sim/cli/ScopeOptions.h"
#include "sim/scope/ScopePort.h"
#include "support/TestMain.h"

#include <QCommandLineParser>

using namespace Qt::StringLiterals;

namespace {

using Modulation = SignalSettings::Modulation;

ScopeOptions parsed(const QStringList& arguments)
{
    QCommandLineParser parser;
    ScopeOptions::addTo(parser);
    if (!parser.parse(QStringList{u"qn740-sim"_s} + arguments)) {
        qFatal("%s", qPrintable(parser.errorText()));
    }
    return ScopeOptions::from(parser);
}

QList<Modulation> modulationsOf(const ScopeOptions& options)
{
    QList<Modulation> modulations;
    for (const SignalSettings& settings : options.ports.signalSettings) {
        modulations += settings.modulation;
    }
    return modulations;
}

} // namespace

class tst_ScopeOptions : public QObject
{
    Q_OBJECT

private slots:
    void without_options_each_port_has_a_signal_of_its_own_and_is_off()
    {
        const ScopeOptions options = parsed({});
        QVERIFY(options.fault.isEmpty());
        QCOMPARE(modulationsOf(options),
            (QList<Modulation>{Modulation::Qpsk, Modulation::Psk8, Modulation::Qam16}));
        QCOMPARE(options.ports.signalSettings.at(2).snr, 25.0);
        QCOMPARE(options.ports.mode, static_cast<int>(ScopePort::Off));
    }

    void the_last_signal_is_used_for_the_remaining_ports()
    {
        const ScopeOptions one = parsed({u"--signal"_s, u"bpsk:snr=12"_s});
        QCOMPARE(modulationsOf(one), QList<Modulation>(3, Modulation::Bpsk));
        QCOMPARE(one.ports.signalSettings.at(2).snr, 12.0);
        const ScopeOptions two = parsed({u"--signal"_s, u"bpsk"_s, u"--signal"_s, u"oqpsk"_s});
        QCOMPARE(modulationsOf(two),
            (QList<Modulation>{Modulation::Bpsk, Modulation::Oqpsk, Modulation::Oqpsk}));
        const ScopeOptions three =
            parsed({u"--signal"_s, u"bpsk"_s, u"--signal"_s, u"16qam"_s, u"--signal"_s, u"8psk"_s});
        QCOMPARE(modulationsOf(three),
            (QList<Modulation>{Modulation::Bpsk, Modulation::Qam16, Modulation::Psk8}));
    }

    void the_mode_is_taken()
    {
        const ScopeOptions options = parsed({u"--scope-mode"_s, u"3"_s});
        QVERIFY(options.fault.isEmpty());
        QCOMPARE(options.ports.mode, static_cast<int>(ScopePort::Sdi));
    }

    void invalid_options_are_refused_with_the_reason_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* name, const QStringList& arguments, const char* reason) {
            QTest::newRow(name) << arguments << QString::fromUtf8(reason);
        };
        row("modulation", {u"--signal"_s, u"fsk:snr=20"_s}, "no modulation: \"fsk\"");
        row("second signal", {u"--signal"_s, u"qpsk"_s, u"--signal"_s, u"am"_s},
            "no modulation: \"am\"");
        row("field", {u"--signal"_s, u"qpsk:colour=3"_s}, "nothing of a signal: \"colour=3\"");
        row("value too high", {u"--signal"_s, u"qpsk:snr=101"_s}, "snr is -20 to 100");
        row("value too low", {u"--signal"_s, u"qpsk:clip=0"_s}, "clip is 0.01 to 1");
        row("no number", {u"--signal"_s, u"qpsk:phase=x"_s}, "phase is 0 to 180");
        row("fourth signal",
            {u"--signal"_s, u"qpsk"_s, u"--signal"_s, u"qpsk"_s, u"--signal"_s, u"qpsk"_s,
                u"--signal"_s, u"qpsk"_s},
            "4 signals for 3 scope ports");
        row("mode too high", {u"--scope-mode"_s, u"4"_s}, "no mode of a scope port: \"4\"");
        row("negative mode", {u"--scope-mode=-1"_s}, "no mode of a scope port: \"-1\"");
        row("no mode", {u"--scope-mode"_s, u"eye"_s}, "no mode of a scope port: \"eye\"");
        row("empty mode", {u"--scope-mode"_s, u""_s}, "no mode of a scope port: \"\"");
    }

    void invalid_options_are_refused_with_the_reason()
    {
        QFETCH(QStringList, arguments);
        QTEST(parsed(arguments).fault, "reason");
    }
};

QN740_TEST_MAIN(tst_ScopeOptions)
#include "tst_ScopeOptions.moc"
