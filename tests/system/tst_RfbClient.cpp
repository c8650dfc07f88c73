#include "support/RfbClient.h"
#include "support/TestMain.h"

#include <QPainter>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>

using namespace Qt::StringLiterals;

namespace {

constexpr QRect Field(600, 300, 100, 50);
const QColor Up(10, 200, 30);
const QColor Down(250, 120, 5);
const QColor Touched(40, 60, 220);

// The other process shows this window. The colour of its field tells how often it was touched.
class Window : public QWidget
{
public:
    Window()
    {
        setWindowFlags(Qt::FramelessWindowHint);
        setFixedSize(800, 480);
        setCursor(Qt::BlankCursor);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::black);
        painter.fillRect(Field, m_colour);
    }
    void mousePressEvent(QMouseEvent* event) override { turn(event, Down); }
    void mouseReleaseEvent(QMouseEvent* event) override { turn(event, Touched); }

private:
    void turn(const QMouseEvent* event, const QColor& colour)
    {
        if (Field.contains(event->pos())) {
            m_colour = colour;
            update();
        }
    }
    QColor m_colour = Up;
};

int showWindow(int argc, char** argv)
{
    const QApplication application(argc, argv);
    Window window;
    window.show();
    return QApplication::exec();
}

} // namespace

class tst_RfbClient : public QObject
{
    Q_OBJECT

    QProcess m_window;
    quint16 m_port = 0;

private slots:
    void init()
    {
        m_port = RfbClient::freePort();
        m_window.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_window.start(QCoreApplication::applicationFilePath(),
            {u"--window"_s, u"-platform"_s, u"vnc:size=800x480:port=%1"_s.arg(m_port)});
        QVERIFY(m_window.waitForStarted());
    }

    void cleanup()
    {
        m_window.kill();
        m_window.waitForFinished();
    }

    void the_picture_has_every_colour_in_its_place()
    {
        RfbClient client;
        QVERIFY2(client.connectTo(m_port), qPrintable(client.errorString()));
        QCOMPARE(client.size(), QSize(800, 480));
        QTRY_COMPARE(client.picture().pixelColor(Field.center()), Up);
        const QImage picture = client.picture();
        QCOMPARE(picture.pixelColor(Field.topLeft()), Up);
        QCOMPARE(picture.pixelColor(Field.bottomRight()), Up);
        QCOMPARE(picture.pixelColor(Field.topLeft() - QPoint(1, 0)), QColor(Qt::black));
        QCOMPARE(picture.pixelColor(Field.bottomRight() + QPoint(0, 1)), QColor(Qt::black));
    }

    void a_touch_goes_down_and_up_where_it_was_sent()
    {
        RfbClient client;
        QVERIFY2(client.connectTo(m_port), qPrintable(client.errorString()));
        QTRY_COMPARE(client.picture().pixelColor(Field.center()), Up);
        QVERIFY(client.click(Field.topLeft() - QPoint(1, 1)));
        QVERIFY(client.press(Field.bottomRight()));
        QTRY_COMPARE(client.picture().pixelColor(Field.center()), Down);
        QVERIFY(client.release(Field.bottomRight()));
        QTRY_COMPARE(client.picture().pixelColor(Field.center()), Touched);
    }

    void two_look_at_one_screen()
    {
        RfbClient first;
        RfbClient second;
        QVERIFY(first.connectTo(m_port));
        QVERIFY(second.connectTo(m_port));
        QVERIFY(first.click(Field.center()));
        QTRY_COMPARE(second.picture().pixelColor(Field.center()), Touched);
    }

    void a_missing_program_is_reported_in_time()
    {
        RfbClient client;
        const quint16 port = RfbClient::freePort();
        QVERIFY(!client.connectTo(port, 300));
        QCOMPARE(client.errorString(), u"nobody listens on port %1"_s.arg(port));
    }

    void a_closed_screen_gives_no_picture()
    {
        RfbClient client;
        QVERIFY(client.connectTo(m_port));
        m_window.kill();
        QVERIFY(m_window.waitForFinished());
        QVERIFY(client.picture(5000).isNull());
        QVERIFY(!client.errorString().isEmpty());
    }

    void a_silent_server_is_given_up()
    {
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        RfbClient client;
        QVERIFY(!client.connectTo(silent.serverPort(), 500));
        QVERIFY(client.errorString().startsWith(u"0 of 12 bytes came"_s));
    }
};

int main(int argc, char** argv)
{
    const bool isWindow = argc > 1 && qstrcmp(argv[1], "--window") == 0;
    return isWindow ? showWindow(argc, argv) : runTest<tst_RfbClient>(argc, argv);
}

#include "tst_RfbClient.moc"
