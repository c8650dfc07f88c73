#include "sim/cli/ScopeOptions.h"
#include "sim/scope/ScopePort.h"
#include "support/TestMain.h"

#include <QCommandLineParser>

namespace {

using Modulation = SignalSettings::Modulation;

ScopeOptions parsed(const QStringList& arguments)
{
    QCommandLineParser parser;
    ScopeOptions::addTo(parser);
    if (!parser.parse(QStringList{"qn740-sim"} + arguments)) {
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

    void the_last_signal_given_goes_for_the_ports_that_are_left()
    {
        const ScopeOptions one = parsed({"--signal", "bpsk:snr=12"});
        QCOMPARE(modulationsOf(one), QList<Modulation>(3, Modulation::Bpsk));
        QCOMPARE(one.ports.signalSettings.at(2).snr, 12.0);
        const ScopeOptions two = parsed({"--signal", "bpsk", "--signal", "oqpsk"});
        QCOMPARE(modulationsOf(two),
            (QList<Modulation>{Modulation::Bpsk, Modulation::Oqpsk, Modulation::Oqpsk}));
        const ScopeOptions three =
            parsed({"--signal", "bpsk", "--signal", "16qam", "--signal", "8psk"});
        QCOMPARE(modulationsOf(three),
            (QList<Modulation>{Modulation::Bpsk, Modulation::Qam16, Modulation::Psk8}));
    }

    void the_mode_is_taken()
    {
        const ScopeOptions options = parsed({"--scope-mode", "3"});
        QVERIFY(options.fault.isEmpty());
        QCOMPARE(options.ports.mode, static_cast<int>(ScopePort::Sdi));
    }

    void what_is_none_of_them_is_refused_with_the_reason_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* name, const QStringList& arguments, const char* reason) {
            QTest::newRow(name) << arguments << QString(reason);
        };
        row("modulation", {"--signal", "fsk:snr=20"}, "no modulation: \"fsk\"");
        row("second signal", {"--signal", "qpsk", "--signal", "am"}, "no modulation: \"am\"");
        row("field", {"--signal", "qpsk:colour=3"}, "nothing of a signal: \"colour=3\"");
        row("value too high", {"--signal", "qpsk:snr=101"}, "snr is -20 to 100");
        row("value too low", {"--signal", "qpsk:clip=0"}, "clip is 0.01 to 1");
        row("no number", {"--signal", "qpsk:phase=x"}, "phase is 0 to 180");
        row("fourth signal",
            {"--signal", "qpsk", "--signal", "qpsk", "--signal", "qpsk", "--signal", "qpsk"},
            "4 signals for 3 scope ports");
        row("mode too high", {"--scope-mode", "4"}, "no mode of a scope port: \"4\"");
        row("negative mode", {"--scope-mode=-1"}, "no mode of a scope port: \"-1\"");
        row("no mode", {"--scope-mode", "eye"}, "no mode of a scope port: \"eye\"");
        row("empty mode", {"--scope-mode", ""}, "no mode of a scope port: \"\"");
    }

    void what_is_none_of_them_is_refused_with_the_reason()
    {
        QFETCH(QStringList, arguments);
        QTEST(parsed(arguments).fault, "reason");
    }
};

QN740_TEST_MAIN(tst_ScopeOptions)
#include "tst_ScopeOptions.moc"
