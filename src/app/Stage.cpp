#include "app/Stage.h"

#include "app/ScreenSettings.h"
#include "app/WindowStack.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWidget>

namespace {

// Beside every screen, and within the 16 bits that some platforms have for a coordinate.
constexpr int BesideTheScreen = 16384;
constexpr int MaxDirtyRects = 16;

QRect pixels(const QRect& area, qreal ratio)
{
    return QRectF(area.x() * ratio, area.y() * ratio, area.width() * ratio, area.height() * ratio)
        .toAlignedRect();
}

bool hasWindowManager()
{
    const QString name = QGuiApplication::platformName();
    return name == QLatin1String("xcb") || name.startsWith(QLatin1String("wayland")) ||
        name == QLatin1String("windows") || name == QLatin1String("cocoa");
}

} // namespace

std::unique_ptr<Stage> Stage::create(int rotation)
{
    if (hasWindowManager()) {
        if (rotation != 0) {
            qWarning("QN740_ROTATION is ignored where there is a window manager");
        }
        return nullptr;
    }
    const QSize screen = QGuiApplication::primaryScreen()->size();
    if (!isLargeEnough(screen, rotation)) {
        qWarning("The screen is too small for the panel; QN740_SCALE=fit makes it fit");
    }
    if (!isNeeded(screen, rotation)) {
        return nullptr;
    }
    auto stage = std::make_unique<Stage>(rotation);
    // Some platforms do not tell a window how large the full screen is.
    stage->setGeometry(QGuiApplication::primaryScreen()->geometry());
    stage->showFullScreen();
    return stage;
}

bool Stage::isNeeded(const QSize& screen, int rotation)
{
    return rotation != 0 || screen != ScreenSettings::PanelSize;
}

bool Stage::isLargeEnough(const QSize& screen, int rotation)
{
    const QSize seen = rotation % 180 == 0 ? screen : screen.transposed();
    return seen.width() >= ScreenSettings::PanelSize.width() &&
        seen.height() >= ScreenSettings::PanelSize.height();
}

Stage::Stage(int rotation)
    : m_rotation(rotation)
    , m_store(this)
{
    setObjectName(QStringLiteral("stage"));
    setFlags(Qt::Window | Qt::FramelessWindowHint);
    setCursor(Qt::BlankCursor);
    if (rotation == 0) {
        return;
    }
    m_windows = new WindowStack(this);
    connect(m_windows, &WindowStack::appearing, this, &Stage::bringIn);
    connect(m_windows, &WindowStack::painted, this, &Stage::redraw);
    connect(m_windows, &WindowStack::changed, this, &Stage::redrawAll);
}

Stage::~Stage() = default;

QRect Stage::panelArea() const
{
    QRect area(QPoint(BesideTheScreen, 0), ScreenSettings::PanelSize);
    if (!isTurned()) {
        area.moveCenter(screen()->geometry().center());
        area.moveTopLeft(
            {qMax(area.x(), screen()->geometry().x()), qMax(area.y(), screen()->geometry().y())});
    }
    return area;
}

void Stage::place(QWidget* panel) const
{
    panel->move(panelArea().topLeft());
}

// Those who place themselves by the panel do it later. The start-up picture places itself by the
// screen, and a list by the screen and by the box to which it belongs.
void Stage::bringIn(QWidget* window) const
{
    const QRect area = panelArea();
    if (area.intersects(window->frameGeometry())) {
        return;
    }
    QRect place = window->frameGeometry();
    place.moveCenter(area.center());
    const QWidget* parent = window->parentWidget();
    if (window->windowType() == Qt::Popup && parent != nullptr) {
        place.moveTopLeft({parent->mapToGlobal(QPoint()).x(), window->y()});
        place.moveRight(qMin(place.right(), area.right()));
    }
    window->move(place.topLeft());
}

StageMap Stage::map() const
{
    const qreal ratio = devicePixelRatio();
    return {pixels(QRect(QPoint(), size()), ratio).size(),
        pixels(QRect(QPoint(), ScreenSettings::PanelSize), ratio).size(), m_rotation};
}

