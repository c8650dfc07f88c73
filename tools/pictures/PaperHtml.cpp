#include "tools/pictures/PaperHtml.h"

#include "app/Identity.h"

#include <QBuffer>
#include <QFileInfo>
#include <QXmlStreamWriter>

using namespace Qt::StringLiterals;

namespace {

const char* const Sheet =
    "body {font-family: 'DejaVu Sans', Arial, sans-serif; font-size: 10pt; margin: 2em;}"
    "h2 {border-bottom: 2px solid #425994; padding-top: 1em;}"
    "figure {margin: 0 0 1em 0;}"
    "figure img {width: 100%; height: auto; border: 1px solid black;}"
    "figcaption {margin-top: 0.3em;}"
    ".pages {max-width: 800px;}"
    ".editors {display: grid; grid-template-columns: 1fr 1fr; gap: 1em;}"
    "table {border-collapse: collapse; width: 100%; margin-bottom: 1em;}"
    "th, td {border: 1px solid #808080; padding: 0.2em 0.5em; text-align: left; vertical-align: top;"
    " overflow-wrap: anywhere;}"
    "th {background-color: #e0e0e0;}"
    "code {font-family: 'DejaVu Sans Mono', monospace;}"
    "@media print {body {margin: 0;} h2 {page-break-before: always;}"
    " figure, tr {page-break-inside: avoid;}}";

QString count(qsizetype number, const QString& what)
{
    return u"%1 %2%3"_s.arg(number).arg(what, number == 1 ? QString() : u"s"_s);
}

// One page in the making. Elements without content are written with an end tag, as HTML wants it,
// unless they are void.
class Page
{
public:
    Page(QByteArray* bytes, const QString& pictures)
        : m_xml(bytes)
        , m_pictures(pictures)
    {
    }

    void write(const Paper& paper);

private:
    void open(const QString& tag, const QString& kind = QString());
    void close() { m_xml.writeEndElement(); }
    void text(const QString& tag, const QString& content);
    void link(const QString& menu, const Paper& paper);
    void head(const QString& title);
    void contents(const Paper& paper);
    void menu(const PaperMenu& menu, const Paper& paper);
    void table(const QList<PaperKey>& keys, const Paper& paper);
    void editors(const QList<PaperKey>& keys);
    void image(const PaperPicture& picture);
    void figure(const PaperPicture& picture);
    static QString anchor(const Paper& paper, const QString& menu);

