// The dialect tables: what differs between the targets is data here, not code in the translator.
#include "host/JetDialect.h"

namespace JetSql {

const Dialect& SqliteDialect()
{
    static const Dialect d{
        "SQLite",
        false,
        "%1",
        "(%1 %2 %3 COLLATE NOCASE)",
        "(%1 COLLATE NOCASE %2BETWEEN %3 AND %4)",
        "(%1 COLLATE NOCASE %2IN (%3))",
        "(%1 COLLATE NOCASE %2IN (%3))",
        "(%1) COLLATE NOCASE",
        false,
        "(%1) COLLATE NOCASE",
        "(%1jet_like(%2, %3))",
        "jet_plus(%1, %2)",
        "jet_amp(%1, %2)",
        "(CAST(%1 AS REAL) / %2)",
        "(jet_clng(%1) / jet_clng(%2))",
        "jet_pow(%1, %2)",
        "(%1 % %2)",
        "(-(%1))",
        "%1",
        "(%1 IS NULL)",
        "(CASE WHEN %1 THEN %2 ELSE %3 END)",
        "'%1'",
        "CAST(strftime('%2', %3) AS INTEGER)",
        "date('now', 'localtime')",
        "datetime('now', 'localtime')",
        {
            {"UCASE", "upper(%1)", 1, 1, ValueKind::Text}, {"LCASE", "lower(%1)", 1, 1, ValueKind::Text},
            {"LEN", "length(%1)", 1, 1, ValueKind::Number}, {"TRIM", "trim(%1)", 1, 1, ValueKind::Text},
            {"LTRIM", "ltrim(%1)", 1, 1, ValueKind::Text}, {"RTRIM", "rtrim(%1)", 1, 1, ValueKind::Text},
            {"ABS", "abs(%1)", 1, 1, ValueKind::Number}, {"MID", "substr(%*)", 2, 3, ValueKind::Text},
            {"CLNG", "jet_clng(%1)", 1, 1, ValueKind::Number}, {"CINT", "jet_clng(%1)", 1, 1, ValueKind::Number},
            {"CDBL", "jet_cdbl(%1)", 1, 1, ValueKind::Number}, {"CSNG", "jet_cdbl(%1)", 1, 1, ValueKind::Number},
            {"CCUR", "jet_cdbl(%1)", 1, 1, ValueKind::Number}, {"CSTR", "jet_cstr(%1)", 1, 1, ValueKind::Text},
            {"RIGHT", "jet_right(%1, %2)", 2, 2, ValueKind::Text}, {"LEFT", "substr(%1, 1, %2)", 2, 2, ValueKind::Text},
            {"COUNT", "count(%*)", 1, 1, ValueKind::Number}, {"SUM", "sum(%1)", 1, 1, ValueKind::Number},
            {"AVG", "avg(%1)", 1, 1, ValueKind::Number}, {"MIN", "min(%1)", 1, 1, ValueKind::Unknown},
            {"MAX", "max(%1)", 1, 1, ValueKind::Unknown}, {"NZ", "COALESCE(%1, %2)", 1, 2, ValueKind::Unknown, "''"},
        },
    };
    return d;
}

// PostgreSQL is strictly typed and compares text with case: text operands are folded to lower
// case (ASCII, as the classic engine and SQLite's NOCASE do) under the byte order of "C", so
// equality and sorting give the same answers as on SQLite. The helpers live in pg_temp, created
// by each session, so a server needs nothing installed for them.
const Dialect& PostgresDialect()
{
    static const Dialect d{
        "PostgreSQL",
        true,
        "(pg_temp.jet_fold(CAST(%1 AS text)) COLLATE \"C\")",
        "(%1 %2 %3)",
        "(%1 %2BETWEEN %3 AND %4)",
        "(%1 %2IN (%3))",
        "(%1 %2IN (SELECT pg_temp.jet_fold(CAST(jet_in.c AS text)) FROM (%3) AS jet_in(c)))",
        "%1",
        true,
        "%1",
        "(%1(CAST(%2 AS text) ~* pg_temp.jet_like_re(CAST(%3 AS text))))",
        "pg_temp.jet_plus(%1, %2)",
        "pg_temp.jet_amp(CAST(%1 AS text), CAST(%2 AS text))",
        "(CAST(%1 AS double precision) / %2)",
        "(pg_temp.jet_clng(CAST(%1 AS text)) / pg_temp.jet_clng(CAST(%2 AS text)))",
        "power(CAST(%1 AS double precision), %2)",
        "(%1 % %2)",
        "(CASE WHEN %1 THEN -1 WHEN NOT %1 THEN 0 END)",
        "(%1 <> 0)",
        "(%1 IS NULL)",
        "(CASE WHEN %1 THEN %2 ELSE %3 END)",
        "'%1'",
        "CAST(extract(%1 FROM CAST(%3 AS date)) AS bigint)",
        "to_char(current_date, 'YYYY-MM-DD')",
        "to_char(localtimestamp, 'YYYY-MM-DD HH24:MI:SS')",
        {
            {"UCASE", "upper(CAST(%1 AS text))", 1, 1, ValueKind::Text}, {"LCASE", "lower(CAST(%1 AS text))", 1, 1, ValueKind::Text},
            {"LEN", "length(CAST(%1 AS text))", 1, 1, ValueKind::Number}, {"TRIM", "btrim(CAST(%1 AS text))", 1, 1, ValueKind::Text},
            {"LTRIM", "ltrim(CAST(%1 AS text))", 1, 1, ValueKind::Text}, {"RTRIM", "rtrim(CAST(%1 AS text))", 1, 1, ValueKind::Text},
            {"ABS", "abs(%1)", 1, 1, ValueKind::Number}, {"MID", "substr(CAST(%1 AS text), %r)", 2, 3, ValueKind::Text},
            {"CLNG", "pg_temp.jet_clng(CAST(%1 AS text))", 1, 1, ValueKind::Number},
            {"CINT", "pg_temp.jet_clng(CAST(%1 AS text))", 1, 1, ValueKind::Number},
            {"CDBL", "pg_temp.jet_cdbl(CAST(%1 AS text))", 1, 1, ValueKind::Number},
            {"CSNG", "pg_temp.jet_cdbl(CAST(%1 AS text))", 1, 1, ValueKind::Number},
            {"CCUR", "pg_temp.jet_cdbl(CAST(%1 AS text))", 1, 1, ValueKind::Number},
            {"CSTR", "CAST(%1 AS text)", 1, 1, ValueKind::Text},
            {"RIGHT", "pg_temp.jet_right(CAST(%1 AS text), %2)", 2, 2, ValueKind::Text},
            {"LEFT", "substr(CAST(%1 AS text), 1, %2)", 2, 2, ValueKind::Text},
            {"COUNT", "count(%*)", 1, 1, ValueKind::Number}, {"SUM", "sum(%1)", 1, 1, ValueKind::Number},
            {"AVG", "avg(%1)", 1, 1, ValueKind::Number}, {"MIN", "min(%1)", 1, 1, ValueKind::Unknown},
            {"MAX", "max(%1)", 1, 1, ValueKind::Unknown}, {"NZ", "COALESCE(%1, %2)", 1, 2, ValueKind::Unknown, "''"},
        },
    };
    return d;
}

} // namespace JetSql
