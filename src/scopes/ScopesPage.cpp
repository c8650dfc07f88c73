#include "scopes/ScopesPage.h"

#include "scopes/StcMagPhasePlot.h"

#include <QGridLayout>
#include <QPushButton>

#include <algorithm>

namespace {

constexpr int ButtonHeight = 50;
constexpr int MagPhaseHeight = 52;
constexpr int Spacing = 3;

} // namespace

ScopesPage::ScopesPage(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("scopesPage"));
    QPalette black = palette();
    black.setColor(QPalette::Window, Qt::black);
    setPalette(black);
    setAutoFillBackground(true);
    auto* page = new QGridLayout(this);
    page->setContentsMargins(0, 0, 0, 0);
    page->setSpacing(Spacing);
    for (int demodulator = 1; demodulator <= Demodulators; ++demodulator) {
        page->addWidget(newPlace(demodulator), 0, demodulator - 1);
        page->setColumnStretch(demodulator - 1, 1);
    }
    page->setRowStretch(0, 1);
    m_magPhase = new StcMagPhasePlot(this);
    m_magPhase->setObjectName(QStringLiteral("magPhasePlot"));
    m_magPhase->setFixedHeight(MagPhaseHeight);
    page->addWidget(m_magPhase, 1, 0, 1, Demodulators);
}

QWidget* ScopesPage::newPlace(int demodulator)
{
    Place& place = m_places[static_cast<size_t>(demodulator - 1)];
    auto* cell = new QWidget(this);
    place.grid = new QGridLayout(cell);
    place.grid->setContentsMargins(0, 0, 0, 0);
    place.grid->setSpacing(Spacing);
    place.scope = new Scope(QStringLiteral("ttyUSB%1").arg(demodulator), demodulator, cell);
    place.scope->setObjectName(QStringLiteral("scope%1").arg(demodulator));
    place.button = new QPushButton(cell);
    place.button->setObjectName(QStringLiteral("modeButton%1").arg(demodulator));
    place.button->setFixedHeight(ButtonHeight);
    place.button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    // With a border: without one Qt leaks some memory at each painting of a coloured button.
    place.button->setStyleSheet(
        QStringLiteral("QPushButton {background-color: #919191; color:black; font-size: 18px; "
                       "border: 1px solid #c8c8c8; border-radius: 4px;} "
                       "QPushButton:pressed {background-color: #4169e1;}"));
    place.grid->addWidget(place.scope, 0, 0);
    place.grid->addWidget(place.button, 1, 0);
    place.grid->setRowStretch(0, 1);
    if (const auto off = ScopeMode::ofMessage(0)) {
        setMode(demodulator, *off);
    }
    return cell;
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
