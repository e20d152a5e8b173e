#pragma once
// The tokens of one Jet statement: literals are read whole so nothing inside them is ever
// taken for SQL. Internal to the Jet translation.
#include <QList>
#include <QString>

namespace JetSql {

enum class Tok { Ident, Bracket, String, Number, Date, Op, End };

struct Token {
    Tok kind = Tok::End;
    QString text; // Ident/Op: as written; Bracket/String/Date: the content without delimiters
    int pos = 0;
};

// Throws HostError(SqlSyntax) with "Syntax error in query: <what>."
[[noreturn]] void SyntaxError(const QString& what);

// The tokens up to the statement's first ";" (outside literals), ending with a Tok::End token.
// Anything but blanks after that ";" throws HostError(MultipleStatements).
QList<Token> Tokenize(const QString& statement);

} // namespace JetSql
