#include "tools/try/UnitSide.h"

#include "app/Identity.h"
#include "sim/line/PseudoTerminal.h"
#include "sim/line/UnitDevices.h"
#include "wire/Commands.h"
#include "wire/Message.h"

#include <QApplication>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

// After this time without an answer an open editor is taken for the reason: the panel reads nothing
// while an editor stands that a message has opened.
constexpr int HeldUpMs = 150;

} // namespace

UnitSide::UnitSide(QObject* parent)
    : QObject(parent)
    , m_devices(std::make_unique<UnitDevices>())
{
    m_clock.start();
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, &UnitSide::sendNextMenus);
    m_line = m_devices->isValid() ? m_devices->add(u"ttyO1"_s) : nullptr;
    if (m_line != nullptr) {
        qputenv("QN740_DEV", QFile::encodeName(m_devices->path()));
        connect(m_line, &PseudoTerminal::received, this, &UnitSide::take);
    }
}

UnitSide::~UnitSide() = default;

QString UnitSide::error() const
{
    return m_devices->errorString();
}

void UnitSide::send(const QString& body)
{
    if (body == wire::word::Ver) {
        m_versions += false;
    }
    m_keys.apply(body);
    note(false, body);
    m_line->write(wire::frame(body).toLatin1());
}

void UnitSide::sendRaw(const QString& bytes)
{
    const auto questions = bytes.count(wire::frame(wire::word::Ver));
    m_versions += QList<bool>(questions, false);
    note(false, bytes);
    m_line->write(bytes.toLatin1());
}

void UnitSide::sendMenus(const QList<MenuStep>& steps)
{
    m_menus += steps;
    sendNextMenus();
}

void UnitSide::sendNextMenus()
{
    while (!m_menus.isEmpty() && !m_pause.isActive()) {
        const MenuStep step = m_menus.takeFirst();
        if (step.kind == MenuStep::Kind::Wait) {
            m_pause.start(step.waitMs);
        } else {
            send(step.body);
        }
    }
}

bool UnitSide::isQuiet()
{
    if (!m_line->isOpen() || !m_menus.isEmpty() || m_pause.isActive()) {
        return false;
    }
    if (m_versions.contains(true)) {
        return m_asked.elapsed() > HeldUpMs && QApplication::activeModalWidget() != nullptr;
    }
    if (m_moved) {
        ask();
        return false;
    }
    return true;
}

void UnitSide::ask()
{
    m_moved = false;
    m_versions += true;
    m_asked.start();
    m_line->write(wire::message(wire::word::Ver).toLatin1());
}

void UnitSide::take(const QByteArray& bytes)
{
    const auto pieces = m_splitter.take(bytes);
    for (const FrameSplitter::Piece& piece : pieces) {
        takeMessage(piece.text);
    }
}

void UnitSide::takeMessage(const QString& body)
{
    if (body == identity::version() && !m_versions.isEmpty() && m_versions.takeFirst()) {
        return;
    }
    m_heard += body;
    note(true, body);
    if (m_answering) {
        const QStringList answers = m_keys.answers(body);
        for (const QString& answer : answers) {
            send(answer);
        }
    }
}

void UnitSide::note(bool fromPanel, const QString& body)
{
    m_moved = true;
    m_traffic += Traffic{m_clock.elapsed(), fromPanel, body};
    emit passed(m_traffic.constLast());
}
