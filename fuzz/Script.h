#pragma once

#include <QByteArray>
#include <QEventLoop>
#include <QObject>
#include <QPoint>

/// An input that is carried out step by step by the event loop.
///
/// A step may press a key that opens a modal editor, whose event loop then runs inside the step. So
/// that the input goes on there, the next step is posted before each step. What an input makes the
/// operator do stands in it behind the byte Operator, everything else is for a derived class:
///
///     0x10 B n     presses the button n of those that the operator sees, in reading order, those
///     of
///                  the window on top first
///     0x10 P x y   touches the screen at x × 800 / 256, y × 480 / 256
///     0x10 D x y   lays the finger down there; 0x10 M x y moves it, 0x10 U lifts it
///     0x10 C       closes the editor that is open
///     0x10 W n     lets n % 32 ms pass, at most 60 ms in one input
///
/// At the end of the input the finger is lifted and every editor is closed.
class Script : public QObject
{
    Q_OBJECT

public:
    /// The byte in front of what the operator does.
    static constexpr char Operator = 0x10;

    /// Carries an input out.
    void run(const QByteArray& input);

protected:
    /// \return whether the input is read to its end.
    bool atEnd() const { return m_at >= m_input.size(); }
    /// \return the next byte of the input, 0 behind its end.
    int next();
    /// \return the same, which stays the next one.
    char upcoming() const { return atEnd() ? '\0' : m_input.at(m_at); }

    /// Does what stands next in the input, which is not at its end.
    virtual void proceed() = 0;
    /// Does what stands behind Operator and is not in the list above. \param what the byte
    virtual void proceedWith(char what) { Q_UNUSED(what) }
    /// Called again and again while no editor is open, behind the input's end. \return whether
    /// there is nothing left to do
    virtual bool finish() { return true; }

    /// Carries out what stands behind the byte Operator.
    void operate();

private:
    void post();
    void turn(int run);
    void step();
    bool closeEditor();
    void press(int number);
    QPoint point();

    QByteArray m_input;
    qsizetype m_at = 0;
    QEventLoop m_loop;
    int m_run = 0;
    int m_busyLevel = 0; // the depth of the event loops in which a step is under way
    int m_waitedMs = 0;
    bool m_finished = true;
    QPoint m_finger;
};
