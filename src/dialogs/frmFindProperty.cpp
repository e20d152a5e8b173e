#include "dialogs/frmFindProperty.h"

#include "entry/Host.h"
#include "entry/Prompts.h"
#include "sqltext/clsSQLQuote.h"

#include <QApplication>
#include <QButtonGroup>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIntValidator>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

const char* const kMethods[4] = {"Beginning", "Anywhere", "Exact", "End"};
const char* const kDirections[] = {"", "N", "S", "E", "W", "NE", "NW", "SE", "SW"};
const char* const kListingOwners[] = {"All listings", "My listings", "Listings from my office", "Listings from my company"};

// Number columns sort as numbers, the rest as text without regard to case.
class MatchItem : public QTreeWidgetItem {
public:
    using QTreeWidgetItem::QTreeWidgetItem;
    bool operator<(const QTreeWidgetItem& other) const override
    {
        const int col = treeWidget() ? treeWidget()->sortColumn() : 0;
        const QString a = text(col), b = other.text(col);
        bool okA = false, okB = false;
        const double x = a.toDouble(&okA), y = b.toDouble(&okB);
        if (okA && okB)
            return x < y;
        return a.compare(b, Qt::CaseInsensitive) < 0;
    }
};

QString valueText(const QVariant& v)
{
    if (v.isNull())
        return {};
    if (v.typeId() == QMetaType::Double && v.toDouble() == double(qint64(v.toDouble())))
        return QString::number(qint64(v.toDouble()));
    return v.toString();
}

class WaitCursor {
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
};

struct Column {
    const char* header;
    const char* field;
};

} // namespace

frmFindProperty::frmFindProperty(QWidget* parent) : QDialog(parent)
{
    setWindowTitle(QStringLiteral("Find Property"));
    buildControls();
}

frmFindProperty::~frmFindProperty() = default;

void frmFindProperty::buildControls()
{
    auto methodGroup = [this](QGroupBox*& frame, QRadioButton* (&opts)[4]) {
        frame = new QGroupBox(QStringLiteral("Match Method"), this);
        auto* lay = new QHBoxLayout(frame);
        auto* group = new QButtonGroup(frame);
        for (int i = 0; i < 4; ++i) {
            opts[i] = new QRadioButton(QLatin1String(kMethods[i]), frame);
            group->addButton(opts[i], i);
            lay->addWidget(opts[i]);
        }
        opts[0]->setChecked(true);
    };

    sstTab = new QTabWidget(this);
    auto* ownerPage = new QWidget(sstTab);
    auto* ownerLay = new QGridLayout(ownerPage);
    lblOwnerName = new QLabel(QStringLiteral("Owner Name:"), ownerPage);
    txtOwnerName = new QLineEdit(ownerPage);
    lblOwnerName->setBuddy(txtOwnerName);
    ownerLay->addWidget(lblOwnerName, 0, 0);
    ownerLay->addWidget(txtOwnerName, 0, 1);
    methodGroup(fraMatchMethodOwner, optMatchMethodOwner);
    fraMatchMethodOwner->setParent(ownerPage);
    ownerLay->addWidget(fraMatchMethodOwner, 1, 0, 1, 2);
    sstTab->addTab(ownerPage, QStringLiteral("Owners name"));

    auto* streetPage = new QWidget(sstTab);
    auto* streetLay = new QGridLayout(streetPage);
    lblStreetAddress = new QLabel(QStringLiteral("Street Address:"), streetPage);
    auto* validator = new QIntValidator(0, 2147483647, this);
    fpAddrMin = new QLineEdit(streetPage);
    fpAddrMax = new QLineEdit(streetPage);
    fpAddrMin->setValidator(validator);
    fpAddrMax->setValidator(validator);
    lblTo = new QLabel(QStringLiteral("to"), streetPage);
    auto* range = new QHBoxLayout;
    range->addWidget(fpAddrMin);
    range->addWidget(lblTo);
    range->addWidget(fpAddrMax);
    streetLay->addWidget(lblStreetAddress, 0, 0);
    streetLay->addLayout(range, 0, 1);
    auto* label1 = new QLabel(QStringLiteral("Street Name:"), streetPage);
    txtStreetName = new QLineEdit(streetPage);
    label1->setBuddy(txtStreetName);
    streetLay->addWidget(label1, 1, 0);
    streetLay->addWidget(txtStreetName, 1, 1);
    auto* label2 = new QLabel(QStringLiteral("Direction:"), streetPage);
    cmbStreetDirection = new QComboBox(streetPage);
    for (const char* d : kDirections)
        cmbStreetDirection->addItem(QLatin1String(d));
    streetLay->addWidget(label2, 2, 0);
    streetLay->addWidget(cmbStreetDirection, 2, 1);
    methodGroup(fraMatchMethodStreet, optMatchMethodStreet);
    fraMatchMethodStreet->setParent(streetPage);
    streetLay->addWidget(fraMatchMethodStreet, 3, 0, 1, 2);
    sstTab->addTab(streetPage, QStringLiteral("Street address"));

    lblFilterByStatus = new QLabel(QStringLiteral("Filter by status:"), this);
    cmbStatus = new QComboBox(this);
    lblFilterByListingOwner = new QLabel(QStringLiteral("Show:"), this);
    cmbListingOwner = new QComboBox(this);
    auto* filters = new QHBoxLayout;
    filters->addWidget(lblFilterByStatus);
    filters->addWidget(cmbStatus, 1);
    filters->addWidget(lblFilterByListingOwner);
    filters->addWidget(cmbListingOwner, 1);

    List = new QTreeWidget(this);
    List->setRootIsDecorated(false);
    List->setUniformRowHeights(true);
    List->setAllColumnsShowFocus(true);
    List->setSortingEnabled(true);
    List->header()->setSectionsClickable(true);
    List->header()->setSortIndicatorShown(true);

    lblMatches = new QLabel(QStringLiteral("Matches:"), this);
    lblMatchCount = new QLabel(QStringLiteral("0"), this);
    cmdShowMatches = new QPushButton(QStringLiteral("Show &Matches"), this);
    cmdOK = new QPushButton(QStringLiteral("&OK"), this);
    cmdCancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cmdOK->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(lblMatches);
    buttons->addWidget(lblMatchCount);
    buttons->addStretch(1);
    buttons->addWidget(cmdShowMatches);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);

    auto* main = new QVBoxLayout(this);
    main->addWidget(sstTab);
    main->addLayout(filters);
    main->addWidget(List, 1);
    main->addLayout(buttons);
    resize(620, 460);

    // Enter in a search field searches rather than closing the window.
    for (QLineEdit* e : {txtOwnerName, txtStreetName, fpAddrMin, fpAddrMax})
        e->installEventFilter(this);

    connect(sstTab, &QTabWidget::currentChanged, this, &frmFindProperty::onTabChanged);
    connect(cmdShowMatches, &QPushButton::clicked, this, &frmFindProperty::cmdShowMatches_Click);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &frmFindProperty::reject);
    connect(List, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) {
        if (item)
            accept();
    });
}

