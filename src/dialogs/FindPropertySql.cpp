#include "dialogs/FindPropertySql.h"

#include "sqltext/clsSQLQuote.h"

namespace {

const QString kAnd = QStringLiteral(" And ");
const QString kAgentName = QStringLiteral("(MemLastName + ', ' + MemFirstName + ' ' +  IIF(IsNull(MemMiddleInitial),'',MemMiddleInitial))");

QString quoted(const clsSQLQuote& quote, const QString& value)
{
    return QLatin1Char('\'') + quote.QuoteText(value) + QLatin1Char('\'');
}

QString ownerPart(const FindCriteria& c, const clsSQLQuote& quote)
{
    if (c.ownerName.isEmpty())
        return {};
    return FindPropertySql::Column(c.kind, QStringLiteral("OwnerName")) + QLatin1Char(' ') +
           FindPropertySql::MatchClause(quote, c.ownerName, c.ownerMethod) + kAnd;
}

QString streetPart(const FindCriteria& c, const clsSQLQuote& quote)
{
    if (c.streetName.isEmpty())
        return {};
    using FindPropertySql::Column;
    QString s = Column(c.kind, QStringLiteral("StreetName")) + QLatin1Char(' ') +
                FindPropertySql::MatchClause(quote, c.streetName, c.streetMethod) + kAnd;
    if (!c.direction.isEmpty())
        s += Column(c.kind, QStringLiteral("StreetDirection")) + QLatin1Char(' ') +
             FindPropertySql::MatchClause(quote, c.direction, MatchMethod::Exact) + kAnd;
    const qint64 low = std::min(c.addrMin, c.addrMax), high = std::max(c.addrMin, c.addrMax);
    const QString number = Column(c.kind, QStringLiteral("AddressNumber"));
    if (low == 0 && high == 0)
        return s;
    if (low == high)
        s += number + QStringLiteral(" = ") + QString::number(low) + kAnd;
    else
        s += number + QStringLiteral(" Between ") + QString::number(low) + kAnd + QString::number(high) + kAnd;
    return s;
}

QString statusPart(const FindCriteria& c, const clsSQLQuote& quote)
{
    if (c.statusCode.isEmpty())
        return {};
    return QStringLiteral("LstStatus = ") + quoted(quote, c.statusCode) + kAnd;
}

QString listingOwnerPart(const FindCriteria& c, const clsSQLQuote& quote)
{
    const QString& choice = c.listingOwner;
    if (choice == QLatin1String("All listings") || choice == QLatin1String("All"))
        return c.boardId != 0 ? QStringLiteral("BoardId = ") + QString::number(c.boardId) + kAnd : QString();
    if (choice == QLatin1String("My listings"))
        return QStringLiteral("ListAgentID = ") + quoted(quote, c.agentId) + kAnd;
    if (choice == QLatin1String("Listings from my office"))
        return QStringLiteral("ListOfficeID = ") + quoted(quote, c.officeId) + kAnd;
    if (choice == QLatin1String("Agents from my office"))
        return QStringLiteral("MemOfficeID = ") + quoted(quote, c.officeId) + kAnd;
    if (choice == QLatin1String("Listings from my company")) {
        // An office outside any company (no rows) filters nothing, like a host that answers nothing.
        if (!c.companyOffices || c.companyOffices->isEmpty())
            return {};
        QString s = QStringLiteral("(");
        for (const QString& office : *c.companyOffices)
            s += QStringLiteral("ListOfficeID = ") + quoted(quote, office) + QStringLiteral(" Or ");
        s.chop(4);
        return s + QStringLiteral(") And ");
    }
    return {};
}

} // namespace

