#include "support/PanelDriver.h"

#include <QtTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

int pointsOf(const QImage& image, const std::function<bool(const QColor&)>& counts)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += counts(image.pixelColor(x, y)) ? 1 : 0;
        }
    }
    return count;
}

} // namespace

PanelDriver::PanelDriver(const QString& simulator, const QString& panel)
    : m_simulatorPath(simulator)
    , m_panelPath(panel)
{
}

void PanelDriver::start()
{
    m_parent = std::make_unique<QTemporaryDir>();
    startUnit();
    const quint16 port = RfbClient::freePort();
    m_panel = std::make_unique<Program>(m_panelPath,
        QStringList{u"-platform"_s, u"vnc:size=800x480:port=%1"_s.arg(port)},
        QStringList{u"QN740_DEV="_s + devices(), u"XDG_CONFIG_HOME="_s + m_parent->path()});
    QTRY_VERIFY_WITH_TIMEOUT(m_unit->has("sim: menus sent"), LongMs);
    m_screen = std::make_unique<RfbClient>();
    QVERIFY2(m_screen->connectTo(port), qPrintable(m_screen->errorString()));
    // The start-up picture covers everything for 15 seconds, whatever is touched meanwhile.
    const QPoint inPicture(200, 340);
    QVERIFY(shows(inPicture, Qt::white));
    openMenu("Outputs");
    touch(inPicture);
    sent();
    QVERIFY(!m_unit->output().contains("panel: REL"));
    QCOMPARE(at(inPicture), QColor(Qt::white));
    QTRY_COMPARE_WITH_TIMEOUT(at(inPicture), Grey, 2 * LongMs); // a point of a key beside its text
}

void PanelDriver::stop()
{
    m_screen.reset();
    m_panel.reset();
    m_unit.reset();
}

void PanelDriver::showMenus()
{
    say("DB,KILLBOX");
    say("PAX,0");
    sent();
    touch(MainMenu);
    expect({"Main"});
}

void PanelDriver::startUnit(const QStringList& options)
{
    m_unit.reset();
    m_unit =
        std::make_unique<Program>(m_simulatorPath, QStringList{u"--dir"_s, devices()} + options);
    m_seen = 0;
    QTRY_VERIFY_WITH_TIMEOUT(m_unit->has("sim: ready " + devices().toUtf8()), LongMs);
}

QPoint PanelDriver::key(int row, int column)
{
    return {77 + 129 * column, 58 + 68 * row};
}

QPoint PanelDriver::besideText(int row, int column)
{
    return key(row, column) - QPoint(54, 24);
}

bool PanelDriver::shows(QPoint point, const QColor& colour)
{
    return QTest::qWaitFor([&] { return at(point) == colour; }, LongMs);
}

bool PanelDriver::showsOther(QPoint point, const QColor& colour)
{
    return QTest::qWaitFor([&] { return at(point) != colour; }, LongMs);
}

bool PanelDriver::changes(const QImage& before, const QRect& part)
{
    return QTest::qWaitFor(
        [&] { return m_screen->picture().copy(part) != before.copy(part); }, LongMs);
}

int PanelDriver::bright(const QRect& part)
{
    return pointsOf(m_screen->picture().copy(part),
        [](const QColor& colour) { return qMin(colour.red(), colour.blue()) > 180; });
}

int PanelDriver::count(const QRect& part, const QColor& colour)
{
    return pointsOf(
        m_screen->picture().copy(part), [&](const QColor& one) { return one == colour; });
}

void PanelDriver::touch(QPoint point)
{
    QVERIFY2(m_screen->click(point), qPrintable(m_screen->errorString()));
}

void PanelDriver::touch(const QList<QPoint>& points)
{
    for (const QPoint& point : points) {
        touch(point);
    }
}

void PanelDriver::say(const QByteArray& message)
{
    const QByteArray answer("panel: PONG\n");
    const auto before = m_unit->output().count(answer);
    m_unit->write(message + "\nPING\n");
    QTRY_VERIFY_WITH_TIMEOUT(m_unit->output().count(answer) > before, LongMs);
}

// The panel sends a picture after it has handled the earlier touches, and answers after everything
// that those touches have sent.
QByteArrayList PanelDriver::sent()
{
    m_screen->picture();
    say("PING");
    QByteArrayList bodies;
    const QByteArrayList lines = m_unit->output().mid(m_seen).split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith("panel: ") && line != "panel: PONG") {
            bodies += line.mid(7);
        }
    }
    m_seen = m_unit->output().size();
    return bodies;
}

void PanelDriver::expect(const QByteArrayList& bodies)
{
    QByteArrayList all;
    QTRY_VERIFY_WITH_TIMEOUT((all += sent()).size() >= bodies.size(), LongMs);
    QCOMPARE(all, bodies);
}

void PanelDriver::openEditor(const QByteArray& menu, QPoint keyPoint, QPoint title)
{
    openMenu(menu);
    touch(keyPoint);
    QVERIFY(shows(title, TitleBlue));
}
