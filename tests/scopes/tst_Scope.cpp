// What a scope receives and passes on; how it shows it is in tst_ScopePlots.
#include "scopes/ScopeBench.h"
#include "support/TestMain.h"

#include <cmath>

using namespace scopeBench;

class tst_Scope : public QObject
{
    Q_OBJECT

private slots:
    void opens_its_port_with_the_line_s_settings()
    {
        Bench bench;
        QVERIFY(bench.scope.portIsOpen());
        QCOMPARE(bench.scope.portName(), QStringLiteral("ttyUSB1"));
        QCOMPARE(bench.scope.demodulator(), 1);
        QCOMPARE(bench.scope.port().baudRate(), 115200);
        QCOMPARE(bench.scope.port().readBufferSize(), qint64(4096));
    }

    void begins_as_eye_pattern_in_red_with_two_plots()
    {
        Bench bench;
        QCOMPARE(bench.scope.plotType(), static_cast<int>(Scope::EyePattern));
        QCOMPARE(bench.scope.lineColor(), QColor(255, 0, 0));
        QVERIFY(plot(bench.scope, "plotI")->isVisible());
        QVERIFY(plot(bench.scope, "plotQ")->isVisible());
        QVERIFY(plot(bench.scope, "plotI")->y() < plot(bench.scope, "plotQ")->y());
        QCOMPARE(bench.scope.layout()->contentsMargins(), QMargins());
        QVERIFY(plot(bench.scope, "plotI")->geometry().left() == 0);
    }

    void a_block_is_plotted_and_passed_on()
    {
        Bench bench;
        PlotView* plotI = plot(bench.scope, "plotI");
        const int before = plotI->paintCount();
        QVERIFY(bench.line.write(steady(16384, -8192)));
        QTRY_COMPARE(bench.blocks.size(), 1);
        const auto i = bench.blocks.first().at(0).value<QVector<double>>();
        const auto q = bench.blocks.first().at(1).value<QVector<double>>();
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
        Bench bench;
        bench.scope.setPlotType(Scope::Constellation);
        QVERIFY(bench.line.write(steady(200, 200)));
        QTRY_COMPARE(bench.blocks.size(), 1);
        PlotView* view = plot(bench.scope, "plotI");
        QTRY_VERIFY(view->paintCount() > 0);
        QTest::qWait(100); // until nothing is left to be painted
        const int paints = view->paintCount();
        const QVector<QPointF> plotted = bench.scope.constellation().plotted();
        QCOMPARE(plotted.at(7), QPointF(200 / 32768.0, 200 / 32768.0));

        QByteArray broken = steady(100, 100);
        qToBigEndian(static_cast<quint16>(index), broken.data() + record * 6);
        QVERIFY(bench.line.write(broken.left(1535)));
        QTRY_VERIFY(bench.scope.decoder().synced());
        QVERIFY(bench.line.write(broken.right(1)));
        QTRY_VERIFY(!bench.scope.decoder().synced());
        QTest::qWait(100); // longer than the pause before a painting
        QCOMPARE(bench.blocks.size(), 1);
        QCOMPARE(view->paintCount(), paints);
        QCOMPARE(bench.scope.constellation().plotted(), plotted);

        QVERIFY(bench.line.write(steady(300, 300)));
        QTRY_COMPARE(bench.blocks.size(), 2);
        QCOMPARE(bench.blocks.last().at(0).value<QVector<double>>().at(9), 300 / 32768.0);
        QTRY_VERIFY(view->paintCount() > paints);
    }

    void a_block_is_plotted_before_it_is_passed_on()
    {
        Bench bench;
        bench.scope.setPlotType(Scope::Constellation);
        QVector<QPointF> plotted;
        connect(&bench.scope, &Scope::rcv_eye_msg, this,
            [&] { plotted = bench.scope.constellation().plotted(); });
        for (const int level : {8192, 16384}) {
            QVERIFY(bench.line.write(steady(level, -level)));
            QTRY_COMPARE(plotted.value(254), QPointF(level / 32768.0, -level / 32768.0));
        }
        QCOMPARE(bench.blocks.size(), 2);
    }

