#include "app/Rooms.h"

#include "app/ChoiceLists.h"
#include "app/DisplayLoan.h"
#include "app/MainWindow.h"
#include "app/MenuNavigation.h"
#include "link/BoxMessages.h"
#include "link/LinkControl.h"
#include "link/MessageBoxes.h"
#include "link/ResendLine.h"
#include "link/keySerial.h"
#include "menus/KeyBoard.h"
#include "menus/MainMenus.h"
#include "menus/MenuMessages.h"
#include "scopes/ScopeMessages.h"
#include "scopes/ScopesPage.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumMessages.h"

#include <QCoreApplication>
#include <QPushButton>

#include <array>

namespace {

constexpr int StartPageLastCell = 5;

bool isForOlderCard()
{
    return QCoreApplication::arguments().contains(QStringLiteral("-noK7150"));
}

} // namespace

Rooms::Rooms(MainWindow& theWindow)
    : hasOlderCard(isForOlderCard())
    , window(theWindow)
    , central(new QWidget(&theWindow))
    , stack(new QStackedLayout)
    , views(new Views(stack, &theWindow))
    , menus(new MenuMessages(stack, &theWindow))
    , navigation(new MenuNavigation(*menus, *views, &theWindow))
    , link(new LinkControl(&theWindow))
    , boxes(new BoxMessages(&theWindow))
    , messageBoxes(new MessageBoxes(&theWindow))
    , resendLine(new ResendLine(&theWindow))
    , spectrum(new SpectrumMessages(hasOlderCard, central, &theWindow))
    , choices(new ChoiceLists(&theWindow))
{
    central->setObjectName(QStringLiteral("central"));
    window.setCentralWidget(central);
    connectMenus();
    connectLink();
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

void Rooms::connectMenus()
{
    QObject::connect(
        &menus->book, &MenuBook::keyboard_response_message, &window, &MainWindow::send_mess);
    QObject::connect(navigation, &MenuNavigation::response, &window, &MainWindow::send_mess);
    QObject::connect(
        &navigation->mainMenus(), &MainMenus::spanClicked, &window, &MainWindow::spanClicked);
}

void Rooms::connectLink()
{
    QObject::connect(link->serial(), &keySerial::valid_mess_in, &window, &MainWindow::process_mess,
        Qt::DirectConnection);
    QObject::connect(resendLine, &ResendLine::received, &window, &MainWindow::send_scope_mess);
    QObject::connect(boxes, &BoxMessages::boxWanted, &window, &MainWindow::main_messagebox);
    QObject::connect(boxes, &BoxMessages::closeWanted, &window, &MainWindow::killbox);
}

void Rooms::connectSpectrum()
{
    QObject::connect(spectrum, &SpectrumMessages::pageMade, &window, [this](SpectralCard* page) {
        stack->addWidget(page);
        views->set(&Views::spectrum, page);
    });
    QObject::connect(spectrum, &SpectrumMessages::pageMissed, &window, [this] {
        if (!window.scope_available()) {
            views->returnToMenus(views->menu.widget());
        }
    });
    QObject::connect(
        spectrum, &SpectrumMessages::lineColorSet, &window, &MainWindow::setScopeLineColor);
    QObject::connect(spectrum, &SpectrumMessages::response, &window, &MainWindow::send_mess);
    QObject::connect(spectrum, &SpectrumMessages::unframedResponse, link, &LinkControl::write);
    QObject::connect(spectrum, &SpectrumMessages::choiceWanted, choices, &ChoiceLists::askSpan);
    QObject::connect(choices, &ChoiceLists::spanChosen, spectrum, &SpectrumMessages::applyChoice);
}

void Rooms::addScopes()
{
    scopes = new ScopesPage(central);
    stack->addWidget(scopes);
    views->set(&Views::scopes, scopes);
    scopeMessages = new ScopeMessages(*scopes, &window);
    loan = new DisplayLoan(*scopes, *spectrum, &window);
    connectScopes();
    connectLoan();
    resendLine->open();
}

void Rooms::connectScopes()
{
    constexpr std::array EyeSlots{
        &MainWindow::eye_1_msg, &MainWindow::eye_2_msg, &MainWindow::eye_3_msg};
    constexpr std::array SdiSlots{
        &MainWindow::sdi_1_msg, &MainWindow::sdi_2_msg, &MainWindow::sdi_3_msg};
    constexpr std::array ModeSlots{&MainWindow::togglePlotType_ch1, &MainWindow::togglePlotType_ch2,
        &MainWindow::togglePlotType_comb};
    for (std::size_t i = 0; i < EyeSlots.size(); ++i) {
        const int demodulator = static_cast<int>(i) + 1;
        Scope* const scope = scopes->scope(demodulator);
        QObject::connect(scope, &Scope::rcv_eye_msg, &window, EyeSlots.at(i));
        QObject::connect(scope, &Scope::rcv_sdi_msg, &window, SdiSlots.at(i));
        QObject::connect(
            scopes->modeButton(demodulator), &QPushButton::clicked, &window, ModeSlots.at(i));
    }
    QObject::connect(scopeMessages, &ScopeMessages::response, &window, &MainWindow::send_mess);
    QObject::connect(
        scopeMessages, &ScopeMessages::choiceWanted, choices, &ChoiceLists::askScopeMode);
    QObject::connect(
        choices, &ChoiceLists::scopeModeChosen, &window, &MainWindow::applyScopeChoice);
}

void Rooms::connectLoan()
{
    QObject::connect(navigation, &MenuNavigation::displaysWanted, loan, &DisplayLoan::lendTo);
    QObject::connect(navigation, &MenuNavigation::displaysReturned, loan, &DisplayLoan::takeBack);
    QObject::connect(spectrum, &SpectrumMessages::started, loan,
        [this] { loan->lendChartTo(navigation->shownPaxPlace()); });
}
