#pragma once

#include <QObject>
#include <QStringList>

/// The message "DB" of the main unit: what it wants shown over the panel, and when it wants that
/// gone. The boxes themselves are those of MessageBoxes.
class BoxMessages : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Carries out "DB". Without a field it does nothing.
    /// \param fields "KILLBOX", or the text of a box and "1" for a box with an "OK" button
    void take(const QStringList& fields);

signals:
    /// Emitted when the main unit wants a box shown. \param text rich text
    void boxWanted(const QString& text, bool okButton);

    /// Emitted when the main unit wants all boxes closed.
    void closeWanted();
};
