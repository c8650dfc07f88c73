#include "app/Rooms.h"

#include "app/ChoiceLists.h"
#include "app/DisplayLoan.h"
#include "app/MenuNavigation.h"
#include "app/PageStack.h"
#include "link/BoxMessages.h"
#include "link/LinkControl.h"
#include "link/MessageBoxes.h"
#include "link/ResendLine.h"
#include "menus/KeyBoard.h"
#include "menus/MainMenus.h"
#include "menus/MenuMessages.h"
#include "scopes/ScopeMessages.h"
#include "scopes/ScopeRemote.h"
#include "scopes/ScopesPage.h"
#include "scopes/StcMagPhasePlot.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumMessages.h"

#include <QCoreApplication>
#include <QPushButton>

namespace {

constexpr int StartPageLastCell = 5;

bool isForOlderCard()
{
    return QCoreApplication::arguments().contains(QStringLiteral("-noK7150"));
}

} // namespace

Rooms::Rooms(QWidget* window)
    : hasOlderCard(isForOlderCard())
    , central(new QWidget(window))
    , stack(new PageStack)
    , views(new Views(stack, window))
    , menus(new MenuMessages(stack, window))
    , navigation(new MenuNavigation(*menus, *views, window))
    , link(new LinkControl(window))
    , boxes(new BoxMessages(window))
    , messageBoxes(new MessageBoxes(window))
    , resendLine(new ResendLine(window))
    , spectrum(new SpectrumMessages(hasOlderCard, central, window))
    , choices(new ChoiceLists(window))
    , m_window(window)
{
    central->setObjectName(QStringLiteral("central"));
    connectSpectrum();
    addStartPages();
    central->setLayout(stack);
    central->show();
}

void Rooms::addStartPages()
{
    for (const QString& name : {QStringLiteral("Loading"), QStringLiteral("two")}) {
        auto* page = new KeyBoard;
        page->new_keyboard(name, StartPageLastCell, StartPageLastCell);
        menus->book.add(page);
    }
    views->addWaitingPage();
    views->showMenu(menus->book.pages.constFirst()->frame);
}

void Rooms::connectSpectrum()
{
    QObject::connect(spectrum, &SpectrumMessages::pageMade, central,
        [stack = stack, views = views, navigation = navigation](SpectralCard* page) {
            stack->addWidget(page);
            views->set(&Views::spectrum, page);
            navigation->mainMenus().enableSpan();
        });
    QObject::connect(spectrum, &SpectrumMessages::unframedResponse, link, &LinkControl::write);
    QObject::connect(spectrum, &SpectrumMessages::choiceWanted, choices,
        [spectrum = spectrum, choices = choices](const QString& items) {
            const SpectralCard* card = spectrum->card();
            choices->askSpan(
                items, card != nullptr ? std::optional<int>(card->getSpan(0)) : std::nullopt);
        });
    QObject::connect(choices, &ChoiceLists::spanChosen, spectrum, &SpectrumMessages::applyChoice);
}

void Rooms::addScopes()
{
    scopes = new ScopesPage(central);
    stack->addWidget(scopes);
    views->set(&Views::scopes, scopes);
    scopeMessages = new ScopeMessages(*scopes, m_window);
    new ScopeRemote(*scopes, scopes);
    loan = new DisplayLoan(*scopes, *spectrum, m_window);
    connectScopeMessages();
    connectLoan();
    resendLine->open();
}

void Rooms::connectScopeMessages()
{
    StcMagPhasePlot* const display = scopes->magPhasePlot();
    const auto dim = [display](LinkState state) {
        display->setDimmed(state != LinkState::Alive); // the main unit fills it
    };
    QObject::connect(link, &LinkControl::healthChanged, display, dim);
    dim(link->health());
    QObject::connect(
        spectrum, &SpectrumMessages::pageMissed, scopes, [scopes = scopes, views = views] {
            if (!scopes->anyPortOpen()) {
                views->returnToMenus(views->menu.widget());
            }
        });
    QObject::connect(scopeMessages, &ScopeMessages::choiceWanted, scopes,
        [scopes = scopes, choices = choices](int demodulator, const QString& items) {
            const QPushButton* button = scopes->modeButton(demodulator);
            const QString shown = button != nullptr ? button->text() : QString();
            choices->askScopeMode(demodulator, items, shown.mid(QStringLiteral("Demod n ").size()));
        });
}

void Rooms::connectLoan()
{
    QObject::connect(navigation, &MenuNavigation::displaysWanted, loan, &DisplayLoan::lendTo);
    QObject::connect(navigation, &MenuNavigation::displaysReturned, loan, &DisplayLoan::takeBack);
    QObject::connect(spectrum, &SpectrumMessages::started, navigation,
        [loan = loan, navigation = navigation] { loan->lendChartTo(navigation->shownPaxPlace()); });
}
