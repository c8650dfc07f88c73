// The steps of a scenario, one by one: the part of ScenarioRun that knows what each of them does.
#include "app/MainWindow.h"
#include "app/Rooms.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "tools/screen/Screen.h"
#include "tools/try/Editors.h"
#include "tools/try/Finger.h"
#include "tools/try/Glass.h"
#include "tools/try/KeyState.h"
#include "tools/try/Pattern.h"
#include "tools/try/Pictures.h"
#include "tools/try/ScenarioRun.h"
#include "wire/Message.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

ScenarioRun::Progress ScenarioRun::execute(const Step& step)
{
    switch (step.verb) {
    case Verb::Send:
    case Verb::Raw:
    case Verb::Menus:
    case Verb::Answers:
    case Verb::Open:
        return unitStep(step);
    case Verb::Press:
    case Verb::Hold:
    case Verb::Touch:
    case Verb::Type:
    case Verb::Choose:
    case Verb::Slide:
        return operatorStep(step);
    default:
        return expectation(step);
    }
}

ScenarioRun::Progress ScenarioRun::unitStep(const Step& step)
{
    switch (step.verb) {
    case Verb::Send:
        m_unit->send(step.subject);
        return {};
    case Verb::Raw:
        m_unit->sendRaw(step.subject);
        return {};
    case Verb::Menus:
        return sendMenus(step);
    case Verb::Open:
        return open(step);
    default:
        m_unit->setAnswering(step.subject == u"on"_s);
        return {};
    }
}

ScenarioRun::Progress ScenarioRun::sendMenus(const Step& step)
{
    if (m_begun) {
        m_expected = m_unit->heard().size(); // what it has answered to the menus
        return {};
    }
    const MenuFile menus = step.subject.isEmpty() ? MenuFile::builtIn()
                                                  : MenuFile::load(m_scenario.beside(step.subject));
    if (!menus.errors().isEmpty()) {
        return {Progress::Failed, menus.errors().constFirst()};
    }
    for (const MenuStep& one : menus.steps()) {
        m_longer += one.waitMs;
    }
    m_unit->sendMenus(menus.steps());
    m_begun = true;
    return {Progress::Waiting};
}

ScenarioRun::Progress ScenarioRun::open(const Step& step)
{
    const auto& book = m_window->rooms().menus->book;
    const KeyBoard* menu = book.find(step.subject);
    if (menu == nullptr) {
        QStringList names;
        for (const KeyBoard* page : book.pages) {
            names += page->name;
        }
        return {Progress::Failed,
            u"no menu \"%1\"; there are: %2"_s.arg(step.subject, names.join(u", "_s))};
    }
    if (!m_begun) {
        m_begun = true;
        m_unit->send(u"SK,"_s + step.subject);
    }
    if (menu->frame != nullptr && menu->frame->isVisible()) {
        return {};
    }
    return {Progress::Waiting, u"the menu \"%1\" is not shown"_s.arg(step.subject)};
}

ScenarioRun::Progress ScenarioRun::operatorStep(const Step& step)
{
    switch (step.verb) {
    case Verb::Touch:
        return tap(step.point);
    case Verb::Hold:
        return hold(step);
    case Verb::Press: {
        const finger::Target key = finger::key(step.subject, step.number);
        return key.fault.isEmpty() ? tap(key.point) : Progress{Progress::Waiting, key.fault};
    }
    default:
        return typeOrChoose(step);
    }
}

// While the finger is down nothing else is done. What lifting it sets off may take until a modal
// editor is closed, so it comes last.
ScenarioRun::Progress ScenarioRun::tap(QPoint point)
{
    return {Progress::Done, {}, [this, point] {
                m_touching = true;
                finger::down(point);
                m_touching = false;
                finger::up(point);
            }};
}

ScenarioRun::Progress ScenarioRun::hold(const Step& step)
{
    const finger::Target key = finger::key(step.subject, step.number);
    if (!key.fault.isEmpty()) {
        return {Progress::Waiting, key.fault};
    }
    return {Progress::Done, {}, [this, point = key.point, ms = step.ms] {
                m_touching = true;
                finger::down(point);
                QTimer::singleShot(ms, Qt::PreciseTimer, this, [this, point] {
                    m_touching = false;
                    m_unit->noteTouch();
                    finger::up(point);
                });
            }};
}

