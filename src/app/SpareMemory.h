#pragma once

#include <QTimer>

/// Gives memory back to the system that nobody uses any more.
///
/// The C library keeps what was freed between pieces that are still used. Whatever comes later fits
/// into these gaps or not, so that the panel can have more of them after each time that much was
/// made and deleted.
class SpareMemory
{
public:
    SpareMemory();

    /// Gives the memory back in a second, when what is deleted now is gone and its successors are
    /// made. Until then, further calls change nothing.
    void giveBackSoon();

private:
    QTimer m_timer;
};
