#include "scopes/ScopesPage.h"

#include "scopes/FigureStrip.h"
#include "scopes/ScopeKeys.h"
#include "scopes/StcMagPhasePlot.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>

#include <algorithm>

namespace {

constexpr int ButtonHeight = 50;
constexpr int MagPhaseHeight = 52;
constexpr int Spacing = 3;
constexpr int ModeWidth = 264; // as below a scope that is not enlarged
constexpr int KeysWidth = 140;

// A part that was never hidden comes with its page. To show it before would make it load its fonts
// and lay out what it holds, at the start of the panel.
void setShown(QWidget* part, bool shown)
{
    if (!shown || part->testAttribute(Qt::WA_WState_ExplicitShowHide)) {
        part->setVisible(shown);
    }
}

// Every widget asks to be polished when it is made, and so works out its look at the start, shown
// or not. Showing it does the same.
void polishWhenShown(const QWidget& page)
{
    const auto parts = page.findChildren<QWidget*>();
    for (QWidget* part : parts) {
        QCoreApplication::removePostedEvents(part, QEvent::PolishRequest);
    }
}

} // namespace

ScopesPage::ScopesPage(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("scopesPage"));
    QPalette black = palette();
    black.setColor(QPalette::Window, Qt::black);
    setPalette(black);
    setAutoFillBackground(true);
    // Its parents polish it and all that it holds by then, so it is done before that.
    ensurePolished();
    auto* page = new QGridLayout(this);
    page->setContentsMargins(0, 0, 0, 0);
    page->setSpacing(Spacing);
    page->addWidget(newHead(), 0, 0, 1, 2);
    auto* scopes = new QHBoxLayout;
    scopes->setSpacing(Spacing);
    for (int demodulator = 1; demodulator <= Demodulators; ++demodulator) {
        scopes->addWidget(newPlace(demodulator), 1);
        connectScope(demodulator);
    }
    page->addLayout(scopes, 1, 0);
    page->setRowStretch(1, 1);
    page->setColumnStretch(0, 1);
    m_figures = new FigureStrip(this);
    m_figures->setObjectName(QStringLiteral("scopeFigures"));
    page->addWidget(m_figures, 2, 0);
    m_keys = new ScopeKeys(this);
    m_keys->setFixedWidth(KeysWidth);
    page->addWidget(m_keys, 1, 1, 2, 1);
    m_magPhase = new StcMagPhasePlot(this);
    m_magPhase->setObjectName(QStringLiteral("magPhasePlot"));
    m_magPhase->setFixedHeight(MagPhaseHeight);
    page->addWidget(m_magPhase, 3, 0, 1, 2);
    arrange();
    polishWhenShown(*this);
}

QPushButton* ScopesPage::newButton(const QString& name, QWidget* parent)
{
    auto* button = new QPushButton(parent);
    button->setObjectName(name);
    button->setFixedHeight(ButtonHeight);
    button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    // With a border: without one Qt leaks some memory at each painting of a coloured button.
    button->setStyleSheet(
        QStringLiteral("QPushButton {background-color: #919191; color:black; font-size: 18px; "
                       "border: 1px solid #c8c8c8; border-radius: 4px;} "
                       "QPushButton:pressed {background-color: #4169e1;}"));
    return button;
}

// The line above an enlarged scope: its title, and a place for its mode button.
QWidget* ScopesPage::newHead()
{
    m_head = new QWidget(this);
    auto* line = new QHBoxLayout(m_head);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(Spacing);
    m_title = newButton(QStringLiteral("scopeTitle"), m_head);
    connect(m_title, &QPushButton::clicked, this, &ScopesPage::showAll);
    line->addWidget(m_title, 1);
    auto* modePlace = new QWidget(m_head);
    modePlace->setFixedWidth(ModeWidth);
    m_modePlace = new QGridLayout(modePlace);
    m_modePlace->setContentsMargins(0, 0, 0, 0);
    line->addWidget(modePlace);
    return m_head;
}

QWidget* ScopesPage::newPlace(int demodulator)
{
    Place& place = m_places[static_cast<size_t>(demodulator - 1)];
    place.cell = new QWidget(this);
    place.grid = new QGridLayout(place.cell);
    place.grid->setContentsMargins(0, 0, 0, 0);
    place.grid->setSpacing(Spacing);
    place.scope = new Scope(QStringLiteral("ttyUSB%1").arg(demodulator), demodulator, place.cell);
    place.scope->setObjectName(QStringLiteral("scope%1").arg(demodulator));
    place.button = newButton(QStringLiteral("modeButton%1").arg(demodulator), place.cell);
    place.grid->addWidget(place.scope, 0, 0);
    place.grid->addWidget(place.button, 1, 0);
    place.grid->setRowStretch(0, 1);
    if (const auto off = ScopeMode::ofMessage(0)) {
        setMode(demodulator, *off);
    }
    return place.cell;
}

