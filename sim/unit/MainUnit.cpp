#include "sim/unit/MainUnit.h"

#include "sim/line/PseudoTerminal.h"
#include "wire/Commands.h"
#include "wire/Message.h"

#include <algorithm>

namespace {

constexpr int VersionWaitMs = 1000;
constexpr qsizetype MaxAnswers = 10000;

MenuStep message(const QString& body)
{
    return {MenuStep::Kind::Message, body, 0};
}

// Whether these menus have one that fits, of the words that make a menu.
template <class Fits>
bool hasMenu(const QList<MenuStep>& menus, const Fits& fits)
{
    return std::any_of(menus.begin(), menus.end(), [&fits](const MenuStep& step) {
        const QStringList fields = step.body.split(QLatin1Char(','));
        return step.kind == MenuStep::Kind::Message && fits(fields.first(), fields.value(1));
    });
}

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
    , m_sending(menus)
    , m_visit(std::make_unique<QObject>())
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

void MainUnit::replaceMenus(const QList<MenuStep>& menus)
{
    m_menus = menus;
    m_sending = menus;
    m_nextMenu = 0;
    if (m_begun) {
        m_sending = QList<MenuStep>{message(wire::word::Clear)} + menus + wayBack();
        m_pause.stop();
        pump();
    }
}

void MainUnit::tell(const QString& body)
{
    if (m_begun && m_nextMenu == m_sending.size() && m_answers.size() < MaxAnswers) {
        m_answers.append(body);
        pump();
    }
}

void MainUnit::panelCame()
{
    m_keys = UnitKeys();
    m_visit = std::make_unique<QObject>();
    m_answers.clear();
    m_sending = m_menus;
    m_nextMenu = 0;
    m_shownMenu.clear();
    m_paxShown = false;
    m_begun = false;
    m_panelVersion.clear();
    m_versionWait.start();
    send(wire::word::Ver);
}

void MainUnit::panelWent()
{
    m_visit = std::make_unique<QObject>();
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
    if (body == wire::word::Main) {
        m_shownMenu = body; // the panel shows it by itself
    }
    if (fields.size() > 1 && fields.first() == wire::word::Slave) {
        takeLinkMode(fields);
    } else if (m_panelVersion.isEmpty() && isVersion(body)) {
        m_panelVersion = body;
        begin();
    } else {
        const Confirmations::Fate fate = m_confirmations.fateOf(body);
        if (fate.delayMs == 0) {
            answer(body, fate.answer);
        } else {
            QTimer::singleShot(
                fate.delayMs, Qt::PreciseTimer, m_visit.get(), [this, body, how = fate.answer] {
                    answer(body, how);
                    pump();
                });
        }
    }
}

void MainUnit::answer(const QString& body, Confirmations::Answer how)
{
    if (how != Confirmations::Answer::Silent && m_answers.size() < MaxAnswers) {
        m_answers +=
            how == Confirmations::Answer::Refuse ? m_keys.refusals(body) : m_keys.answers(body);
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
    const bool isMenu = m_nextMenu < m_sending.size();
    if (isMenu) {
        next = m_sending.at(m_nextMenu++);
    } else if (!m_typed.isEmpty()) {
        next = m_typed.takeFirst();
    } else {
        return false;
    }
    switch (next.kind) {
    case MenuStep::Kind::Wait:
        m_pause.start(next.waitMs);
        break;
    case MenuStep::Kind::Message:
        send(next.body);
        break;
    case MenuStep::Kind::Raw:
        writeRaw(next.body.toLatin1());
        break;
    }
    if (isMenu && m_nextMenu == m_sending.size()) {
        emit menusSent();
    }
    return true;
}

void MainUnit::send(const QString& body)
{
    if (write(wire::frame(body).toLatin1())) {
        m_keys.apply(body);
        noteShown(body.split(QLatin1Char(',')));
        emit sent(body);
    }
}

void MainUnit::noteShown(const QStringList& message)
{
    if (message.first() == wire::word::SK) {
        m_shownMenu = message.value(1);
    } else if (message.first() == wire::word::Pax) {
        m_paxShown = message.value(1) == QLatin1String("1");
    }
}

// Returns what shows again, after new menus, what is shown now.
QList<MenuStep> MainUnit::wayBack() const
{
    QList<MenuStep> steps;
    const bool isThere = hasMenu(m_menus, [this](const QString& word, const QString& menu) {
        return menu == m_shownMenu &&
            (word == wire::word::AK || word == wire::word::CM || word == wire::word::MS);
    });
    if (isThere) {
        steps.append(message(wire::word::SK + QLatin1Char(',') + m_shownMenu));
    }
    if (m_paxShown) {
        const bool hasPax = hasMenu(
            m_menus, [](const QString& word, const QString&) { return word == wire::word::MS; });
        steps.append(
            message(wire::word::Pax + (hasPax ? QLatin1String(",1") : QLatin1String(",0"))));
    }
    return steps;
}
