#pragma once
// Makes user-typed text safe inside a quoted Jet literal or a Like pattern.
#include <QString>

class clsSQLQuote {
public:
    // Our databases all run the newer Jet rules, where "-" needs no brackets outside a class.
    clsSQLQuote() : ModernJet(true) {}
    explicit clsSQLQuote(bool modernJet) : ModernJet(modernJet) {}

    QString QuoteText(const QString& text) const;
    QString QuoteLike(const QString& text) const;

    bool ModernJet;
};

class clsAllowedStatuses {
public:
    // The quoted status codes that are not excluded, for an IN (...) list; "'0000'" when none.
    static QString SQLAllowedStatuses(const QString& excludedStatuses);
};
