#pragma once

#include <QDialog>

class ChartKeys;

/// The keys of a chart that stands on another page than its own, in a window in the left half of
/// the panel: the chart in the right half stays in sight. Measurements are left out.
///
/// The window does not stop anything: it is opened with open(), and deletes itself when it is
/// closed.
class ChartKeyDialog : public QDialog
{
    Q_OBJECT

public:
    /// Makes the window. \param parent to which it belongs; need not be on the screen
    explicit ChartKeyDialog(QWidget* parent);

    /// \return the keys.
    ChartKeys* keys() const { return m_keys; }

    /// Closes the window when \a chart disappears from the screen or is deleted.
    void closeWith(QWidget* chart);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    ChartKeys* m_keys;
};
