#include "tools/pictures/PaperPanel.h"

#include "app/MainWindow.h"
#include "app/Rooms.h"
#include "link/LinkMode.h"
#include "menus/ImmediateKey.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "tools/pictures/KeyText.h"
#include "tools/screen/Screen.h"
#include "tools/try/UnitSide.h"
#include "wire/Commands.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QSplashScreen>

using namespace Qt::StringLiterals;

namespace {

constexpr int MaxWaitMs = 20000;

// The messages that make menus and keys, and change nothing else on the screen.
bool makesMenus(const QString& word)
{
    using namespace wire::word;
    static const QStringList words{AK, CV, CK, CM, MS, EI, Clear};
    return words.contains(word);
}

bool isBox(const QString& body)
{
    return body.startsWith(u"DB,"_s) && body != u"DB,KILLBOX"_s;
}

QString stateOf(const Key& key)
{
    const QPushButton* button = key.GetKey();
    if (button == nullptr || button->parentWidget() == nullptr) {
        return u"not shown"_s;
    }
    if (button->isHidden()) {
        return u"hidden"_s;
    }
    return button->isEnabled() ? u"enabled"_s : u"disabled"_s;
}

PaperKey textsOf(const Key& key, const QString& id)
{
    return {key.label.simplified(), id, keyText::kind(key), keyText::sends(key),
        keyText::values(key), {}, keyText::opens(key), {}};
}

} // namespace

PaperPanel::PaperPanel()
{
    linkMode::store(linkMode::None);
    m_unit = std::make_unique<UnitSide>();
    m_unit->setAnswering(false);
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (qobject_cast<QSplashScreen*>(window) != nullptr) {
            window->hide();
        }
    }
    settle();
}

PaperPanel::~PaperPanel() = default;

Paper PaperPanel::draw(const MenuFile& menus, const QString& path)
{
    Paper paper{path, {}, {}, {}, {}};
    QStringList bodies;
    for (const MenuStep& step : menus.steps()) {
        if (step.kind == MenuStep::Kind::Message) {
            bodies += step.body;
        }
    }
    for (const QString& body : std::as_const(bodies)) {
        if (makesMenus(body.section(u',', 0, 0))) {
            send(body);
        }
    }
    settle();
    const QList<KeyBoard*> pages = m_window->rooms().menus->book.pages;
    for (const KeyBoard* menu : pages) {
        if (!menu->keys.isEmpty()) {
            paper.menus += drawMenu(*menu);
        }
    }
    for (const QString& body : std::as_const(bodies)) {
        if (body.startsWith(u"IK,"_s)) {
            paper.immediate += drawImmediate(body);
        } else if (isBox(body)) {
            paper.boxes += drawBox(body);
        }
    }
    paper.faults = m_faults;
    return paper;
}

void PaperPanel::send(const QString& body)
{
    m_unit->send(body);
}

void PaperPanel::settle()
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!m_unit->isQuiet() && elapsed.elapsed() < MaxWaitMs) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
    }
}

PaperMenu PaperPanel::drawMenu(const KeyBoard& menu)
{
    send(u"SK,"_s + menu.name);
    settle();
    PaperMenu drawn{menu.name, {}, {}};
    const int pages = menu.pages != nullptr ? menu.pages->count() : 1;
    for (int page = 1; page <= pages; ++page) {
        drawn.pages += picture(
            pages == 1 ? menu.name : u"%1, page %2 of %3"_s.arg(menu.name).arg(page).arg(pages));
        QPushButton* more = buttonWithText(menu.frame, u"More..."_s);
        if (pages > 1 && more != nullptr) {
            clickOn(more);
        }
    }
    const QList<Key*> keys = menu.keys;
    for (Key* key : keys) {
        drawn.keys += drawKey(menu, *key);
    }
    return drawn;
}

PaperKey PaperPanel::drawKey(const KeyBoard& menu, Key& key)
{
    PaperKey drawn = textsOf(key, key.keyId);
    drawn.state = stateOf(key);
    const QString source = sourceOf(key);
    if (!source.isEmpty()) {
        drawn.kind += u", copy of the key in "_s + source;
    } else if (keyText::hasEditor(key.type)) {
        drawn.editor = editor(menu.name + u": "_s + drawn.label, [&key] {
            QMetaObject::invokeMethod(&key, &Key::key_button_pushed, Qt::QueuedConnection);
        });
    }
    return drawn;
}

// Returns the menu of the key that this one is a copy of; empty for a key of its own.
QString PaperPanel::sourceOf(const Key& key) const
{
    const Key* source = key.linkedKeys.value(0);
    for (const KeyBoard* menu : m_window->rooms().menus->book.pages) {
        for (const Key* one : menu->keys) {
            if (one == source) {
                return menu->name;
            }
            if (one == &key) {
                return {}; // copies come after their source
            }
        }
    }
    return {};
}

PaperKey PaperPanel::drawImmediate(const QString& body)
{
    const auto key = ImmediateKey::fromFields(body.split(u',').mid(1));
    if (key == nullptr) {
        m_faults += u"no key: "_s + body;
        return {};
    }
    PaperKey drawn = textsOf(*key, {});
    drawn.state = u"opened by the unit"_s;
    if (keyText::hasEditor(key->type)) {
        drawn.editor = editor(drawn.label, [this, &body] { send(body); });
    }
    return drawn;
}

// Takes the picture of the editor that `open` opens, and closes it.
QList<PaperPicture> PaperPanel::editor(const QString& title, const std::function<void()>& open)
{
    QList<PaperPicture> taken;
    bool over = false;
    whenModal(
        [&](QWidget* modal) {
            taken += picture(title);
            over = true;
            if (auto* dialog = qobject_cast<QDialog*>(modal)) {
                dialog->reject();
            }
        },
        [&] {
            m_faults += u"no editor came up: "_s + title;
            over = true;
        });
    open();
    while (!over) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    settle();
    return taken;
}

PaperPicture PaperPanel::drawBox(const QString& body)
{
    send(body);
    settle();
    PaperPicture drawn = picture(u"Message box: "_s + body.section(u',', 1, 1));
    send(u"DB,KILLBOX"_s);
    settle();
    return drawn;
}

// "Tuner CH1, page 2 of 3" becomes "tuner-ch1-page-2-of-3"; a name that is taken gets a number.
PaperPicture PaperPanel::picture(const QString& title)
{
    QString name;
    for (const QChar c : title.simplified().toLower()) {
        const bool plain = (c >= u'a' && c <= u'z') || c.isDigit();
        if (plain || (!name.isEmpty() && !name.endsWith(u'-'))) {
            name += plain ? c : QChar(u'-');
        }
    }
    constexpr int LongestName = 60;
    name.truncate(LongestName);
    if (name.endsWith(u'-')) {
        name.chop(1);
    }
    QString free = name;
    for (int number = 2; m_names.contains(free); ++number) {
        free = u"%1-%2"_s.arg(name).arg(number);
    }
    m_names += free;
    return {free, title.simplified(), grabScreen().toImage()};
}
