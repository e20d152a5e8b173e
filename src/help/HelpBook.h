#pragma once
// The program's help book: HTML pages compiled into the program (help/ in the source tree), with
// a table of contents, an index from each page's keywords, a word search, and the map from a
// window's help context to its page. One way into help everywhere: ShowHelp.
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QUrl>

class QObject;
class QWidget;

class HelpBook {
public:
    // The book compiled into the program.
    static const HelpBook& Instance();
    // A book in a folder (or resource path) holding contents.txt, contexts.txt and the pages.
    explicit HelpBook(const QString& root);

    struct Entry {
        int level = 0;
        QString title;
        QString page;
    };
    struct Hit {
        QString page;
        QString title;
        int score = 0;
    };

    const QList<Entry>& Contents() const { return m_contents; }
    // Keyword -> pages, keywords sorted without regard to case.
    const QMap<QString, QStringList>& Index() const { return m_index; }
    QStringList Pages() const { return m_pages.keys(); }
    QString Title(const QString& page) const;
    // The page's text without markup (for search and tests).
    QString PlainText(const QString& page) const;
    QUrl Url(const QString& page) const;
    QString HomePage() const { return QStringLiteral("index.html"); }

    // A help context number's page; "" when the number is unknown.
    QString PageForContext(int contextId) const;
    // The page of a window: its "HelpContextID" property, else its class or a base class, else
    // the same for its parents; the home page when nothing matches.
    QString PageForWindow(const QObject* window) const;
    // Pages holding every word (case-insensitive), best first (most occurrences, then title).
    QList<Hit> Search(const QString& words) const;

private:
    struct Page {
        QString title, text;
    };
    QString m_root;
    QList<Entry> m_contents;
    QMap<QString, QStringList> m_index;
    QMap<QString, Page> m_pages;
    QMap<QString, QString> m_contexts; // number or class name -> page
};

// Opens the help viewer at the page of a help context (0: the page of from's window). The viewer
// belongs to from's window, so it takes input even beside a modal dialog; it is reused while that
// window lives.
void ShowHelp(QWidget* from, int contextId = 0);

// F1 in any window of the program opens help at that window's page (windows whose own F1 shortcut
// takes the key, like the design window's Help menu, keep it).
void InstallHelpKey();
