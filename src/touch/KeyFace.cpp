#include "touch/KeyFace.h"

#include <QApplication>
#include <QCache>
#include <QFontMetrics>
#include <QHash>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionButton>

namespace {

constexpr qsizetype MaxFaces = 32;
constexpr QRect SampleOutline(0, 0, 100, 100);

// A push button asks for the size of this text when it has none.
QString sampleText()
{
    return QStringLiteral("XXXX");
}

QSize textSize(const QFont& font, const QString& text)
{
    return QFontMetrics(font).size(Qt::TextShowMnemonic, text.isEmpty() ? sampleText() : text);
}

// What a picture shows.
struct PictureKey
{
    QString sheet;
    QSize size;
    double pixelRatio;
    int state;
    int features;
    keyMarks::Marks marks;
    QRgb ground; // 0 for none

    bool operator==(const PictureKey& other) const
    {
        return size == other.size && state == other.state && features == other.features &&
            marks == other.marks && ground == other.ground &&
            qFuzzyCompare(pixelRatio, other.pixelRatio) && sheet == other.sheet;
    }
};

size_t qHash(const PictureKey& key, size_t seed = 0)
{
    return qHashMulti(seed, key.sheet, key.size.width(), key.size.height(), key.state, key.features,
        static_cast<int>(key.marks.lamp), key.marks.isPending, key.ground);
}

// What all faces depend on besides their sheets. A change is told to the widgets that there are,
// and there may be no key among them.
struct Ground
{
    QFont font;
    qint64 palette = 0;
    QString sheet;
    const QStyle* style = nullptr;

    bool operator==(const Ground& other) const
    {
        return font == other.font && palette == other.palette && sheet == other.sheet &&
            style == other.style;
    }
};

Ground presentGround()
{
    return {QApplication::font(), QApplication::palette().cacheKey(), qApp->styleSheet(),
        QApplication::style()};
}

struct Store
{
    Ground ground;
    QHash<QString, KeyFace> faces;
    QCache<PictureKey, QPixmap> pictures{KeyFace::MaxPictureBytes};
};

// Nothing of it may be left when the application goes.
Store& store()
{
    static Store theStore;
    static const bool isRegistered = [] {
        qAddPostRoutine(KeyFace::forgetAll);
        return true;
    }();
    Q_UNUSED(isRegistered)
    return theStore;
}

QPixmap* newPicture(const PictureKey& key, const QStyleOptionButton& option)
{
    QPushButton model;
    model.setStyleSheet(key.sheet);
    model.ensurePolished();
    QStyleOptionButton face = option;
    face.rect = QRect(QPoint(0, 0), key.size);
    face.text.clear();
    face.palette = model.palette();
    auto* picture = new QPixmap(key.size * key.pixelRatio);
    picture->setDevicePixelRatio(key.pixelRatio);
    // Opaque with a ground, which makes it half as expensive to paint.
    picture->fill(QColor::fromRgba(key.ground));
    QPainter painter(picture);
    model.style()->drawControl(QStyle::CE_PushButton, &face, &painter, &model);
    keyMarks::paint(painter, face.rect, key.marks, face.state.testFlag(QStyle::State_Enabled));
    return picture;
}

int bytesOf(const QPixmap& picture)
{
    return picture.width() * picture.height() * picture.depth() / 8;
}

} // namespace

KeyFace::KeyFace(const QString& sheet)
    : m_sheet(sheet)
{
    QPushButton model(sampleText());
    model.setStyleSheet(sheet);
    model.ensurePolished();
    m_font = model.font();
    m_textColours = {model.palette().color(QPalette::Disabled, QPalette::ButtonText),
        model.palette().color(QPalette::Active, QPalette::ButtonText)};
    m_frame = model.sizeHint() - textSize(m_font, sampleText());
    QStyleOptionButton option;
    option.initFrom(&model);
    option.rect = SampleOutline;
    const QRect contents =
        model.style()->subElementRect(QStyle::SE_PushButtonContents, &option, &model);
    m_contents = {contents.left(), contents.top(), SampleOutline.right() - contents.right(),
        SampleOutline.bottom() - contents.bottom()};
}

const KeyFace& KeyFace::of(const QString& sheet)
{
    const Ground ground = presentGround();
    if (!(store().ground == ground)) {
        forgetAll();
        store().ground = ground;
    }
    auto& faces = store().faces;
    auto found = faces.constFind(sheet);
    if (found == faces.cend()) {
        if (faces.size() >= MaxFaces) {
            faces.clear();
        }
        found = faces.insert(sheet, KeyFace(sheet));
    }
    return *found;
}

void KeyFace::forgetAll()
{
    store().faces.clear();
    store().pictures.clear();
}

QSize KeyFace::sizeHint(const QString& text) const
{
    return textSize(m_font, text) + m_frame;
}

void KeyFace::paintFace(QPainter& painter, const QStyleOptionButton& option,
    const keyMarks::Marks& marks, const QColor& ground) const
{
    if (option.rect.isEmpty()) {
        return;
    }
    const PictureKey key{m_sheet, option.rect.size(), painter.device()->devicePixelRatioF(),
        static_cast<int>(option.state), static_cast<int>(option.features), marks,
        ground.isValid() ? ground.rgba() : 0};
    auto& pictures = store().pictures;
    if (const QPixmap* known = pictures.object(key)) {
        painter.drawPixmap(option.rect.topLeft(), *known);
        return;
    }
    QPixmap* made = newPicture(key, option);
    painter.drawPixmap(option.rect.topLeft(), *made);
    pictures.insert(key, made, bytesOf(*made));
}

void KeyFace::paintText(QPainter& painter, const QStyleOptionButton& option) const
{
    painter.setFont(m_font);
    painter.setPen(textColour(option.state.testFlag(QStyle::State_Enabled)));
    painter.drawText(option.rect.marginsRemoved(m_contents), Qt::AlignCenter | Qt::TextShowMnemonic,
        option.text);
}
