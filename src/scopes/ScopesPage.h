#pragma once

#include "scopes/Scope.h"
#include "scopes/ScopeMode.h"

#include <QPointer>
#include <QWidget>

#include <array>

class FigureStrip;
class QGridLayout;
class QPushButton;
class ScopeKeys;
class StcMagPhasePlot;

/// The page with the three demodulators' scopes side by side, a mode button under each, and the
/// magnitude/phase display below them.
///
/// It remembers and shows each demodulator's mode. Others let the operator choose one and send it
/// to the demodulator.
///
/// A touch on a plot enlarges its scope: that has the page then, with its title and mode button
/// above, keys beside and numbers below. The other scopes are hidden; they go on receiving, but
/// nothing of them is painted. A touch on the title goes back. A scope that is lent to another page
/// is not enlarged; a touch there changes its range instead, and it is not frozen there, where no
/// key could end that.
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

    /// Enlarges a scope; one that is lent or gone is not enlarged.
    void enlarge(int demodulator);
    /// Shows all scopes side by side.
    void showAll();
    /// \return the demodulator whose scope is enlarged; 0 while all are shown.
    int enlarged() const { return m_enlarged; }

    /// \return whether any of the scopes has its port open.
    bool anyPortOpen() const;

    /// \reimp
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Place
    {
        QWidget* cell = nullptr;
        QPointer<Scope> scope; // deleted with the page that it is lent to
        QPushButton* button = nullptr;
        QGridLayout* grid = nullptr;
        int mode = 0;
    };

    QWidget* newPlace(int demodulator);
    QPushButton* newButton(const QString& name, QWidget* parent);
    QWidget* newHead();
    void connectScope(int demodulator);
    void scopeMoved(int demodulator);
    void arrange();
    void showFigures();
    bool exists(int demodulator) const { return demodulator >= 1 && demodulator <= Demodulators; }
    const Place& place(int demodulator) const;

    std::array<Place, Demodulators> m_places;
    StcMagPhasePlot* m_magPhase = nullptr;
    QWidget* m_head = nullptr;          // above an enlarged scope
    QPushButton* m_title = nullptr;     // of an enlarged scope
    QGridLayout* m_modePlace = nullptr; // of its mode button
    ScopeKeys* m_keys = nullptr;
    FigureStrip* m_figures = nullptr;
    int m_enlarged = 0;
};
