#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QPushButton>
#include <QString>

/// One operator key of a menu, as the main unit described it: the record of its fields and what a
/// press does.
///
/// The key drives a push button that its page owns, and never touches the serial link: a press
/// toggles the key or opens a modal editor, and what the operator chose is sent as one finished
/// message (STX, command, value text, EOT) by response_message(), which the page passes on to the
/// main window. The number pad, the IPv4 pad and the slider are keys themselves and send live
/// values the same way.
class Key : public QObject
{
    Q_OBJECT

public:
    /// What a press does; any other number is a valid key that only reports itself.
    enum Type {
        Toggle = 0,    ///< Flips tog, sends "0" or "1", green when on.
        Number = 1,    ///< Opens the number pad, sends the number.
        Selection = 2, ///< Opens the selection list, sends the chosen value.
        Slider = 3,    ///< Opens the slider, which sends its own messages.
        File = 4,      ///< Opens the file board, sends the chosen name.
        Command = 5,   ///< Flips tog, sends "0" or "1", never shows a state colour.
        Address = 6    ///< Opens the IPv4 pad, sends the address.
    };

    /// Values of `state` as the main unit sends them.
    enum State {
        Disabled = 0, ///< Shown, cannot be pressed.
        Enabled = 1,  ///< Shown, can be pressed.
        Hidden = 2    ///< Not shown.
    };

    /// Makes a key without a button.
    Key();
    /// Makes a key without a button.
    explicit Key(QObject* parent);
    ~Key() override;

    /// Gives the key its button.
    /// \param keyButton on the screen; not owned
    /// \param largeFont whether it has the 22 px styles instead of the 16 px ones
    void Set_Key(QPushButton* keyButton, bool largeFont);
    /// \return the button, or nullptr when there is none (any more).
    QPushButton* GetKey() const;

    /// Enables the button, if there is one, and gives it the style of that state.
    void setEnabled();
    /// Disables the button, if there is one, and gives it the style of that state.
    void setDisabled();
    /// Shows the button, if there is one.
    void show();
    /// Hides the button, if there is one.
    void hide();

    /// \return the toggle state.
    bool tog() const;
    /// Stores the toggle state, as the main unit has told it; an enabled key of type Toggle also
    /// takes the green or grey style. A press is no longer pending then.
    void setTog(bool on);

    /// Shows `state`, as the main unit has told it, on the button, see State; any other value
    /// changes nothing. A press is no longer pending then.
    void applyState();

    /// \return whether the key, a toggle, has been pressed and the main unit has not confirmed it
    /// yet. The button shows a mark as long as that is so.
    bool isPending() const { return m_isPending; }

    /// \return STX + command + \a valueText + EOT, without separators.
    QString message(const QString& valueText) const;

    bool large = false;           ///< Large font (22 px) instead of the small one (16 px).
    QPointer<QPushButton> button; ///< Not owned.
    QString label;                ///< Text of the button and title of its pop-ups.
    QString keyId;                ///< Identifier inside its menu.
    int type = 0;                 ///< See Type.
    QString command;              ///< Prefix of every value that the key sends.
    QString units;                ///< Number pad: ranges; slider: range.
    int param = 0;                ///< Number pad: entry type; slider: type; list: forced columns.
    QString options;              ///< Choices or files; number pad: special values; slider: steps.
    double value = 0.0;           ///< Current value.
    int state = 0;                ///< See State.
    QList<QPointer<Key>> linkedKeys; ///< Keys that mirror this one.
    QList<int> itemIds;              ///< Positions of choices that are shown but cannot be pressed.
    /// Whether the main unit has given `value`: by "CV", or by "IK" with a value. A value other
    /// than 0 counts as given anyway.
    bool valueGiven = false;
    QString padText;   ///< Number pad: shown instead of the current value when not empty.
    bool tog_ = false; ///< See tog().

public slots:
    /// Does what a press does, by type. A modal editor runs inside the call; the key may be deleted
    /// meanwhile, and then nothing is sent.
    void key_button_pushed();

signals:
    /// Emitted with a finished message, frame characters included.
    void response_message(QString message);
    /// Emitted when a press has sent all that it will send: at the end of key_button_pushed() or,
    /// after a slider, up to 400 ms later.
    void pressFinished();

private:
    void applyStyle(const QString& sheet);
    void showLamp();
    void setPending(bool pending);

    bool m_isPending = false;
};
