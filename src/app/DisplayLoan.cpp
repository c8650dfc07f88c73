#include "app/DisplayLoan.h"

#include "scopes/ScopesPage.h"
#include "spectrum/SpectrumMessages.h"

#include <QGridLayout>

namespace {
constexpr int Combiner = 3; // the demodulator behind the combiner
} // namespace

DisplayLoan::DisplayLoan(ScopesPage& scopes, SpectrumMessages& spectrum, QObject* parent)
    : QObject(parent)
    , m_scopes(scopes)
    , m_spectrum(spectrum)
{
}

void DisplayLoan::lendTo(QGridLayout* place)
{
    if (Scope* const scope = m_scopes.scope(Combiner)) {
        scope->setDisableFixIsize(true);
        place->addWidget(scope, 0, 0);
        scope->show();
    }
    lendChartTo(place);
}

void DisplayLoan::lendChartTo(QGridLayout* place)
{
    m_spectrum.lendChart(place);
}

void DisplayLoan::takeBack()
{
    takeScopeBack();
    takeChartBack();
}

void DisplayLoan::takeChartBack()
{
    m_spectrum.returnChart();
}

void DisplayLoan::takeScopeBack()
{
    Scope* const scope = m_scopes.scope(Combiner);
    QGridLayout* const home = m_scopes.scopeGrid(Combiner);
    if (scope == nullptr) {
        return;
    }
    scope->setDisableFixIsize(false);
    if (scope->parentWidget() != home->parentWidget()) {
        home->addWidget(scope, 0, 0);
        scope->show();
    }
}
