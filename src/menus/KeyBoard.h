#pragma once

#include "menus/NameIndex.h"
#include "menus/StackLayout.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QPushButton>

#include <array>
#include <optional>

class Key;
class MoreKey;
struct KeyDefinition;

/// One menu as the operator sees it: a framed page of keys on a grid, built up key by key.
///
/// A menu is made empty by one of the three functions new_...(), then filled: addKey() takes the
/// definition that an "AK" message was read into, addCopy() a key of another menu. Each key gets a
/// button, and the button a cell. A plain menu spreads over as many sub-pages as it needs; a
/// "More..." key in the last cell of each leads to the next, from the last one to the first. A main
/// menu is one page of labelled groups: "Channel 1", "Channel 2", "Combiner" and "Options", or the
/// three large groups without titles of the PAX main menu. What a key sends leaves the menu
/// unchanged by keyboard_response_message().
class KeyBoard : public QObject
{
    Q_OBJECT

public:
    /// What kind of menu this is.
    enum class Kind {
        Plain, ///< Sub-pages of keys, built by new_keyboard().
        Main,  ///< The four groups of the normal main menu, built by new_mm_keyboard().
        Pax    ///< The PAX main menu with its large keys, built by new_PAX_mm_keyboard().
    };

    /// A cell of a menu. On a main menu the columns are counted over all groups (0 and 1 are
    /// "Channel 1", 2 and 3 "Channel 2", 4 and 5 "Combiner"), and rows from 5 on are "Options".
    struct Cell
    {
        int row = 0; ///< From the top, counted from 0.
        int col = 0; ///< From the left, counted from 0.
    };

    /// How many source menus have a column of their own on the normal main menu.
    static constexpr int GroupCounters = 6;

    /// Makes a menu without a frame; one of the functions new_...() must follow.
    KeyBoard();
    ~KeyBoard() override;

    /// Builds the menu, as a plain one. To be called once, right after construction.
    /// \param lastRow, lastCol highest row and column of a sub-page, counted from 0
    void new_keyboard(const QString& menuName, int lastRow, int lastCol);

    /// As new_keyboard(), but builds the normal main menu with its four groups.
    void new_mm_keyboard(const QString& menuName, int lastRow, int lastCol);

    /// As new_keyboard(), but builds the PAX main menu with its three large groups.
    void new_PAX_mm_keyboard(const QString& menuName, int lastRow, int lastCol);

    /// Adds a key; the one way in which a menu gets one.
    /// \param cell place on a main menu, none for the next free cell. A key whose cell is in no
    ///        group exists, but is not shown.
    /// \param mirrored key that the new one mirrors: every change of the new key by a message
    ///        reaches it too. nullptr for none.
    /// \return the key, which belongs to the menu and is the last of \a keys.
    Key* addKey(const KeyDefinition& definition, std::optional<Cell> cell = std::nullopt,
        Key* mirrored = nullptr);

    /// Adds a copy of a key of another menu; the two mirror each other from now on.
    /// \param cell as for addKey()
    Key* addCopy(Key& source, std::optional<Cell> cell = std::nullopt);

    /// addKey() in the next free cell, with the fields one by one; see KeyDefinition for them.
    /// \param extra display state, stored but not shown
    /// \param linked whether the new key mirrors \a linkedKey
    void add_keyboard_button(const QString& label, const QString& keyId, int type,
        const QString& command, const QString& units, int param, const QString& options,
        double value, bool tog, int extra, bool linked, Key* linkedKey);

    /// As add_keyboard_button(), but in the cell (\a cellRow, \a cellCol) of a main menu.
    void add_keyboard_button_fixed(const QString& label, const QString& keyId, int type,
        const QString& command, const QString& units, int param, const QString& options,
        double value, bool tog, int extra, bool linked, Key* linkedKey, int cellRow, int cellCol);

    /// \return the first key with this identifier, nullptr when there is none.
    Key* findKey(const QString& keyId) const;

    /// \return what kind of menu has been built, Kind::Plain before.
    Kind kind() const;

    /// \return whether the menu was built by new_PAX_mm_keyboard().
    bool isPAXMainMenu() const;

    /// Schedules all keys and their buttons for deletion and forgets them.
    void deleteKeys();

    QList<Key*> keys;                 ///< In the order of creation, owned.
    QList<QPushButton*> buttons;      ///< The keys' buttons in the same order.
    QString name;                     ///< Name by which messages find the menu.
    QGridLayout* grid = nullptr;      ///< Of the sub-page being filled; main menu: the outer one.
    QGridLayout* chan1Grid = nullptr; ///< Main menus: of the group "Channel 1".
    QGridLayout* chan2Grid = nullptr; ///< Main menus: of the group "Channel 2".
    QGridLayout* combGrid = nullptr;  ///< Normal main menu: of the group "Combiner".
    QGridLayout* optGrid = nullptr;   ///< Main menus: of the group "Options".
    QPointer<QGroupBox> frame;        ///< The menu's outer widget, deleted with the menu.
    QGroupBox* chan1Box = nullptr;    ///< The box around \a chan1Grid.
    QGroupBox* chan2Box = nullptr;    ///< The box around \a chan2Grid.
    QGroupBox* combBox = nullptr;     ///< The box around \a combGrid.
    QGroupBox* optBox = nullptr;      ///< The box around \a optGrid.
    int stackIndex = -1;              ///< Of \a frame in the main window's stack.
    QLabel* titleLabel = nullptr;     ///< "QN740 - Menu - " and the name, hidden.
    int fixedCol = 0;                 ///< Column of the next fixed cell of the PAX main menu.
    int fixedRow = 0;                 ///< Row of the next fixed cell of the PAX main menu.
    /// Next free row of each source menu's column, in the order of the columns in groupCells.
    std::array<int, GroupCounters> groupRows{};
    int row = 0;                  ///< Row of the next free cell.
    int col = 0;                  ///< Column of the next free cell.
    bool mainMenu = false;        ///< Whether the menu is a main menu of either kind.
    StackLayout* pages = nullptr; ///< Sub-pages of a plain menu; nullptr on a main menu.
    int maxRow = 0;               ///< Highest row of a sub-page.
    int maxCol = 0;               ///< Highest column of a sub-page.
    bool large = false;           ///< Whether keys are in the large font: PAX main menu only.

public slots:
    /// Emits keyboard_response_message() with the same text.
    void kb_response_message(const QString& message);

signals:
    /// Emitted when a key of the menu sends a message, frame characters included.
    void keyboard_response_message(QString message);

private:
    void startMenu(Kind kind, const QString& menuName, int lastRow, int lastCol);
    void addTitle();
    QGridLayout* addSubPage();
    void addMoreKey();
    void openNextSubPage();
    QPushButton* newButton(const QString& label, std::optional<Cell> cell);
    void placeInFlow(QPushButton* button);
    void placeInGroup(QPushButton* button, Cell cell);
    void putNowhere(QPushButton* button);

    Kind m_kind = Kind::Plain;
    mutable NameIndex<Key> m_index;
    QList<QPointer<MoreKey>> m_moreKeys;
    QWidget* m_nowhere = nullptr; // never shown; holds the buttons that have no cell
};