namespace FindPropertySql {

QString MatchClause(const clsSQLQuote& quote, const QString& text, int method)
{
    switch (method) {
    case MatchMethod::Beginning: return QStringLiteral("Like '") + quote.QuoteLike(text) + QStringLiteral("%'");
    case MatchMethod::Anywhere: return QStringLiteral("Like '%") + quote.QuoteLike(text) + QStringLiteral("%'");
    case MatchMethod::Exact: return QStringLiteral("= '") + quote.QuoteText(text) + QLatin1Char('\'');
    case MatchMethod::End: return QStringLiteral("Like '%") + quote.QuoteLike(text) + QLatin1Char('\'');
    default: return {};
    }
}

QString CompanyOfficesSql(const clsSQLQuote& quote, const QString& officeId)
{
    return QStringLiteral("Select OffOfficeId From Office Where offCompanyCode = "
                          "(Select offCompanyCode From Office Where offOfficeId = ") +
           quoted(quote, officeId) + QStringLiteral(");");
}

QString Column(int kind, const QString& name)
{
    if (kind == FindKind::TaxRolls) {
        if (name == QLatin1String("StreetName")) return QStringLiteral("TaxStreetName");
        if (name == QLatin1String("StreetDirection")) return QStringLiteral("TaxStreetDir");
        if (name == QLatin1String("AddressNumber")) return QStringLiteral("TaxAddrNumber");
        if (name == QLatin1String("OwnerName")) return QStringLiteral("TaxOwnerName");
    } else if (kind == FindKind::Offices && name == QLatin1String("OwnerName")) {
        return QStringLiteral("OffName1");
    } else if (kind == FindKind::Agents && name == QLatin1String("OwnerName")) {
        return kAgentName;
    }
    return name;
}

QString Criteria(const FindCriteria& c, const clsSQLQuote& quote)
{
    // Renames are applied per column rather than over the finished text, so a name the user
    // typed (say "StreetName") is never rewritten inside its literal.
    switch (c.kind) {
    case FindKind::Listings: return ownerPart(c, quote) + streetPart(c, quote) + statusPart(c, quote) + listingOwnerPart(c, quote);
    case FindKind::TaxRolls: return ownerPart(c, quote) + streetPart(c, quote);
    case FindKind::Offices:
    case FindKind::Agents: return ownerPart(c, quote) + listingOwnerPart(c, quote);
    case FindKind::Rentals: return streetPart(c, quote) + listingOwnerPart(c, quote);
    default: return {};
    }
}

QString WhereClause(const FindCriteria& c, const clsSQLQuote& quote)
{
    const QString criteria = Criteria(c, quote);
    const bool statusFilter = c.kind == FindKind::Listings && !c.statusList.isEmpty();
    const QString allowed = statusFilter ? clsAllowedStatuses::SQLAllowedStatuses(c.statusList) : QString();
    if (!criteria.isEmpty()) {
        const QString conditions = criteria.chopped(5);
        if (statusFilter)
            return QStringLiteral(" Where (") + conditions + QStringLiteral(") AND lstStatus IN (") + allowed + QLatin1Char(')');
        return QStringLiteral(" Where ") + conditions;
    }
    if (statusFilter)
        return QStringLiteral(" WHERE lstStatus IN (") + allowed + QLatin1Char(')');
    return {};
}

QString Statement(const FindCriteria& c, const clsSQLQuote& quote)
{
    QString tail;
    switch (c.kind) {
    case FindKind::Listings: tail = QStringLiteral(" As SelectedId,StreetNumber,StreetDirection,StreetName,OwnerName FROM "); break;
    case FindKind::TaxRolls:
        tail = QStringLiteral(" As SelectedId,TaxHouseNumber as StreetNumber,TaxStreetDir as StreetDirection,"
                              "TaxStreetName as StreetName,TaxOwnerName as OwnerName FROM ");
        break;
    case FindKind::Offices: tail = QStringLiteral(" As SelectedId,OffName1 AS AgentName FROM "); break;
    case FindKind::Agents: tail = QStringLiteral(" As SelectedId,") + kAgentName + QStringLiteral(" AS AgentName FROM "); break;
    case FindKind::Rentals: tail = QStringLiteral(" As SelectedId,StreetNumber,StreetDirection,StreetName FROM "); break;
    default: tail = QStringLiteral(" As SelectedId FROM "); break;
    }
    return QStringLiteral("SELECT ") + c.keyField + tail + c.tableName + WhereClause(c, quote) + QLatin1Char(';');
}

} // namespace FindPropertySql
