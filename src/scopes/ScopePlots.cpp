#include "scopes/ScopePlots.h"

#include "scopes/PlotView.h"

#include <QVBoxLayout>

#include <algorithm>

void ScopePlots::make(QWidget* scope)
{
    auto* layout = new QVBoxLayout(scope);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (const QString& name : {QStringLiteral("plotI"), QStringLiteral("plotQ")}) {
        auto* plot = new PlotView(scope);
        plot->setObjectName(name);
        plot->hide();
        layout->addWidget(plot, 1);
        m_all += plot;
    }
}

void ScopePlots::setContents(PlotContent* upper, PlotContent* lower) const
{
    if (exist()) {
        m_all.constFirst()->setContent(upper);
        m_all.constLast()->setContent(lower);
    }
}

void ScopePlots::setShown(bool upper, bool lower) const
{
    if (exist()) {
        m_all.constFirst()->setVisible(upper);
        m_all.constLast()->setVisible(lower);
    }
}

void ScopePlots::setUpperSide(int side) const
{
    if (exist() && m_all.constFirst()->maximumSize() != QSize(side, side)) {
        m_all.constFirst()->setMaximumSize(side, side);
    }
}

void ScopePlots::shareHeight() const
{
    if (!exist()) {
        return;
    }
    PlotView* const upper = m_all.constFirst();
    PlotView* const lower = m_all.constLast();
    auto* layout = qobject_cast<QBoxLayout*>(upper->parentWidget()->layout());
    const int frames = upper->frameHeight() + lower->frameHeight();
    const int left = std::max(0, upper->parentWidget()->height() - frames);
    layout->setSpacing(left % 2); // An odd pixel lies between the two.
    layout->setStretchFactor(upper, upper->frameHeight() + left / 2);
    layout->setStretchFactor(lower, lower->frameHeight() + left / 2);
    layout->activate();
}

void ScopePlots::setStale(bool stale) const
{
    for (PlotView* plot : m_all) {
        plot->setStale(stale);
    }
}

void ScopePlots::setFrozen(bool frozen) const
{
    if (exist()) {
        m_all.constFirst()->setFrozen(frozen);
    }
}

void ScopePlots::update() const
{
    for (PlotView* plot : m_all) {
        plot->update();
    }
}

void ScopePlots::dataChanged() const
{
    for (PlotView* plot : m_all) {
        plot->dataChanged();
    }
}