bool frmFindProperty::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            cmdShowMatches_Click();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmFindProperty::onTabChanged(int tab)
{
    QLineEdit* target = tab == 0 ? txtOwnerName : txtStreetName;
    if (sstTab->isTabVisible(tab))
        target->setFocus();
}

const clsSQLQuote& frmFindProperty::quote()
{
    if (!m_quote)
        m_quote = std::make_unique<clsSQLQuote>();
    return *m_quote;
}

void frmFindProperty::Setup(FieldDictionary& dic, int options, int ownerChoice, int statusChoice)
{
    m_dic = &dic;
    m_kind = dic.DatabaseKind();
    m_cancelled = false;
    const bool listings = m_kind == FindKind::Listings;

    // The layout of the kind.
    switch (m_kind) {
    case FindKind::Offices: setWindowTitle(QStringLiteral("Find Office")); break;
    case FindKind::Agents: setWindowTitle(QStringLiteral("Find Agent")); break;
    case FindKind::Rentals: setWindowTitle(QStringLiteral("Find Rental")); break;
    default: setWindowTitle(QStringLiteral("Find Property")); break;
    }
    if (m_kind == FindKind::Offices || m_kind == FindKind::Agents) {
        const QString name = m_kind == FindKind::Offices ? QStringLiteral("Office Name") : QStringLiteral("Agent Name");
        sstTab->setTabText(0, name);
        lblOwnerName->setText(name + QLatin1Char(':'));
    }
    sstTab->setTabVisible(1, m_kind != FindKind::Offices && m_kind != FindKind::Agents);
    sstTab->setTabVisible(0, m_kind != FindKind::Rentals);
    sstTab->setCurrentIndex(m_kind == FindKind::Rentals ? 1 : 0);
    lblFilterByStatus->setVisible(listings);
    cmbStatus->setVisible(listings);
    lblFilterByListingOwner->setVisible(listings || m_kind == FindKind::Agents);
    cmbListingOwner->setVisible(listings || m_kind == FindKind::Agents);

    // Status choices come from the dictionary's status codes.
    cmbStatus->clear();
    cmbStatus->addItem(QStringLiteral("All Statuses"), QString());
    if (listings) {
        dic.SelectField(7);
        for (const CodeListEntry& e : dic.FillCodeList())
            cmbStatus->addItem(e.text, e.code);
    }
    const int active = statusChoice == 2 ? cmbStatus->findText(QStringLiteral("Active")) : 0;
    cmbStatus->setCurrentIndex(std::max(active, 0));

    if (m_kind == FindKind::TaxRolls)
        for (int i : {MatchMethod::Anywhere, MatchMethod::End}) {
            optMatchMethodOwner[i]->setVisible(false);
            optMatchMethodStreet[i]->setVisible(false);
        }
    if (m_kind == FindKind::Rentals)
        for (int i : {MatchMethod::Anywhere, MatchMethod::End})
            optMatchMethodOwner[i]->setVisible(false);

    cmbListingOwner->clear();
    if (m_kind == FindKind::Agents) {
        cmbListingOwner->addItems({QStringLiteral("All"), QStringLiteral("Agents from my office")});
    } else {
        for (const char* o : kListingOwners)
            cmbListingOwner->addItem(QLatin1String(o));
    }
    m_boardId = 0;
    if (ownerChoice >= 1 && ownerChoice <= 4) {
        cmbListingOwner->setCurrentIndex(ownerChoice - 1 < cmbListingOwner->count() ? ownerChoice - 1 : 0);
    } else if (ownerChoice == 5) {
        const int level = gHost ? gHost->UserLevel() : 0;
        QString choice = QStringLiteral("All listings");
        if (level < 60) {
            choice = QStringLiteral("My listings");
        } else if (level < 90) {
            choice = QStringLiteral("Listings from my company");
        } else {
            // Board staff and administrators see everything: searching it all at once would be slow.
            if (level < 100)
                m_boardId = gHost->BoardId();
            options &= ~FindOption::SearchAtOnce;
        }
        cmbListingOwner->setCurrentIndex(std::max(cmbListingOwner->findText(choice), 0));
    }

    List->setSelectionMode((options & FindOption::SingleSelection) ? QAbstractItemView::SingleSelection
                                                                   : QAbstractItemView::ExtendedSelection);
    if (options & FindOption::SearchAtOnce)
        cmdShowMatches_Click();
    QLineEdit* first = sstTab->currentIndex() == 0 ? txtOwnerName : txtStreetName;
    first->setFocus();
}