bool Stage::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::UpdateRequest:
        present();
        return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
        takePointer(static_cast<QMouseEvent*>(event));
        return true;
    case QEvent::WindowBlocked:
        // A modal window blocks all windows but its own; this one has to go on taking the finger.
        setTransientParent(QGuiApplication::modalWindow());
        break;
    default:
        break;
    }
    return QWindow::event(event);
}

void Stage::exposeEvent(QExposeEvent* /*event*/)
{
    redrawAll();
    present();
}

void Stage::resizeEvent(QResizeEvent* /*event*/)
{
    redrawAll();
}

void Stage::redrawAll()
{
    m_dirty = QRect(QPoint(), size());
    requestUpdate();
}

void Stage::redraw(const QRect& globalArea)
{
    const qreal ratio = devicePixelRatio();
    const QRect onScreen =
        map().toScreen(pixels(globalArea.translated(-panelArea().topLeft()), ratio));
    m_dirty += pixels(onScreen, 1 / ratio) & QRect(QPoint(), size());
    if (m_dirty.rectCount() > MaxDirtyRects) {
        m_dirty = m_dirty.boundingRect();
    }
    requestUpdate();
}

void Stage::present()
{
    if (!isExposed() || m_dirty.isEmpty()) {
        return;
    }
    const QRegion dirty = std::exchange(m_dirty, QRegion());
    if (m_store.size() != size()) {
        m_store.resize(size());
    }
    m_store.beginPaint(dirty);
    QPaintDevice* device = m_store.paintDevice();
    if (device->devType() == QInternal::Image) {
        // The same bits in the screen's own pixels, so that nothing is scaled.
        auto* image = static_cast<QImage*>(device);
        QImage screenImage(
            image->bits(), image->width(), image->height(), image->bytesPerLine(), image->format());
        QPainter painter(&screenImage);
        for (const QRect& rect : dirty) {
            draw(painter, pixels(rect, devicePixelRatio()));
        }
    }
    m_store.endPaint();
    m_store.flush(dirty);
}

void Stage::draw(QPainter& painter, const QRect& part) const
{
    painter.resetTransform();
    painter.setClipRect(part);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(part, Qt::black);
    if (!isTurned()) {
        return;
    }
    const StageMap stageMap = map();
    const QPoint origin = panelArea().topLeft();
    painter.setTransform(stageMap.toScreen());
    const auto windows = m_windows->windows();
    for (const QWidget* window : windows) {
        const QPointF corner = QPointF(window->geometry().topLeft() - origin) * devicePixelRatio();
        const QImage picture = WindowStack::picture(window);
        const QRect place(corner.toPoint(), picture.size());
        if (stageMap.toScreen(place).intersects(part)) {
            painter.drawImage(place.topLeft(), picture);
        }
    }
}

QPointF Stage::toGlobal(const QPointF& position) const
{
    const qreal ratio = devicePixelRatio();
    return map().toPanel(position * ratio) / ratio + QPointF(panelArea().topLeft());
}

// The window itself, nullptr when a modal one keeps touches from it.
QWindow* Stage::openWindow(const QWidget* window)
{
    QWindow* handle = window->windowHandle();
    const QWindow* modal = QGuiApplication::modalWindow();
    const bool blocked = modal != nullptr && modal != handle &&
        !modal->isAncestorOf(handle, QWindow::IncludeTransients);
    return blocked ? nullptr : handle;
}

QWindow* Stage::windowAt(const QPointF& global) const
{
    const auto windows = m_windows->windows();
    for (auto window = windows.crbegin(); window != windows.crend(); ++window) {
        if (QRectF((*window)->geometry()).contains(global)) {
            return openWindow(*window);
        }
    }
    return nullptr;
}

void Stage::takePointer(QMouseEvent* event)
{
    if (!isTurned()) {
        return;
    }
    const QPointF global = toGlobal(event->position());
    if (m_pressed == nullptr) {
        m_pressed = windowAt(global);
    }
    QWindow* target = m_pressed;
    if (event->buttons() == Qt::NoButton) {
        m_pressed.clear();
    }
    if (target == nullptr) {
        return;
    }
    const QPointF local = target->mapFromGlobal(global);
    QMouseEvent turned(event->type(), local, local, global, event->button(), event->buttons(),
        event->modifiers(), event->pointingDevice());
    QCoreApplication::sendEvent(target, &turned);
}