    void a_record_is_plotted_before_it_is_passed_on()
    {
        Bench bench;
        bench.scope.setPlotType(Scope::Sdi);
        QByteArray plotted;
        connect(&bench.scope, &Scope::rcv_sdi_msg, this, [&] {
            const std::deque<QByteArray> records = shownRecords(bench.scope);
            plotted = records.empty() ? QByteArray() : records.back();
        });
        for (const char* record : {"abcde", "fghij"}) {
            QVERIFY(bench.line.write(QByteArray("\x00\xff", 2) + record));
            QTRY_COMPARE(plotted, QByteArray(record));
        }
    }

    // However the line cuts what the port hands over at once.
    void any_cut_of_the_stream_gives_what_byte_by_byte_gives_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 4; ++seed) {
            QTest::addRow("seed %u", seed) << seed;
        }
    }

    void any_cut_of_the_stream_gives_what_byte_by_byte_gives()
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
        Bench bench(false);
        for (qsizetype at = 0; at < bytes.size();) {
            const QByteArray piece = bytes.mid(at, 1 + static_cast<qsizetype>(random() % 4000));
            at += piece.size();
            QVERIFY(bench.line.write(piece));
            if (random() % 2 == 0) {
                QCoreApplication::processEvents();
            }
        }
        QTRY_COMPARE(bench.blocks.size(), plain.blocks.i.size());
        for (int k = 0; k < bench.blocks.size(); ++k) {
            QCOMPARE(bench.blocks.at(k).at(0).value<QVector<double>>(), plain.blocks.i.at(k));
            QCOMPARE(bench.blocks.at(k).at(1).value<QVector<double>>(), plain.blocks.q.at(k));
        }
    }

    void many_blocks_at_once_are_all_passed_on_in_order()
    {
        Bench bench;
        QByteArray bytes;
        for (int k = 1; k <= 20; ++k) {
            bytes += steady(k * 100, 0);
        }
        QVERIFY(bench.line.write(bytes));
        QTRY_COMPARE(bench.blocks.size(), 20);
        for (int k = 1; k <= 20; ++k) {
            QCOMPARE(
                bench.blocks.at(k - 1).at(0).value<QVector<double>>().at(1), k * 100 / 32768.0);
        }
    }

    void a_stream_that_starts_mid_block_and_loses_bytes_is_still_shown()
    {
        Bench bench;
        bench.scope.plotClickSlot(); // fixed range
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
        QVERIFY(bench.line.write(bytes));
        QTRY_VERIFY(bench.blocks.size() >= 59 - 2 * lost);
        PlotView* plotI = plot(bench.scope, "plotI");
        QTRY_VERIFY(plotI->paintCount() > 0);
        const QImage picture = plotI->grab().toImage();
        const QRect area = plotI->dataArea();
        const int row = area.top() + static_cast<int>(std::lround((area.height() - 1) * 0.25));
        QVERIFY(picture.pixelColor(area.center().x() + 30, row).red() > 200);
    }

    void an_sdi_read_is_plotted_and_passed_on()
    {
        Bench bench;
        bench.scope.setPlotType(Scope::Sdi);
        QVERIFY(bench.line.write(QByteArray("\x00\xff"
                                            "abcde",
            7)));
        QTRY_COMPARE(bench.records.size(), 1);
        QCOMPARE(bench.records.first().first().toByteArray(), QByteArray("abcde"));
        QVERIFY(bench.blocks.isEmpty());
    }

    void an_sdi_read_that_begins_with_its_start_byte_yields_nothing()
    {
        Bench bench;
        bench.scope.setPlotType(Scope::Sdi);
        QVERIFY(bench.line.write(QByteArray("\xff"
                                            "abcde")));
        QTest::qWait(100); // nothing can be waited for: let the read happen
        QVERIFY(bench.line.write(QByteArray("\x00\xff"
                                            "12345",
            7)));
        QTRY_COMPARE(bench.records.size(), 1);
        QCOMPARE(bench.records.first().first().toByteArray(), QByteArray("12345"));
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
        Bench bench;
        bench.scope.setPlotType(type);
        QVERIFY(bench.line.write(steady(1, 1)));
        QTRY_COMPARE(bench.blocks.size(), 1);
        QVERIFY(bench.records.isEmpty());
    }

    void the_interpolator_gives_the_same_as_the_filter_in_bulk_data()
    {
        QTest::addColumn<int>("factor");
        for (const int factor : {1, 2, 3, 8, 16}) {
            QTest::addRow("%d", factor) << factor;
        }
    }

    void the_interpolator_gives_the_same_as_the_filter_in_bulk()
    {
        QFETCH(int, factor);
        Bench bench(false);
        QVector<double> samples;
        for (int k = 0; k < 64; ++k) {
            samples.append(std::sin(k * 0.7) - 0.3 * std::cos(k * 1.1));
        }
        const QVector<double> one = bench.scope.interpolator(samples, factor);
        const QVector<double> other = Interpolator(factor).interpolate(samples);
        QCOMPARE(one.size(), 64 * factor);
        for (int n = 0; n < one.size(); ++n) {
            QVERIFY(std::abs(one.at(n) - other.at(n)) < 1e-12);
        }
        QVERIFY(bench.scope.interpolator({}, factor).isEmpty());
    }

    void a_step_of_the_filter()
    {
        Bench bench(false);
        const double taps[] = {0.5, 0.25};
        double delay[2] = {};
        int state = 0;
        QCOMPARE(bench.scope.fir_double_z(1.0, 2, taps, delay, state), 0.5);
        QCOMPARE(bench.scope.fir_double_z(1.0, 2, taps, delay, state), 0.75);
    }

    void an_absent_port_is_tried_again_until_it_is_there()
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

    void a_lost_port_comes_back()
    {
        Bench bench;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("was lost")));
        bench.line.close();
        QTRY_VERIFY(!bench.scope.portIsOpen());
        Pty& line = bench.devices.add(QStringLiteral("ttyUSB1"));
        QTRY_VERIFY_WITH_TIMEOUT(bench.scope.portIsOpen(), 20000);
        QVERIFY(line.write(steady(1, 1)));
        QTRY_COMPARE(bench.blocks.size(), 1);
    }

    void whoever_gets_a_block_may_have_the_scope_deleted_later()
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
        // its line is closed: what comes now goes to the next one that opens it
        Scope next(QStringLiteral("ttyUSB1"), 1, nullptr);
        QVERIFY(next.portIsOpen());
        QSignalSpy received(&next, &Scope::rcv_eye_msg);
        QVERIFY(line.write(steady(2, 2)));
        QTRY_COMPARE(received.size(), 1);
        QCOMPARE(blocks, 1);
    }

    void whoever_gets_a_record_may_have_the_scope_deleted_later()
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

    void odd_data_do_no_harm()
    {
        Bench bench;
        QVector<double> none;
        QVector<double> few(3, std::nan(""));
        bench.scope.plotEyeConsData(none, few);
        bench.scope.setPlotType(Scope::Constellation);
        bench.scope.plotEyeConsData(few, none);
        QByteArray record("ab");
        bench.scope.plotSdiData(record);
        bench.scope.setPlotType(Scope::Sdi);
        bench.scope.grab();
        bench.scope.resize(1, 1);
        bench.scope.grab();

        // and it is as good as new
        QVERIFY(shownRecords(bench.scope).empty());
        bench.scope.resize(262, 310);
        QVERIFY(bench.line.write(QByteArray("\x00\xff"
                                            "abcde",
            7)));
        QTRY_COMPARE(bench.records.size(), 1);
        QCOMPARE(shownRecords(bench.scope).back(), QByteArray("abcde"));
        bench.scope.setPlotType(Scope::EyePattern);
        QVERIFY(bench.line.write(steady(16384, -8192)));
        QTRY_COMPARE(bench.blocks.size(), 1);
        QCOMPARE(bench.blocks.first().at(0).value<QVector<double>>(), QVector<double>(256, 0.5));
        PlotView* plotI = plot(bench.scope, "plotI");
        const QImage picture = plotI->grab().toImage();
        const QRect area = plotI->dataArea();
        const int row = area.top() + static_cast<int>(std::lround((area.height() - 1) * 0.25));
        QVERIFY(picture.pixelColor(area.center().x() + 30, row).red() > 200);
    }
};

QN740_TEST_MAIN(tst_Scope)
#include "tst_Scope.moc"
