#pragma once

#include "scopes/Scope.h"
#include "scopes/ScopeMode.h"

#include <QPointer>
#include <QWidget>

#include <array>

class QGridLayout;
class QPushButton;
class StcMagPhasePlot;

/// The page with the three demodulators' scopes side by side, a mode button under each, and the
/// magnitude/phase display below them.
///
/// It remembers and shows each demodulator's mode. Others let the operator choose one and send it
/// to the demodulator.
///
/// All functions take the demodulator's number, 1 to 3; for any other they return nullptr or do
/// nothing. A scope that was deleted is nullptr, too.
class ScopesPage : public QWidget
{
    Q_OBJECT

public:
    static constexpr int Demodulators = 3; ///< How many there are.

    /// Creates the page; every demodulator is off.
    explicit ScopesPage(QWidget* parent = nullptr);

    /// \return the scope, or nullptr.
    Scope* scope(int demodulator) const;
    /// \return the button that shows the mode, or nullptr.
    QPushButton* modeButton(int demodulator) const;
    /// \return the grid that holds the scope at (0, 0), or nullptr: a scope that was lent to
    /// another page is put back there.
    QGridLayout* scopeGrid(int demodulator) const;
    /// \return the magnitude/phase display.
    StcMagPhasePlot* magPhasePlot() const { return m_magPhase; }

    /// Shows a mode: sets the button's text, the scope's plot type and the stored mode. "Off"
    /// empties the scope's plots.
    void setMode(int demodulator, const ScopeMode& mode);
    /// \return 0 off, 1 eye pattern, 2 constellation, 3 SDI; 0 at first.
    int storedMode(int demodulator) const;

    /// \return whether any of the scopes has its port open.
    bool anyPortOpen() const;

private:
    struct Place
    {
        QPointer<Scope> scope; // deleted with the page that it is lent to
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
