#pragma once
// How one target database writes each Jet construct. Internal to the translation: the
// translator reads the statement once and asks the dialect for the text of every piece.
// Templates take %1, %2, ... for their parts; in function rules %* stands for all arguments and
// %r for the second and later ones.
#include "host/JetSql.h"

#include <QList>

namespace JetSql {

struct FunctionRule {
    const char* jet;       // upper case
    const char* target;
    int minArgs, maxArgs;
    ValueKind result;      // Unknown: the kind of the first argument
    const char* defaultArg = nullptr; // the last argument when it is left out
};

struct Dialect {
    const char* name;
    bool quoteNames;          // write names as the catalogue spells them, double-quoted
    // When either side holds text, each side is first wrapped in textOperand (as may be the items
    // of IN and BETWEEN), so that text compares without regard to case.
    const char* textOperand;  // %1 operand
    const char* compare;      // %1 left, %2 operator, %3 right
    const char* between;      // %1 value, %2 "NOT " or "", %3 low, %4 high
    const char* inList;       // %1 value, %2 "NOT " or "", %3 items
    const char* inSelectText; // text value IN (SELECT ...): %1 value, %2 "NOT " or "", %3 the select
    const char* orderItem;    // %1 expression; a text expression is wrapped in textOperand first when foldOrder
    bool foldOrder;
    const char* groupItem;
    const char* like;         // %1 "NOT " or "", %2 value, %3 pattern
    const char* plus, *amp, *divide, *intDivide, *power, *mod;
    const char* boolToValue;  // a condition used as a value: True is -1
    const char* valueToBool;  // a value used as a condition
    const char* isNull;       // a condition
    const char* iif;          // %1 condition, %2 then, %3 else
    const char* dateLiteral;  // %1 yyyy-mm-dd
    const char* datePart;     // %1 "year"/"month"/"day", %2 strftime letter, %3 value
    const char* today, *now;
    QList<FunctionRule> functions;
};

} // namespace JetSql
