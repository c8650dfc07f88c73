#pragma once

#include <QtGlobal>

#include <random>

// Dice with a seed: the same seed gives the same throws, with any standard library.
class Chance
{
public:
    explicit Chance(quint32 seed = 1)
        : m_random(seed)
    {
    }

    // rate: 0 (never, and nothing is thrown) to 1 (always).
    bool happens(double rate)
    {
        return rate > 0.0 &&
            static_cast<double>(m_random()) <= rate * static_cast<double>(std::mt19937::max());
    }

    // bound: above 0. Out: 0 to bound - 1. Not by a standard distribution: these differ from
    // library to library.
    int below(qsizetype bound)
    {
        return static_cast<int>(m_random() % static_cast<quint32>(bound));
    }

private:
    std::mt19937 m_random;
};
