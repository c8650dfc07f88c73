#pragma once

#include <QByteArray>
#include <QString>

/// The password that VNC viewers have to give, from the first line of a file.
struct Password
{
    /// The fewest characters of a password.
    static constexpr int MinChars = 6;
    /// The most: VNC takes no more into account.
    static constexpr int MaxChars = 8;

    QByteArray text; ///< empty when there is a fault
    QString fault;   ///< why the file is refused; empty when it is not

    /// Reads a file that belongs to the user of this program, and that nobody else may read.
    static Password fromFile(const QString& path);
};
