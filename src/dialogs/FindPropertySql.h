#pragma once
// The statement the property search sends to the host, composed from what the user chose.
// Pure text work: the window collects the choices, these functions build the SQL.
#include <QString>
#include <QStringList>
#include <optional>

class clsSQLQuote;

namespace FindKind {
constexpr int Listings = 1, TaxRolls = 2, Offices = 3, Agents = 4, Rentals = 5;
}

// Match methods, the same index in the owner and street option groups.
namespace MatchMethod {
constexpr int Beginning = 0, Anywhere = 1, Exact = 2, End = 3;
}

struct FindCriteria {
    int kind = FindKind::Listings;   // the dictionary's DatabaseKind
    QString keyField, tableName;     // from the dictionary

    QString ownerName;               // owner, office or agent name; "" = not searched
    int ownerMethod = MatchMethod::Beginning;
    QString streetName;              // "" = no street part at all
    int streetMethod = MatchMethod::Beginning;
    QString direction;
    qint64 addrMin = 0, addrMax = 0; // an empty number box counts as 0

    QString statusCode;              // "" = all statuses
    QString listingOwner;            // the text of the "Show:" choice
    int boardId = 0;                 // 0 = no board filter

    // From the host.
    QString agentId, officeId, statusList;
    // The offices of the user's company, when "Listings from my company" is chosen;
    // nullopt when the host returned nothing for that question.
    std::optional<QStringList> companyOffices;
};

namespace FindPropertySql {

// The condition a match method puts after a column name; "" for an unknown method.
QString MatchClause(const clsSQLQuote& quote, const QString& text, int method);

// The question asked for "Listings from my company".
QString CompanyOfficesSql(const clsSQLQuote& quote, const QString& officeId);

// The conditions, each followed by " And " (the form the host expects to be cut).
QString Criteria(const FindCriteria& c, const clsSQLQuote& quote);

// " Where ..." (or "") including the allowed-status filter of listings.
QString WhereClause(const FindCriteria& c, const clsSQLQuote& quote);

// The whole statement.
QString Statement(const FindCriteria& c, const clsSQLQuote& quote);

// The column a search field names in the kind's table ("OwnerName" on tax rolls is
// "TaxOwnerName", on offices "OffName1", ...).
QString Column(int kind, const QString& name);

} // namespace FindPropertySql
