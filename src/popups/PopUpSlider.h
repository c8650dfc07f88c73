#pragma once

#include "menus/Key.h"
#include "popups/SendThrottle.h"
#include "popups/SliderValue.h"

#include <QTimer>

class QLabel;
class QSlider;

/// The modal slider: a value that the operator adjusts live.
///
/// Every change passes SendThrottle and is sent by response_message(): at most one message for each
/// 400 ms, and always the last position. The dialog lives inside new_pop_slider(), the object
/// longer: a position that still waits when the dialog closes is sent when the timer expires.
class PopUpSlider : public Key
{
    Q_OBJECT

public:
    /// Shortest time between two messages, in ms.
    static constexpr int ThrottleMs = 400;

    /// Makes a slider that is not open.
    explicit PopUpSlider(QObject* parent = nullptr);

    /// Opens the slider, returns when it is closed and stores its result.
    /// \param name           of the setting, for the title
    /// \param messageCommand prefix of its messages
    /// \param range          "maximum minimum"
    /// \param currentValue   where the slider starts
    /// \param readoutType    see SliderValue::Type
    /// \param steps          separated by ":", or an empty text
    void new_pop_slider(const QString& name, const QString& messageCommand, const QString& range,
        float currentValue, int readoutType, const QString& steps);

    /// \return the result of the dialog that ran last (QDialog::DialogCode).
    int result() const { return m_result; }

    /// Deletes this by deferred deletion as soon as nothing waits to be sent any more, unless the
    /// slider is opened again before.
    void deleteWhenSent();
    /// \return whether the dialog is closed but a message was sent to somebody less than ThrottleMs
    /// ago: a position may still wait, and the next one has to.
    bool isFinishing() const;

public slots:
    /// The slider has moved: shows and sends its value.
    void send_message();
    /// The throttle timer has expired: sends what has waited.
    void timerDone();
    /// Moves the slider by 1 to the right.
    void increament_slider();
    /// Moves the slider by 1 to the left.
    void decreament_slider();
    /// Moves the slider by a step with its sign; one that would lead past an end does nothing.
    void change_slide(int step);

private:
    QWidget* newButtonRow(QDialog& dialog, const QList<int>& steps);
    void send(const QString& message);

    SliderValue m_value;
    SendThrottle m_throttle;
    QTimer m_timer;
    QPointer<QSlider> m_slider;
    QPointer<QLabel> m_readout;
    int m_result = 0;
    bool m_deleteWhenSent = false;
};
