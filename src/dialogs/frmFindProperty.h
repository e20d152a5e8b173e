#pragma once
// The property search: find a record's key by owner (office, agent) name or street address,
// for listings also by status and by who holds the listing. Opened from the key prompts.
#include "dialogs/FindPropertySql.h"

#include <QDialog>
#include <QStringList>
#include <memory>
#include <vector>

class FieldDictionary;
class QComboBox;
class Recordset;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTabWidget;
class QTreeWidget;
class clsSQLQuote;

// Option bits of Search.
namespace FindOption {
constexpr int SingleSelection = 1, SearchAtOnce = 2;
}

class frmFindProperty : public QDialog {
    Q_OBJECT
public:
    explicit frmFindProperty(QWidget* parent = nullptr);
    ~frmFindProperty() override;

    // Shows the search modal for dic's kind and appends the keys the user chose to keys.
    // ownerChoice 1..4 picks the "Show:" entry, 5 picks it by the user's level; statusChoice 2
    // starts on "Active". Returns how many keys were chosen (0 when cancelled).
    static int Search(QStringList& keys, FieldDictionary& dic, int options, int ownerChoice, int statusChoice);

    // The steps of Search, for driving the window without a modal loop.
    void Setup(FieldDictionary& dic, int options, int ownerChoice, int statusChoice);
    int Result(QStringList& keys) const;
    void cmdShowMatches_Click();

    // What the user chose, as the statement builder takes it (company offices not yet asked).
    FindCriteria Choices() const;
    QString LastStatement() const { return m_lastSql; }
    bool Cancelled() const { return m_cancelled; }
    int BoardId() const { return m_boardId; }

    void reject() override;

    // Controls, by their design names.
    QTabWidget* sstTab = nullptr;
    QLabel* lblOwnerName = nullptr;
    QLineEdit* txtOwnerName = nullptr;
    QGroupBox* fraMatchMethodOwner = nullptr;
    QRadioButton* optMatchMethodOwner[4] = {};
    QLabel* lblStreetAddress = nullptr;
    QLineEdit* fpAddrMin = nullptr;
    QLabel* lblTo = nullptr;
    QLineEdit* fpAddrMax = nullptr;
    QLineEdit* txtStreetName = nullptr;
    QComboBox* cmbStreetDirection = nullptr;
    QGroupBox* fraMatchMethodStreet = nullptr;
    QRadioButton* optMatchMethodStreet[4] = {};
    QLabel* lblFilterByStatus = nullptr;
    QComboBox* cmbStatus = nullptr;
    QLabel* lblFilterByListingOwner = nullptr;
    QComboBox* cmbListingOwner = nullptr;
    QTreeWidget* List = nullptr;
    QLabel* lblMatches = nullptr;
    QLabel* lblMatchCount = nullptr;
    QPushButton* cmdShowMatches = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildControls();
    void onTabChanged(int tab);
    std::optional<QStringList> companyOffices();
    void fillList(Recordset& rs);
    const clsSQLQuote& quote();

    FieldDictionary* m_dic = nullptr;
    int m_kind = FindKind::Listings;
    int m_boardId = 0;
    bool m_cancelled = false;
    QString m_lastSql;
    std::unique_ptr<clsSQLQuote> m_quote; // made on first use
};
