// What a scope receives and passes on. How it shows that is tested in tst_ScopePlots.
#include "scopes/ScopeFixture.h"
#include "support/TestMain.h"

#include <cmath>

using namespace scopeFixture;

class tst_Scope : public QObject
{
    Q_OBJECT

private slots:
    void opens_its_port_with_the_settings_of_the_line()
    {
        ScopeFixture fixture;
        QVERIFY(fixture.scope.portIsOpen());
        QCOMPARE(fixture.scope.portName(), QStringLiteral("ttyUSB1"));
        QCOMPARE(fixture.scope.demodulator(), 1);
        QCOMPARE(fixture.scope.port().baudRate(), 115200);
        QCOMPARE(fixture.scope.port().readBufferSize(), qint64(4096));
    }

    void starts_as_eye_pattern_in_red_with_two_plots()
    {
        ScopeFixture fixture;
        QCOMPARE(fixture.scope.plotType(), static_cast<int>(Scope::EyePattern));
        QCOMPARE(fixture.scope.lineColor(), QColor(255, 0, 0));
        QVERIFY(plot(fixture.scope, "plotI")->isVisible());
        QVERIFY(plot(fixture.scope, "plotQ")->isVisible());
        QVERIFY(plot(fixture.scope, "plotI")->y() < plot(fixture.scope, "plotQ")->y());
        QCOMPARE(fixture.scope.layout()->contentsMargins(), QMargins());
        QVERIFY(plot(fixture.scope, "plotI")->geometry().left() == 0);
    }

    void a_block_is_plotted_and_passed_on()
    {
        ScopeFixture fixture;
        PlotView* plotI = plot(fixture.scope, "plotI");
        const int before = plotI->paintCount();
        QVERIFY(fixture.line.write(steady(16384, -8192)));
        QTRY_COMPARE(fixture.blocks.size(), 1);
        const auto i = fixture.blocks.first().at(0).value<QVector<double>>();
        const auto q = fixture.blocks.first().at(1).value<QVector<double>>();
        QCOMPARE(i, QVector<double>(256, 0.5));
        QCOMPARE(q, QVector<double>(256, -0.25));
        QTRY_VERIFY(plotI->paintCount() > before);
        const QImage picture = plotI->grab().toImage();
        const QRect area = plotI->dataArea();
        const int row = area.top() + static_cast<int>(std::lround((area.height() - 1) * 0.25));
        QVERIFY(picture.pixelColor(area.center().x() + 30, row).red() > 200);
    }

    void a_broken_block_yields_no_plot_and_no_signal_data()
    {
        QTest::addColumn<int>("record");
        QTest::addColumn<int>("index");
        QTest::newRow("100 carries 101") << 100 << 101;
        QTest::newRow("the last carries 0") << 255 << 0;
    }

    void a_broken_block_yields_no_plot_and_no_signal()
    {
        QFETCH(int, record);
        QFETCH(int, index);
        ScopeFixture fixture;
        fixture.scope.setPlotType(Scope::Constellation);
        QVERIFY(fixture.line.write(steady(200, 200)));
        QTRY_COMPARE(fixture.blocks.size(), 1);
        PlotView* view = plot(fixture.scope, "plotI");
        QTRY_VERIFY(view->paintCount() > 0);
        QTest::qWait(100); // until nothing is left to be painted
        const int paints = view->paintCount();
        const QVector<QPointF> plotted = fixture.scope.constellation().plotted();
        QCOMPARE(plotted.at(7), QPointF(200 / 32768.0, 200 / 32768.0));

        QByteArray broken = steady(100, 100);
        qToBigEndian(static_cast<quint16>(index), broken.data() + record * 6);
        QVERIFY(fixture.line.write(broken.left(1535)));
        QTRY_VERIFY(fixture.scope.decoder().synced());
        QVERIFY(fixture.line.write(broken.right(1)));
        QTRY_VERIFY(!fixture.scope.decoder().synced());
        QTest::qWait(100); // longer than the pause before a painting
        QCOMPARE(fixture.blocks.size(), 1);
        QCOMPARE(view->paintCount(), paints);
        QCOMPARE(fixture.scope.constellation().plotted(), plotted);

        QVERIFY(fixture.line.write(steady(300, 300)));
        QTRY_COMPARE(fixture.blocks.size(), 2);
        QCOMPARE(fixture.blocks.last().at(0).value<QVector<double>>().at(9), 300 / 32768.0);
        QTRY_VERIFY(view->paintCount() > paints);
    }