FindCriteria frmFindProperty::Choices() const
{
    FindCriteria c;
    c.kind = m_kind;
    if (m_dic) {
        c.keyField = m_dic->KeyField();
        c.tableName = m_dic->TableName();
    }
    auto method = [](QRadioButton* const (&opts)[4]) {
        for (int i = 0; i < 4; ++i)
            if (opts[i]->isChecked())
                return i;
        return -1;
    };
    c.ownerName = txtOwnerName->text();
    c.ownerMethod = method(optMatchMethodOwner);
    c.streetName = txtStreetName->text();
    c.streetMethod = method(optMatchMethodStreet);
    c.direction = cmbStreetDirection->currentText();
    c.addrMin = fpAddrMin->text().toLongLong();
    c.addrMax = fpAddrMax->text().toLongLong();
    if (cmbStatus->currentIndex() > 0)
        c.statusCode = cmbStatus->currentData().toString();
    c.listingOwner = cmbListingOwner->currentText();
    c.boardId = m_boardId;
    if (gHost) {
        c.agentId = gHost->AgentId();
        c.officeId = gHost->OfficeId();
        c.statusList = gHost->StatusList();
    }
    return c;
}

std::optional<QStringList> frmFindProperty::companyOffices()
{
    try {
        auto rs = gHost->Database().OpenRecordset(1, FindPropertySql::CompanyOfficesSql(quote(), gHost->OfficeId()), 3, 1, 1);
        if (!rs)
            return std::nullopt;
        QStringList offices;
        for (; !rs->Eof(); rs->MoveNext())
            offices << valueText(rs->Fields(0));
        rs->Close();
        return offices;
    } catch (const HostError&) {
        return std::nullopt;
    }
}

