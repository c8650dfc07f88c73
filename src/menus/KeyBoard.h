#pragma once

#include "menus/StackLayout.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QPushButton>

#include <array>

class Key;

// One menu as the operator sees it: a framed page of keys on a grid, built up key by key.
//
// A plain menu spreads over as many sub-pages as it needs; a "More..." key in the last cell of each
// leads to the next, from the last one to the first. A main menu is one page of labelled groups:
// "Channel 1", "Channel 2", "Combiner" and "Options", or the large groups without titles of the PAX
// main menu. What a key sends leaves the menu unchanged by keyboard_response_message().
class KeyBoard : public QObject
{
    Q_OBJECT

public:
    // How many source menus have a column of their own on the normal main menu.
    static constexpr int GroupCounters = 6;

    KeyBoard();
    ~KeyBoard() override;

    // Each builds the menu once, right after construction. maxRow, maxCol: the highest row and
    // column of a sub-page, counted from 0.
    void new_keyboard(const QString& menuName, int lastRow, int lastCol);
    void new_mm_keyboard(const QString& menuName, int lastRow, int lastCol);
    void new_PAX_mm_keyboard(const QString& menuName, int lastRow, int lastCol);

    // Adds a key in the next free cell of a plain menu. extra: the display state, stored but not
    // shown; linkedKey: the key that the new one mirrors, used when linked is true. For the others
    // see the fields of Key.
    void add_keyboard_button(const QString& label, const QString& keyId, int type,
        const QString& command, const QString& units, int param, const QString& options,
        double value, bool tog, int extra, bool linked, Key* linkedKey);

    // Adds a key to a main menu, in the group to which the cell belongs: rows 0 to 4 by the column,
    // two columns a group, rows from 5 to "Options". A key whose cell is in no group is there, but
    // not shown.
    void add_keyboard_button_fixed(const QString& label, const QString& keyId, int type,
        const QString& command, const QString& units, int param, const QString& options,
        double value, bool tog, int extra, bool linked, Key* linkedKey, int cellRow, int cellCol);

    bool isPAXMainMenu() const;

    // Schedules all keys and their buttons for deletion and forgets them.
    void deleteKeys();

    QList<Key*> keys;            // in the order of creation, owned
    QList<QPushButton*> buttons; // the keys' buttons in the same order
    QString name;
    QGridLayout* grid = nullptr; // of the sub-page that is being filled, or outer grid
    QGridLayout* chan1Grid = nullptr;
    QGridLayout* chan2Grid = nullptr;
    QGridLayout* combGrid = nullptr;
    QGridLayout* optGrid = nullptr;
    QPointer<QGroupBox> frame; // the menu's outer widget, deleted with the menu
    QGroupBox* chan1Box = nullptr;
    QGroupBox* chan2Box = nullptr;
    QGroupBox* combBox = nullptr;
    QGroupBox* optBox = nullptr;
    int stackIndex = -1; // of frame in the main window's stack
    QLabel* titleLabel = nullptr;
    int fixedCol = 0; // next cell for fixed keys of the PAX main menu
    int fixedRow = 0;
    std::array<int, GroupCounters> groupRows{}; // next free row of each source menu's column
    int row = 0;                                // next free cell of the flowing placement
    int col = 0;
    bool mainMenu = false;
    StackLayout* pages = nullptr; // sub-pages of a plain menu
    int maxRow = 0;
    int maxCol = 0;
    bool large = false; // keys in the large font

public slots:
    void kb_response_message(const QString& message);

signals:
    void keyboard_response_message(QString message);

private:
    QGridLayout* addSubPage();
    QPushButton* newMoreKey(QWidget* parent);
    void openNextSubPage();
    Key* newKey(const QString& label, const QString& keyId, int type, const QString& command,
        const QString& units, int param, const QString& options, double value, bool tog, int extra,
        bool linked, Key* linkedKey);
    void placeInGroup(const Key* key, int cellRow, int cellCol);
    void startMainMenu(const QString& menuName, int lastRow, int lastCol);
    void addTitle();
};
