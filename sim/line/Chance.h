#pragma once

#include <QtGlobal>

#include <random>

/// A random generator with a seed. The same seed gives the same numbers with every standard
/// library.
class Chance
{
public:
    /// Starts the sequence of \a seed.
    explicit Chance(quint32 seed = 1)
        : m_random(seed)
    {
    }

    /// \return true with the probability \a rate, 0 (never; no random number is used) to 1 (always)
    bool happens(double rate)
    {
        return rate > 0.0 &&
            static_cast<double>(m_random()) <= rate * static_cast<double>(std::mt19937::max());
    }

    /// \return a number from 0 to \a bound - 1; \a bound is above 0
    // No standard distribution: their results differ between libraries.
    int below(qsizetype bound)
    {
        return static_cast<int>(m_random() % static_cast<quint32>(bound));
    }

private:
    std::mt19937 m_random;
};
