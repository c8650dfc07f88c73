#pragma once

#include <QObject>
#include <QTimer>

/// The pace at which numbers change, so that they can be read: at once after a pause, then at most
/// every IntervalMs. No timer runs when nothing changes.
class ReadoutPace : public QObject
{
    Q_OBJECT

public:
    static constexpr int IntervalMs = 250; ///< Between two changes, in milliseconds.

    /// Creates a pace at which nothing has changed yet.
    explicit ReadoutPace(QObject* parent = nullptr);

    /// What the numbers say has changed.
    void change();
    /// The numbers say what is so now: due() is not needed for what has changed before.
    void setShown() { m_changed = false; }

signals:
    /// Emitted when the numbers are to be written anew.
    void due();

private:
    QTimer m_timer{this};
    bool m_changed = false;
};