    QXmlStreamWriter m_xml;
    QString m_pictures;
};

void Page::open(const QString& tag, const QString& kind)
{
    m_xml.writeStartElement(tag);
    if (!kind.isEmpty()) {
        m_xml.writeAttribute(u"class"_s, kind);
    }
}

void Page::text(const QString& tag, const QString& content)
{
    m_xml.writeStartElement(tag);
    m_xml.writeCharacters(content);
    m_xml.writeEndElement();
}

// A menu's place in the page; empty for a menu that the file does not have.
QString Page::anchor(const Paper& paper, const QString& menu)
{
    for (qsizetype i = 0; i < paper.menus.size(); ++i) {
        if (paper.menus.at(i).name == menu) {
            return u"menu-%1"_s.arg(i + 1);
        }
    }
    return {};
}

void Page::link(const QString& menu, const Paper& paper)
{
    const QString target = anchor(paper, menu);
    if (target.isEmpty()) {
        m_xml.writeCharacters(menu + u" (not in this file)"_s);
        return;
    }
    m_xml.writeStartElement(u"a"_s);
    m_xml.writeAttribute(u"href"_s, u'#' + target);
    m_xml.writeCharacters(menu);
    m_xml.writeEndElement();
}

void Page::head(const QString& title)
{
    open(u"head"_s);
    m_xml.writeEmptyElement(u"meta"_s);
    m_xml.writeAttribute(u"charset"_s, u"utf-8"_s);
    text(u"title"_s, title);
    text(u"style"_s, QString::fromUtf8(Sheet)); // has no character that XML writes in another way
    close();
}

void Page::write(const Paper& paper)
{
    const QString title = u"Menus of "_s + QFileInfo(paper.file).fileName();
    m_xml.writeDTD(u"<!DOCTYPE html>\n"_s);
    m_xml.writeStartElement(u"html"_s);
    m_xml.writeAttribute(u"lang"_s, u"en"_s);
    head(title);
    open(u"body"_s);
    text(u"h1"_s, title);
    contents(paper);
    for (const PaperMenu& one : paper.menus) {
        menu(one, paper);
    }
    if (!paper.immediate.isEmpty()) {
        text(u"h2"_s, u"Editors that the unit opens (IK)"_s);
        table(paper.immediate, paper);
        editors(paper.immediate);
    }
    if (!paper.boxes.isEmpty()) {
        text(u"h2"_s, u"Message boxes (DB)"_s);
        open(u"div"_s, u"editors"_s);
        for (const PaperPicture& box : paper.boxes) {
            figure(box);
        }
        close();
    }
    m_xml.writeEndDocument();
}

void Page::contents(const Paper& paper)
{
    qsizetype keys = 0;
    for (const PaperMenu& menu : paper.menus) {
        keys += menu.keys.size();
    }
    text(u"p"_s,
        u"%1 with %2, drawn by panel version %3."_s.arg(
            count(paper.menus.size(), u"menu"_s), count(keys, u"key"_s), identity::version()));
    open(u"ul"_s);
    for (const PaperMenu& menu : paper.menus) {
        open(u"li"_s);
        link(menu.name, paper);
        m_xml.writeCharacters(u", "_s + count(menu.keys.size(), u"key"_s));
        close();
    }
    close();
}

void Page::menu(const PaperMenu& menu, const Paper& paper)
{
    m_xml.writeStartElement(u"h2"_s);
    m_xml.writeAttribute(u"id"_s, anchor(paper, menu.name));
    m_xml.writeCharacters(menu.name);
    close();
    open(u"div"_s, u"pages"_s);
    for (const PaperPicture& page : menu.pages) {
        figure(page);
    }
    close();
    table(menu.keys, paper);
    editors(menu.keys);
}

void Page::table(const QList<PaperKey>& keys, const Paper& paper)
{
    open(u"table"_s);
    open(u"thead"_s);
    open(u"tr"_s);
    for (const QString& title :
        {u"Key"_s, u"Identifier"_s, u"Kind"_s, u"Sends"_s, u"Ranges, choices"_s, u"State"_s}) {
        text(u"th"_s, title);
    }
    close();
    close();
    open(u"tbody"_s);
    for (const PaperKey& key : keys) {
        open(u"tr"_s);
        text(u"td"_s, key.label);
        text(u"td"_s, key.id);
        text(u"td"_s, key.kind);
        open(u"td"_s);
        text(u"code"_s, key.sends);
        if (!key.opens.isEmpty()) {
            m_xml.writeCharacters(u", for the menu "_s);
            link(key.opens, paper);
        }
        close();
        text(u"td"_s, key.values);
        text(u"td"_s, key.state);
        close();
    }
    close();
    close();
}

void Page::editors(const QList<PaperKey>& keys)
{
    open(u"div"_s, u"editors"_s);
    m_xml.writeCharacters(QString());
    for (const PaperKey& key : keys) {
        for (const PaperPicture& picture : key.editor) {
            open(u"figure"_s);
            image(picture);
            open(u"figcaption"_s);
            text(u"strong"_s, key.label);
            m_xml.writeCharacters(u": "_s);
            text(u"code"_s, key.sends);
            m_xml.writeCharacters(
                u". "_s + key.kind + (key.values.isEmpty() ? u"."_s : u": "_s) + key.values);
            close();
            close();
        }
    }
    close();
}

void Page::image(const PaperPicture& picture)
{
    QString source = m_pictures + picture.name + u".png"_s;
    if (m_pictures.isEmpty()) {
        QByteArray png;
        QBuffer buffer(&png);
        picture.image.save(&buffer, "PNG");
        source = u"data:image/png;base64,"_s + QString::fromLatin1(png.toBase64());
    }
    m_xml.writeEmptyElement(u"img"_s);
    m_xml.writeAttribute(u"src"_s, source);
    m_xml.writeAttribute(u"alt"_s, picture.title);
    m_xml.writeAttribute(u"width"_s, QString::number(picture.image.width()));
    m_xml.writeAttribute(u"height"_s, QString::number(picture.image.height()));
}

void Page::figure(const PaperPicture& picture)
{
    open(u"figure"_s);
    image(picture);
    text(u"figcaption"_s, picture.title);
    close();
}

} // namespace

QByteArray paperHtml::page(const Paper& paper, const QString& pictures)
{
    QByteArray bytes;
    const QString folder =
        pictures.isEmpty() || pictures.endsWith(u'/') ? pictures : pictures + u'/';
    Page(&bytes, folder).write(paper);
    return bytes;
}
