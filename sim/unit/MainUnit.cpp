#include "sim/unit/MainUnit.h"

#include "sim/line/PseudoTerminal.h"
#include "wire/Commands.h"
#include "wire/Message.h"

#include <algorithm>

namespace {

constexpr int VersionWaitMs = 1000;
constexpr qsizetype MaxAnswers = 10000;

bool isVersion(const QString& body)
{
    return !body.isEmpty() && body.at(0).isDigit() &&
        std::all_of(
            body.begin(), body.end(), [](QChar c) { return c.isDigit() || c == QLatin1Char('.'); });
}

} // namespace

MainUnit::MainUnit(
    PseudoTerminal& line, const QList<MenuStep>& menus, const LineFaults& faults, QObject* parent)
    : PanelLink(line, faults, parent)
    , m_menus(menus)
{
    for (QTimer* timer : {&m_versionWait, &m_pause}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    m_versionWait.setInterval(VersionWaitMs);
    connect(&m_versionWait, &QTimer::timeout, this, &MainUnit::begin);
    connect(&m_pause, &QTimer::timeout, this, &MainUnit::pump);
    if (line.isOpen()) {
        panelCame();
    }
}

bool MainUnit::type(const MenuStep& step)
{
    if (m_typed.size() >= MaxTyped) {
        return false;
    }
    m_typed.append(step);
    pump();
    return true;
}

void MainUnit::tell(const QString& body)
{
    if (m_begun && m_nextMenu == m_menus.size() && m_answers.size() < MaxAnswers) {
        m_answers.append(body);
        pump();
    }
}

void MainUnit::panelCame()
{
    m_keys = UnitKeys();
    m_answers.clear();
    m_nextMenu = 0;
    m_begun = false;
    m_panelVersion.clear();
    m_versionWait.start();
    send(wire::word::Ver);
}

void MainUnit::panelWent()
{
    m_begun = false;
    m_versionWait.stop();
    m_pause.stop();
}

void MainUnit::handle(const QString& text, bool framed)
{
    if (framed) {
        take(text);
        pump();
    }
}

void MainUnit::lineFree()
{
    pump();
}

void MainUnit::take(const QString& body)
{
    const QStringList fields = body.split(QLatin1Char(','));
    if (fields.size() > 1 && fields.first() == wire::word::Slave) {
        takeLinkMode(fields);
    } else if (m_panelVersion.isEmpty() && isVersion(body)) {
        m_panelVersion = body;
        begin();
    } else if (m_answers.size() < MaxAnswers) {
        m_answers += m_keys.answers(body);
    }
}

// Takes the fields of "Slave", the word included. Numbers that are no mode change nothing.
void MainUnit::takeLinkMode(const QStringList& message)
{
    constexpr int LastMode = 2;
    if (wire::commandFromPanel(message) == nullptr) {
        return;
    }
    const int mode = message.at(1).toInt();
    m_linkMode = mode >= 0 && mode <= LastMode ? mode : m_linkMode;
}

void MainUnit::begin()
{
    m_versionWait.stop();
    m_begun = isOpen();
    pump();
}

// Sends until the panel does not keep up; lineFree() is called when it has caught up.
void MainUnit::pump()
{
    if (m_pumping) {
        return;
    }
    m_pumping = true;
    while (isOpen() && !busy()) {
        if (!m_answers.isEmpty()) {
            send(m_answers.takeFirst());
        } else if (!m_begun || m_pause.isActive() || !step()) {
            break;
        }
    }
    m_pumping = false;
}

// Does the next menu step or, after these, the next typed step. Returns false when there is none.
bool MainUnit::step()
{
    MenuStep next;
    const bool isMenu = m_nextMenu < m_menus.size();
    if (isMenu) {
        next = m_menus.at(m_nextMenu++);
    } else if (!m_typed.isEmpty()) {
        next = m_typed.takeFirst();
    } else {
        return false;
    }
    if (next.kind == MenuStep::Kind::Wait) {
        m_pause.start(next.waitMs);
    } else {
        send(next.body);
    }
    if (isMenu && m_nextMenu == m_menus.size()) {
        emit menusSent();
    }
    return true;
}

void MainUnit::send(const QString& body)
{
    if (write(wire::frame(body).toLatin1())) {
        m_keys.apply(body);
        emit sent(body);
    }
}
