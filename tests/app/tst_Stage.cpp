// The panel on screens that are larger than it or turned: how the environment is read, where its
// pixels come to lie, and that a finger on the turned picture presses what it sees.
#include "app/Identity.h"
#include "app/ScreenSettings.h"
#include "app/Stage.h"
#include "app/StageMap.h"
#include "app/WindowStack.h"
#include "touch/Placement.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QMainWindow>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryFile>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize Screen(900, 1000);
constexpr int MaxOpenMs = 10000; // a touch that is lost does not leave a dialog open for ever
constexpr QSize PanelSize = ScreenSettings::PanelSize;

// What "fit" hands to the platform on the turned screen where it had another factor before.
QByteArray g_scaleThatFits;

// Before there is an application, because the platform is opened for it.
void findScaleThatFits(int argc, char** argv)
{
    qputenv("QT_SCALE_FACTOR", "2");
    ScreenSettings("fit", "90").apply(argc, argv);
    g_scaleThatFits = qgetenv("QT_SCALE_FACTOR");
    qunsetenv("QT_SCALE_FACTOR");
    qunsetenv("QT_ENABLE_HIGHDPI_SCALING");
}

// A window whose pixels differ from each other.
class Ground : public QMainWindow
{
public:
    Ground()
        : QMainWindow(nullptr, Qt::Window | Qt::FramelessWindowHint)
    {
        setFixedSize(PanelSize);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        for (int y = 0; y < height(); y += 10) {
            for (int x = 0; x < width(); x += 10) {
                painter.fillRect(x, y, 10, 10, QColor(x / 4, y / 2, 128));
            }
        }
    }
};

// The panel on its stage: a key, and a box with a list.
struct StagedPanel
{
    explicit StagedPanel(int degrees)
        : rotation(degrees)
        , stage(Stage::create(degrees))
    {
        key.setGeometry(20, 30, 200, 60);
        list.setGeometry(600, 100, 150, 50);
        list.addItems({u"one"_s, u"two"_s, u"three"_s});
        stage->place(&window);
        window.show();
    }

    // What the operator sees: the screen's picture, turned back.
    QImage seen() const
    {
        QTransform back;
        back.rotate(-rotation);
        return stage->screen()->grabWindow(stage->winId()).toImage().transformed(back);
    }

    // Where the panel is in it.
    QRect place() const
    {
        const QSize size = rotation % 180 == 0 ? Screen : Screen.transposed();
        return {QPoint(size.width() - PanelSize.width(), size.height() - PanelSize.height()) / 2,
            PanelSize};
    }

    bool shows(const QImage& picture, const QRect& part) const
    {
        return QTest::qWaitFor(
            [&] { return seen().copy(part).convertToFormat(picture.format()) == picture; });
    }

    bool showsColour(QPoint point, const QColor& colour) const
    {
        return QTest::qWaitFor(
            [&] { return seen().pixelColor(place().topLeft() + point) == colour; });
    }

    // Touches the screen where it shows this point of the panel.
    void touch(QPoint point) const
    {
        const StageMap map(Screen, PanelSize, rotation);
        const QPoint pixel = map.toScreen(QRect(point, QSize(1, 1))).topLeft();
        QTest::touchEvent(stage.get(), finger.get()).press(0, pixel, stage.get());
        QTest::touchEvent(stage.get(), finger.get()).release(0, pixel, stage.get());
    }

    const int rotation;
    std::unique_ptr<QPointingDevice> finger{QTest::createTouchDevice()};
    std::unique_ptr<Stage> stage;
    Ground window;
    QPushButton key{u"key"_s, &window};
    QComboBox list{&window};
};

QImage picture(QWidget& window)
{
    return window.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

} // namespace

class tst_Stage : public QObject
{
    Q_OBJECT

    static void addRotations()
    {
        QTest::addColumn<int>("rotation");
        for (const int degrees : {90, 180, 270}) {
            QTest::addRow("%d", degrees) << degrees;
        }
    }

