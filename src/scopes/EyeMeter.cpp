#include "scopes/EyeMeter.h"

void EyeMeter::addBlock(const QVector<double>& i, const QVector<double>& q)
{
    m_blocks.push_back({i, q});
    if (m_blocks.size() > MaxBlocks) {
        m_blocks.pop_front();
    }
    m_changed = true;
}

void EyeMeter::clear()
{
    m_blocks.clear();
    m_figures = {};
    m_changed = false;
}

const EyeFigures& EyeMeter::figures()
{
    m_changed = false;
    return m_figures;
}
