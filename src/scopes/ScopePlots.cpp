#include "scopes/ScopePlots.h"

#include "scopes/PlotView.h"

#include <QVBoxLayout>

#include <algorithm>

ScopePlots::ScopePlots(QWidget* scope)
    : m_upper(new PlotView(scope))
    , m_lower(new PlotView(scope))
{
    m_upper->setObjectName(QStringLiteral("plotI"));
    m_lower->setObjectName(QStringLiteral("plotQ"));
    auto* layout = new QVBoxLayout(scope);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_upper, 1);
    layout->addWidget(m_lower, 1);
}

void ScopePlots::setContents(PlotContent* upper, PlotContent* lower) const
{
    m_upper->setContent(upper);
    m_lower->setContent(lower);
}

void ScopePlots::setShown(bool upper, bool lower) const
{
    m_upper->setVisible(upper);
    m_lower->setVisible(lower);
}

void ScopePlots::setUpperSide(int side) const
{
    if (m_upper->maximumSize() != QSize(side, side)) {
        m_upper->setMaximumSize(side, side);
    }
}

void ScopePlots::shareHeight() const
{
    const QWidget* scope = m_upper->parentWidget();
    auto* layout = qobject_cast<QBoxLayout*>(scope->layout());
    const int frames = m_upper->frameHeight() + m_lower->frameHeight();
    const int left = std::max(0, scope->height() - frames);
    layout->setSpacing(left % 2); // An odd pixel lies between the two.
    layout->setStretchFactor(m_upper, m_upper->frameHeight() + left / 2);
    layout->setStretchFactor(m_lower, m_lower->frameHeight() + left / 2);
    layout->activate();
}

void ScopePlots::setStale(bool stale) const
{
    m_upper->setStale(stale);
    m_lower->setStale(stale);
}

void ScopePlots::setFrozen(bool frozen) const
{
    m_upper->setFrozen(frozen);
}

void ScopePlots::update() const
{
    m_upper->update();
    m_lower->update();
}

void ScopePlots::dataChanged() const
{
    m_upper->dataChanged();
    m_lower->dataChanged();
}
