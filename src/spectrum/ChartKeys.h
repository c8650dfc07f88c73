#pragma once

#include "spectrum/ChartKeyPages.h"

#include <QFrame>
#include <QHash>

class FittedLabel;
class QGridLayout;
class QStackedLayout;
class TextButton;

/// The pages of keys of one chart, one page at a time, in the style of the pop-ups: a title, then
/// two columns of large keys.
///
/// A press is announced by pressed(); keys that lead to another page do so by themselves. What is
/// in effect is told by setInEffect() and shown on the keys, switches and choices alike: a key that
/// is in effect is green and its lamp is lit. A page is built when it is first opened.
class ChartKeys : public QFrame
{
    Q_OBJECT

public:
    /// Opens the first page. \param place where the keys are
    explicit ChartKeys(chartKeys::Place place, QWidget* parent = nullptr);

    /// Sets which keys are in effect, whether their page is open or not.
    void setInEffect(const QVector<chartKeys::Key>& keys);

    /// Opens a page.
    void open(chartKeys::Page page);
    /// \return the page that is open.
    chartKeys::Page page() const { return m_page; }

signals:
    /// Emitted when a key was pressed that does something to the chart, or Key::Close.
    void pressed(chartKeys::Key key);

protected:
    bool event(QEvent* event) override;

private:
    QWidget* newPage(chartKeys::Page page);
    TextButton* newKey(const chartKeys::Entry& entry, QWidget* page);
    void press(chartKeys::Key key);
    void showState(chartKeys::Key key, TextButton* button, chartKeys::Kind kind) const;

    struct Shown
    {
        TextButton* button = nullptr;
        chartKeys::Kind kind = chartKeys::Kind::Plain;
    };

    chartKeys::Place m_place;
    FittedLabel* m_title;
    QStackedLayout* m_stack;
    QHash<int, QWidget*> m_pages;  // by Page
    QMultiHash<int, Shown> m_keys; // by Key; some stand on two pages
    QVector<chartKeys::Key> m_inEffect;
    chartKeys::Page m_page = chartKeys::Page::First;
};
