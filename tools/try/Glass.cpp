#include "tools/try/Glass.h"

#include "scopes/Scope.h"
#include "spectrum/SpectrumChart.h"
#include "tools/screen/Screen.h"
#include "tools/try/Pattern.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QTextDocumentFragment>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int RowTolerance = 12; // between the middles of texts in one line, in pixels

QRect placeOf(const QWidget& widget)
{
    const QRect seen = widget.visibleRegion().boundingRect();
    return {widget.mapToGlobal(seen.topLeft()), seen.size()};
}

// Whether no other window covers the middle of this part of a window.
bool isOnTop(const QWidget& widget, const QRect& place)
{
    return !place.isEmpty() && glass::windowAt(place.center()) == widget.window();
}

QString plain(const QLabel& label)
{
    const bool rich = label.textFormat() == Qt::RichText ||
        (label.textFormat() == Qt::AutoText && Qt::mightBeRichText(label.text()));
    return rich ? QTextDocumentFragment::fromHtml(label.text()).toPlainText() : label.text();
}

template <class Plot>
QString plotText(const Plot& plot)
{
    return plot.stale() ? u"NO DATA "_s + plot.readout() : plot.readout();
}

// Returns the items of a list that can be seen.
QString listText(const QAbstractItemView& view)
{
    QStringList items;
    for (int row = 0; view.model() != nullptr && row < view.model()->rowCount(); ++row) {
        const QModelIndex index = view.model()->index(row, 0);
        if (view.viewport()->rect().intersects(view.visualRect(index))) {
            items += index.data().toString();
        }
    }
    return items.join(u' ');
}

QString textOf(QWidget* widget)
{
    if (const auto* button = qobject_cast<QAbstractButton*>(widget)) {
        return glass::label(*button);
    }
    if (const auto* shown = qobject_cast<QLabel*>(widget)) {
        return plain(*shown);
    }
    if (const auto* line = qobject_cast<QLineEdit*>(widget)) {
        return line->text();
    }
    if (const auto* box = qobject_cast<QComboBox*>(widget)) {
        return box->currentText();
    }
    if (const auto* group = qobject_cast<QGroupBox*>(widget)) {
        return group->title();
    }
    if (const auto* list = qobject_cast<QAbstractItemView*>(widget)) {
        return listText(*list);
    }
    if (const auto* chart = qobject_cast<SpectrumChart*>(widget)) {
        return plotText(*chart);
    }
    if (const auto* scope = qobject_cast<Scope*>(widget)) {
        return plotText(*scope);
    }
    return {};
}

// Sorts by rows, and within a row from left to right. Returns how many texts each row has.
template <class Item>
QList<int> sortForReading(QList<Item>& items, QRect (*place)(const Item&))
{
    const auto middle = [place](const Item& item) { return place(item).center(); };
    std::stable_sort(items.begin(), items.end(),
        [&middle](const Item& a, const Item& b) { return middle(a).y() < middle(b).y(); });
    QList<int> rows;
    for (auto row = items.begin(); row != items.end();) {
        const int y = middle(*row).y();
        const auto end = std::find_if(row, items.end(),
            [&](const Item& item) { return middle(item).y() > y + RowTolerance; });
        std::stable_sort(row, end,
            [&middle](const Item& a, const Item& b) { return middle(a).x() < middle(b).x(); });
        rows += static_cast<int>(end - row);
        row = end;
    }
    return rows;
}

QRect placeOfText(const glass::Text& text)
{
    return text.place;
}

QRect placeOfButton(QAbstractButton* const& button)
{
    return placeOf(*button);
}

QList<glass::Text> collect()
{
    QList<glass::Text> all;
    for (QWidget* window : visibleWindows()) {
        const auto widgets = QList<QWidget*>{window} + window->findChildren<QWidget*>();
        for (QWidget* widget : widgets) {
            const bool isPart = widget->window() == window && widget->isVisible();
            const QString text = isPart ? textOf(widget).simplified() : QString();
            const QRect place = text.isEmpty() ? QRect() : placeOf(*widget);
            if (isOnTop(*widget, place)) {
                all += {text, place, widget};
            }
        }
    }
    return all;
}

} // namespace

QList<glass::Text> glass::texts()
{
    QList<Text> all = collect();
    sortForReading(all, placeOfText);
    return all;
}

QList<QList<glass::Text>> glass::rows()
{
    QList<Text> all = collect();
    QList<QList<Text>> rows;
    qsizetype at = 0;
    for (const int count : sortForReading(all, placeOfText)) {
        rows += all.mid(at, count);
        at += count;
    }
    return rows;
}

bool glass::shows(const QString& pattern)
{
    const QString wanted = pattern.simplified();
    const QList<Text> all = collect();
    return std::any_of(all.begin(), all.end(),
        [&wanted](const Text& text) { return matches(wanted, text.text, true); });
}

QString glass::label(const QAbstractButton& button)
{
    return button.text().replace(u"&&"_s, u"&"_s).simplified();
}

QList<QAbstractButton*> glass::buttons(const QString& pattern)
{
    const QString wanted = pattern.simplified();
    QList<QAbstractButton*> found;
    for (QWidget* window : visibleWindows()) {
        const auto all = isBlocked(window) ? QList<QAbstractButton*>()
                                           : window->findChildren<QAbstractButton*>();
        for (QAbstractButton* button : all) {
            const bool labelled = !button->text().isEmpty() && matches(wanted, label(*button));
            if (labelled && button->window() == window && button->isVisible()) {
                found += button;
            }
        }
    }
    sortForReading(found, placeOfButton);
    return found;
}

QPoint glass::middle(const QAbstractButton& button)
{
    return button.visibleRegion().boundingRect().center();
}

QString glass::obstacle(const QAbstractButton& button)
{
    if (button.visibleRegion().isEmpty()) {
        return u"is outside the part of the list that is seen"_s;
    }
    const QPoint at = button.mapToGlobal(middle(button));
    const QWidget* window = button.window();
    if (windowAt(at) != window || isBlocked(window)) {
        return u"is behind another window"_s;
    }
    if (!button.isEnabled()) {
        return u"is disabled"_s;
    }
    const QWidget* top = window->childAt(window->mapFromGlobal(at));
    if (top != &button && (top == nullptr || !button.isAncestorOf(top))) {
        return u"is covered"_s;
    }
    return {};
}

QWidget* glass::windowAt(QPoint point)
{
    const QWidgetList windows = visibleWindows();
    const auto top = std::find_if(windows.rbegin(), windows.rend(),
        [point](const QWidget* window) { return window->geometry().contains(point); });
    return top == windows.rend() ? nullptr : *top;
}
