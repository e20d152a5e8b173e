#include "help/HelpBook.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextDocument>

namespace {

QString readText(const QString& file)
{
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

} // namespace

const HelpBook& HelpBook::Instance()
{
    static const HelpBook book(QStringLiteral(":/help"));
    return book;
}

HelpBook::HelpBook(const QString& root) : m_root(root)
{
    // contents.txt: one line per entry, "title | page", indented by two spaces per level.
    for (const QString& line : readText(m_root + QStringLiteral("/contents.txt")).split(QLatin1Char('\n'))) {
        if (line.trimmed().isEmpty() || line.trimmed().startsWith(QLatin1Char('#')))
            continue;
        const int indent = int(line.size() - QString(line).remove(QRegularExpression(QStringLiteral("^ +"))).size());
        const QStringList parts = line.trimmed().split(QLatin1Char('|'));
        m_contents.append(Entry{indent / 2, parts.value(0).trimmed(), parts.value(1).trimmed()});
    }
    // contexts.txt: "number-or-class page".
    for (const QString& line : readText(m_root + QStringLiteral("/contexts.txt")).split(QLatin1Char('\n'))) {
        const QStringList parts = line.simplified().split(QLatin1Char(' '));
        if (parts.size() == 2 && !parts[0].startsWith(QLatin1Char('#')))
            m_contexts.insert(parts[0], parts[1]);
    }
    static const QRegularExpression titleRe(QStringLiteral("<title>(.*?)</title>"), QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression keywordsRe(QStringLiteral("<meta name=\"keywords\" content=\"([^\"]*)\""));
    QStringList pages;
    for (const Entry& e : m_contents)
        if (!pages.contains(e.page))
            pages << e.page;
    for (const QString& page : pages) {
        const QString html = readText(m_root + QLatin1Char('/') + page);
        if (html.isEmpty())
            continue;
        QTextDocument doc;
        doc.setHtml(html);
        Page p{titleRe.match(html).captured(1).trimmed(), doc.toPlainText()};
        m_pages.insert(page, p);
        for (const QString& k : keywordsRe.match(html).captured(1).split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
            QStringList& where = m_index[k.trimmed()];
            if (!where.contains(page))
                where << page;
        }
    }
}

QString HelpBook::Title(const QString& page) const
{
    return m_pages.value(page).title;
}

QString HelpBook::PlainText(const QString& page) const
{
    return m_pages.value(page).text;
}

QUrl HelpBook::Url(const QString& page) const
{
    if (m_root.startsWith(QLatin1Char(':')))
        return QUrl(QStringLiteral("qrc") + m_root + QLatin1Char('/') + page);
    return QUrl::fromLocalFile(m_root + QLatin1Char('/') + page);
}

QString HelpBook::PageForContext(int contextId) const
{
    return m_contexts.value(QString::number(contextId));
}

QString HelpBook::PageForWindow(const QObject* window) const
{
    for (const QObject* o = window; o; o = o->parent()) {
        const QVariant id = o->property("HelpContextID");
        if (id.isValid() && !PageForContext(id.toInt()).isEmpty())
            return PageForContext(id.toInt());
        for (const QMetaObject* m = o->metaObject(); m; m = m->superClass()) {
            const QString page = m_contexts.value(QLatin1String(m->className()));
            if (!page.isEmpty())
                return page;
        }
    }
    return HomePage();
}

QList<HelpBook::Hit> HelpBook::Search(const QString& words) const
{
    const QStringList wanted = words.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QList<Hit> hits;
    if (wanted.isEmpty())
        return hits;
    for (auto it = m_pages.begin(); it != m_pages.end(); ++it) {
        const QString haystack = it->title + QLatin1Char('\n') + it->text;
        int score = 0;
        bool all = true;
        for (const QString& w : wanted) {
            const int n = int(haystack.count(w, Qt::CaseInsensitive));
            if (n == 0) {
                all = false;
                break;
            }
            score += n + (it->title.contains(w, Qt::CaseInsensitive) ? 10 : 0);
        }
        if (all)
            hits.append(Hit{it.key(), it->title, score});
    }
    std::sort(hits.begin(), hits.end(), [](const Hit& a, const Hit& b) {
        return a.score != b.score ? a.score > b.score : a.title.compare(b.title, Qt::CaseInsensitive) < 0;
    });
    return hits;
}
