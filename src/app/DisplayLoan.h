#pragma once

#include <QObject>

class QGridLayout;
class ScopesPage;
class SpectrumMessages;

/// Lends the combiner's scope (Demod 3) and the first spectrum chart to the PAX main menu and takes
/// them back to their own pages.
class DisplayLoan : public QObject
{
    Q_OBJECT

public:
    /// \param scopes whose third scope is lent; not owned, has to outlive this object
    /// \param spectrum whose first chart is lent, if there is one; not owned, has to outlive this
    /// object
    DisplayLoan(ScopesPage& scopes, SpectrumMessages& spectrum, QObject* parent = nullptr);

    /// Puts the scope into \a place, at (0, 0), and the chart below it. May be called again while
    /// they are there.
    void lendTo(QGridLayout* place);

    /// Puts the chart alone into \a place, at (1, 0); nullptr: nothing.
    void lendChartTo(QGridLayout* place);

    /// Takes both back. Does nothing when they are in their own pages already. Has to be called
    /// before a PAX main menu is deleted, which would take them along.
    void takeBack();

    /// Takes the chart alone back.
    void takeChartBack();

private:
    void takeScopeBack();

    ScopesPage& m_scopes;
    SpectrumMessages& m_spectrum;
};