    void a_block_is_plotted_before_it_is_passed_on()
    {
        ScopeFixture fixture;
        fixture.scope.setPlotType(Scope::Constellation);
        QVector<QPointF> plotted;
        connect(&fixture.scope, &Scope::rcv_eye_msg, this,
            [&] { plotted = fixture.scope.constellation().plotted(); });
        for (const int level : {8192, 16384}) {
            QVERIFY(fixture.line.write(steady(level, -level)));
            QTRY_COMPARE(plotted.value(254), QPointF(level / 32768.0, -level / 32768.0));
        }
        QCOMPARE(fixture.blocks.size(), 2);
    }

    void a_record_is_plotted_before_it_is_passed_on()
    {
        ScopeFixture fixture;
        fixture.scope.setPlotType(Scope::Sdi);
        QByteArray plotted;
        connect(&fixture.scope, &Scope::rcv_sdi_msg, this, [&] {
            const std::deque<QByteArray> records = shownRecords(fixture.scope);
            plotted = records.empty() ? QByteArray() : records.back();
        });
        for (const char* record : {"abcde", "fghij"}) {
            QVERIFY(fixture.line.write(QByteArray("\x00\xff", 2) + record));
            QTRY_COMPARE(plotted, QByteArray(record));
        }
    }

    // The line may split the stream anywhere.
    void any_split_of_the_stream_gives_the_same_result_as_byte_by_byte_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 4; ++seed) {
            QTest::addRow("seed %u", seed) << seed;
        }
    }

    void any_split_of_the_stream_gives_the_same_result_as_byte_by_byte()
    {
        QFETCH(quint32, seed);
        std::mt19937 random(seed);
        QByteArray blocks;
        for (int k = 0; k < 40; ++k) {
            blocks += streams::randomBlock(random);
        }
        const QByteArray bytes = streams::mutated(random, blocks, 5000).mid(700);
        streams::PlainReceiver plain;
        for (const char byte : bytes) {
            plain.take(byte);
        }
        QVERIFY(plain.blocks.i.size() > 10);
        ScopeFixture fixture(false);
        for (qsizetype at = 0; at < bytes.size();) {
            const QByteArray piece = bytes.mid(at, 1 + static_cast<qsizetype>(random() % 4000));
            at += piece.size();
            QVERIFY(fixture.line.write(piece));
            if (random() % 2 == 0) {
                QCoreApplication::processEvents();
            }
        }
        QTRY_COMPARE(fixture.blocks.size(), plain.blocks.i.size());
        for (int k = 0; k < fixture.blocks.size(); ++k) {
            QCOMPARE(fixture.blocks.at(k).at(0).value<QVector<double>>(), plain.blocks.i.at(k));
            QCOMPARE(fixture.blocks.at(k).at(1).value<QVector<double>>(), plain.blocks.q.at(k));
        }
    }

    void many_blocks_at_once_are_all_passed_on_in_order()
    {
        ScopeFixture fixture;
        QByteArray bytes;
        for (int k = 1; k <= 20; ++k) {
            bytes += steady(k * 100, 0);
        }
        QVERIFY(fixture.line.write(bytes));
        QTRY_COMPARE(fixture.blocks.size(), 20);
        for (int k = 1; k <= 20; ++k) {
            QCOMPARE(
                fixture.blocks.at(k - 1).at(0).value<QVector<double>>().at(1), k * 100 / 32768.0);
        }
    }

    void a_stream_that_starts_mid_block_and_loses_bytes_is_still_shown()
    {
        ScopeFixture fixture;
        fixture.scope.plotClickSlot(); // fixed range
        QByteArray bytes;
        for (int k = 0; k < 60; ++k) {
            bytes += steady(16384, 16384);
        }
        bytes.remove(0, 900);
        int lost = 0;
        for (qsizetype at = 9999; at < bytes.size(); at += 9999) {
            bytes.remove(at, 1);
            ++lost;
        }
        QVERIFY(fixture.line.write(bytes));
        QTRY_VERIFY(fixture.blocks.size() >= 59 - 2 * lost);
        PlotView* plotI = plot(fixture.scope, "plotI");
        QTRY_VERIFY(plotI->paintCount() > 0);
        const QImage picture = plotI->grab().toImage();
        const QRect area = plotI->dataArea();
        const int row = area.top() + static_cast<int>(std::lround((area.height() - 1) * 0.25));
        QVERIFY(picture.pixelColor(area.center().x() + 30, row).red() > 200);
    }

    void an_sdi_read_is_plotted_and_passed_on()
    {
        ScopeFixture fixture;
        fixture.scope.setPlotType(Scope::Sdi);
        QVERIFY(fixture.line.write(QByteArray("\x00\xff"
                                              "abcde",
            7)));
        QTRY_COMPARE(fixture.records.size(), 1);
        QCOMPARE(fixture.records.first().first().toByteArray(), QByteArray("abcde"));
        QVERIFY(fixture.blocks.isEmpty());
    }

    void an_sdi_read_that_starts_with_its_start_byte_yields_nothing()
    {
        ScopeFixture fixture;
        fixture.scope.setPlotType(Scope::Sdi);
        QVERIFY(fixture.line.write(QByteArray("\xff"
                                              "abcde")));
        QTest::qWait(100); // nothing can be waited for: let the read happen
        QVERIFY(fixture.line.write(QByteArray("\x00\xff"
                                              "12345",
            7)));
        QTRY_COMPARE(fixture.records.size(), 1);
        QCOMPARE(fixture.records.first().first().toByteArray(), QByteArray("12345"));
    }

    void every_other_plot_type_receives_blocks_data()
    {
        QTest::addColumn<int>("type");
        for (const int type : {1, 2, 3, -1, 1000}) {
            QTest::addRow("%d", type) << type;
        }
    }

    void every_other_plot_type_receives_blocks()
    {
        QFETCH(int, type);
        ScopeFixture fixture;
        fixture.scope.setPlotType(type);
        QVERIFY(fixture.line.write(steady(1, 1)));
        QTRY_COMPARE(fixture.blocks.size(), 1);
        QVERIFY(fixture.records.isEmpty());
    }

    void the_interpolator_gives_the_same_result_as_the_whole_filter_data()
    {
        QTest::addColumn<int>("factor");
        for (const int factor : {1, 2, 3, 8, 16}) {
            QTest::addRow("%d", factor) << factor;
        }
    }

    void the_interpolator_gives_the_same_result_as_the_whole_filter()
    {
        QFETCH(int, factor);
        ScopeFixture fixture(false);
        QVector<double> samples;
        for (int k = 0; k < 64; ++k) {
            samples.append(std::sin(k * 0.7) - 0.3 * std::cos(k * 1.1));
        }
        const QVector<double> one = fixture.scope.interpolator(samples, factor);
        const QVector<double> other = Interpolator(factor).interpolate(samples);
        QCOMPARE(one.size(), 64 * factor);
        for (int n = 0; n < one.size(); ++n) {
            QVERIFY(std::abs(one.at(n) - other.at(n)) < 1e-12);
        }
        QVERIFY(fixture.scope.interpolator({}, factor).isEmpty());
    }

    void a_filter_step_weighs_the_delay_line_with_the_taps()
    {
        ScopeFixture fixture(false);
        const double taps[] = {0.5, 0.25};
        double delay[2] = {};
        int state = 0;
        QCOMPARE(fixture.scope.fir_double_z(1.0, 2, taps, delay, state), 0.5);
        QCOMPARE(fixture.scope.fir_double_z(1.0, 2, taps, delay, state), 0.75);
    }

    void an_absent_port_is_retried_until_it_exists()
    {
        DeviceDirectory devices;
        Scope scope(QStringLiteral("ttyUSB2"), 2, nullptr);
        QVERIFY(!scope.portIsOpen());
        Pty& line = devices.add(QStringLiteral("ttyUSB2"));
        QTRY_VERIFY_WITH_TIMEOUT(scope.portIsOpen(), 20000);
        QSignalSpy blocks(&scope, &Scope::rcv_eye_msg);
        QVERIFY(line.write(steady(1, 1)));
        QTRY_COMPARE(blocks.size(), 1);
    }

    void a_lost_port_is_opened_again()
    {
        ScopeFixture fixture;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("was lost")));
        fixture.line.close();
        QTRY_VERIFY(!fixture.scope.portIsOpen());
        Pty& line = fixture.devices.add(QStringLiteral("ttyUSB1"));
        QTRY_VERIFY_WITH_TIMEOUT(fixture.scope.portIsOpen(), 20000);
        QVERIFY(line.write(steady(1, 1)));
        QTRY_COMPARE(fixture.blocks.size(), 1);
    }

    void a_slot_that_receives_a_block_may_delete_the_scope_later()
    {
        DeviceDirectory devices;
        Pty& line = devices.add(QStringLiteral("ttyUSB1"));
        QPointer<Scope> scope = new Scope(QStringLiteral("ttyUSB1"), 1, nullptr);
        int blocks = 0;
        connect(scope, &Scope::rcv_eye_msg, this, [&] {
            ++blocks;
            scope->deleteLater();
        });
        QVERIFY(line.write(steady(1, 1)));
        QTRY_VERIFY(scope.isNull());
        QCOMPARE(blocks, 1);
        // Its port is closed: new bytes go to whoever opens it next.
        Scope next(QStringLiteral("ttyUSB1"), 1, nullptr);
        QVERIFY(next.portIsOpen());
        QSignalSpy received(&next, &Scope::rcv_eye_msg);
        QVERIFY(line.write(steady(2, 2)));
        QTRY_COMPARE(received.size(), 1);
        QCOMPARE(blocks, 1);
    }

    void a_slot_that_receives_a_record_may_delete_the_scope_later()
    {
        DeviceDirectory devices;
        Pty& line = devices.add(QStringLiteral("ttyUSB1"));
        QPointer<Scope> scope = new Scope(QStringLiteral("ttyUSB1"), 1, nullptr);
        scope->setPlotType(Scope::Sdi);
        connect(scope, &Scope::rcv_sdi_msg, scope, &QObject::deleteLater);
        QVERIFY(line.write(QByteArray("\x00\xff"
                                      "abcde",
            7)));
        QTRY_VERIFY(scope.isNull());
    }

    void data_of_unexpected_sizes_are_tolerated()
    {
        ScopeFixture fixture;
        QVector<double> none;
        QVector<double> few(3, std::nan(""));
        fixture.scope.plotEyeConsData(none, few);
        fixture.scope.setPlotType(Scope::Constellation);
        fixture.scope.plotEyeConsData(few, none);
        QByteArray record("ab");
        fixture.scope.plotSdiData(record);
        fixture.scope.setPlotType(Scope::Sdi);
        fixture.scope.grab();
        fixture.scope.resize(1, 1);
        fixture.scope.grab();

        // The decoder still works.
        QVERIFY(shownRecords(fixture.scope).empty());
        fixture.scope.resize(262, 310);
        QVERIFY(fixture.line.write(QByteArray("\x00\xff"
                                              "abcde",
            7)));
        QTRY_COMPARE(fixture.records.size(), 1);
        QCOMPARE(shownRecords(fixture.scope).back(), QByteArray("abcde"));
        fixture.scope.setPlotType(Scope::EyePattern);
        QVERIFY(fixture.line.write(steady(16384, -8192)));
        QTRY_COMPARE(fixture.blocks.size(), 1);
        QCOMPARE(fixture.blocks.first().at(0).value<QVector<double>>(), QVector<double>(256, 0.5));
        PlotView* plotI = plot(fixture.scope, "plotI");
        const QImage picture = plotI->grab().toImage();
        const QRect area = plotI->dataArea();
        const int row = area.top() + static_cast<int>(std::lround((area.height() - 1) * 0.25));
        QVERIFY(picture.pixelColor(area.center().x() + 30, row).red() > 200);
    }
};

QN740_TEST_MAIN(tst_Scope)
#include "tst_Scope.moc"
