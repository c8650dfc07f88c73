#include "app/ProtocolExamples.h"
#include "app/Rooms.h"
#include "spectrum/SpectrumMessages.h"
#include "tools/screen/Part.h"

#include "link/LinkMode.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "scopes/ScopesPage.h"
#include "scopes/StcMagPhasePlot.h"
#include "sim/line/FrameSplitter.h"
#include "sim/unit/MenuFile.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumChart.h"
#include "support/Screen.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QRegularExpression>
#include <QSplashScreen>
#include <QStatusBar>
#include <QtTest>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Kind = Example::Kind;

constexpr int TickMs = 5;
constexpr int MaxRunMs = 60000;
const QByteArray Pong = framed("PONG");

struct Form
{
    Kind kind;
    const char* pattern;
};

const QList<Form>& forms()
{
    static const QList<Form> All{
        {Kind::Press, "operator presses( `[^`]+`)+"},
        {Kind::Sends, "panel sends `[^`]+`"},
        {Kind::SendsUnframed, "panel sends `[^`]+` without a frame"},
        {Kind::SendsNothing, "panel sends nothing"},
        {Kind::MenuShows, "menu `[^`]+` shows the key `[^`]+`"},
        {Kind::MenuDoesNotShow, "menu `[^`]+` does not show the key `[^`]+`"},
        {Kind::ScreenShows, "screen shows the key `[^`]+`"},
        {Kind::KeyIs, "key `[^`]+` is (green|grey|dark)"},
        {Kind::StatusBarShows, "status bar shows `[^`]+`"},
        {Kind::StatusBarHidden, "status bar is hidden"},
        {Kind::LinkModeShows, "link mode shows `[^`]*`"},
        {Kind::BoxShows, "box shows `[^`]+`"},
        {Kind::NoBox, "no box is shown"},
        {Kind::ScopeIs, "scope `[123]` is (shown|hidden)"},
        {Kind::ScopeColour, "scope `[123]` is `[a-z]+`"},
        {Kind::PhaseIs, "phase `[^`]+` is lit"},
        {Kind::MagnitudesAre, "magnitudes are `[0-9]+` and `[0-9]+`"},
        {Kind::ChartIs, "chart `[012]` is (shown|hidden)"},
        {Kind::ChartMiddle, "chart `[012]` has `[^`]+` MHz in its middle"},
        {Kind::ChartWidth, "chart `[012]` is `[^`]+` MHz wide"},
        {Kind::ChartMarkers, "chart `[012]` has markers at( `[^`]+`)+"},
        {Kind::ChartNoMarkers, "chart `[012]` has no markers"},
        {Kind::ChartColour, "chart `[012]` is `[a-z]+`"},
    };
    return All;
}

QStringList namesIn(const QString& text)
{
    static const QRegularExpression name(u"`([^`]*)`"_s);
    QStringList names;
    auto matches = name.globalMatch(text);
    while (matches.hasNext()) {
        names += matches.next().captured(1);
    }
    return names;
}

// Returns one statement, or one for each press in a sequence of presses. Returns none when the text
// is not understood.
QList<Example::Statement> statementsOf(const QString& text)
{
    QList<Example::Statement> all;
    for (const Form& form : forms()) {
        const QRegularExpression whole(
            QRegularExpression::anchoredPattern(QLatin1String(form.pattern)));
        if (!whole.match(text).hasMatch()) {
            continue;
        }
        const QStringList names = namesIn(text);
        if (form.kind != Kind::Press) {
            return {{form.kind, names, text}};
        }
        for (const QString& name : names) {
            all.append({form.kind, {name}, u"operator presses `"_s + name + u"`"_s});
        }
    }
    return all;
}

QAbstractButton* visibleButton(const QWidget* window, const QString& text)
{
    const auto buttons = window->findChildren<QAbstractButton*>();
    for (QAbstractButton* button : buttons) {
        if (button->isVisible() && button->text() == text) {
            return button;
        }
    }
    return nullptr;
}

// Returns the button that the operator can touch: in the modal editor, otherwise in a window over
// the panel, otherwise in the panel.
QAbstractButton* buttonOnTop(const QString& text)
{
    if (const QWidget* modal = QApplication::activeModalWidget()) {
        return visibleButton(modal, text);
    }
    QAbstractButton* found = nullptr;
    const auto windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        const bool isPanel = qobject_cast<const QMainWindow*>(window) != nullptr;
        if (window->isVisible() && (found == nullptr || !isPanel)) {
            QAbstractButton* button = visibleButton(window, text);
            found = button != nullptr ? button : found;
        }
    }
    return found;
}

