#include "help/HelpViewer.h"
#include "help/HelpBook.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QTabWidget>
#include <QTextBrowser>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
constexpr int PageRole = Qt::UserRole;
}

HelpViewer::HelpViewer(const HelpBook& book, QWidget* owner) : QWidget(owner, Qt::Window), m_book(book)
{
    setObjectName(QStringLiteral("HelpViewer"));
    setWindowTitle(QStringLiteral("Pagewright Help"));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(960, 680);

    auto* back = new QToolButton(this);
    back->setText(QStringLiteral("< &Back"));
    auto* forward = new QToolButton(this);
    forward->setText(QStringLiteral("&Forward >"));
    auto* home = new QToolButton(this);
    home->setText(QStringLiteral("&Home"));
    auto* bar = new QHBoxLayout;
    bar->addWidget(back);
    bar->addWidget(forward);
    bar->addWidget(home);
    bar->addStretch();

    m_tabs = new QTabWidget(this);
    m_contents = new QTreeWidget(m_tabs);
    m_contents->setHeaderHidden(true);
    m_tabs->addTab(m_contents, QStringLiteral("&Contents"));

    auto* indexPage = new QWidget(m_tabs);
    auto* indexLayout = new QVBoxLayout(indexPage);
    auto* indexLabel = new QLabel(QStringLiteral("Type the &keyword to find:"), indexPage);
    m_indexFilter = new QLineEdit(indexPage);
    indexLabel->setBuddy(m_indexFilter);
    m_index = new QListWidget(indexPage);
    indexLayout->addWidget(indexLabel);
    indexLayout->addWidget(m_indexFilter);
    indexLayout->addWidget(m_index);
    m_tabs->addTab(indexPage, QStringLiteral("&Index"));

    auto* searchPage = new QWidget(m_tabs);
    auto* searchLayout = new QVBoxLayout(searchPage);
    auto* searchLabel = new QLabel(QStringLiteral("Type the &words to search for:"), searchPage);
    m_searchText = new QLineEdit(searchPage);
    searchLabel->setBuddy(m_searchText);
    auto* searchButton = new QPushButton(QStringLiteral("&List Topics"), searchPage);
    m_results = new QListWidget(searchPage);
    searchLayout->addWidget(searchLabel);
    searchLayout->addWidget(m_searchText);
    searchLayout->addWidget(searchButton);
    searchLayout->addWidget(m_results);
    m_tabs->addTab(searchPage, QStringLiteral("&Search"));

    m_browser = new QTextBrowser(this);
    m_browser->setOpenLinks(false);
    m_browser->setSearchPaths({QStringLiteral(":/help")});

    auto* split = new QSplitter(this);
    split->addWidget(m_tabs);
    split->addWidget(m_browser);
    split->setStretchFactor(1, 3);
    split->setSizes({260, 700});
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(bar);
    layout->addWidget(split);

    fillContents();
    fillIndex(QString());

    connect(back, &QToolButton::clicked, m_browser, &QTextBrowser::backward);
    connect(forward, &QToolButton::clicked, m_browser, &QTextBrowser::forward);
    connect(home, &QToolButton::clicked, this, [this] { Open(m_book.HomePage()); });
    connect(m_browser, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
    connect(m_browser, &QTextBrowser::forwardAvailable, forward, &QWidget::setEnabled);
    back->setEnabled(false);
    forward->setEnabled(false);
    connect(m_browser, &QTextBrowser::anchorClicked, this, &HelpViewer::openLink);
    connect(m_browser, &QTextBrowser::sourceChanged, this, [this](const QUrl& url) {
        setWindowTitle(QStringLiteral("Pagewright Help - ") + m_book.Title(url.fileName()));
    });
    auto openItem = [this](const QString& page) {
        if (!page.isEmpty())
            Open(page);
    };
    connect(m_contents, &QTreeWidget::itemActivated, this, [openItem](QTreeWidgetItem* item) { openItem(item->data(0, PageRole).toString()); });
    connect(m_contents, &QTreeWidget::itemClicked, this, [openItem](QTreeWidgetItem* item) { openItem(item->data(0, PageRole).toString()); });
    connect(m_index, &QListWidget::itemActivated, this, [openItem](QListWidgetItem* item) { openItem(item->data(PageRole).toString()); });
    connect(m_index, &QListWidget::itemClicked, this, [openItem](QListWidgetItem* item) { openItem(item->data(PageRole).toString()); });
    connect(m_results, &QListWidget::itemActivated, this, [openItem](QListWidgetItem* item) { openItem(item->data(PageRole).toString()); });
    connect(m_results, &QListWidget::itemClicked, this, [openItem](QListWidgetItem* item) { openItem(item->data(PageRole).toString()); });
    connect(m_indexFilter, &QLineEdit::textChanged, this, &HelpViewer::fillIndex);
    connect(m_indexFilter, &QLineEdit::returnPressed, this, [this] {
        if (m_index->count() > 0)
            Open(m_index->item(0)->data(PageRole).toString());
    });
    connect(searchButton, &QPushButton::clicked, this, &HelpViewer::runSearch);
    connect(m_searchText, &QLineEdit::returnPressed, this, &HelpViewer::runSearch);
    new QShortcut(QKeySequence::Close, this, this, &QWidget::close);
    new QShortcut(Qt::Key_Escape, this, this, &QWidget::close);
}

void HelpViewer::Open(const QString& page)
{
    m_browser->setSource(m_book.Url(page));
    // Keep the contents in step with the page shown.
    for (QTreeWidgetItemIterator it(m_contents); *it; ++it)
        if ((*it)->data(0, PageRole).toString() == page) {
            m_contents->setCurrentItem(*it);
            break;
        }
}

QString HelpViewer::CurrentPage() const
{
    return m_browser->source().fileName();
}

void HelpViewer::fillContents()
{
    QList<QTreeWidgetItem*> parents;
    for (const HelpBook::Entry& e : m_book.Contents()) {
        QTreeWidgetItem* item = nullptr;
        while (parents.size() > e.level)
            parents.removeLast();
        if (parents.isEmpty())
            item = new QTreeWidgetItem(m_contents, {e.title});
        else
            item = new QTreeWidgetItem(parents.last(), {e.title});
        item->setData(0, PageRole, e.page);
        parents.append(item);
    }
    m_contents->expandAll();
}

void HelpViewer::fillIndex(const QString& filter)
{
    m_index->clear();
    for (auto it = m_book.Index().begin(); it != m_book.Index().end(); ++it) {
        if (!filter.isEmpty() && !it.key().startsWith(filter.trimmed(), Qt::CaseInsensitive))
            continue;
        for (const QString& page : it.value()) {
            const QString text = it.value().size() > 1 ? it.key() + QStringLiteral(" - ") + m_book.Title(page) : it.key();
            auto* item = new QListWidgetItem(text, m_index);
            item->setData(PageRole, page);
        }
    }
    m_index->sortItems(); // QMap sorts with case; the list reads better without
}

void HelpViewer::runSearch()
{
    m_results->clear();
    const QList<HelpBook::Hit> hits = m_book.Search(m_searchText->text());
    if (hits.isEmpty()) {
        auto* none = new QListWidgetItem(QStringLiteral("No topics found."), m_results);
        none->setFlags(Qt::NoItemFlags);
        return;
    }
    for (const HelpBook::Hit& h : hits) {
        auto* item = new QListWidgetItem(h.title, m_results);
        item->setData(PageRole, h.page);
    }
}

void HelpViewer::openLink(const QUrl& url)
{
    if (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("mailto")) {
        QDesktopServices::openUrl(url);
        return;
    }
    m_browser->setSource(url);
}
