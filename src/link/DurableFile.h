#pragma once

#include <QByteArray>
#include <QString>

/// Files that survive a power cut.
namespace durableFile {

/// Replaces the contents of a file, so that after a power cut at any point the file holds either
/// all of the old contents or all of the new ones.
///
/// The bytes go to "<path>.new" in the same folder, are flushed to the disk, and that file is then
/// renamed over the old one; the folder is flushed last. A folder that is missing is made. The
/// modification time always differs from that of the old file by a millisecond or more, because
/// readers of settings recognise new contents of the same size by the time alone.
/// \param path where the file is; a symbolic link is followed
/// \return whether the new contents are on the disk. When not, nothing is left behind, and the old
/// contents stand unless only the last flush failed.
bool replace(const QString& path, const QByteArray& contents);

} // namespace durableFile
