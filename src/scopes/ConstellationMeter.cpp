#include "scopes/ConstellationMeter.h"

void ConstellationMeter::addBlock(const QVector<double>& i, const QVector<double>& q)
{
    m_blocks.push_back({i, q});
    if (m_blocks.size() > MaxBlocks) {
        m_blocks.pop_front();
    }
    m_changed = true;
}

void ConstellationMeter::clear()
{
    m_blocks.clear();
    m_figures = {};
    m_changed = false;
}

const ConstellationFigures& ConstellationMeter::figures()
{
    m_changed = false;
    return m_figures;
}
