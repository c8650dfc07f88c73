#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QPushButton>
#include <QString>

// One operator key of a menu, as the main unit described it: the record of its fields and what a
// press does. The key drives a push button that its page owns, and never touches the serial link:
// a press toggles the key or opens a modal editor, and what the operator chose leaves as one
// finished message (STX, command, value text, EOT) by response_message(), which the page passes on
// to the main window. The number pad, the IPv4 pad and the slider are keys themselves and send
// live values the same way.
class Key : public QObject
{
    Q_OBJECT

public:
    // What a press does; any other number is a valid key that only reports itself.
    enum Type {
        Toggle = 0,    // flips tog, sends "0" or "1", green when on
        Number = 1,    // opens the number pad, sends the number
        Selection = 2, // opens the selection list, sends the chosen text
        Slider = 3,    // opens the slider, which sends its own messages
        File = 4,      // opens the file board, sends the chosen name
        Command = 5,   // flips tog, sends "0" or "1", never shows a state colour
        Address = 6    // opens the IPv4 pad, sends the address
    };

    // Values of `state` as the main unit sends them.
    enum State { Disabled = 0, Enabled = 1, Hidden = 2 };

    Key();
    explicit Key(QObject* parent);
    ~Key() override;

    // keyButton: the on-screen button, not owned; largeFont: the 22 px styles instead of 16 px.
    void Set_Key(QPushButton* keyButton, bool largeFont);
    // Out: the button, or nullptr when there is none (any more).
    QPushButton* GetKey() const;

    // Enables or disables the button and gives it the style of its state. Without a button:
    // nothing.
    void setEnabled();
    void setDisabled();
    // Shows or hides the button. Without a button: nothing.
    void show();
    void hide();

    bool tog() const;
    // Stores the toggle state; an enabled key of type Toggle also takes the green or grey style.
    void setTog(bool on);

    // Shows `state` on the button: 1 enabled and shown, 0 disabled and shown, 2 hidden; any other
    // value changes nothing.
    void applyState();

    // In: the text of a value. Out: STX + command + value + EOT, with no separator.
    QString message(const QString& valueText) const;

    bool large = false;              // large font (22 px) instead of the small one (16 px)
    QPointer<QPushButton> button;    // not owned
    QString label;                   // key text, and title of its pop-ups
    QString keyId;                   // identifier inside its menu
    int type = 0;                    // see Type
    QString command;                 // prefix of every value that the key sends
    QString units;                   // number pad: ranges; slider: range
    int param = 0;                   // number pad: entry type; slider: type; list: forced columns
    QString options;                 // choices or files; number pad: special values; slider: steps
    double value = 0.0;              // current value
    int state = 0;                   // see State
    QList<QPointer<Key>> linkedKeys; // keys that mirror this one
    QList<int> itemIds;              // positions of choices that are shown but cannot be pressed
    QString padText;   // number pad: shown instead of the current value when not empty
    bool tog_ = false; // see tog()

public slots:
    // What a press does, by type. A modal editor runs inside the call; the key may be gone when it
    // ends, and then nothing is sent.
    void key_button_pushed();

signals:
    // A finished message, frame characters included.
    void response_message(QString message);

private:
    void applyStyle(const QString& sheet);
};