void frmFindProperty::cmdShowMatches_Click()
{
    if (!m_dic || !gHost)
        return;
    WaitCursor wait;
    FindCriteria c = Choices();
    if (c.listingOwner == QLatin1String("Listings from my company") && m_kind != FindKind::TaxRolls)
        c.companyOffices = companyOffices();
    m_lastSql = FindPropertySql::Statement(c, quote());

    List->clear();
    lblMatchCount->setText(QStringLiteral("0"));
    std::unique_ptr<Recordset> rs;
    try {
        rs = gHost->Database().OpenRecordset(m_kind, m_lastSql, 3, 1, 1);
    } catch (const HostError& e) {
        MsgBox(e.Description(), Mb::OKOnly | Mb::Critical, windowTitle());
        return;
    }
    if (!rs)
        return;
    lblMatchCount->setText(QString::number(rs->RecordCount()));
    fillList(*rs);
    rs->Close();
}

void frmFindProperty::fillList(Recordset& rs)
{
    static const Column ownerTab[] = {{"Owner", "OwnerName"}, {"Number", "StreetNumber"}, {"Dir", "StreetDirection"}, {"Street Name", "StreetName"}};
    static const Column streetTab[] = {{"Number", "StreetNumber"}, {" ", "StreetDirection"}, {"Street Name", "StreetName"}, {"Owner", "OwnerName"}};
    static const Column names[] = {{"Name", "AgentName"}};
    static const Column rentals[] = {{"Number", "StreetNumber"}, {" ", "StreetDirection"}, {"Street Name", "StreetName"}};
    static const char* const keyHeaders[] = {"List #", "Tax Id", "Office Code", "Agent Code", "Rental #"};

    const bool streetActive = sstTab->currentIndex() == 1;
    std::vector<Column> columns;
    int sortColumn = 1;
    switch (m_kind) {
    case FindKind::Listings:
    case FindKind::TaxRolls:
        if (streetActive) {
            columns.assign(std::begin(streetTab), std::end(streetTab));
            sortColumn = 3;
        } else {
            columns.assign(std::begin(ownerTab), std::end(ownerTab));
        }
        break;
    case FindKind::Offices:
    case FindKind::Agents: columns.assign(std::begin(names), std::end(names)); break;
    case FindKind::Rentals:
        columns.assign(std::begin(rentals), std::end(rentals));
        sortColumn = 3;
        break;
    default: break;
    }

    QStringList headers{m_kind >= 1 && m_kind <= 5 ? QLatin1String(keyHeaders[m_kind - 1]) : QStringLiteral("Key")};
    for (const Column& col : columns)
        headers << QLatin1String(col.header);
    List->setSortingEnabled(false);
    List->setColumnCount(int(headers.size()));
    List->setHeaderLabels(headers);
    for (int i = 0; i < int(columns.size()); ++i)
        if (qstrcmp(columns[size_t(i)].header, "Number") == 0)
            List->headerItem()->setTextAlignment(i + 1, Qt::AlignRight | Qt::AlignVCenter);

    QList<QTreeWidgetItem*> rows;
    for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext()) {
        auto* item = new MatchItem;
        item->setText(0, valueText(rs.Fields(QStringLiteral("SelectedId"))));
        for (int i = 0; i < int(columns.size()); ++i) {
            item->setText(i + 1, valueText(rs.Fields(QLatin1String(columns[size_t(i)].field))));
            if (qstrcmp(columns[size_t(i)].header, "Number") == 0)
                item->setTextAlignment(i + 1, Qt::AlignRight | Qt::AlignVCenter);
        }
        rows << item;
    }
    List->addTopLevelItems(rows);
    List->setSortingEnabled(true);
    List->sortByColumn(sortColumn, Qt::AscendingOrder);
    for (int i = 0; i < List->columnCount(); ++i)
        List->resizeColumnToContents(i);
}

void frmFindProperty::reject()
{
    m_cancelled = true;
    QDialog::reject();
}

int frmFindProperty::Result(QStringList& keys) const
{
    if (m_cancelled)
        return 0;
    int n = 0;
    for (int i = 0; i < List->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* item = List->topLevelItem(i);
        if (item->isSelected()) {
            keys << item->text(0);
            ++n;
        }
    }
    return n;
}

int frmFindProperty::Search(QStringList& keys, FieldDictionary& dic, int options, int ownerChoice, int statusChoice)
{
    frmFindProperty form(QApplication::activeWindow());
    form.Setup(dic, options, ownerChoice, statusChoice);
    form.exec();
    return form.Result(keys);
}
