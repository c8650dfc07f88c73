#pragma once

#include <QString>

#include <sys/types.h>

/// Local (UNIX) stream sockets by their paths. The system's functions are called directly: the
/// panel starts in less time and memory without Qt's network library.
namespace localSocket {

/// Whether a program that was killed has left a socket behind, and nobody serves it now.
bool isAbandoned(const QString& path);

/// Makes a socket at a path and listens there. \param mode the permissions of the socket's file
/// \return the socket, which does not block; -1, with errno set, when that fails
int listenAt(const QString& path, mode_t mode);

/// Connects to the program that serves a socket.
/// \return the socket, which does not block; -1, with errno set, when nobody serves it
int connectTo(const QString& path);

} // namespace localSocket