ScenarioRun::Progress ScenarioRun::typeOrChoose(const Step& step)
{
    m_touching = true;
    finger::Target last;
    if (step.verb == Verb::Type) {
        last = editors::type(step.subject, step.detail);
    } else if (step.verb == Verb::Choose) {
        last = editors::choose(step.subject);
    } else {
        last = editors::slide(step.number);
    }
    m_touching = false;
    if (!last.fault.isEmpty()) {
        return {Progress::Failed, last.fault};
    }
    if (step.verb == Verb::Slide) {
        return {Progress::Done, {}, [point = last.point] { finger::up(point); }};
    }
    return tap(last.point);
}

ScenarioRun::Progress ScenarioRun::expectation(const Step& step)
{
    switch (step.verb) {
    case Verb::Expect:
        return expect(step);
    case Verb::ExpectNot:
        return expectNot(step);
    case Verb::ExpectScreen:
        return {glass::shows(step.subject) ? Progress::Done : Progress::Waiting,
            u"no \"%1\" on the screen"_s.arg(step.subject)};
    case Verb::ExpectNotScreen:
        return {glass::shows(step.subject) ? Progress::Waiting : Progress::Done,
            u"\"%1\" is on the screen"_s.arg(step.subject)};
    case Verb::ExpectState: {
        const QString fault = keyState::fault(step);
        return {fault.isEmpty() ? Progress::Done : Progress::Waiting, fault};
    }
    case Verb::Picture:
        return takePicture(step);
    case Verb::Compare:
        return compare(step);
    default:
        m_longer = step.ms;
        return {m_stepClock.elapsed() >= step.ms ? Progress::Done : Progress::Waiting, {}};
    }
}

ScenarioRun::Progress ScenarioRun::expect(const Step& step)
{
    if (m_expected == m_unit->heard().size()) {
        m_longer = step.ms > 0 ? step.ms - m_settings.stepMs : 0;
        return {Progress::Waiting, u"the panel has sent nothing more"_s};
    }
    const QString& body = m_unit->heard().at(m_expected);
    if (!matches(step.subject, body)) {
        return {Progress::Failed, u"the panel has sent \"%1\""_s.arg(wire::toPrintable(body))};
    }
    ++m_expected;
    return {};
}

ScenarioRun::Progress ScenarioRun::expectNot(const Step& step)
{
    const QStringList& heard = m_unit->heard();
    for (qsizetype i = m_expected; i < heard.size(); ++i) {
        if (matches(step.subject, heard.at(i))) {
            return {Progress::Failed,
                u"the panel has sent \"%1\""_s.arg(wire::toPrintable(heard.at(i)))};
        }
    }
    m_longer = step.ms;
    return {m_stepClock.elapsed() >= step.ms ? Progress::Done : Progress::Waiting, {}};
}

ScenarioRun::Progress ScenarioRun::takePicture(const Step& step)
{
    const QString path = write(grabScreen().toImage(), step.subject);
    return {QFileInfo::exists(path) ? Progress::Done : Progress::Failed, path};
}

ScenarioRun::Progress ScenarioRun::compare(const Step& step)
{
    const QString path = m_scenario.beside(step.subject);
    const QImage now = grabScreen().toImage();
    const QImage reference(path);
    if (reference.isNull() && !m_settings.update) {
        return {Progress::Failed, u"no picture %1 to compare with; --update makes it"_s.arg(path)};
    }
    const pictures::Difference found = pictures::compare(now, reference);
    if (found.points <= step.number) {
        return {};
    }
    if (m_settings.update) {
        return {now.save(path) ? Progress::Done : Progress::Failed, u"cannot write "_s + path};
    }
    const QString shown = write(found.picture, QFileInfo(path).completeBaseName() + u"-diff.png"_s);
    const QRect part = found.place;
    return {Progress::Waiting,
        u"%1 points differ, between %2, %3 and %4, %5: %6"_s.arg(found.points)
            .arg(part.left())
            .arg(part.top())
            .arg(part.right())
            .arg(part.bottom())
            .arg(shown)};
}