QMessageBox* shownBox()
{
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        auto* box = qobject_cast<QMessageBox*>(window);
        if (box != nullptr && box->isVisible()) {
            return box;
        }
    }
    return nullptr;
}

// The link mode is stored, so each panel starts with the mode reset.
DeviceDirectory& withoutLinkMode(DeviceDirectory& devices)
{
    linkMode::store(linkMode::None);
    return devices;
}

} // namespace

QList<Example> Example::read(const QByteArray& document, QStringList& faults)
{
    QList<Example> examples;
    bool inBlock = false;
    bool inList = false;
    const QStringList lines = QString::fromUtf8(document).split(u'\n');
    for (int i = 0; i < lines.size(); ++i) {
        const QString& line = lines.at(i);
        if (inBlock) {
            inBlock = line != u"```"_s;
            examples.last().messages += inBlock ? line.toUtf8() + '\n' : QByteArray();
        } else if (line == u"```menu"_s) {
            examples.append({i + 1, {}, {}});
            inBlock = true;
            inList = true;
        } else if (inList && line.startsWith(u"- "_s)) {
            const auto statements = statementsOf(line.mid(2));
            examples.last().statements += statements;
            if (statements.isEmpty()) {
                faults += u"%1: not understood: %2"_s.arg(i + 1).arg(line.mid(2));
            }
        } else {
            inList = false;
        }
    }
    for (const Example& example : std::as_const(examples)) {
        if (example.statements.isEmpty()) {
            faults += u"%1: has no statement about the result"_s.arg(example.line);
        }
    }
    return examples;
}

ExampleRun::ExampleRun(const Example& example, int patienceMs)
    : m_unit(withoutLinkMode(m_devices).add(u"ttyO1"_s))
    , m_statements(example.statements)
    , m_patienceMs(patienceMs)
{
    m_statements.append({Kind::SendsNothing, {}, u"panel sends nothing else"_s});
    QByteArray bytes;
    const MenuFile file = MenuFile::parse(example.messages, u"example"_s);
    for (const MenuStep& step : file.steps()) {
        bytes += step.kind == MenuStep::Kind::Message ? framed(step.body.toLatin1()) : QByteArray();
    }
    if (!file.errors().isEmpty()) {
        m_failure = file.errors().join(u"; "_s);
    }
    m_window.show();
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (qobject_cast<QSplashScreen*>(window) != nullptr) {
            window->hide();
        }
    }
    if (!QTest::qWaitForWindowExposed(&m_window) || !m_unit.write(bytes)) {
        m_failure = u"the panel does not come up"_s;
    }
    ask();
    m_deadline.setSingleShot(true);
    connect(&m_tick, &QTimer::timeout, this, &ExampleRun::tick);
}

QString ExampleRun::failure()
{
    m_deadline.start(MaxWaitMs);
    m_tick.start(TickMs);
    const bool ended = QTest::qWaitFor(
        [this] { return !m_tick.isActive() && QApplication::activeModalWidget() == nullptr; },
        MaxRunMs);
    m_tick.stop();
    if (!ended && m_failure.isEmpty()) {
        m_failure = u"does not end"_s;
    }
    return m_failure;
}

void ExampleRun::tick()
{
    if (m_pressing) {
        return;
    }
    if (!m_failure.isEmpty()) {
        giveUp();
    } else if (!m_started) {
        m_started = isCarriedOut();
        if (m_started) {
            m_deadline.start(m_patienceMs);
        } else if (!m_deadline.isActive()) {
            fail(u"the messages are not carried out"_s);
        }
    } else if (m_next == m_statements.size()) {
        m_tick.stop();
    } else {
        tryNext();
    }
}

void ExampleRun::tryNext()
{
    const Example::Statement& statement = m_statements.at(m_next);
    if (attempt(statement) == Outcome::Holds) {
        m_next += 1;
        m_deadline.start(m_patienceMs);
    } else if (!m_deadline.isActive()) {
        fail(u"\""_s + statement.text + u"\" does not hold"_s);
    }
}

// Closes one open editor per call, because each editor runs inside the press that has opened it.
void ExampleRun::giveUp()
{
    if (QWidget* modal = QApplication::activeModalWidget()) {
        modal->close();
    } else {
        m_tick.stop();
    }
}

