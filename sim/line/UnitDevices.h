#pragma once

#include <QMap>
#include <QObject>
#include <QString>
#include <QTemporaryDir>

#include <memory>

class PseudoTerminal;

/// The directory that the panel uses in place of /dev. Each serial device of the unit is a symbolic
/// link, named as on the unit, to a pseudo-terminal. The links are removed at the end, and the
/// directory too if it was created here.
class UnitDevices : public QObject
{
    Q_OBJECT

public:
    /// \param directory where the links go, created when it is missing; empty for a new temporary
    /// one
    explicit UnitDevices(const QString& directory = QString(), QObject* parent = nullptr);
    ~UnitDevices() override;

    /// Whether the directory can be used; otherwise errorString() says why not.
    bool isValid() const { return m_error.isEmpty(); }
    /// \return what went wrong last, empty when nothing did
    QString errorString() const { return m_error; }
    /// \return the absolute path of the directory
    QString path() const { return m_path; }

    /// Creates the device \a name ("ttyO1"). A link that an earlier run left behind is replaced;
    /// anything else of that name is left alone and is an error.
    /// \return its line, owned by this object; nullptr on an error, and errorString() says which
    PseudoTerminal* add(const QString& name);

    /// Pulls the plug of the device \a name: its line hangs up, and the link is gone.
    /// \return whether there is such a device
    bool unplug(const QString& name);
    /// Plugs the device \a name in again, with a new pseudo-terminal behind the link; nothing
    /// happens to one that is plugged in. \return whether there is such a device and it is there
    bool plug(const QString& name);

private:
    QString linkPath(const QString& name) const { return m_path + QLatin1Char('/') + name; }
    bool makeLink(const QString& target, const QString& link);

    std::unique_ptr<QTemporaryDir> m_fresh;
    QString m_path;
    QString m_error;
    QMap<QString, PseudoTerminal*> m_lines; // by the path of the link
    bool m_made = false;
};
