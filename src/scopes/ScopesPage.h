#pragma once

#include "scopes/Scope.h"
#include "scopes/ScopeMode.h"

#include <QPointer>
#include <QWidget>

#include <array>

class QGridLayout;
class QPushButton;
class StcMagPhasePlot;

// The page with the three demodulators' scopes side by side, a mode button under each, and the
// magnitude/phase display below them. It remembers each demodulator's mode; who chooses one and who
// tells the demodulator is not its business.
//
// All functions take the demodulator's number, 1 to 3; they answer nullptr or do nothing for any
// other. A scope that is gone is nullptr too.
class ScopesPage : public QWidget
{
    Q_OBJECT

public:
    static constexpr int Demodulators = 3;

    explicit ScopesPage(QWidget* parent = nullptr);

    Scope* scope(int demodulator) const;
    QPushButton* modeButton(int demodulator) const;
    // The grid that holds the scope at (0, 0): a scope that was lent to another page comes back
    // there.
    QGridLayout* scopeGrid(int demodulator) const;
    StcMagPhasePlot* magPhasePlot() const { return m_magPhase; }

    // Shows a mode: the button's text, the scope's plot type and the stored mode. "Off" empties the
    // scope's plots.
    void setMode(int demodulator, const ScopeMode& mode);
    // Out: 0 off, 1 eye pattern, 2 constellation, 3 SDI; 0 at first.
    int storedMode(int demodulator) const;

    // Whether any of the scopes has its port open.
    bool anyPortOpen() const;

private:
    struct Place
    {
        QPointer<Scope> scope; // another page that it was lent to may take it along
        QPushButton* button = nullptr;
        QGridLayout* grid = nullptr;
        int mode = 0;
    };

    QWidget* newPlace(int demodulator);
    bool exists(int demodulator) const { return demodulator >= 1 && demodulator <= Demodulators; }
    const Place& place(int demodulator) const;

    std::array<Place, Demodulators> m_places;
    StcMagPhasePlot* m_magPhase = nullptr;
};