    // A dialog over the dialog, as the message of a wrong entry over its pad.
    static void openSecond(const StagedPanel& panel)
    {
        QDialog second(nullptr, Qt::FramelessWindowHint);
        second.setFixedSize(200, 100);
        second.setPalette(Qt::yellow);
        QTimer::singleShot(0, &second, [&] {
            QVERIFY(panel.showsColour({400, 240}, Qt::yellow));
            panel.touch({320, 210}); // OK of the one below
            second.accept();
        });
        QTimer::singleShot(MaxOpenMs, &second, &QDialog::reject);
        second.exec();
    }

private slots:
    void the_scale_is_read_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QSize>("screen");
        QTest::addColumn<double>("scale"); // 0: the text is ignored
        const QSize board(800, 480);
        QTest::newRow("not set") << QByteArray() << board << 1.0;
        QTest::newRow("one, the smallest") << QByteArray("1") << board << 1.0;
        QTest::newRow("fraction") << QByteArray("1.25") << QSize(1024, 600) << 1.25;
        QTest::newRow("largest") << QByteArray("8") << board << 8.0;
        QTest::newRow("fit: the screen is the panel's") << QByteArray("fit") << board << 1.0;
        QTest::newRow("fit: limited by the height")
            << QByteArray("fit") << QSize(1024, 600) << 1.25;
        QTest::newRow("fit: limited by the width") << QByteArray("fit") << QSize(1280, 800) << 1.6;
        QTest::newRow("fit: in steps of 0.05") << QByteArray("fit") << QSize(1366, 768) << 1.6;
        QTest::newRow("fit: just a step") << QByteArray("fit") << QSize(1240, 744) << 1.55;
        QTest::newRow("fit: one pixel less") << QByteArray("fit") << QSize(1239, 744) << 1.5;
        QTest::newRow("fit: smaller screen") << QByteArray("fit") << QSize(640, 480) << 1.0;
        QTest::newRow("fit: tiny screen") << QByteArray("fit") << QSize(320, 240) << 1.0;
        QTest::newRow("fit: huge screen") << QByteArray("fit") << QSize(15360, 8640) << 8.0;
        QTest::newRow("fit: no screen") << QByteArray("fit") << QSize() << 1.0;
        for (const char* wrong :
            {"0.5", "0.99", "8.01", "0", "-1", "nan", "inf", "1,5", "2x", "Fit", " "}) {
            QTest::newRow(wrong) << QByteArray(wrong) << board << 0.0;
        }
    }

    void the_scale_is_read()
    {
        QFETCH(QByteArray, text);
        QFETCH(QSize, screen);
        QFETCH(double, scale);
        const ScreenSettings settings(text, QByteArray());
        QCOMPARE(settings.scaleOn(screen), scale > 0 ? scale : 1.0);
        QCOMPARE(settings.hasScale(), scale > 0 && !text.isEmpty());
        QStringList warnings;
        if (scale == 0) {
            warnings +=
                u"QN740_SCALE is ignored: \"%1\" is neither \"fit\" nor a number from 1 to 8"_s.arg(
                    QString::fromLatin1(text));
        }
        QCOMPARE(settings.warnings(), warnings);
    }

    void the_rotation_is_read_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("rotation"); // -1: the text is ignored
        QTest::newRow("not set") << QByteArray() << 0;
        for (const int degrees : {0, 90, 180, 270}) {
            QTest::addRow("%d", degrees) << QByteArray::number(degrees) << degrees;
        }
        for (const char* wrong : {"45", "360", "-90", "90.0", "left"}) {
            QTest::newRow(wrong) << QByteArray(wrong) << -1;
        }
        QTest::newRow("not printable") << QByteArray("9\n0") << -1;
    }

    void the_rotation_is_read()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, rotation);
        const ScreenSettings settings(QByteArray(), text);
        QCOMPARE(settings.rotation(), qMax(0, rotation));
        QStringList warnings;
        if (rotation < 0) {
            warnings += u"QN740_ROTATION is ignored: \"%1\" is not 0, 90, 180 or 270"_s.arg(
                QString::fromLatin1(text).replace(u'\n', u'?'));
        }
        QCOMPARE(settings.warnings(), warnings);
    }

    void a_panel_that_fits_a_turned_screen_is_scaled_by_the_turned_size()
    {
        QCOMPARE(ScreenSettings("fit", "0").scaleOn({1600, 900}), 1.85);
        QCOMPARE(ScreenSettings("fit", "90").scaleOn({600, 1024}), 1.25);
        QCOMPARE(ScreenSettings("fit", "180").scaleOn({1024, 600}), 1.25);
        QCOMPARE(ScreenSettings("fit", "270").scaleOn({600, 1024}), 1.25);
    }

    void a_scale_is_given_to_the_platform()
    {
        const QByteArray factor = qgetenv("QT_SCALE_FACTOR");
        const QByteArray highDpi = qgetenv("QT_ENABLE_HIGHDPI_SCALING");
        qputenv("QT_SCALE_FACTOR", "3");
        qunsetenv("QT_ENABLE_HIGHDPI_SCALING");
        ScreenSettings("", "90").apply(0, nullptr);
        QCOMPARE(qgetenv("QT_SCALE_FACTOR"), QByteArray("3"));
        QVERIFY(!qEnvironmentVariableIsSet("QT_ENABLE_HIGHDPI_SCALING"));
        qputenv("QN740_SCALE", "1.25");
        qputenv("QN740_ROTATION", "270");
        const ScreenSettings settings = ScreenSettings::fromEnvironment();
        qunsetenv("QN740_SCALE");
        qunsetenv("QN740_ROTATION");
        QCOMPARE(settings.rotation(), 270);
        settings.apply(0, nullptr);
        QCOMPARE(qgetenv("QT_SCALE_FACTOR"), QByteArray("1.25"));
        QCOMPARE(qgetenv("QT_ENABLE_HIGHDPI_SCALING"), QByteArray("0"));
        factor.isNull() ? qunsetenv("QT_SCALE_FACTOR") : qputenv("QT_SCALE_FACTOR", factor);
        highDpi.isNull() ? qunsetenv("QT_ENABLE_HIGHDPI_SCALING")
                         : qputenv("QT_ENABLE_HIGHDPI_SCALING", highDpi);
    }

    void the_scale_that_fits_does_not_count_a_factor_that_the_platform_had_before()
    {
        QCOMPARE(g_scaleThatFits, QByteArray("1.25"));
    }

    void a_warning_shows_forty_characters_of_a_wrong_text()
    {
        const ScreenSettings settings(QByteArray(), QByteArray(40, 'x') + 'y');
        QCOMPARE(settings.warnings().size(), 1);
        QVERIFY(settings.warnings().first().contains(u'"' + QString(40, u'x') + u'"'));
    }

    void a_point_of_the_panel_has_its_pixel_data()
    {
        QTest::addColumn<QSize>("screen");
        QTest::addColumn<int>("rotation");
        QTest::addColumn<QPoint>("topLeft"); // the pixels of the panel's corners
        QTest::addColumn<QPoint>("bottomRight");
        QTest::newRow("0") << QSize(800, 480) << 0 << QPoint(0, 0) << QPoint(799, 479);
        QTest::newRow("90") << QSize(480, 800) << 90 << QPoint(479, 0) << QPoint(0, 799);
        QTest::newRow("180") << QSize(800, 480) << 180 << QPoint(799, 479) << QPoint(0, 0);
        QTest::newRow("270") << QSize(480, 800) << 270 << QPoint(0, 799) << QPoint(479, 0);
        QTest::newRow("0, larger") << QSize(1024, 600) << 0 << QPoint(112, 60) << QPoint(911, 539);
        QTest::newRow("90, larger")
            << QSize(600, 1024) << 90 << QPoint(539, 112) << QPoint(60, 911);
        QTest::newRow("90, odd") << QSize(481, 801) << 90 << QPoint(480, 0) << QPoint(1, 799);
        QTest::newRow("0, smaller") << QSize(640, 400) << 0 << QPoint(0, 0) << QPoint(799, 479);
        QTest::newRow("180, smaller")
            << QSize(640, 400) << 180 << QPoint(639, 399) << QPoint(-160, -80);
    }

    void a_point_of_the_panel_has_its_pixel()
    {
        QFETCH(QSize, screen);
        QFETCH(int, rotation);
        const StageMap map(screen, PanelSize, rotation);
        const QPoint last(PanelSize.width() - 1, PanelSize.height() - 1);
        const auto pixel = [&map](QPoint point) { return map.toScreen(QRect(point, QSize(1, 1))); };
        QTEST(pixel({0, 0}).topLeft(), "topLeft");
        QTEST(pixel(last).topLeft(), "bottomRight");
        QCOMPARE(pixel({0, 0}).size(), QSize(1, 1));
        for (const QPoint point : {QPoint(0, 0), last, QPoint(123, 45)}) {
            QCOMPARE(map.toPanel(pixel(point).topLeft()), QPointF(point));
        }
    }

    void a_panel_that_is_not_turned_stands_in_the_middle()
    {
        StagedPanel panel(0);
        QCOMPARE(panel.window.geometry(), QRect(50, 260, 800, 480));
        QCOMPARE(panel.stage->geometry(), QRect(QPoint(), Screen));
        QVERIFY(panel.showsColour({10, 10}, Qt::black)); // the window is no part of the stage
        QDialog dialog;
        dialog.show();
        touch::centreOnPanel(&dialog);
        QCOMPARE(dialog.frameGeometry().center(), panel.window.geometry().center());
    }

    void only_another_screen_than_the_panels_needs_a_stage_data()
    {
        QTest::addColumn<QSize>("screen");
        QTest::addColumn<int>("rotation");
        QTest::addColumn<bool>("needed");
        QTest::addColumn<bool>("large"); // enough for the whole panel
        QTest::newRow("the panel's") << QSize(800, 480) << 0 << false << true;
        QTest::newRow("the panel's, turned") << QSize(800, 480) << 180 << true << true;
        QTest::newRow("larger") << QSize(801, 480) << 0 << true << true;
        QTest::newRow("narrower") << QSize(799, 600) << 0 << true << false;
        QTest::newRow("lower") << QSize(1024, 479) << 0 << true << false;
        QTest::newRow("upright") << QSize(480, 800) << 90 << true << true;
        QTest::newRow("upright, not turned") << QSize(480, 800) << 0 << true << false;
        QTest::newRow("turned by mistake") << QSize(800, 480) << 270 << true << false;
    }

    void only_another_screen_than_the_panels_needs_a_stage()
    {
        QFETCH(QSize, screen);
        QFETCH(int, rotation);
        QTEST(Stage::isNeeded(screen, rotation), "needed");
        QTEST(Stage::isLargeEnough(screen, rotation), "large");
    }

    void what_is_painted_is_seen_turned_data() { addRotations(); }

    void what_is_painted_is_seen_turned()
    {
        QFETCH(int, rotation);
        StagedPanel panel(rotation);
        QVERIFY(panel.shows(picture(panel.window), panel.place()));
        QCOMPARE(panel.seen().pixelColor(5, 5), QColor(Qt::black));

        panel.key.setText(u"another text"_s); // only its place is painted again
        QVERIFY(panel.shows(picture(panel.window), panel.place()));
        panel.key.hide();
        QVERIFY(panel.shows(picture(panel.window), panel.place()));
    }

    void a_touch_presses_what_is_seen_data() { addRotations(); }

    void a_touch_presses_what_is_seen()
    {
        QFETCH(int, rotation);
        StagedPanel panel(rotation);
        QVERIFY(QTest::qWaitForWindowActive(&panel.window));
        QVERIFY(panel.shows(picture(panel.window), panel.place()));
        const QSignalSpy clicked(&panel.key, &QPushButton::clicked);
        for (const QPoint corner : {QPoint(20, 30), QPoint(219, 30), QPoint(219, 89)}) {
            panel.touch(corner);
        }
        QCOMPARE(clicked.size(), 3);
        for (const QPoint beside : {QPoint(19, 30), QPoint(220, 30), QPoint(219, 90)}) {
            panel.touch(beside);
        }
        QCOMPARE(clicked.size(), 3);
        QVERIFY(panel.window.isActiveWindow()); // the stage takes no focus
    }

    void a_modal_dialog_takes_the_touches_data() { addRotations(); }

    void a_modal_dialog_takes_the_touches()
    {
        QFETCH(int, rotation);
        StagedPanel panel(rotation);
        int onKey = 0;
        int inDialog = 0;
        connect(&panel.key, &QPushButton::clicked, &panel.window, [&] {
            ++onKey;
            QDialog dialog(&panel.window, Qt::FramelessWindowHint);
            dialog.setFixedSize(400, 300);
            dialog.setPalette(Qt::red);
            QPushButton ok(u"OK"_s, &dialog);
            ok.setGeometry(100, 100, 100, 60);
            connect(&ok, &QPushButton::clicked, &dialog, [&] {
                ++inDialog;
                openSecond(panel);
                dialog.accept();
            });
            QTimer::singleShot(0, &dialog, [&] {
                touch::centreOnPanel(&dialog); // as each of the panel's dialogs does
                QVERIFY(panel.showsColour({300, 350}, Qt::red));
                panel.touch({30, 40});   // the key, beside the dialog
                panel.touch({320, 210}); // OK
            });
            QTimer::singleShot(MaxOpenMs, &dialog, &QDialog::reject);
            dialog.exec();
        });
        QVERIFY(panel.shows(picture(panel.window), panel.place()));
        panel.touch({30, 40});
        QCOMPARE(onKey, 1);
        QCOMPARE(inDialog, 1);
        QVERIFY(panel.shows(picture(panel.window), panel.place())); // nothing of them is left
        panel.key.disconnect(&panel.window);
        const QSignalSpy clicked(&panel.key, &QPushButton::clicked);
        panel.touch({30, 40});
        QCOMPARE(clicked.size(), 1);
    }

    void a_window_that_is_raised_is_seen_on_top()
    {
        StagedPanel panel(270);
        QWidget low(nullptr, Qt::FramelessWindowHint);
        QWidget high(nullptr, Qt::FramelessWindowHint);
        for (QWidget* box : {&low, &high}) {
            box->setFixedSize(200, 100);
            box->setPalette(box == &low ? Qt::blue : Qt::green);
            box->setAutoFillBackground(true);
            box->show(); // it comes to the middle by itself
        }
        QVERIFY(panel.showsColour({400, 240}, Qt::green));
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
        low.raise();
        QVERIFY(panel.showsColour({400, 240}, Qt::blue));
        low.move(low.pos() + QPoint(0, 60));
        QVERIFY(panel.showsColour({400, 200}, Qt::green));
        low.close();
        QVERIFY(panel.showsColour({400, 240}, Qt::green));
    }

    void a_list_opens_at_its_box_and_takes_the_touch_data() { addRotations(); }

    void a_list_opens_at_its_box_and_takes_the_touch()
    {
        QFETCH(int, rotation);
        StagedPanel panel(rotation);
        QVERIFY(panel.shows(picture(panel.window), panel.place()));
        panel.touch({620, 120});
        QWidget* list = QApplication::activePopupWidget();
        QVERIFY(list != nullptr);
        const QPoint corner = list->pos() - panel.window.pos();
        QVERIFY2(qAbs(corner.x() - 600) < 20, qPrintable(QString::number(corner.x())));
        QVERIFY(QRect(QPoint(), PanelSize).contains(QRect(corner, list->size())));
        QTest::qWait(QApplication::doubleClickInterval() + 1); // too soon, it is no choice
        panel.touch(corner + QPoint(30, list->height() - 8));
        QTRY_COMPARE(panel.list.currentText(), u"three"_s);
    }
};

int main(int argc, char** argv)
{
    QTemporaryFile file;
    if (!file.open()) {
        return 1;
    }
    file.write(R"({"screens":[{"name":"large","x":0,"y":0,"width":900,"height":1000,)"
               R"("logicalDpi":96,"logicalBaseDpi":96,"dpr":1}]})");
    file.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + file.fileName().toLocal8Bit());
    findScaleThatFits(argc, argv);
    QApplication application(argc, argv);
    identity::apply();
    identity::applyLook(application);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setDoubleClickInterval(200);
    tst_Stage test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_Stage.moc"
