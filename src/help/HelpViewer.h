#pragma once
// The help viewer: contents, index and search beside the page, with Back, Forward and Home.
#include <QWidget>

class HelpBook;
class QLineEdit;
class QListWidget;
class QTabWidget;
class QTextBrowser;
class QTreeWidget;

class HelpViewer : public QWidget {
    Q_OBJECT
public:
    explicit HelpViewer(const HelpBook& book, QWidget* owner = nullptr);

    void Open(const QString& page);
    QString CurrentPage() const;
    QTextBrowser* Browser() const { return m_browser; }
    QTabWidget* Tabs() const { return m_tabs; }
    QLineEdit* IndexFilter() const { return m_indexFilter; }
    QListWidget* IndexList() const { return m_index; }
    QLineEdit* SearchText() const { return m_searchText; }
    QListWidget* SearchResults() const { return m_results; }
    QTreeWidget* ContentsTree() const { return m_contents; }

private:
    void fillContents();
    void fillIndex(const QString& filter);
    void runSearch();
    void openLink(const QUrl& url);

    const HelpBook& m_book;
    QTabWidget* m_tabs = nullptr;
    QTreeWidget* m_contents = nullptr;
    QLineEdit* m_indexFilter = nullptr;
    QListWidget* m_index = nullptr;
    QLineEdit* m_searchText = nullptr;
    QListWidget* m_results = nullptr;
    QTextBrowser* m_browser = nullptr;
};
