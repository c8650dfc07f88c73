#pragma once

#include <QMessageBox>
#include <QRect>

class QGridLayout;
class QLabel;

/// The message box of the panel, made for fingers.
///
/// It has an edge all around, stands in the middle of the panel and is never larger than it,
/// whatever the length of its texts. Before it is shown it looks at the room that it has: a text
/// that is too long for the usual letters is set in smaller ones, and one that is too long for
/// these gets a scroll bar that is wide enough for a finger; an informative text that is too high
/// is scrolled at its own size. text() stays what it was set to. A box with a window title shows it
/// in a line at its top, because the unit's screen has no window frames.
class MessageBox : public QMessageBox
{
    Q_OBJECT

public:
    /// Makes a box without a button and without a text.
    explicit MessageBox(QWidget* parent = nullptr);

    /// Adds the button "OK", which closes the box.
    /// \param minSize its smallest size in pixels; the default suits a box with short texts
    QPushButton* addOk(const QSize& minSize = {110, 50});

    /// Makes it a grey box without a title bar that does not block the panel and deletes itself
    /// when it is closed. \param rules what its style sheet says besides
    void setNonBlocking(const QString& rules);

    /// Keeps the box at least this wide inside its margins, by a spacer across its bottom.
    /// \param width in pixels
    void setMinContentWidth(int width);

    /// Sets the place of the panel, in global coordinates. Without a call the box looks for the
    /// panel's window itself.
    void setArea(const QRect& area);

    /// Sets a text that is not to be read as rich text although it looks so. text() answers it.
    /// \param shown the rich text that is shown in its place
    void setTextShownAs(const QString& text, const QString& shown);

    /// \reimp
    void setVisible(bool visible) override;

    /// Shows a plain text with "OK" and returns when the operator has closed the box.
    static void report(const QString& text);

protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void layOut();
    void addTitle();
    void fitText(QGridLayout* grid, QLabel* label, const QSize& room);
    bool fitsByItself(const QGridLayout& grid, const QSize& room) const;
    QSize roomForText(const QGridLayout& grid, const QSize& room) const;
    void limitInformativeText();

    QLabel* m_title = nullptr; // only with a window title
    QRect m_area;
    QString m_shown; // empty: the text itself
    int m_minContentWidth = 0;
    bool m_laidOut = false;
};
