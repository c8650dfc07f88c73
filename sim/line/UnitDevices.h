#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

class PseudoTerminal;

// The directory that takes the place of /dev for the panel: a symbolic link for each serial device
// of the unit, named as on the unit, to a pseudo-terminal. Links, and the directory if it was made
// here, are removed at the end.
class UnitDevices : public QObject
{
    Q_OBJECT

public:
    // directory: where the links go, made if it is not there; empty for a fresh one.
    explicit UnitDevices(const QString& directory = QString(), QObject* parent = nullptr);
    ~UnitDevices() override;

    // Out: whether the directory is there to be used; otherwise errorString() says why not.
    bool isValid() const { return m_error.isEmpty(); }
    QString errorString() const { return m_error; }
    // The directory, absolute.
    QString path() const { return m_path; }

    // Makes the device `name` ("ttyO1"). Out: its line, owned by this object; nullptr when that
    // failed, and errorString() says why. A link that an earlier run left behind is replaced,
    // anything else under that name is left alone and is a failure.
    PseudoTerminal* add(const QString& name);

private:
    bool makeLink(const QString& target, const QString& name);

    std::unique_ptr<QTemporaryDir> m_fresh;
    QString m_path;
    QString m_error;
    QStringList m_links;
    bool m_made = false;
};