ExampleRun::Outcome ExampleRun::attempt(const Example::Statement& statement)
{
    const QString name = statement.names.value(0);
    const QMessageBox* box = shownBox();
    bool holds = false;
    switch (statement.kind) {
    case Kind::Press:
        return press(name);
    case Kind::Sends:
        return sends(framed(name.toLatin1()));
    case Kind::SendsUnframed:
        return sends(name.toLatin1());
    case Kind::SendsNothing:
        return sendsNothing();
    case Kind::MenuShows:
        return menuShows(name, statement.names.value(1), true);
    case Kind::MenuDoesNotShow:
        return menuShows(name, statement.names.value(1), false);
    case Kind::ScreenShows:
        holds = buttonOnTop(name) != nullptr;
        break;
    case Kind::KeyIs:
        return keyIs(name, statement.text.section(u' ', -1));
    case Kind::StatusBarShows:
        holds = m_window.statusBar()->isVisible() && m_window.statusBar()->currentMessage() == name;
        break;
    case Kind::StatusBarHidden:
        holds = !m_window.statusBar()->isVisible();
        break;
    case Kind::LinkModeShows:
        holds = part<QLabel>(m_window, "statusLabel")->isVisible() &&
            part<QLabel>(m_window, "statusLabel")->text() == name;
        break;
    case Kind::BoxShows:
        holds = box != nullptr && box->text().contains(name);
        break;
    case Kind::NoBox:
        holds = box == nullptr;
        break;
    case Kind::ScopeIs:
    case Kind::ScopeColour:
    case Kind::PhaseIs:
    case Kind::MagnitudesAre:
        holds = scopeHolds(statement);
        break;
    default:
        holds = chartHolds(statement);
        break;
    }
    return holds ? Outcome::Holds : Outcome::NotYet;
}

ExampleRun::Outcome ExampleRun::press(const QString& text)
{
    QAbstractButton* button = buttonOnTop(text);
    if (button == nullptr) {
        return Outcome::NotYet;
    }
    // The click is not made from here, because a timer does not fire again inside its own signal.
    m_pressing = true;
    QTimer::singleShot(0, button, [this, button] {
        m_pressing = false;
        clickOn(button);
    });
    return Outcome::Holds;
}

ExampleRun::Outcome ExampleRun::sends(const QByteArray& expected)
{
    const QList<QByteArray> pieces = notYetSeen();
    for (const QByteArray& piece : pieces) {
        if (piece == expected) {
            m_seen += 1;
            return Outcome::Holds;
        }
        if (piece != Pong || m_asked == 0) {
            fail(u"sent in place of \""_s + QString::fromLatin1(expected) + u"\": \""_s +
                QString::fromLatin1(piece) + u"\""_s);
            return Outcome::NotYet;
        }
        m_seen += 1;
        m_asked -= 1;
    }
    return Outcome::NotYet;
}

// Only the answers to our own queries may arrive. This function sends the last query.
ExampleRun::Outcome ExampleRun::sendsNothing()
{
    if (!m_lastAsked) {
        ask();
        m_lastAsked = true;
    }
    QList<QByteArray> others = notYetSeen();
    const qsizetype answers = others.removeAll(Pong);
    if (answers > m_asked) {
        others += Pong;
    }
    if (!others.isEmpty()) {
        fail(u"sent, and not expected: \""_s + QString::fromLatin1(others.join(", ")) + u"\""_s);
        return Outcome::NotYet;
    }
    if (answers < m_asked) {
        return Outcome::NotYet;
    }
    m_seen += answers;
    m_asked = 0;
    m_lastAsked = false;
    return Outcome::Holds;
}

ExampleRun::Outcome ExampleRun::menuShows(const QString& menu, const QString& key, bool shown) const
{
    for (const KeyBoard* page : std::as_const(m_window.rooms().menus->book.pages)) {
        const bool isShown = page->name == menu && page->frame->isVisible() &&
            m_window.rooms().stack->currentWidget() == page->frame;
        if (isShown && (visibleButton(page->frame, key) != nullptr) == shown) {
            return Outcome::Holds;
        }
    }
    return Outcome::NotYet;
}

ExampleRun::Outcome ExampleRun::keyIs(const QString& text, const QString& look) const
{
    static const QHash<QString, QString> Colours{{u"green"_s, u"background-color: green"_s},
        {u"grey"_s, u"#919191"_s}, {u"dark"_s, u"#2f4f4f"_s}};
    const QAbstractButton* button = visibleButton(&m_window, text);
    const bool isSo = button != nullptr && button->styleSheet().contains(Colours.value(look));
    return isSo && button->isEnabled() == (look != u"dark"_s) ? Outcome::Holds : Outcome::NotYet;
}