void ScopesPage::connectScope(int demodulator)
{
    Scope* const scope = place(demodulator).scope;
    scope->setTouch(Scope::Touch::IsPassedOn);
    scope->installEventFilter(this);
    connect(scope, &Scope::plotTouched, this, [this, demodulator] { enlarge(demodulator); });
    connect(scope, &Scope::figuresChanged, this, [this, demodulator] {
        if (demodulator == m_enlarged) {
            showFigures();
        }
    });
}

bool ScopesPage::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ParentChange) {
        for (int demodulator = 1; demodulator <= Demodulators; ++demodulator) {
            if (watched == place(demodulator).scope) {
                scopeMoved(demodulator);
            }
        }
    }
    return QWidget::eventFilter(watched, event);
}

// A scope was lent to another page, or has come back.
void ScopesPage::scopeMoved(int demodulator)
{
    Scope* const scope = place(demodulator).scope;
    const bool isHome = scope->parentWidget() == place(demodulator).cell;
    scope->setTouch(isHome ? Scope::Touch::IsPassedOn : Scope::Touch::ChangesRange);
    if (!isHome) {
        scope->setFrozen(false);
        if (demodulator == m_enlarged) {
            showAll();
        }
    }
}

void ScopesPage::enlarge(int demodulator)
{
    const Place& chosen = place(demodulator);
    if (demodulator == m_enlarged || chosen.scope == nullptr ||
        chosen.scope->parentWidget() != chosen.cell) {
        return;
    }
    showAll();
    m_enlarged = demodulator;
    m_title->setText(QStringLiteral("\u25c0  Demod %1").arg(demodulator));
    m_modePlace->addWidget(chosen.button, 0, 0);
    m_keys->setScope(chosen.scope);
    arrange();
    chosen.scope->setEnlarged(true);
    showFigures();
}

void ScopesPage::showAll()
{
    const Place& before = place(m_enlarged);
    m_enlarged = 0;
    m_keys->setScope(nullptr);
    if (before.button != nullptr) {
        before.grid->addWidget(before.button, 1, 0);
    }
    if (before.scope != nullptr) {
        before.scope->setEnlarged(false);
    }
    arrange();
}

void ScopesPage::arrange()
{
    for (int demodulator = 1; demodulator <= Demodulators; ++demodulator) {
        setShown(place(demodulator).cell, m_enlarged == 0 || m_enlarged == demodulator);
    }
    setShown(m_magPhase, m_enlarged == 0);
    setShown(m_head, m_enlarged != 0);
    setShown(m_keys, m_enlarged != 0);
    setShown(m_figures, m_enlarged != 0);
}

void ScopesPage::showFigures()
{
    if (const Scope* scope = place(m_enlarged).scope) {
        m_figures->setFigures(scope->figures());
    }
}

const ScopesPage::Place& ScopesPage::place(int demodulator) const
{
    static const Place none;
    return exists(demodulator) ? m_places[static_cast<size_t>(demodulator - 1)] : none;
}

Scope* ScopesPage::scope(int demodulator) const
{
    return place(demodulator).scope;
}

QPushButton* ScopesPage::modeButton(int demodulator) const
{
    return place(demodulator).button;
}

QGridLayout* ScopesPage::scopeGrid(int demodulator) const
{
    return place(demodulator).grid;
}

int ScopesPage::storedMode(int demodulator) const
{
    return place(demodulator).mode;
}

void ScopesPage::setMode(int demodulator, const ScopeMode& mode)
{
    if (!exists(demodulator)) {
        return;
    }
    Place& changed = m_places[static_cast<size_t>(demodulator - 1)];
    changed.button->setText(mode.buttonText(demodulator));
    if (changed.scope) {
        changed.scope->setPlotType(mode.plotType);
        changed.scope->setOff(mode.stored == 0);
    }
    changed.mode = mode.stored;
}

bool ScopesPage::anyPortOpen() const
{
    return std::any_of(m_places.begin(), m_places.end(),
        [](const Place& place) { return place.scope && place.scope->portIsOpen(); });
}
