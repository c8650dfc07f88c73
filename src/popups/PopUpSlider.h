#pragma once

#include "menus/Key.h"
#include "popups/SendThrottle.h"
#include "popups/SliderValue.h"

#include <QTimer>

class QLabel;
class QSlider;

// The modal slider: a value that the operator adjusts live. Every change goes through the throttle
// and leaves by response_message(), at most one message for each 400 ms, the last position always.
// The dialog lives inside new_pop_slider(), the object longer: a position that still waits when
// the dialog closes leaves when the timer expires.
class PopUpSlider : public Key
{
    Q_OBJECT

public:
    static constexpr int ThrottleMs = 400;

    explicit PopUpSlider(QObject* parent = nullptr);

    // In: the setting's name, the prefix of its messages, "maximum minimum", the current value,
    // the type of the read-out (SliderValue::Type), the steps separated by ":" or nothing. Runs
    // the dialog and stores its result.
    void new_pop_slider(const QString& name, const QString& messageCommand, const QString& range,
        float currentValue, int readoutType, const QString& steps);

    // Out: the result of the dialog that ran last (QDialog::DialogCode).
    int result() const { return m_result; }

    // Deletes this by deferred deletion as soon as nothing waits to be sent any more.
    void deleteWhenSent();

public slots:
    // The slider has moved: shows and sends its value.
    void send_message();
    // The throttle timer has expired: what waited is sent.
    void timerDone();
    void increament_slider();
    void decreament_slider();
    // In: a signed step; one that would lead past an end does nothing.
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