bool ExampleRun::scopeHolds(const Example::Statement& statement) const
{
    const ScopesPage* page = m_window.rooms().scopes;
    if (page == nullptr || !page->isVisible()) {
        return false;
    }
    const QString first = statement.names.value(0);
    if (statement.kind == Kind::ScopeIs) {
        const Scope* scope = page->scope(first.toInt());
        const auto* plot = scope != nullptr ? scope->findChild<QWidget*>(u"plotI"_s) : nullptr;
        return plot != nullptr && plot->isVisible() == statement.text.endsWith(u"shown"_s);
    }
    if (statement.kind == Kind::ScopeColour) {
        const Scope* scope = page->scope(first.toInt());
        return scope != nullptr && scope->lineColor() == QColor(statement.names.value(1));
    }
    const StcMagPhasePlot* display = page->magPhasePlot();
    if (statement.kind == Kind::MagnitudesAre) {
        return display->findChild<QProgressBar*>(u"ch0Bar"_s)->value() == first.toInt() &&
            display->findChild<QProgressBar*>(u"ch1Bar"_s)->value() ==
            statement.names.value(1).toInt();
    }
    constexpr double StepDegrees = 22.5;
    const double degrees = QString(first).remove(QChar(0xb0)).toDouble();
    for (int lamp = 0; lamp < StcMagPhasePlot::ScaleLabels; ++lamp) {
        const auto* label = display->findChild<QLabel*>(u"phaseLabel%1"_s.arg(lamp));
        const bool lit = !label->styleSheet().contains(u"black"_s);
        if (lit != (lamp * StepDegrees == degrees)) {
            return false;
        }
    }
    return true;
}

bool ExampleRun::chartHolds(const Example::Statement& statement) const
{
    const int channel = statement.names.value(0).toInt();
    const QString value = statement.names.value(1);
    const SpectralCard* card = m_window.rooms().spectrum->card();
    const SpectrumChart* chart = card != nullptr ? card->chart(channel) : nullptr;
    if (chart == nullptr || !card->isVisible()) {
        return false;
    }
    QStringList markers;
    for (const double level : chart->hMarkers()) {
        markers += QString::number(level);
    }
    switch (statement.kind) {
    case Kind::ChartIs:
        return chart->isVisible() == statement.text.endsWith(u"shown"_s);
    case Kind::ChartMiddle: {
        const QStringList ticks = chart->tickLabels();
        return chart->isVisible() && ticks.value(ticks.size() / 2).toDouble() == value.toDouble();
    }
    case Kind::ChartWidth: {
        const QVector<double> ticks = chart->tickPositions();
        const QString name = card->getSpanList().value(card->getSpan(channel));
        return !ticks.isEmpty() && name.section(u' ', 0, 0).toDouble() == value.toDouble() &&
            ticks.last() - ticks.first() == value.toDouble();
    }
    case Kind::ChartMarkers:
        return markers == statement.names.mid(1);
    case Kind::ChartNoMarkers:
        return markers.isEmpty();
    default:
        return chart->lineColor() == QColor(value);
    }
}

// Returns whether the panel has carried out the messages, that is, has answered the query after
// them or has opened an editor.
bool ExampleRun::isCarriedOut()
{
    const QList<QByteArray> pieces = notYetSeen();
    return QApplication::activeModalWidget() != nullptr ||
        (!pieces.isEmpty() && pieces.last() == Pong);
}

void ExampleRun::ask()
{
    m_asked += 1;
    m_unit.write(framed("PING"));
}

void ExampleRun::fail(const QString& reason)
{
    if (m_failure.isEmpty()) {
        m_failure = reason;
    }
}

QList<QByteArray> ExampleRun::notYetSeen()
{
    FrameSplitter splitter;
    QList<FrameSplitter::Piece> pieces = splitter.take(m_unit.received());
    if (const auto loose = splitter.takeLoose()) {
        pieces += *loose;
    }
    QList<QByteArray> bytes;
    for (const FrameSplitter::Piece& piece : std::as_const(pieces)) {
        bytes += piece.framed ? framed(piece.text.toLatin1()) : piece.text.toLatin1();
    }
    return bytes.mid(m_seen);
}
